#include "sound/synth.h"

#include "log/log.h"
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

void report(int level, const char *text, void *)
{
    log(level <= FLUID_ERR        ? LogLevel::Error
            : level == FLUID_WARN ? LogLevel::Warning
                                  : LogLevel::Debug,
        "synth", text);
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
    : library_(std::make_unique<Library>())
{
    for (const int level : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG})
        fluid_set_log_function(level, &report, nullptr);
    fluid_settings_setnum(library_->settings, "synth.sample-rate", sampleRate);
    fluid_settings_setnum(library_->settings, "synth.gain", 0.5);
    fluid_settings_setint(library_->settings, "synth.threadsafe-api", 0);
    fluid_settings_setint(library_->settings, "synth.midi-channels", channels);
    library_->synth = new_fluid_synth(library_->settings);
    loaded_ = library_->synth != nullptr
        && std::any_of(soundfonts.begin(), soundfonts.end(), [this](const std::string &path) {
               std::error_code error;
               return std::filesystem::is_regular_file(path, error)
                   && fluid_synth_sfload(library_->synth, path.c_str(), 1) != FLUID_FAILED;
           });
    if (!loaded_)
        log(LogLevel::Error, "sound", "no soundfont can be loaded");
    for (int channel = drumChannel; loaded_ && channel < channels; channel += channelsPerPart) {
        fluid_synth_set_channel_type(library_->synth, channel, CHANNEL_TYPE_DRUM);
        fluid_synth_program_change(library_->synth, channel, 0);
    }
}

Synth::~Synth() = default;

void Synth::play(SynthPart part, ChannelMessage message)
{
    if (!loaded_)
        return;
    fluid_synth_t *synth = library_->synth;
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
    for (int channel = first; loaded_ && channel < first + channelsPerPart; ++channel) {
        fluid_synth_cc(library_->synth, channel, resetControllers, 0);
        fluid_synth_cc(library_->synth, channel, allNotesOff, 0);
    }
}

void Synth::render(std::span<float> left, std::span<float> right)
{
    if (!loaded_) {
        std::fill(left.begin(), left.end(), 0.0F);
        std::fill(right.begin(), right.end(), 0.0F);
        return;
    }
    fluid_synth_write_float(
        library_->synth, static_cast<int>(left.size()), left.data(), 0, 1, right.data(), 0, 1);
}

} // namespace kelo::engine
