#include "speech/speech_dispatcher.h"

#include <utility>

namespace kelo::engine {

SpeechDispatcher::SpeechDispatcher(bool, std::function<void()> ready)
    : notify_(std::move(ready))
{
}

SpeechDispatcher::~SpeechDispatcher() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): where there is a service, it is kept
void SpeechDispatcher::say(std::string) { }

void SpeechDispatcher::setLoudness(float) { }

void SpeechDispatcher::setStyle(const SpeechStyle &) { }

void SpeechDispatcher::setWanted(bool) { }

std::vector<SpeechDispatcher::Report> SpeechDispatcher::take()
{
    return {};
}

} // namespace kelo::engine
