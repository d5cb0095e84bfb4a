#include "app/announcement_queue.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// What the engine may have to say something about when it changes.
constexpr std::array theEngines{Topic::Mode, Topic::Typing, Topic::LargeCaptions,
    Topic::HighContrast, Topic::Playing, Topic::Paused, Topic::LoginItem, Topic::Settings};

bool isTheEngines(Topic topic)
{
    return std::ranges::find(theEngines, topic) != theEngines.end();
}

} // namespace

QString joined(const QStringList &announcements)
{
    QString all;
    for (const QString &text : announcements) {
        if (!all.isEmpty())
            all += u".!?…"_s.contains(all.back()) ? u" "_s : u". "_s;
        all += text;
    }
    return all;
}

void AnnouncementQueue::state(Topic topic, const QString &text, double now)
{
    Entry &entry = topics_[topic];
    const bool waitsForEngine = isTheEngines(topic);
    if (waitsForEngine && now < spokeAt_ + courtesy)
        entry.said = text;
    entry.waiting = text == entry.said ? std::nullopt : std::optional(text);
    entry.due = waitsForEngine ? now + courtesy : now;
}

void AnnouncementQueue::event(Topic topic, const QString &text)
{
    topics_[topic].waiting = text;
}

void AnnouncementQueue::engineSpoke(double now)
{
    spokeAt_ = now;
    for (auto &[topic, entry] : topics_) {
        if (entry.waiting && isTheEngines(topic) && now <= entry.due)
            entry.said = *std::exchange(entry.waiting, std::nullopt);
    }
}

double AnnouncementQueue::dueAt(const Entry &entry)
{
    return std::max(entry.due, entry.saidAt + interval);
}

QStringList AnnouncementQueue::take(double now)
{
    QStringList texts;
    for (auto &[topic, entry] : topics_) {
        if (!entry.waiting || now < dueAt(entry))
            continue;
        entry.said = *std::exchange(entry.waiting, std::nullopt);
        entry.saidAt = now;
        if (!entry.said.isEmpty())
            texts += entry.said;
    }
    return texts;
}

std::optional<double> AnnouncementQueue::next() const
{
    std::optional<double> next;
    for (const auto &[topic, entry] : topics_) {
        if (entry.waiting)
            next = std::min(next.value_or(dueAt(entry)), dueAt(entry));
    }
    return next;
}

} // namespace kelo
