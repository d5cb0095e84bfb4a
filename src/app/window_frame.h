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

    /// Puts the window where it was last, or centred on the primary screen.
    static void restore(QWindow &window, const QSettings &settings);
    static void save(const QWindow &window, QSettings &settings);

    /// `wanted` where enough of it shows on one of `screens` to be taken hold of, otherwise its
    /// size (at most the first screen's) in the middle of the first screen.
    [[nodiscard]] static QRect placed(const QRect &wanted, std::span<const QRect> screens);
};

} // namespace kelo
