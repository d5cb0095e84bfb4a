#pragma once

#include <QString>

#include <memory>

struct VoskModel;
struct VoskRecognizer;

namespace kelo {

/// The C interface of the Vosk library, found while the program runs: it is used where somebody
/// installed it, and nothing here needs it to build.
class VoskLibrary {
public:
    /// Loads `file`, a path or a name that the system's loader finds. Null when it is not there or
    /// lacks a function.
    static std::shared_ptr<VoskLibrary> load(const QString &file);
    ~VoskLibrary();
    Q_DISABLE_COPY_MOVE(VoskLibrary)

    // The names of the library, without "vosk_".
    VoskModel *(*model_new)(const char *path) = nullptr;
    void (*model_free)(VoskModel *model) = nullptr;
    int (*model_find_word)(VoskModel *model, const char *word) = nullptr;
    VoskRecognizer *(*recognizer_new)(VoskModel *model, float rate) = nullptr;
    VoskRecognizer *(*recognizer_new_grm)(
        VoskModel *model, float rate, const char *grammar) = nullptr;
    void (*recognizer_free)(VoskRecognizer *recogniser) = nullptr;
    int (*recognizer_accept_waveform_s)(
        VoskRecognizer *recogniser, const short *samples, int count) = nullptr;
    const char *(*recognizer_result)(VoskRecognizer *recogniser) = nullptr;
    const char *(*recognizer_partial_result)(VoskRecognizer *recogniser) = nullptr;
    const char *(*recognizer_final_result)(VoskRecognizer *recogniser) = nullptr;
    void (*recognizer_reset)(VoskRecognizer *recogniser) = nullptr;
    void (*set_log_level)(int level) = nullptr;

private:
    explicit VoskLibrary(void *handle)
        : handle_(handle)
    {
    }
    [[nodiscard]] bool bind();

    void *handle_;
};

} // namespace kelo
