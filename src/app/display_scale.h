#pragma once

#include <QObject>
#include <QSize>
#include <QtQml/qqmlregistration.h>

class QScreen;
class QSettings;

namespace kelo {

/// What decides how large things have to be drawn on a screen.
struct ScreenFacts {
    QSize size; ///< as windows are measured
    double magnified = 1; ///< pixels to one of these: what the desktop has enlarged already
    double dotsPerInch = 0; ///< pixels; what no screen can have is not believed
    double textScale = 1; ///< what the user has told the desktop
};

/// How large the display is drawn where its user has not said: at least as designed, larger on a
/// screen of many or small pixels and for a user who enlarges texts, in steps of a quarter, and
/// never so large that its parts stand in each other's way.
[[nodiscard]] double suitableScale(const ScreenFacts &facts);

/// All but what the user has told the desktop.
[[nodiscard]] ScreenFacts factsOf(const QScreen &screen);

/// How large everything in the main window is drawn: 0.75 to 2.5 times its design, in steps of a
/// quarter. What the user chooses is kept as user default "scale"; until then it suits the screen.
class DisplayScale : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("handed to the display by the application")
    Q_PROPERTY(double factor READ factor NOTIFY factorChanged)

public:
    explicit DisplayScale(QSettings &settings, QObject *parent = nullptr);

    /// From here on it suits `screen` where the user has not chosen, and is what `reset` goes to.
    void suit(ScreenFacts screen);
    /// The same, for how much the desktop enlarges texts.
    void setTextScale(double factor);
    /// Something of more than its designed size was chosen for a user who has not been told of it.
    /// True once for each size.
    [[nodiscard]] bool takeNews();

    [[nodiscard]] double factor() const { return steps_ * step; }
    Q_INVOKABLE void larger() { take(steps_ + 1); }
    Q_INVOKABLE void smaller() { take(steps_ - 1); }
    Q_INVOKABLE void reset() { take(suitable_); }

Q_SIGNALS:
    void factorChanged();

private:
    static constexpr double step = 0.25;
    static constexpr int smallest = 3;
    static constexpr int normal = 4;
    static constexpr int largest = 10;

    void take(int steps);

    QSettings &settings_;
    ScreenFacts facts_;
    int steps_ = normal;
    int suitable_ = normal;
};

} // namespace kelo
