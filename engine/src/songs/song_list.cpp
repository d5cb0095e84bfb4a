#include "songs/song_list.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr std::size_t longestList = 40;

} // namespace

std::size_t SongList::current() const
{
    return names_.empty() ? 0 : std::min(chosen_, names_.size() - 1);
}

void SongList::next()
{
    chosen_ = names_.empty() ? 0 : (current() + 1) % names_.size();
}

void SongList::previous()
{
    chosen_ = names_.empty() ? 0 : (current() + names_.size() - 1) % names_.size();
}

bool SongList::choose(int number)
{
    if (number < 1 || static_cast<std::size_t>(number) > names_.size())
        return false;
    chosen_ = static_cast<std::size_t>(number) - 1;
    return true;
}

std::string SongList::describe() const
{
    if (names_.empty())
        return "There are no songs.";
    const SongName &song = names_[current()];
    return "Song " + std::to_string(current() + 1) + " of " + std::to_string(names_.size()) + ": "
        + song.title + (song.composer.empty() ? "" : ", " + song.composer) + ".";
}

std::string SongList::count() const
{
    return names_.size() == 1 ? "There is one song."
                              : "There are " + std::to_string(names_.size()) + " songs.";
}

std::string SongList::list() const
{
    std::string text = count();
    for (std::size_t i = 0; i < std::min(names_.size(), longestList); ++i)
        text += " " + std::to_string(i + 1) + ": " + names_[i].title + ".";
    if (names_.size() > longestList)
        text += " And more. Ask for them by name.";
    return text;
}

} // namespace kelo::engine
