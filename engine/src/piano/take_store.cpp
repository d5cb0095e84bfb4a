#include "piano/take_store.h"

#include "log/log.h"
#include "music/midi_file.h"
#include "music/midi_writer.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace kelo::engine {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = "take-";
constexpr std::string_view suffix = ".mid";
constexpr std::uintmax_t largestTake = 4 << 20;

std::optional<std::uint64_t> numberOf(const fs::path &file)
{
    const std::string name = file.filename().string();
    if (!name.starts_with(prefix) || !name.ends_with(suffix)
        || name.size() <= prefix.size() + suffix.size())
        return {};
    std::uint64_t number = 0;
    const char *end = name.data() + name.size() - suffix.size();
    const auto [rest, error] = std::from_chars(name.data() + prefix.size(), end, number);
    return error == std::errc{} && rest == end ? std::optional(number) : std::nullopt;
}

/// The numbers of all takes, newest first.
std::vector<std::uint64_t> numbersIn(const fs::path &folder)
{
    std::vector<std::uint64_t> numbers;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (const auto number = numberOf(entry->path()))
            numbers.push_back(*number);
    }
    std::ranges::sort(numbers, std::greater{});
    return numbers;
}

fs::path fileOf(const fs::path &folder, std::uint64_t number)
{
    return folder / (std::string(prefix) + std::to_string(number) + std::string(suffix));
}

/// The file's name is only ever that of a whole file, whenever the machine stops.
bool writeWhole(const fs::path &file, const std::vector<std::uint8_t> &bytes)
{
    const std::string draft = file.string() + ".new";
    const int descriptor = open(draft.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    const bool written =
        write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size())
        && fsync(descriptor) == 0;
    return close(descriptor) == 0 && written && std::rename(draft.c_str(), file.c_str()) == 0;
}

} // namespace

std::vector<TakeStore::Kept> TakeStore::load(std::size_t most) const
{
    std::vector<Kept> takes;
    for (const std::uint64_t number : numbersIn(folder_)) {
        const fs::path path = fileOf(folder_, number);
        std::error_code error;
        if (takes.size() == most || fs::file_size(path, error) > largestTake || error)
            continue;
        std::ifstream file(path, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        auto read = readMidiFile(bytes);
        if (auto *piece = std::get_if<Piece>(&read))
            takes.push_back({number, std::move(*piece)});
    }
    return takes;
}

void TakeStore::save(std::uint64_t number, const Piece &piece, std::size_t most)
{
    if (folder_.empty())
        return;
    if (writing_.valid())
        writing_.wait(); // the last one is long done, unless the disk hangs
    writing_ = std::async(
        std::launch::async, [folder = folder_, number, most, bytes = writeMidiFile(piece)] {
            std::error_code error;
            fs::create_directories(folder, error);
            if (!writeWhole(fileOf(folder, number), bytes)) {
                log(LogLevel::Warning, "piano", "cannot write to " + folder.string());
                return;
            }
            const auto numbers = numbersIn(folder);
            for (std::size_t i = most; i < numbers.size(); ++i)
                fs::remove(fileOf(folder, numbers[i]), error);
        });
}

} // namespace kelo::engine
