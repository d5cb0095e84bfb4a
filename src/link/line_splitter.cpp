#include "link/line_splitter.h"

namespace kelo {

void LineSplitter::append(QByteArrayView bytes)
{
    buffer_.remove(0, head_);
    searched_ -= head_;
    head_ = 0;
    buffer_.append(bytes);
}

std::optional<QByteArrayView> LineSplitter::next()
{
    for (;;) {
        const qsizetype end = buffer_.indexOf('\n', searched_);
        if (end < 0) {
            searched_ = buffer_.size();
            if (pending() > longestLine) {
                head_ = searched_;
                dropping_ = true;
            }
            return std::nullopt;
        }
        const auto line = QByteArrayView(buffer_).sliced(head_, end - head_);
        head_ = searched_ = end + 1;
        const bool drop = dropping_ || line.size() > longestLine;
        dropping_ = false;
        if (!drop)
            return line;
    }
}

} // namespace kelo
