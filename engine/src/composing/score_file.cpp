#include "composing/score_file.h"

#include "composing/transcription.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace kelo::engine {

namespace {

using Json = nlohmann::json;

constexpr std::size_t mostTones = 10000;
constexpr int latest = 1 << 20; ///< ticks

std::optional<int> member(const Json &json, const char *name, int least, int most)
{
    const auto found = json.find(name);
    if (found == json.end() || !found->is_number_integer())
        return {};
    const auto value = found->get<std::int64_t>();
    return value >= least && value <= most ? std::optional(static_cast<int>(value)) : std::nullopt;
}

std::optional<Tone> toneFrom(const Json &json)
{
    if (!json.is_object())
        return {};
    const auto at = member(json, "at", 0, latest);
    const auto length = member(json, "length", 1, latest);
    const auto pitch = member(json, "pitch", 0, 127);
    const auto velocity = member(json, "velocity", 1, 127);
    if (!at || !length || !pitch || !velocity)
        return {};
    return Tone{*at, *length, *pitch, *velocity, 0};
}

} // namespace

std::string themeToJson(const Score &theme)
{
    Json tones = Json::array();
    for (const Tone &tone : theme.partTones(0))
        tones.push_back({{"at", tone.at}, {"length", tone.length}, {"pitch", tone.pitch},
            {"velocity", tone.velocity}});
    return Json{{"tonic", theme.key.tonic}, {"minor", theme.key.minor ? 1 : 0},
        {"beats", theme.metre.beats}, {"unit", theme.metre.unit}, {"tempo", theme.tempo},
        {"tones", tones}}
        .dump();
}

std::optional<Score> themeFromJson(std::string_view text)
{
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object() || !json.contains("tones") || !json["tones"].is_array())
        return {};
    const auto tonic = member(json, "tonic", 0, 11);
    const auto minor = member(json, "minor", 0, 1);
    const auto beats = member(json, "beats", 1, 12);
    const auto unit = member(json, "unit", 2, 8);
    const auto tempo = member(json, "tempo", 30, 300);
    if (!tonic || !minor || !beats || !unit || !tempo || (*unit & (*unit - 1)) != 0)
        return {};
    Score theme;
    theme.key = {*tonic, *minor == 1};
    theme.metre = {*beats, *unit};
    theme.tempo = *tempo;
    theme.parts = {{"Melody"}};
    for (const Json &each : json["tones"]) {
        if (const auto tone = toneFrom(each); tone && theme.tones.size() < mostTones)
            theme.tones.push_back(*tone);
    }
    if (theme.tones.empty())
        return {};
    theme.sort();
    harmonise(theme);
    return theme;
}

} // namespace kelo::engine
