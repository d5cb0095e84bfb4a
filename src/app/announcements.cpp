#include "app/announcements.h"

#include <algorithm>

namespace kelo {

void Announcements::state(Topic topic, const QString &text)
{
    Entry &entry = topics_[topic];
    entry.waiting = text == entry.said ? std::nullopt : std::optional(text);
}

void Announcements::event(Topic topic, const QString &text)
{
    topics_[topic].waiting = text;
}

QStringList Announcements::take(double now)
{
    QStringList texts;
    for (auto &[topic, entry] : topics_) {
        if (!entry.waiting || now < entry.saidAt + interval)
            continue;
        entry.said = *std::exchange(entry.waiting, std::nullopt);
        entry.saidAt = now;
        if (!entry.said.isEmpty())
            texts += entry.said;
    }
    return texts;
}

std::optional<double> Announcements::next() const
{
    std::optional<double> next;
    for (const auto &[topic, entry] : topics_) {
        if (entry.waiting)
            next = std::min(next.value_or(entry.saidAt + interval), entry.saidAt + interval);
    }
    return next;
}

} // namespace kelo
