#pragma once

#include <QByteArrayView>

#include <memory>

namespace kelo {

class Link;

/// Turns the engine's lines into changes of the link's state and calls to the rooms above it. A
/// line is a keyword and its rest. The keywords are told of in four groups, each of which holds
/// one table of handlers: SpeechLines, NoteLines, ReadoutLines, RequestLines.
class Inbound {
public:
    explicit Inbound(Link &link);
    ~Inbound();
    Q_DISABLE_COPY_MOVE(Inbound)

    /// One line, which came at `now` (seconds of uptime).
    void handle(QByteArrayView line, double now);

private:
    struct Groups;
    std::unique_ptr<Groups> groups_;
};

} // namespace kelo
