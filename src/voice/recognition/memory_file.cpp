#include "voice/recognition/memory_file.h"

#include <QFile>
#include <QTemporaryFile>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace kelo {

MemoryFile::MemoryFile(const QByteArray &contents)
{
    const auto filled = [&](QFile &file) {
        return file.write(contents) == contents.size() && file.flush();
    };
#ifdef Q_OS_LINUX
    descriptor_ = ::memfd_create("kelo", MFD_CLOEXEC);
    QFile inMemory;
    if (descriptor_ >= 0 && inMemory.open(descriptor_, QIODevice::WriteOnly) && filled(inMemory)) {
        path_ = "/proc/self/fd/" + QByteArray::number(descriptor_);
        if (QFile::exists(QString::fromUtf8(path_)))
            return;
        path_.clear();
    }
#endif
    onDisk_ = std::make_unique<QTemporaryFile>();
    if (onDisk_->open() && filled(*onDisk_))
        path_ = onDisk_->fileName().toUtf8();
}

MemoryFile::~MemoryFile()
{
#ifdef Q_OS_LINUX
    if (descriptor_ >= 0)
        ::close(descriptor_);
#endif
}

} // namespace kelo
