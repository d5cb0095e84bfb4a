#include "speech/speech_dispatcher.h"

#include <utility>

namespace kelo::engine {

SpeechDispatcher::SpeechDispatcher(bool, std::function<void()> ready)
    : notify(std::move(ready))
{
}

SpeechDispatcher::~SpeechDispatcher() = default;

void SpeechDispatcher::say(std::string) { }

void SpeechDispatcher::setLoudness(float) { }

void SpeechDispatcher::setStyle(const SpeechStyle &) { }

void SpeechDispatcher::setWanted(bool) { }

std::vector<SpeechDispatcher::Report> SpeechDispatcher::take()
{
    return {};
}

} // namespace kelo::engine
