#pragma once

#include <QByteArray>

#include <memory>

class QTemporaryFile;

namespace kelo {

/// A file for a library that reads nothing else; it needs no room on any disk where the system can
/// do without. Gone with this.
class MemoryFile {
public:
    explicit MemoryFile(const QByteArray &contents);
    ~MemoryFile();
    Q_DISABLE_COPY_MOVE(MemoryFile)

    /// Empty when it could not be made.
    [[nodiscard]] const QByteArray &path() const { return path_; }

private:
    QByteArray path_;
    int descriptor_ = -1;
    std::unique_ptr<QTemporaryFile> onDisk_;
};

} // namespace kelo
