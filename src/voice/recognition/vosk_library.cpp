#include "voice/recognition/vosk_library.h"

#include <dlfcn.h>

namespace kelo {

namespace {

/// Looks up `name` for `function`.
template <typename Function> bool find(void *handle, const char *name, Function *&function)
{
    function = reinterpret_cast<Function *>(dlsym(handle, name));
    return function;
}

} // namespace

std::shared_ptr<VoskLibrary> VoskLibrary::load(const QString &file)
{
    void *handle = dlopen(file.toLocal8Bit().constData(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return nullptr;
    std::shared_ptr<VoskLibrary> library(new VoskLibrary(handle));
    if (!library->bind())
        return nullptr;
    library->set_log_level(-1); // errors are told by what it returns
    return library;
}

bool VoskLibrary::bind()
{
    return find(handle_, "vosk_model_new", model_new)
        && find(handle_, "vosk_model_free", model_free)
        && find(handle_, "vosk_model_find_word", model_find_word)
        && find(handle_, "vosk_recognizer_new", recognizer_new)
        && find(handle_, "vosk_recognizer_new_grm", recognizer_new_grm)
        && find(handle_, "vosk_recognizer_free", recognizer_free)
        && find(handle_, "vosk_recognizer_accept_waveform_s", recognizer_accept_waveform_s)
        && find(handle_, "vosk_recognizer_result", recognizer_result)
        && find(handle_, "vosk_recognizer_partial_result", recognizer_partial_result)
        && find(handle_, "vosk_recognizer_final_result", recognizer_final_result)
        && find(handle_, "vosk_recognizer_reset", recognizer_reset)
        && find(handle_, "vosk_set_log_level", set_log_level);
}

VoskLibrary::~VoskLibrary()
{
    dlclose(handle_);
}

} // namespace kelo
