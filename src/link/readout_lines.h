#pragma once

#include <QByteArrayView>

#include <string_view>

namespace kelo {

class LinkEditor;

/// The lines that set what the display shows of the engine: mode, kbd, voice, daw, jazz, typing,
/// paused, live, bandstyle, bandlevel, hands, now, name, beat, flash.
class ReadoutLines {
public:
    explicit ReadoutLines(LinkEditor &link)
        : link_(link)
    {
    }

    /// False when the keyword is not one of these.
    bool handle(std::string_view keyword, QByteArrayView rest, double now);

private:
    void jazz(QByteArrayView rest, double now);
    void name(QByteArrayView rest, double now);
    void beat(QByteArrayView rest, double now);
    void flash(QByteArrayView rest, double now);

    LinkEditor &link_;
};

} // namespace kelo
