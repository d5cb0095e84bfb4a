#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace kelo {

/// The theme: one palette, one font, one switch for high contrast. Views in QML and scenes in C++
/// read the same object.
///
/// Colours are opaque sRGB. On `bg` the contrast of green is 15, of soft 17 and of dim 7; faint is
/// for rules and tracks alone, never for text. High contrast lightens what is read (soft, dim) and
/// leaves the surfaces and the accent as they are.
class Hud : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor bg READ bg CONSTANT)
    Q_PROPERTY(QColor panel READ panel CONSTANT)
    Q_PROPERTY(QColor green READ green CONSTANT)
    Q_PROPERTY(QColor faint READ faint CONSTANT)
    Q_PROPERTY(QColor soft READ soft NOTIFY contrastChanged)
    Q_PROPERTY(QColor dim READ dim NOTIFY contrastChanged)
    Q_PROPERTY(bool contrast READ contrast NOTIFY contrastChanged)
    Q_PROPERTY(bool magnified READ magnified NOTIFY magnifiedChanged)

public:
    /// The theme of this process, made on first use. The contrast switch starts as the user
    /// default "contrast", so the application must have its name by then.
    static Hud &shared();
    /// Hands the same object to QML, which never owns it.
    static Hud *create(QQmlEngine *, QJSEngine *);

    [[nodiscard]] static QColor bg(); ///< windows and screens
    [[nodiscard]] static QColor panel(); ///< the fill of panels
    [[nodiscard]] static QColor green(); ///< the accent: titles, outlines, what is lit
    [[nodiscard]] static QColor faint(); ///< rules, empty tracks, quiet outlines
    [[nodiscard]] QColor soft() const; ///< body text
    [[nodiscard]] QColor dim() const; ///< labels, secondary text

    [[nodiscard]] bool contrast() const { return contrast_; }
    void setContrast(bool on);

    /// All is drawn at another than its designed size, so glyphs must stretch well.
    [[nodiscard]] bool magnified() const { return magnified_; }
    void setMagnified(bool on);

    /// The system's fixed-width face, `size` logical pixels high, fractions included, with
    /// `tracking` pixels added after each letter.
    Q_INVOKABLE [[nodiscard]] static QFont mono(
        double size, int weight = QFont::Normal, double tracking = 0);

Q_SIGNALS:
    void contrastChanged();
    void magnifiedChanged();

private:
    Hud();

    bool contrast_;
    bool magnified_ = false;
};

} // namespace kelo
