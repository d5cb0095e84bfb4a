#include "piano/port_watch.h"

namespace kelo::engine {

struct PortWatch::Client { };

PortWatch::PortWatch() = default;

PortWatch::~PortWatch() = default;

int PortWatch::file() const
{
    return -1;
}

MidiSystem::News PortWatch::take()
{
    return {};
}

} // namespace kelo::engine
