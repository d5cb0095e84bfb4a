#include "link/manual_time.h"

#include <QTime>

#include <algorithm>

namespace kelo {

QString ManualTime::timeOfDay() const
{
    return QTime(12, 0).addMSecs(static_cast<int>((now_ - start) * 1000)).toString(u"HH:mm:ss");
}

void ManualTime::after(double seconds, QObject *context, std::function<void()> work)
{
    const double due = now_ + std::max(seconds, 0.0);
    const auto place = std::ranges::upper_bound(works_, due, {}, &Work::due);
    works_.insert(place, {due, context, std::move(work)});
}

void ManualTime::advance(double seconds)
{
    const double end = now_ + seconds;
    while (!works_.empty() && works_.front().due <= end) {
        const Work work = std::move(works_.front());
        works_.erase(works_.begin());
        now_ = work.due;
        if (work.context)
            work.run();
    }
    now_ = end;
}

} // namespace kelo
