#pragma once

#include <QQuickItem>
#include <QTimer>

namespace kelo {

/// What a level bar tells a screen reader: how loud it is, in percent and in words. It draws
/// nothing. Qt offers assistive technology the value of no progress bar of Qt Quick, so this one
/// brings its own interface. It is renamed once a second at most: a level moves all the time.
class LevelMeter : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

public:
    static constexpr int lowest = 0; ///< percent
    static constexpr int highest = 100; ///< percent

    explicit LevelMeter(QQuickItem *parent = nullptr);

    [[nodiscard]] int value() const { return value_; }
    void setValue(int value);
    [[nodiscard]] QString valueText() const
    {
        return tr("Microphone level %1 percent").arg(value_);
    }

Q_SIGNALS:
    void valueChanged();

private:
    int value_ = lowest;
    QTimer renaming_;
};

} // namespace kelo
