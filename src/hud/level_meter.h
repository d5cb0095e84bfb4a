#pragma once

#include <QQuickItem>

namespace kelo {

/// What a level bar tells a screen reader: a value from `minimumValue` to `maximumValue`, and the
/// same in words. It draws nothing. Qt offers assistive technology the value of no progress bar of
/// Qt Quick, so this one brings its own interface. A change is not announced: a level moves all the
/// time, and who wants to know it asks.
class LevelMeter : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double value MEMBER value_ NOTIFY valueChanged)
    Q_PROPERTY(double minimumValue MEMBER minimum_ NOTIFY rangeChanged)
    Q_PROPERTY(double maximumValue MEMBER maximum_ NOTIFY rangeChanged)
    Q_PROPERTY(QString valueText MEMBER valueText_ NOTIFY valueTextChanged)

public:
    explicit LevelMeter(QQuickItem *parent = nullptr);

    [[nodiscard]] QString valueText() const { return valueText_; }

Q_SIGNALS:
    void valueChanged();
    void valueTextChanged();
    void rangeChanged();

private:
    double value_ = 0;
    double minimum_ = 0;
    double maximum_ = 100;
    QString valueText_;
};

} // namespace kelo
