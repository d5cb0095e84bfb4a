#pragma once

#include "link/note_listener.h"
#include "visual/notes/falling_notes.h"
#include "visual/notes/live_bars.h"
#include "visual/notes/rain_keyboard.h"
#include "visual/sprites/layer_node.h"

#include <QPointer>

namespace kelo {

class Link;

/// The falling-notes scene: the notes of the file that plays fall onto an 88-key keyboard, each
/// landing when it sounds; what is played live lights its key and rises from it as a bar.
///
/// It is the link's note stage from its making to its end. Everything in it follows from the
/// link, the notes it was told of and the time; it draws nothing itself.
class RainScene final : public NoteListener {
public:
    explicit RainScene(Link &link);
    ~RainScene() override;

    /// Sets the size in points. A change drops what is in flight; the roll's notes come back at
    /// once where they belong.
    void resize(double width, double height);
    /// Where the caption's first line begins, in points from the upper edge.
    void setCaptionTop(double points) { captionTop_ = points; }
    /// Where all texts begin, one below the other, in points from the upper edge, when what stands
    /// there leaves them no room beside it; 0 when it does.
    void setTextsTop(double points) { textsTop_ = points; }

    /// Brings the scene to `now`, in seconds of uptime.
    void update(double now) { update(now, now); }
    /// The same where the grid, which drifts for its own sake, goes by another time.
    void update(double now, double driftTime);

    void note(qint64 pitch, double strength, bool mine) override;
    void clearRoll() override;

    /// Two layers: all that lies below the lights, the marks of the command keys among it; and the
    /// lights with what is written over the scene.
    [[nodiscard]] const Picture &picture() const { return picture_; }

    static constexpr double captionTop = 40; ///< points, where nothing is in the way

private:
    void burst(int pitch, int count, double speed, double now);
    void draw(double now, double driftTime);
    void drawGrid(SpriteList &list, double driftTime) const;
    void writeMarks(LabelList &list) const;
    void writeWords(Layer &layer) const;
    [[nodiscard]] LabelList words() const;
    void stack(LabelList &labels) const;

    QPointer<Link> link_; // may go before this, which is not told of anything from then on
    RainLayout layout_;
    FallingNotes falling_;
    LiveBars bars_;
    RainKeyboard keyboard_;
    std::vector<Sparks> bursts_;
    quint32 notes_ = 0; // told of so far; seeds the sparks
    double last_ = 0; // uptime of the previous frame
    double progress_ = 0; // 0 to 1
    double captionTop_ = captionTop;
    double textsTop_ = 0;
    Picture picture_{2};
};

} // namespace kelo
