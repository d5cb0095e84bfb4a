#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kelo::engine {

/// What is known about the user, and what the engine keeps for itself. Texts are UTF-8.
struct Profile {
    std::string assistant = "Kelo";
    std::string user;
    std::string city;
    bool fahrenheit = false;
    std::string needs;
    bool plays = false;
    std::string birthday; ///< "MM-DD", or empty
    bool naturalVoice = false;

    int wishedIn = 0; ///< the year of the last birthday wish
    int topKey = 108; ///< the highest key of the piano
    int voice = 0; ///< which of the voices
    int voiceLoudness = 100; ///< percent
    int speechRate = 165; ///< words a minute
    int speechPitch = 50; ///< 0 to 100
    int lessonTalk = 0; ///< how much is said in lessons: all, changes, sounds only
    bool systemVoice = false; ///< the desktop's speech service speaks
    int piecesLoudness = 100; ///< percent, as the next three
    int keysLoudness = 100;
    int bandLoudness = 100;
    int ticksLoudness = 100;
    std::string soundfont; ///< the file that was chosen; empty for what is there
    bool keysSound = true; ///< the player's keys sound from here, too

    friend bool operator==(const Profile &, const Profile &) = default;
};

/// The profile that the fields of a "~setup" line make, in place of `old`: name, assistant,
/// city, "F" or "C", needs, "true" or "false", birthday, "true" or "false". What is missing or
/// makes no sense is left at its default.
[[nodiscard]] Profile profileFromSetup(std::string_view fields, const Profile &old);

/// Reads "profile.json"; nothing where there is none or it cannot be understood.
[[nodiscard]] std::optional<Profile> loadProfile(const std::filesystem::path &file);

/// Writes it whole or not at all; keys that are nobody's here are kept. False where the disk
/// would not have it.
bool saveProfile(const Profile &profile, const std::filesystem::path &file);

/// Whether `today` is the user's birthday; who was born on the 29th of February celebrates on
/// the 28th in other years.
[[nodiscard]] bool isBirthday(const Profile &profile, std::chrono::year_month_day today);

} // namespace kelo::engine
