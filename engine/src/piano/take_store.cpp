#include "piano/take_store.h"

#include "files/whole_file.h"
#include "log/log.h"
#include "music/midi_file.h"
#include "music/midi_writer.h"

#include <algorithm>
#include <charconv>
#include <chrono>
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
    if (!name.starts_with(prefix) || !name.ends_with(suffix))
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

} // namespace

std::vector<TakeStore::Kept> TakeStore::load(std::size_t most) const
{
    std::vector<Kept> takes;
    for (const std::uint64_t number : numbersIn(folder_)) {
        const fs::path path = fileOf(folder_, number);
        std::error_code error;
        if (takes.size() == most || fs::file_size(path, error) > largestTake)
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
        collect(); // the last one is long done, unless the disk hangs
    waiting_[number] = writeMidiFile(piece);
    if (waiting_.size() > most)
        waiting_.erase(waiting_.begin());
    most_ = most;
    write();
}

bool TakeStore::keep()
{
    if (writing_.valid() && writing_.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
        collect();
    if (!waiting_.empty())
        write();
    return !failed_;
}

void TakeStore::collect()
{
    waiting_ = writing_.get();
    failed_ = !waiting_.empty();
}

void TakeStore::write()
{
    writing_ = std::async(std::launch::async,
        [folder = folder_, most = most_, files = std::exchange(waiting_, {}),
            known = failed_]() mutable {
            std::error_code error;
            fs::create_directories(folder, error);
            std::erase_if(files, [&](const Files::value_type &file) {
                const auto *bytes = reinterpret_cast<const char *>(file.second.data());
                return replaceFile(fileOf(folder, file.first), {bytes, file.second.size()});
            });
            if (!files.empty() && !known)
                log(LogLevel::Warning, "piano", "cannot write to " + folder.string());
            const auto numbers = numbersIn(folder);
            for (std::size_t i = most; i < numbers.size(); ++i)
                fs::remove(fileOf(folder, numbers[i]), error);
            return files;
        });
}

} // namespace kelo::engine
