#include "piano/piano.h"

#include "piano/raw_device_source.h"
#include "piano/sequencer_source.h"

namespace kelo::engine {

Piano::Piano(std::function<void()> ready, std::string device)
{
    if (device.empty())
        source_ = std::make_unique<SequencerSource>(systemMidi(std::move(ready)));
    else
        source_ = std::make_unique<RawDeviceSource>(std::move(device));
}

bool Piano::look(double now)
{
    if (!source_->stirred() && now < nextLook_)
        return false;
    nextLook_ = now + lookEvery;
    return source_->look();
}

std::string_view Piano::trouble() const
{
    return source_->trouble();
}

int Piano::file() const
{
    return source_->file();
}

std::vector<ChannelMessage> Piano::take()
{
    return source_->take();
}

void Piano::send(ChannelMessage message)
{
    source_->send(message);
}

} // namespace kelo::engine
