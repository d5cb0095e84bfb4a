#pragma once

#include <QByteArrayView>

#include <string_view>

namespace kelo {

class LinkEditor;

/// The lines about what the assistant says and hears: say, start, word, done, spec, heard.
class SpeechLines {
public:
    explicit SpeechLines(LinkEditor &link)
        : link_(link)
    {
    }

    /// False when the keyword is not one of these.
    bool handle(std::string_view keyword, QByteArrayView rest, double now);

private:
    void say(QByteArrayView rest, double now);
    void start(QByteArrayView rest, double now);
    void word(QByteArrayView rest, double now);
    void done(QByteArrayView rest, double now);
    void spec(QByteArrayView rest, double now);
    void heard(QByteArrayView rest, double now);

    /// Takes the caption that shows now down at `due`, unless another comes before.
    void endCaptionAt(double due, double now);

    LinkEditor &link_;
    struct {
        qint64 mark = 0; ///< the sentence whose end this is
        double due = 0;
        bool watched = false; ///< one piece of delayed work waits; however many sentences end
    } captionEnd_;
};

} // namespace kelo
