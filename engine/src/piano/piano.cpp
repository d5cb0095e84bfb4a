#include "piano/piano.h"

#include "piano/source.h"

namespace kelo::engine {

Piano::Piano(std::function<void()> ready, std::string device)
{
    if (device.empty())
        source = std::make_unique<Sequencer>(std::move(ready));
    else
        source = std::make_unique<RawDevice>(std::move(device));
}

Piano::~Piano() = default;

bool Piano::look(double now)
{
    if (now < nextLook)
        return false;
    nextLook = now + lookEvery;
    return source->look();
}

const std::string &Piano::name() const
{
    return source->name;
}

std::string_view Piano::trouble() const
{
    return source->trouble();
}

int Piano::file() const
{
    return source->file();
}

std::vector<ChannelMessage> Piano::take()
{
    return source->take();
}

void Piano::send(ChannelMessage message)
{
    source->send(message);
}

} // namespace kelo::engine
