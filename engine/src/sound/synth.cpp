#include "sound/synth.h"

#include "sound/audio_clock.h"

#include <fluidsynth.h>

#include <algorithm>
#include <filesystem>

namespace kelo::engine {

namespace {

constexpr int channelsPerPart = 16;
constexpr int parts = 3;
constexpr int channels = parts * channelsPerPart;
constexpr int drumChannel = 9;

int firstChannel(SynthPart part)
{
    return static_cast<int>(part) * channelsPerPart;
}

} // namespace

struct Synth::Library {
    fluid_settings_t *settings = new_fluid_settings();
    fluid_synth_t *synth = nullptr;

    Library() = default;
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
    ~Library()
    {
        delete_fluid_synth(synth);
        delete_fluid_settings(settings);
    }
};

Synth::Synth(std::span<const std::string> soundfonts)
    : library(std::make_unique<Library>())
{
    fluid_settings_setnum(library->settings, "synth.sample-rate", sampleRate);
    fluid_settings_setnum(library->settings, "synth.gain", 0.5);
    fluid_settings_setint(library->settings, "synth.threadsafe-api", 0);
    fluid_settings_setint(library->settings, "synth.midi-channels", channels);
    library->synth = new_fluid_synth(library->settings);
    loaded = library->synth != nullptr
        && std::any_of(soundfonts.begin(), soundfonts.end(), [this](const std::string &path) {
               std::error_code error;
               return std::filesystem::is_regular_file(path, error)
                   && fluid_synth_sfload(library->synth, path.c_str(), 1) != FLUID_FAILED;
           });
    for (int channel = drumChannel; loaded && channel < channels; channel += channelsPerPart) {
        fluid_synth_set_channel_type(library->synth, channel, CHANNEL_TYPE_DRUM);
        fluid_synth_program_change(library->synth, channel, 0);
    }
}

Synth::~Synth() = default;

void Synth::play(SynthPart part, ChannelMessage message)
{
    if (!loaded)
        return;
    fluid_synth_t *synth = library->synth;
    const int channel = firstChannel(part) + message.channel();
    switch (message.kind()) {
    case 0x80:
        fluid_synth_noteoff(synth, channel, message.first);
        break;
    case 0x90:
        fluid_synth_noteon(synth, channel, message.first, message.second);
        break;
    case 0xa0:
        fluid_synth_key_pressure(synth, channel, message.first, message.second);
        break;
    case 0xb0:
        fluid_synth_cc(synth, channel, message.first, message.second);
        break;
    case 0xc0:
        fluid_synth_program_change(synth, channel, message.first);
        break;
    case 0xd0:
        fluid_synth_channel_pressure(synth, channel, message.first);
        break;
    case 0xe0:
        fluid_synth_pitch_bend(synth, channel, message.first | message.second << 7);
        break;
    default:
        break;
    }
}

void Synth::release(SynthPart part)
{
    constexpr int resetControllers = 121;
    constexpr int allNotesOff = 123;
    const int first = firstChannel(part);
    for (int channel = first; loaded && channel < first + channelsPerPart; ++channel) {
        fluid_synth_cc(library->synth, channel, resetControllers, 0);
        fluid_synth_cc(library->synth, channel, allNotesOff, 0);
    }
}

void Synth::render(std::span<float> left, std::span<float> right)
{
    if (!loaded) {
        std::fill(left.begin(), left.end(), 0.0F);
        std::fill(right.begin(), right.end(), 0.0F);
        return;
    }
    fluid_synth_write_float(
        library->synth, static_cast<int>(left.size()), left.data(), 0, 1, right.data(), 0, 1);
}

} // namespace kelo::engine
