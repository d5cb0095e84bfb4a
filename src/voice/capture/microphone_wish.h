#pragma once

#include "voice/capture/microphone.h"

namespace kelo {

/// Which microphone somebody means who listens with `current` (an id): "next" is the one after it,
/// "built-in" what belongs to the computer; any other word is looked for in names and ids, among
/// several of a kind from the one after `current` on. Null when there is none.
[[nodiscard]] const MicrophoneDevice *wishedMicrophone(
    const QList<MicrophoneDevice> &devices, const QString &current, const QString &wanted);

} // namespace kelo
