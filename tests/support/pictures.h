#pragma once

#include <QImage>
#include <QString>

namespace kelo::test {

/// How far another renderer's or painter's edges and roundings may be off.
struct Tolerance {
    double worst = 2.6; ///< mean difference in any square of 20 pixels, of 255
    double spread = 0.1; ///< percent of all pixels that differ by more than roundings
};

/// Whether `drawn` is what tests/pictures/SHEET.png shows: there, pictures of one height stand
/// one below the other, and it is the one of that number.
///
/// Letters are the same everywhere: tests/support/fonts.conf names the face and turns off what
/// differs from one version of the rasteriser to the next.
[[nodiscard]] bool isAsKept(
    const QImage &drawn, const QString &sheet, int number = 0, const Tolerance &tolerance = {});

/// What is wrong with it, nothing when it is as kept. It is written then with the one that was
/// expected and their difference, eight times as bright, into the build folder. With
/// "KELO_KEEP_PICTURES" set it becomes the one that is kept instead.
[[nodiscard]] QString unlikeKept(
    const QImage &drawn, const QString &sheet, int number = 0, const Tolerance &tolerance = {});

/// The light in each of sixteen parts of a picture, in figures.
[[nodiscard]] QString lightOf(const QImage &image);

} // namespace kelo::test
