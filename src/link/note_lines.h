#pragma once

#include <QByteArrayView>

#include <string_view>

namespace kelo {

class LinkEditor;

/// The lines about notes: on, out, buttons, rollnew, rolln, rollstart, rollstop.
class NoteLines {
public:
    explicit NoteLines(LinkEditor &link)
        : link_(link)
    {
    }

    /// False when the keyword is not one of these.
    bool handle(std::string_view keyword, QByteArrayView rest, double now);

private:
    void on(QByteArrayView rest, double now);
    void out(QByteArrayView rest, double now);
    void buttons(QByteArrayView rest, double now);
    void rollNew(QByteArrayView rest, double now);
    void rollNotes(QByteArrayView rest, double now);
    void rollStart(QByteArrayView rest, double now);
    void rollStop(QByteArrayView rest, double now);

    LinkEditor &link_;
};

} // namespace kelo
