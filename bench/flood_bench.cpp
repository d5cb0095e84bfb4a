// An engine gone wild: a line of a megabyte of every keyword, in several shapes, and how long the
// display then takes until it has drawn its next frame.

#include "app/display_scale.h"
#include "app/main_view.h"
#include "link/link.h"
#include "support/figures.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::bench;

namespace {

constexpr qsizetype megabyte = 1'000'000;
constexpr auto keywords = "spec start say word done on out mode kbd voice daw buttons jazz typing "
                          "rollnew rolln rollstart rollstop paused live bandstyle now bandlevel "
                          "earreset vocab ears heard name welcome update relaunch hands beat flash "
                          "access window";

QByteArrayList shapes()
{
    const auto filled = [](const QByteArray &piece) {
        return piece.repeated(static_cast<int>(megabyte / piece.size()));
    };
    return {filled("x"), filled("word "), filled("♭ "), filled("a|"), filled("7 "), filled("1"),
        "7 0 " + filled("p"), filled("1,1,60,90,0;"), "a|" + filled("x")};
}

/// Milliseconds until the next frame is drawn.
double nextFrame(QQuickView &window, QElapsedTimer &since)
{
    QCoreApplication::processEvents(); // what the line set in motion
    window.grabWindow();
    return static_cast<double>(since.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    printMachine();
    const QTemporaryDir home;
    Link link{LinkSetup{home.path(), home.path(), {},
        std::make_unique<QSettings>(home.filePath(u"s.ini"_s), QSettings::IniFormat)}};
    VoiceControl voice;
    WelcomeQuestions questions(link, voice);
    QSettings settings(home.filePath(u"d.ini"_s), QSettings::IniFormat);
    DisplayScale scale(settings);
    QQuickView window;
    fillWithMainView(window, {&link, &voice, &questions, &scale, nullptr, nullptr});
    window.resize(1240, 840);
    window.show();
    QElapsedTimer timer;
    for (int i = 0; i < 20; ++i) { // shaders, glyphs and buffers are made
        timer.start();
        static_cast<void>(nextFrame(window, timer));
    }
    timer.start();
    print(u"a frame with nothing new"_s, nextFrame(window, timer), u"ms"_s);

    double longest = 0;
    for (const QByteArray &keyword : QByteArray(keywords).split(' ')) {
        double worst = 0;
        for (const QByteArray &shape : shapes()) {
            timer.start();
            link.handle(keyword + ' ' + shape);
            worst = std::max(worst, nextFrame(window, timer));
            link.showVisualiser(false);
        }
        link.finishWelcome(link.assistant, link.user);
        print(u"@%1 of a megabyte: longest frame"_s.arg(QString::fromLatin1(keyword)), worst,
            u"ms"_s);
        longest = std::max(longest, worst);
    }
    print(u"longest frame of all"_s, longest, u"ms"_s);
    return 0;
}
