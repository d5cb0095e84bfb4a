#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <optional>

namespace kelo {

/// What an announcement is about. Of each kind only the latest counts.
enum class Topic {
    Question,
    Choice,
    Caption,
    LinkState,
    Mode,
    VoiceStatus,
    LargeCaptions,
    HighContrast,
    Update,
    Visualiser,
    Playing,
    Paused,
    Piano,
    Panel,
    Scale,
};

/// Decides what of all that changes is announced to a screen reader, and when: at most one a
/// second of each topic, the latest of a burst, and nothing that was the last word already.
/// Times are seconds of uptime.
class Announcements {
public:
    static constexpr double interval = 1.0;

    /// What holds from the start and need not be said.
    void assume(Topic topic, const QString &text) { topics_[topic].said = text; }
    /// The topic stands at `text` now.
    void state(Topic topic, const QString &text);
    /// `text` happened; it is said although it may have been said before.
    void event(Topic topic, const QString &text);

    /// Takes what is to be said at `now`.
    [[nodiscard]] QStringList take(double now);
    /// When the next call of `take` is worth while; nothing while all is said.
    [[nodiscard]] std::optional<double> next() const;

private:
    struct Entry {
        QString said; // the last word on this topic
        double saidAt = -interval;
        std::optional<QString> waiting;
    };

    std::map<Topic, Entry> topics_;
};

} // namespace kelo
