#include "sound/soundfonts.h"

#include "protocol/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <string_view>
#include <tuple>

namespace kelo::engine {

namespace {

namespace fs = std::filesystem;

struct Known {
    std::string_view begins; ///< of the file's name
    std::string_view name;
};

/// Best first.
constexpr std::array<Known, 4> known{{{"MuseScore_General", "MuseScore General"},
    {"FluidR3", "Fluid"}, {"GeneralUser", "General User"}, {"TimGM6mb", "Tim"}}};

std::size_t rankOf(std::string_view file)
{
    const auto found =
        std::ranges::find_if(known, [&](const Known &one) { return file.starts_with(one.begins); });
    if (found == known.end())
        return known.size() - 1; // before the smallest of those that are known
    const auto rank = static_cast<std::size_t>(found - known.begin());
    return rank + 1 == known.size() ? known.size() : rank;
}

std::string nameOf(const fs::path &file)
{
    const std::string stem = file.stem().string();
    for (const Known &one : known) {
        if (stem.starts_with(one.begins))
            return std::string(one.name);
    }
    std::string name = stem;
    std::ranges::replace_if(
        name, [](char c) { return c == '_' || c == '-'; }, ' ');
    return name;
}

} // namespace

std::vector<Soundfont> findSoundfonts(std::span<const fs::path> folders)
{
    struct Found {
        std::size_t rank = 0;
        std::uintmax_t size = 0;
        fs::path file;
    };
    std::vector<Found> all;
    std::set<fs::path> seen;
    for (const fs::path &folder : folders) {
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            const std::string kind = lowered(entry->path().extension().string());
            std::error_code unreadable;
            const fs::path file = fs::canonical(entry->path(), unreadable);
            const std::uintmax_t size = unreadable ? 0 : fs::file_size(file, unreadable);
            if (unreadable || (kind != ".sf2" && kind != ".sf3") || !seen.insert(file).second)
                continue;
            all.push_back({rankOf(file.filename().string()), size, file});
        }
    }
    std::ranges::sort(all, [](const Found &a, const Found &b) {
        return std::tie(a.rank, b.size, a.file) < std::tie(b.rank, a.size, b.file);
    });
    std::vector<Soundfont> soundfonts;
    for (const Found &one : all) {
        if (soundfonts.size() < mostSoundfonts)
            soundfonts.push_back({nameOf(one.file), one.file});
    }
    return soundfonts;
}

std::vector<fs::path> soundfontFolders(const fs::path &home)
{
    return {home / ".local/share/soundfonts", home / ".local/share/sounds/sf2",
        "/usr/local/share/soundfonts", "/usr/share/soundfonts", "/usr/share/sounds/sf2",
        "/usr/share/sounds/sf3", "/app/share/sounds/sf2"};
}

} // namespace kelo::engine
