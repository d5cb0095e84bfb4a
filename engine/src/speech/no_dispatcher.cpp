#include "speech/dispatcher.h"

#include <utility>

namespace kelo::engine {

Dispatcher::Dispatcher(bool, std::function<void()> ready)
    : notify(std::move(ready))
{
}

Dispatcher::~Dispatcher() = default;

void Dispatcher::say(std::string) { }

void Dispatcher::setLoudness(float) { }

std::vector<Dispatcher::Report> Dispatcher::take()
{
    return {};
}

} // namespace kelo::engine
