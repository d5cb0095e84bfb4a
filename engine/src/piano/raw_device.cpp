#include "piano/source.h"
#include "protocol/text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <utility>

namespace kelo::engine {

Piano::RawDevice::~RawDevice()
{
    close();
}

void Piano::RawDevice::close()
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
    name.clear();
}

bool Piano::RawDevice::look()
{
    if (descriptor >= 0) {
        struct stat status { };
        gone = gone || stat(path.c_str(), &status) != 0;
        if (!std::exchange(gone, false))
            return false;
        close();
        return true;
    }
    // Also for writing: a pipe then stays open when the other side leaves it.
    descriptor = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status { };
    const bool known = fstat(descriptor, &status) == 0;
    writable = known && S_ISCHR(status.st_mode);
    if (!known || !(S_ISCHR(status.st_mode) || S_ISFIFO(status.st_mode))) {
        close();
        return false;
    }
    stream = {};
    name = oneLine(std::filesystem::path(path).filename().string());
    return true;
}

std::vector<ChannelMessage> Piano::RawDevice::take()
{
    if (descriptor < 0)
        return {};
    std::array<std::uint8_t, 4096> bytes{};
    const ssize_t count = read(descriptor, bytes.data(), bytes.size());
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
        gone = true;
    return count > 0 ? stream.feed({bytes.data(), static_cast<std::size_t>(count)})
                     : std::vector<ChannelMessage>{};
}

void Piano::RawDevice::send(ChannelMessage message)
{
    if (descriptor < 0 || !writable)
        return;
    const std::array<unsigned char, 3> bytes{message.status, message.first, message.second};
    const bool two = message.kind() == 0xc0 || message.kind() == 0xd0;
    if (write(descriptor, bytes.data(), two ? 2 : 3) < 0 && errno != EAGAIN)
        gone = true;
}

} // namespace kelo::engine
