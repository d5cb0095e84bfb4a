#include "files/whole_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace kelo::engine {

bool replaceFile(const std::filesystem::path &path, std::string_view text, mode_t mode)
{
    const std::string draft = path.string() + ".new";
    const int file = open(draft.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode);
    if (file < 0)
        return false;
    bool written = true;
    while (written && !text.empty()) {
        const ssize_t count = write(file, text.data(), text.size());
        written = count > 0;
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    written = fsync(file) == 0 && written;
    written = close(file) == 0 && written;
    if (written && std::rename(draft.c_str(), path.c_str()) == 0)
        return true;
    unlink(draft.c_str());
    return false;
}

} // namespace kelo::engine
