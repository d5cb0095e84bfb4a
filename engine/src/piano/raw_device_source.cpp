#include "piano/raw_device_source.h"

#include "log/log.h"
#include "protocol/text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <utility>

namespace kelo::engine {

RawDeviceSource::~RawDeviceSource()
{
    close();
}

void RawDeviceSource::close()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
    descriptor_ = -1;
    setName({});
}

/// What is open has gone, or another one has taken its place meanwhile.
bool RawDeviceSource::replaced() const
{
    struct stat there { };
    struct stat open { };
    fstat(descriptor_, &open);
    return stat(path_.c_str(), &there) != 0 || there.st_ino != open.st_ino
        || there.st_dev != open.st_dev;
}

bool RawDeviceSource::look()
{
    if (descriptor_ >= 0) {
        if (!std::exchange(gone_, false) && !replaced())
            return false;
        close();
        return true;
    }
    // Also for writing: a pipe then stays open when the other side leaves it.
    descriptor_ = open(path_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ < 0)
        return false;
    struct stat status { };
    fstat(descriptor_, &status);
    writable_ = S_ISCHR(status.st_mode);
    if (!writable_ && !S_ISFIFO(status.st_mode)) {
        if (!std::exchange(refused_, true))
            log(LogLevel::Warning, "piano", path_ + " is no device");
        close();
        return false;
    }
    stream_ = {};
    setName(oneLine(std::filesystem::path(path_).filename().string()));
    return true;
}

std::vector<ChannelMessage> RawDeviceSource::take()
{
    if (descriptor_ < 0)
        return {};
    std::array<std::uint8_t, 4096> bytes{};
    const ssize_t count = read(descriptor_, bytes.data(), bytes.size());
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
        gone_ = true;
    return count > 0 ? stream_.feed({bytes.data(), static_cast<std::size_t>(count)})
                     : std::vector<ChannelMessage>{};
}

void RawDeviceSource::send(ChannelMessage message)
{
    if (descriptor_ < 0 || !writable_)
        return;
    const std::array<unsigned char, 3> bytes{message.status, message.first, message.second};
    if (write(descriptor_, bytes.data(), message.size()) < 0 && errno != EAGAIN)
        gone_ = true;
}

} // namespace kelo::engine
