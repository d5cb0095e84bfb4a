#pragma once

#include <QByteArrayView>

#include <string_view>

namespace kelo {

class LinkEditor;

/// The lines by which the engine asks for something: earreset, vocab, ears, microphone, access,
/// welcome, update, relaunch, window.
class RequestLines {
public:
    explicit RequestLines(LinkEditor &link)
        : link_(link)
    {
    }

    /// False when the keyword is not one of these.
    bool handle(std::string_view keyword, QByteArrayView rest, double now);

private:
    void earReset(QByteArrayView rest, double now);
    void vocab(QByteArrayView rest, double now);
    void ears(QByteArrayView rest, double now);
    void microphone(QByteArrayView rest, double now);
    void access(QByteArrayView rest, double now);
    void welcome(QByteArrayView rest, double now);
    void update(QByteArrayView rest, double now);
    void relaunch(QByteArrayView rest, double now);
    void window(QByteArrayView rest, double now);

    void showMainWindow();
    void setLoginItem(bool on);

    LinkEditor &link_;
};

} // namespace kelo
