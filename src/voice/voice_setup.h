#pragma once

#include "link/link.h"
#include "voice/capture/microphone.h"
#include "voice/capture/permissions.h"
#include "voice/recognition/recogniser.h"

#include <functional>
#include <memory>

namespace kelo {

/// What voice control is made of; tests bring their own.
struct VoiceSetup {
    Link *link = nullptr; ///< who the assistant is, whether it speaks, whether the user types
    std::function<void(const QString &line)> send; ///< to the engine
    std::unique_ptr<Permissions> permissions;
    std::unique_ptr<Microphone> microphone;
    std::unique_ptr<Recogniser> recogniser; ///< null when there is none
    std::unique_ptr<QSettings> settings; ///< null: nothing is remembered
    QString baseDir; ///< the data directory
    TimeSource &time = TimeSource::system();

    static VoiceSetup ofThisProcess();
    /// Finds no microphone and remembers nothing: for pictures, and for tests of other rooms.
    static VoiceSetup deaf();
};

} // namespace kelo
