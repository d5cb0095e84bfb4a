#pragma once

#include "link/records.h"

#include <QByteArrayView>
#include <QList>

#include <array>

namespace kelo {

class Link;

/// Turns the engine's lines into changes of the link's state. One small handler a keyword, found
/// in one table; each gets what follows the keyword and the uptime at which the line came.
class Inbound {
public:
    explicit Inbound(Link &link)
        : link_(link)
    {
    }

    void handle(QByteArrayView line, double now);

    static constexpr qsizetype mostRipples = 400; ///< in each of the two lists
    static constexpr qsizetype mostSpoken = 60; ///< voice-log lines that a sentence leaves
    static constexpr std::size_t mostRollNotes = 1'000'000;

private:
    using Handler = void (Inbound::*)(QByteArrayView rest, double now);
    struct Entry {
        std::string_view keyword;
        Handler handler;
    };
    static const std::array<Entry, 36> table;

    // The assistant's voice
    void spec(QByteArrayView rest, double now);
    void start(QByteArrayView rest, double now);
    void say(QByteArrayView rest, double now);
    void word(QByteArrayView rest, double now);
    void done(QByteArrayView rest, double now);

    // Notes
    void on(QByteArrayView rest, double now);
    void out(QByteArrayView rest, double now);
    void rollNew(QByteArrayView rest, double now);
    void rollNotes(QByteArrayView rest, double now);
    void rollStart(QByteArrayView rest, double now);
    void rollStop(QByteArrayView rest, double now);

    // What the readouts show
    void mode(QByteArrayView rest, double now);
    void kbd(QByteArrayView rest, double now);
    void voice(QByteArrayView rest, double now);
    void daw(QByteArrayView rest, double now);
    void buttons(QByteArrayView rest, double now);
    void jazz(QByteArrayView rest, double now);
    void typing(QByteArrayView rest, double now);
    void paused(QByteArrayView rest, double now);
    void live(QByteArrayView rest, double now);
    void bandStyle(QByteArrayView rest, double now);
    void bandLevel(QByteArrayView rest, double now);
    void timeOfDay(QByteArrayView rest, double now);
    void hands(QByteArrayView rest, double now);
    void beat(QByteArrayView rest, double now);
    void flash(QByteArrayView rest, double now);
    void heard(QByteArrayView rest, double now);
    void name(QByteArrayView rest, double now);

    // Requests
    void earReset(QByteArrayView rest, double now);
    void vocab(QByteArrayView rest, double now);
    void ears(QByteArrayView rest, double now);
    void access(QByteArrayView rest, double now);
    void welcome(QByteArrayView rest, double now);
    void update(QByteArrayView rest, double now);
    void relaunch(QByteArrayView rest, double now);
    void window(QByteArrayView rest, double now);

    void log(const QString &text, bool trim);
    void showMainWindow();

    /// Takes the caption that shows now down at `due`, unless another comes before.
    void endCaptionAt(double due, double now);

    Link &link_;
    struct {
        qint64 mark = 0; ///< the caption whose end this is
        double due = 0;
        bool watched = false; ///< one piece of delayed work waits; however many sentences end
    } captionEnd_;
};

} // namespace kelo
