#pragma once

#include <QFuture>

#include <memory>

namespace kelo {

/// What the user must allow before we listen. Questions are asked asynchronously; the answers may
/// come on any thread.
class Permissions {
public:
    virtual ~Permissions() = default;

    virtual QFuture<bool> speechRecognition() = 0;
    virtual QFuture<bool> microphone() = 0;

    /// This system's. Where it has no such question, everything is allowed at once.
    static std::unique_ptr<Permissions> ofThisSystem();

protected:
    Permissions() = default;
    Q_DISABLE_COPY_MOVE(Permissions)
};

} // namespace kelo
