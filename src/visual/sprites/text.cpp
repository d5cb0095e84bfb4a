#include "visual/sprites/text.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

namespace kelo {

namespace {

constexpr Colour dark{0.008F, 0.024F, 0.016F};
constexpr double outlineWidth = 1; // points, as are the following
constexpr double plateMargin = 2;

double marginOf(Label::Ground ground)
{
    switch (ground) {
    case Label::Ground::None:
        return 1;
    case Label::Ground::Plate:
        return plateMargin;
    case Label::Ground::Outline:
        return outlineWidth + 1;
    }
    return 0;
}

} // namespace

QFont mono(double size, QFont::Weight weight)
{
    QFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    font.setStyleHint(QFont::Monospace);
    // A font takes its height in pixels as a whole number only, in points as it is.
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double dotsPerInch = screen ? std::round(screen->logicalDotsPerInchY()) : 96;
    font.setPointSizeF(size * 72 / dotsPerInch);
    font.setWeight(weight);
    return font;
}

SetLabel::SetLabel(const Label &label, double height)
    : label_(label)
{
    const QFont font = mono(label.size, label.bold ? QFont::Bold : QFont::Normal);
    layout_.setFont(font);
    QTextOption option;
    option.setWrapMode(label.lines > 1 ? QTextOption::WordWrap : QTextOption::NoWrap);
    layout_.setTextOption(option);
    layOut(label.text);

    const QTextLine last = layout_.lineAt(layout_.lineCount() - 1);
    const qsizetype shown = last.textStart() + last.textLength();
    if (label.width > 0
        && (shown < layout_.text().size() || last.naturalTextWidth() > label.width)) {
        const QString rest = layout_.text().mid(last.textStart());
        layOut(layout_.text().left(last.textStart())
            + QFontMetricsF(font).elidedText(rest, Qt::ElideRight, label.width));
    }
    const double ascent = label.lines > 1 ? 0 : layout_.lineAt(0).ascent();
    origin_ = {label.x, height - label.y - ascent};
    for (int i = 0; i < layout_.lineCount(); ++i)
        text_ |= layout_.lineAt(i).naturalTextRect().translated(origin_);
}

void SetLabel::layOut(const QString &words)
{
    constexpr double anyWidth = 1e6;
    layout_.setText(words);
    layout_.beginLayout();
    double y = 0;
    for (int i = 0; i < label_.lines; ++i) {
        QTextLine line = layout_.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(label_.width > 0 && label_.lines > 1 ? label_.width : anyWidth);
        line.setPosition({label_.centred ? -line.naturalTextWidth() / 2 : 0, y});
        y += line.height();
    }
    layout_.endLayout();
}

QRectF SetLabel::area() const
{
    const double margin = marginOf(label_.ground);
    return text_.adjusted(-margin, -margin, margin, margin);
}

void SetLabel::paint(QPainter &painter) const
{
    if (label_.ground == Label::Ground::Plate) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(dark.toQColor());
        const double middle = text_.center().y();
        const double half = label_.size * capHeight / 2 + plateMargin;
        painter.drawRect(QRectF(area().left(), middle - half, area().width(), 2 * half));
    }
    if (label_.ground == Label::Ground::Outline) {
        painter.setPen(dark.toQColor());
        for (const double x : {-outlineWidth, 0.0, outlineWidth}) {
            for (const double y : {-outlineWidth, 0.0, outlineWidth})
                layout_.draw(&painter, origin_ + QPointF(x, y));
        }
    }
    painter.setPen(label_.colour.toQColor());
    layout_.draw(&painter, origin_);
}

} // namespace kelo
