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
    LinkState,
    Mode,
    Typing,
    VoiceStatus,
    LargeCaptions,
    HighContrast,
    Update,
    Visualiser,
    Playing,
    Paused,
    Piano,
    Panel,
    LoginItem,
    Scale,
    Settings,
};

/// One text to be spoken, of several; those that end no sentence are made to.
[[nodiscard]] QString joined(const QStringList &announcements);

/// Decides what of all that changes is announced to a screen reader, and when: at most one a
/// second of each topic, the latest of a burst, and nothing that was the last word already. What
/// the engine changes it often speaks of itself; then it is not announced over its voice.
/// Times are seconds of uptime.
class AnnouncementQueue {
public:
    static constexpr double interval = 1.0;
    /// How far apart a change and the engine's sentence about it may be.
    static constexpr double courtesy = 0.7;

    /// What holds from the start and need not be said.
    void assume(Topic topic, const QString &text) { topics_[topic].said = text; }
    /// The topic stands at `text` since `now`.
    void state(Topic topic, const QString &text, double now);
    /// `text` happened; it is said although it may have been said before.
    void event(Topic topic, const QString &text);
    /// The engine began a sentence at `now`.
    void engineSpoke(double now);

    /// Takes what is to be said at `now`.
    [[nodiscard]] QStringList take(double now);
    /// When the next call of `take` is worth while; nothing while all is said.
    [[nodiscard]] std::optional<double> next() const;

private:
    struct Entry {
        QString said; // the last word on this topic
        double saidAt = -interval;
        std::optional<QString> waiting;
        double due = 0; // not before; a topic's interval counts too
    };

    static double dueAt(const Entry &entry);

    std::map<Topic, Entry> topics_;
    double spokeAt_ = -courtesy;
};

} // namespace kelo
