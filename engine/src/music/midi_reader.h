#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <span>
#include <string>
#include <vector>

namespace kelo::engine {

using MidiBytes = std::span<const std::uint8_t>;

/// Bytes that are read piece by piece, so that a large file need not be held.
class MidiSource {
public:
    MidiSource() = default;
    virtual ~MidiSource() = default;
    MidiSource(const MidiSource &) = delete;
    MidiSource &operator=(const MidiSource &) = delete;

    [[nodiscard]] virtual std::size_t size() const = 0;
    /// Copies what lies from `at` on; returns how much of it there was.
    virtual std::size_t read(std::size_t at, std::span<std::uint8_t> to) const = 0;
};

/// Bytes that somebody else holds.
class HeldMidi : public MidiSource {
public:
    explicit HeldMidi(MidiBytes bytes)
        : bytes_(bytes)
    {
    }

    [[nodiscard]] std::size_t size() const override { return bytes_.size(); }
    std::size_t read(std::size_t at, std::span<std::uint8_t> to) const override;

private:
    MidiBytes bytes_;
};

/// The bytes of an open file; read by one thread.
class MidiFileBytes : public MidiSource {
public:
    MidiFileBytes(std::istream &file, std::size_t size)
        : file_(file)
        , size_(size)
    {
    }

    [[nodiscard]] std::size_t size() const override { return size_; }
    std::size_t read(std::size_t at, std::span<std::uint8_t> to) const override;

private:
    std::istream &file_;
    std::size_t size_;
};

/// Reads big-endian numbers from a part of the source; past its end it has failed and gives zeros.
/// A copy of one that has not read yet holds no bytes.
class MidiReader {
public:
    explicit MidiReader(const MidiSource &source)
        : MidiReader(source, 0, source.size())
    {
    }

    [[nodiscard]] bool failed() const { return truncated_; }
    [[nodiscard]] bool atEnd() const { return at_ == end_; }
    [[nodiscard]] std::size_t left() const { return end_ - at_; }

    /// The next byte, which stays; -1 at the end.
    [[nodiscard]] int peek() { return atEnd() ? -1 : next(); }

    std::uint8_t byte();
    std::uint32_t number(int size);

    /// Seven bits a byte, four bytes at most.
    std::uint32_t variable();

    /// Passes over `count` bytes, and gives those that begin them, `most` of them.
    std::string text(std::size_t count, std::size_t most);
    void skip(std::size_t count);

    /// The next `count` bytes, to be read by themselves; this reader passes over them.
    MidiReader part(std::size_t count);

private:
    MidiReader(const MidiSource &source, std::size_t begin, std::size_t end)
        : source_(&source)
        , at_(begin)
        , end_(end)
    {
    }

    [[nodiscard]] std::uint8_t next();

    const MidiSource *source_;
    std::size_t at_;
    std::size_t end_;
    std::size_t windowAt_ = 0;
    std::vector<std::uint8_t> window_; ///< what was read ahead
    bool truncated_ = false;
};

} // namespace kelo::engine
