#pragma once

#include "voice/capture/audio.h"
#include "voice/recognition/recogniser.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace kelo {

/// Turns sound, already clean, into words. Belongs to one thread, the one that made it. Between
/// `begin` and `end` or `abandon` lies one utterance.
class SpeechDecoder {
public:
    virtual ~SpeechDecoder() = default;

    /// What to expect from the next utterance on. Quick when it is expected already; after `stop`
    /// all is left as it was. Returns what the user should know, if anything.
    virtual std::optional<QString> expect(const std::optional<TaughtModel> &taught,
        const QStringList &phrases, const std::stop_token &stop) = 0;

    /// Nothing of the utterance is wanted any more once `stop` is requested.
    virtual void begin(const std::stop_token &stop) = 0;
    /// False once the speaker has fallen silent after having spoken.
    virtual bool process(const Samples &samples) = 0;
    /// What was said so far. The taught name is one word, as `nameToken` makes it.
    [[nodiscard]] virtual QStringList words() const = 0;
    /// Ends the utterance; `words` has the last word on it then.
    virtual void end() = 0;
    /// Ends it, unheard from here on.
    virtual void abandon() = 0;

protected:
    SpeechDecoder() = default;
    Q_DISABLE_COPY_MOVE(SpeechDecoder)
};

/// A kind of decoder.
struct DecoderKind {
    QString name; ///< for the voice log
    bool available = false; ///< its files are there
    /// Loads one, which takes its time. Null when that fails or `stop` is requested.
    std::function<std::unique_ptr<SpeechDecoder>(const std::stop_token &stop)> load;
    Teacher teacher; ///< null when it cannot be taught
};

} // namespace kelo
