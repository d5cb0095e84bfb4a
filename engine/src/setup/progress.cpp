#include "setup/progress.h"

#include "setup/json_file.h"

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>

namespace kelo::engine {

namespace {

using Json = nlohmann::json;

constexpr int mostBars = 100'000;

/// A whole number from 0 to `most`, or 0.
int numberIn(const Json &json, const char *name, int most)
{
    const auto found = json.find(name);
    if (found == json.end() || !found->is_number_unsigned())
        return 0;
    const auto value = found->get<std::uint64_t>();
    return value <= static_cast<std::uint64_t>(most) ? static_cast<int>(value) : 0;
}

} // namespace

Progress::Progress(std::filesystem::path file)
    : file_(std::move(file))
{
    const Json json = readJsonFile(file_);
    if (json.is_null())
        return;
    const auto lessons = json.find("lessons");
    for (const Json &lesson : lessons == json.end() ? Json() : *lessons) {
        if (!lesson.is_object() || lessons_.size() >= mostPieces)
            continue;
        const auto piece = lesson.find("piece");
        const int bar = numberIn(lesson, "bar", mostBars);
        if (piece != lesson.end() && piece->is_string() && bar > 0)
            lessons_.push_back({piece->get<std::string>(), bar});
    }
    if (const auto jazz = json.find("jazz"); jazz != json.end() && jazz->is_object())
        jazz_ = {static_cast<std::size_t>(numberIn(*jazz, "lesson", 1000)),
            static_cast<std::size_t>(numberIn(*jazz, "key", 12))};
}

int Progress::barOf(const std::string &piece) const
{
    const auto found = std::ranges::find(lessons_, piece, &Lesson::piece);
    return found == lessons_.end() ? 1 : found->bar;
}

void Progress::reach(const std::string &piece, int bar)
{
    if (!lessons_.empty() && lessons_.back() == Lesson{piece, bar})
        return;
    std::erase_if(lessons_, [&](const Lesson &lesson) { return lesson.piece == piece; });
    if (lessons_.size() >= mostPieces)
        lessons_.erase(lessons_.begin());
    lessons_.push_back({piece, bar});
    save();
}

std::string Progress::lastPiece() const
{
    return lessons_.empty() ? std::string() : lessons_.back().piece;
}

void Progress::forget(const std::string &piece)
{
    if (std::erase_if(lessons_, [&](const Lesson &lesson) { return lesson.piece == piece; }) > 0)
        save();
}

void Progress::reach(JazzPlace place)
{
    if (std::exchange(jazz_, place) != place)
        save();
}

bool Progress::keep()
{
    if (!kept_)
        save();
    return kept_;
}

void Progress::save()
{
    if (file_.empty())
        return;
    Json lessons = Json::array();
    for (const Lesson &lesson : lessons_)
        lessons.push_back({{"piece", lesson.piece}, {"bar", lesson.bar}});
    kept_ = writeJsonFile(
        file_, {{"lessons", lessons}, {"jazz", {{"lesson", jazz_.lesson}, {"key", jazz_.key}}}});
}

} // namespace kelo::engine
