#include "music/midi_reader.h"

#include <algorithm>

namespace kelo::engine {

namespace {

constexpr std::size_t readAhead = 4096; // bytes; a file may have thousands of tracks

} // namespace

std::size_t HeldMidi::read(std::size_t at, std::span<std::uint8_t> to) const
{
    const MidiBytes found = bytes_.subspan(at, std::min(to.size(), bytes_.size() - at));
    std::ranges::copy(found, to.begin());
    return found.size();
}

std::size_t MidiFileBytes::read(std::size_t at, std::span<std::uint8_t> to) const
{
    file_.clear();
    file_.seekg(static_cast<std::streamoff>(at));
    file_.read(reinterpret_cast<char *>(to.data()), static_cast<std::streamsize>(to.size()));
    return static_cast<std::size_t>(file_.gcount());
}

/// There is one. The part ends here where the source has less than it promised.
std::uint8_t MidiReader::next()
{
    if (at_ - windowAt_ >= window_.size()) {
        window_.resize(std::min(readAhead, left()));
        window_.resize(source_->read(at_, window_));
        windowAt_ = at_;
    }
    if (!window_.empty())
        return window_[at_ - windowAt_];
    end_ = at_;
    truncated_ = true;
    return 0;
}

std::uint8_t MidiReader::byte()
{
    if (atEnd()) {
        truncated_ = true;
        return 0;
    }
    const std::uint8_t value = next();
    skip(std::min<std::size_t>(left(), 1));
    return value;
}

std::uint32_t MidiReader::number(int size)
{
    std::uint32_t value = 0;
    for (int i = 0; i < size; ++i)
        value = value << 8 | byte();
    return value;
}

std::uint32_t MidiReader::variable()
{
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        const std::uint8_t next = byte();
        value = value << 7 | (next & 0x7fU);
        if ((next & 0x80) == 0)
            return value;
    }
    truncated_ = true;
    return 0;
}

std::string MidiReader::text(std::size_t count, std::size_t most)
{
    std::string begin(std::min({count, most, left()}), '\0');
    for (char &letter : begin)
        letter = static_cast<char>(byte());
    skip(count - begin.size());
    return begin;
}

void MidiReader::skip(std::size_t count)
{
    truncated_ = truncated_ || count > left();
    at_ += std::min(count, left());
}

MidiReader MidiReader::part(std::size_t count)
{
    const std::size_t begin = at_;
    skip(count);
    return {*source_, begin, at_};
}

} // namespace kelo::engine
