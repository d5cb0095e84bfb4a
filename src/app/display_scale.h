#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QSettings;

namespace kelo {

/// How large everything in the main window is drawn: 0.75 to 2.5 times its design, in steps of a
/// quarter, kept as user default "scale".
class DisplayScale : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("handed to the display by the application")
    Q_PROPERTY(double factor READ factor NOTIFY factorChanged)

public:
    explicit DisplayScale(QSettings &settings, QObject *parent = nullptr);

    [[nodiscard]] double factor() const { return steps_ * step; }
    Q_INVOKABLE void larger() { take(steps_ + 1); }
    Q_INVOKABLE void smaller() { take(steps_ - 1); }
    Q_INVOKABLE void reset() { take(normal); }

Q_SIGNALS:
    void factorChanged();

private:
    static constexpr double step = 0.25;
    static constexpr int smallest = 3;
    static constexpr int normal = 4;
    static constexpr int largest = 10;

    void take(int steps);

    QSettings &settings_;
    int steps_ = normal;
};

} // namespace kelo
