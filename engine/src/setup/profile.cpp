#include "setup/profile.h"

#include "protocol/text.h"
#include "setup/json_file.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <type_traits>

namespace kelo::engine {

namespace {

using Json = nlohmann::json;

constexpr std::size_t longestAnswer = 200;

/// Calls `visit` with every key and the member that it holds.
template <typename Members, typename Visit> void visitMembers(Members &profile, Visit visit)
{
    visit("assistant", profile.assistant);
    visit("user", profile.user);
    visit("city", profile.city);
    visit("fahrenheit", profile.fahrenheit);
    visit("needs", profile.needs);
    visit("plays", profile.plays);
    visit("birthday", profile.birthday);
    visit("naturalVoice", profile.naturalVoice);
    visit("wishedIn", profile.wishedIn);
    visit("topKey", profile.topKey);
    visit("voice", profile.voice);
    visit("voiceLoudness", profile.voiceLoudness);
    visit("speechRate", profile.speechRate);
    visit("speechPitch", profile.speechPitch);
    visit("lessonTalk", profile.lessonTalk);
    visit("systemVoice", profile.systemVoice);
    visit("piecesLoudness", profile.piecesLoudness);
    visit("keysLoudness", profile.keysLoudness);
    visit("bandLoudness", profile.bandLoudness);
    visit("ticksLoudness", profile.ticksLoudness);
    visit("soundfont", profile.soundfont);
    visit("keysSound", profile.keysSound);
}

bool isName(std::string_view name)
{
    return !name.empty()
        && std::ranges::none_of(name, [](unsigned char c) { return c < 0x80 && !std::isalpha(c); });
}

/// "MM-DD" of a day that some year has.
std::optional<std::chrono::month_day> dayFrom(std::string_view text)
{
    const auto digit = [&](std::size_t i) { return text[i] >= '0' && text[i] <= '9'; };
    if (text.size() != 5 || text[2] != '-' || !digit(0) || !digit(1) || !digit(3) || !digit(4))
        return {};
    const auto number = [&](std::size_t i) {
        return static_cast<unsigned>((text[i] - '0') * 10 + text[i + 1] - '0');
    };
    const std::chrono::month_day day{std::chrono::month(number(0)), std::chrono::day(number(3))};
    return day.ok() ? std::optional(day) : std::nullopt;
}

/// What a file that anyone may have edited can do harm with.
void repair(Profile &profile)
{
    profile.assistant = oneLine(profile.assistant);
    profile.user = oneLine(profile.user);
    if (!isName(profile.assistant))
        profile.assistant = Profile{}.assistant;
    if (!dayFrom(profile.birthday))
        profile.birthday.clear();
    profile.topKey = std::clamp(profile.topKey, 36, 127);
    profile.voice = std::clamp(profile.voice, 0, 99);
    for (int *loudness : {&profile.voiceLoudness, &profile.piecesLoudness, &profile.keysLoudness,
             &profile.bandLoudness, &profile.ticksLoudness})
        *loudness = std::clamp(*loudness, 10, 200);
    profile.lessonTalk = std::clamp(profile.lessonTalk, 0, 2);
    profile.speechRate = std::clamp(profile.speechRate, 120, 400);
    profile.speechPitch = std::clamp(profile.speechPitch, 0, 100);
}

} // namespace

Profile profileFromSetup(std::string_view line, const Profile &old)
{
    std::array<std::string, 8> fields;
    for (std::string &field : fields) {
        const auto bar = std::min(line.find('|'), line.size());
        field = oneLine(line.substr(0, bar), longestAnswer);
        line.remove_prefix(std::min(bar + 1, line.size()));
    }
    Profile profile = old;
    profile.user = fields[0];
    profile.assistant = fields[1];
    profile.city = fields[2];
    profile.fahrenheit = fields[3] == "F";
    profile.needs = fields[4];
    profile.plays = fields[5] == "true";
    profile.birthday = fields[6];
    profile.naturalVoice = fields[7] == "true";
    repair(profile);
    return profile;
}

std::optional<Profile> loadProfile(const std::filesystem::path &file)
{
    const Json json = readJsonFile(file);
    if (json.is_null())
        return {};
    Profile profile;
    visitMembers(profile, [&](const char *key, auto &member) {
        using Member = std::remove_reference_t<decltype(member)>;
        const auto found = json.find(key);
        if (found == json.end())
            return;
        if constexpr (std::is_same_v<Member, bool>) {
            if (found->is_boolean())
                member = found->template get<bool>();
        } else if constexpr (std::is_same_v<Member, int>) {
            constexpr double most = 1e9;
            if (found->is_number())
                member = static_cast<int>(std::clamp(found->template get<double>(), -most, most));
        } else if (found->is_string()) {
            member = found->template get<std::string>();
        }
    });
    repair(profile);
    return profile;
}

bool saveProfile(const Profile &profile, const std::filesystem::path &file)
{
    Json json = readJsonFile(file);
    visitMembers(profile, [&](const char *key, const auto &member) { json[key] = member; });
    return writeJsonFile(file, json);
}

bool isBirthday(const Profile &profile, std::chrono::year_month_day today)
{
    const auto birthday = dayFrom(profile.birthday);
    if (!birthday)
        return false;
    std::chrono::year_month_day day{today.year(), birthday->month(), birthday->day()};
    if (!day.ok()) // the 29th of February in another year
        day = today.year() / birthday->month() / std::chrono::last;
    return day == today;
}

} // namespace kelo::engine
