#pragma once

#include "listen/action.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kelo::engine {

/// Where something is worth offering. It is understood everywhere.
enum Where : unsigned {
    InIdle = 1,
    InMenu = 2,
    InLesson = 4,
    InEar = 8,
    InTalk = 16,
    InCompose = 32,
    InJazz = 64,
    InStudio = 128,
    InScore = 256,
};
inline constexpr unsigned Everywhere =
    InIdle | InMenu | InLesson | InEar | InTalk | InCompose | InJazz | InStudio | InScore;

/// What may be said besides, whatever the phrase.
enum Takes : unsigned {
    TakesHands = 1,
    TakesBars = 2,
    TakesMetre = 4,
    TakesKey = 8,
    TakesMood = 16,
    TakesNumber = 32,
    TakesParts = 64,
    TakesSwitch = 128, ///< "on", "off"
};

/// One way to ask. `words` are what must be said, in any order: alternatives are separated by
/// "|"; "?" marks what may be left out, "#" is a number and "@" the name of a song. Other details
/// are "$song", a song by its number, "$bars", "$note", "$metre", "$parts", "$key", "$mood",
/// "$hands" and "$microphone".
struct Phrase {
    std::string_view words;
    std::string_view example; ///< for command page and recogniser; "~" is any of the moods
    std::optional<bool> on{}; ///< for what is switched on or off by this very phrase
};

/// What one action is called, on keys and aloud.
struct Job {
    Action action;
    unsigned where;
    std::string_view key; ///< as it stands on the key; empty where there is none
    std::string_view meaning;
    std::array<Phrase, 8> phrases{};
    unsigned takes = 0;
};

/// Some jobs that belong together.
struct JobGroup {
    std::string_view title;
    std::span<const Job> jobs;
};

/// Everything that can be asked for: what listens, what the recogniser is told to expect and
/// what the command page shows all come from here.
[[nodiscard]] std::span<const JobGroup> jobGroups();

/// An example as somebody would say it, with a number, a song and a mood in place of the marks.
[[nodiscard]] std::string sayable(std::string_view example);

} // namespace kelo::engine
