#pragma once

#include "voice/recognition/speech_decoder.h"
#include "voice/recognition/vosk_library.h"

namespace kelo {

/// The Vosk library's decoder. It knows only the words of its model; a name that is none of them is
/// heard as what sounds alike. Once a name is taught, it listens for the name and the expected
/// phrases; before that for everything.
class VoskDecoder final : public SpeechDecoder {
public:
    /// Reads the model in `directory`. Null when that fails. `dictionary` is a pronouncing one, to
    /// find what sounds like a name.
    static std::unique_ptr<VoskDecoder> load(
        std::shared_ptr<VoskLibrary> library, const QString &directory, const QString &dictionary);
    ~VoskDecoder() override;
    Q_DISABLE_COPY_MOVE(VoskDecoder)

    /// Tells when it cannot hear the name.
    std::optional<QString> expect(const std::optional<TaughtModel> &taught,
        const QStringList &phrases, const std::stop_token &stop) override;
    void begin(const std::stop_token &stop) override;
    bool process(const Samples &samples) override;
    [[nodiscard]] QStringList words() const override;
    void end() override;
    void abandon() override { } // what is left of it goes when the next one begins

private:
    using Recognizer = std::unique_ptr<VoskRecognizer, void (*)(VoskRecognizer *)>;

    VoskDecoder(std::shared_ptr<VoskLibrary> library, VoskModel *model, QString dictionary);
    [[nodiscard]] QList<QStringList> waysToWrite(
        const TaughtModel &taught, const std::stop_token &stop) const;
    [[nodiscard]] QByteArray grammar(const QStringList &phrases) const;
    [[nodiscard]] QStringList wordsIn(const char *json, const char *field) const;

    std::shared_ptr<VoskLibrary> library_;
    VoskModel *model_;
    QString dictionary_;
    Recognizer recogniser_;
    std::optional<TaughtModel> taught_;
    QStringList phrases_;
    QString name_; ///< the word for it; empty without one
    QList<QStringList> nameWays_; ///< what is written for it
    std::stop_token stop_;
    QStringList words_; ///< of this utterance, up to the last pause
    bool ended_ = false;
};

} // namespace kelo
