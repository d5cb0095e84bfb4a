#pragma once

#include "setup/profile.h"

#include <filesystem>

namespace kelo::engine {

/// The profile as it is used and kept. What someone who has not answered the first questions
/// changes holds until the end only.
class Settings {
public:
    explicit Settings(std::filesystem::path file);

    /// Whether the first questions have been answered.
    [[nodiscard]] bool known() const { return known_; }

    [[nodiscard]] const Profile &operator*() const { return profile_; }
    [[nodiscard]] const Profile *operator->() const { return &profile_; }

    /// Changes what `change` does to it and keeps it.
    template <typename Change> void change(Change change)
    {
        change(profile_);
        save();
    }

    /// The answers of the first questions.
    void answer(std::string_view fields);

    /// Tries again what could not be written. False while the disk would not have it.
    bool keep();

private:
    void save();

    std::filesystem::path file_;
    Profile profile_;
    bool known_ = false;
    bool kept_ = true;
};

} // namespace kelo::engine
