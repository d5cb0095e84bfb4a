#include "visual/keys_drawing.h"

namespace kelo {

bool KeysDrawing::advance(Link &link, double now)
{
    shown_ = strip_.sprites();
    strip_.update(link, width(), height(), now);
    return strip_.sprites() != shown_;
}

} // namespace kelo
