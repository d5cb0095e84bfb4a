#pragma once

#include "visual/caption/caption_raster.h"
#include "visual/caption/caption_scene.h"
#include "visual/motion/scene_item.h"

#include <QFont>

#include <memory>

namespace kelo {

/// What the assistant says, as one large line whose light follows the voice. The line's letters
/// and their glow are drawn once; each frame only colours them.
class CaptionItem : public kelo::SceneItem {
    Q_OBJECT
    Q_PROPERTY(QString text READ text NOTIFY lineChanged)
    Q_PROPERTY(QFont font READ font NOTIFY lineChanged)
    Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged)
    QML_ELEMENT

public:
    explicit CaptionItem(QQuickItem *parent = nullptr);
    ~CaptionItem() override;

    /// The line that is shown, and its face.
    [[nodiscard]] QString text() const { return scene_.line().text; }
    [[nodiscard]] QFont font() const { return font_; }
    /// Anything of it can be seen.
    [[nodiscard]] bool isShown() const { return scene_.opacity() > 0; }
    /// The line beneath the word that is being spoken, for those who cannot tell it by its colour.
    [[nodiscard]] const Picture &picture() const override { return underline_; }

Q_SIGNALS:
    void lineChanged();
    void shownChanged();

protected:
    void linkSet(Link &link) override;
    void advance(Link &link, double now) override;
    [[nodiscard]] double rate() const override;
    void paint(QPainter &painter) const override;
    QSGNode *updateNode(QSGNode *old) override;

private:
    class Node;

    /// A line's raster, and what it was made from.
    struct Written {
        CaptionLine line;
        QFont font;
        double width = 0;
        double pixels = 0;
        CaptionRaster raster;
    };
    using WrittenLine = std::shared_ptr<const Written>;

    /// All that its drawing depends on.
    struct Look {
        WrittenLine line;
        WrittenLine leaving;
        double arrived = 0; // part of the way from one to the other
        long position = 0; // of the voice, in steps too small to be seen
        double opacity = 0;
        double glow = 0;
        bool contrast = false;

        friend bool operator==(const Look &, const Look &) = default;
    };
    [[nodiscard]] Look look() const;

    [[nodiscard]] WrittenLine write(const CaptionLine &line, const WrittenLine &old) const;
    [[nodiscard]] QPointF origin(const Written &written, CaptionScene::Motion motion) const;
    [[nodiscard]] Colour colourAt(const Written &written, qsizetype unit) const;
    [[nodiscard]] Colour glow() const;
    void underline(double position);

    CaptionScene scene_;
    QFont font_;
    bool contrast_ = false;
    Picture underline_{1};
    WrittenLine line_;
    WrittenLine leaving_;
};

} // namespace kelo
