#pragma once

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace kelo {

/// A hint at something that can be asked for; another one each minute. With voice control on it
/// also says how to ask aloud.
class TrySayingHint : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString assistant MEMBER assistant_ NOTIFY changed)
    Q_PROPERTY(bool voiceOn MEMBER voiceOn_ NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)

public:
    explicit TrySayingHint(QObject *parent = nullptr);

    [[nodiscard]] QString text() const;

Q_SIGNALS:
    void changed();

private:
    QTimer minutes_;
    int minute_ = 0;
    QString assistant_;
    bool voiceOn_ = false;
};

} // namespace kelo
