#pragma once

#include <QByteArray>

#include <optional>

namespace kelo {

/// Cuts a stream of bytes into lines at each line feed. Carriage returns are kept. A line longer
/// than `longestLine` is dropped up to its line feed, so a stream without any cannot fill memory.
class LineSplitter {
public:
    static constexpr qsizetype longestLine = 1 << 20; // bytes

    void append(QByteArrayView bytes);

    /// The next complete line without its line feed, valid until the next call of any other
    /// operation; nothing when more bytes are needed.
    [[nodiscard]] std::optional<QByteArrayView> next();

    /// Bytes held that were not handed out yet.
    [[nodiscard]] qsizetype pending() const { return buffer_.size() - head_; }

private:
    QByteArray buffer_;
    qsizetype head_ = 0; // start of the next line
    qsizetype searched_ = 0; // no line feed lies between head_ and here
    bool dropping_ = false; // the line at head_ has grown too long
};

} // namespace kelo
