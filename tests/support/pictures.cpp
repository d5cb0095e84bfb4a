#include "pictures.h"

#include "lines.h"

#include <QDir>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo::test {

namespace {

int apart(QRgb p, QRgb q)
{
    return std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
        std::abs(qBlue(p) - qBlue(q))});
}

/// How far two pictures of one size are apart, in the terms of a tolerance.
Tolerance distance(const QImage &a, const QImage &b)
{
    constexpr int side = 20;
    constexpr int rounding = 4; // of 255
    Tolerance found{0, 0};
    int different = 0;
    for (int top = 0; top < a.height(); top += side) {
        for (int left = 0; left < a.width(); left += side) {
            const QRect square = QRect(left, top, side, side) & a.rect();
            int sum = 0;
            for (int y = square.top(); y <= square.bottom(); ++y) {
                for (int x = square.left(); x <= square.right(); ++x) {
                    const int off = apart(a.pixel(x, y), b.pixel(x, y));
                    sum += off;
                    different += off > rounding;
                }
            }
            found.worst = std::max(
                found.worst, static_cast<double>(sum) / (square.width() * square.height()));
        }
    }
    found.spread = 100.0 * different / (a.width() * a.height());
    return found;
}

QImage difference(const QImage &a, const QImage &b)
{
    QImage image(a.size(), QImage::Format_RGB888);
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const int off = std::min(apart(a.pixel(x, y), b.pixel(x, y)) * 8, 255);
            image.setPixel(x, y, qRgb(off, off, off));
        }
    }
    return image;
}

QString fileOf(const QString &sheet)
{
    return QDir(QStringLiteral(KEPT_PICTURES)).filePath(sheet + u".png"_s);
}

/// The picture of that number and size; less than that where the sheet ends before.
QImage kept(const QString &sheet, int number, QSize size)
{
    const QImage all(fileOf(sheet));
    return all.copy(QRect(QPoint(0, number * size.height()), size) & all.rect());
}

void keep(const QImage &drawn, const QString &sheet, int number)
{
    const int top = number * drawn.height();
    const QImage before(fileOf(sheet));
    QImage all(std::max(before.width(), drawn.width()),
        std::max(before.height(), top + drawn.height()), QImage::Format_RGB888);
    all.fill(Qt::black);
    QPainter painter(&all);
    painter.drawImage(0, 0, before);
    painter.drawImage(0, top, drawn);
    painter.end();
    all.save(fileOf(sheet));
}

} // namespace

bool isAsKept(const QImage &drawn, const QString &sheet, int number, const Tolerance &tolerance)
{
    const QImage expected = kept(sheet, number, drawn.size());
    if (expected.size() != drawn.size())
        return false;
    const auto [worst, spread] = distance(drawn, expected);
    return worst <= tolerance.worst && spread <= tolerance.spread;
}

QString unlikeKept(
    const QImage &drawn, const QString &sheet, int number, const Tolerance &tolerance)
{
    if (qEnvironmentVariableIsSet("KELO_KEEP_PICTURES"))
        keep(drawn, sheet, number);
    if (isAsKept(drawn, sheet, number, tolerance))
        return {};
    const QDir folder(QStringLiteral(OTHER_PICTURES));
    folder.mkpath(u"."_s);
    const QString name = folder.filePath(u"%1-%2"_s.arg(sheet).arg(number));
    const QImage expected = kept(sheet, number, drawn.size());
    drawn.save(name + u"-drawn.png"_s);
    expected.save(name + u"-kept.png"_s);
    if (expected.size() != drawn.size())
        return u"no picture of this size is kept; see %1-*.png"_s.arg(name);
    difference(drawn, expected).save(name + u"-difference.png"_s);
    const auto [worst, spread] = distance(drawn, expected);
    return u"a square is off by %1 of 255, and %2 % of all pixels; see %3-*.png"_s.arg(worst)
        .arg(spread)
        .arg(name);
}

QString lightOf(const QImage &image)
{
    std::vector<double> light(16);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const int part = x * 4 / image.width() + y * 4 / image.height() * 4;
            light[static_cast<std::size_t>(part)] +=
                qRed(pixel) + 2 * qGreen(pixel) + 3 * qBlue(pixel);
        }
    }
    return u"light: "_s + numbersOf(light);
}

} // namespace kelo::test
