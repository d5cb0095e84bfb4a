#pragma once

#include <QDBusMessage>
#include <QObject>

namespace kelo {

/// Keeps the computer from falling asleep by itself and its screen from going dark, while it is
/// asked to: who plays the piano touches neither keyboard nor mouse. Never blocks.
class SleepGuard : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~SleepGuard() override;

    void keepAwake(bool on);

private:
    void askPortal();
    void askScreenSaver();
    void letGo();

    bool wanted_ = false;
    int turn_ = 0; // answers to an earlier turn's questions are let go at once
    QString portalHandle_; // of what holds it awake; empty for none
    uint cookie_ = 0; // the same, where there is no portal
};

} // namespace kelo
