#pragma once

#include <QRect>
#include <QSize>

#include <span>

class QSettings;
class QWindow;

namespace kelo {

/// Where a window stands and whether it is maximised, kept across starts under one settings key.
class WindowFrame {
public:
    static constexpr QSize firstSize{1240, 840};
    static constexpr QSize smallest{900, 600};

    /// Puts the window where it was last; at first in the middle of the primary screen, `scale`
    /// times its first size where there is room.
    static void restore(QWindow &window, const QSettings &settings, double scale);
    static void save(const QWindow &window, QSettings &settings);

    /// The smallest that the user may make it on a screen that has `room`.
    [[nodiscard]] static QSize smallestOn(QSize room);

    /// `wanted` where enough of it shows on one of `screens` to be taken hold of and it fits that
    /// screen with its frame, otherwise its size or what fits in the middle of that screen, or of
    /// the first.
    [[nodiscard]] static QRect placed(const QRect &wanted, std::span<const QRect> screens);
};

} // namespace kelo
