#include "sound/synth.h"

#include "log/log.h"
#include "sound/audio_clock.h"

#include <fluidsynth.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

namespace kelo::engine {

namespace {

constexpr int channelsPerPart = 16;
constexpr int parts = static_cast<int>(synthParts);
constexpr int channels = parts * channelsPerPart;
constexpr int drumChannel = 9;

// What the reference chord is brought to, and how far a soundfont may be from it.
constexpr double referenceLevel = 0.05; ///< root of the mean square, full scale is 1
constexpr double uncalibratedGain = 0.5;
constexpr double lowestGain = 0.1;
constexpr double highestGain = 5;

/// The library takes its audio and effects groups in turn, channel by channel.
int channelOf(SynthPart part, int channel)
{
    return channel * parts + static_cast<int>(part);
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
    fluid_settings_t *settings = library_->settings;
    fluid_settings_setnum(settings, "synth.sample-rate", sampleRate);
    fluid_settings_setnum(settings, "synth.gain", uncalibratedGain);
    fluid_settings_setint(settings, "synth.threadsafe-api", 0);
    fluid_settings_setint(settings, "synth.midi-channels", channels);
    fluid_settings_setint(settings, "synth.audio-channels", parts);
    fluid_settings_setint(settings, "synth.audio-groups", parts);
    fluid_settings_setint(settings, "synth.effects-groups", parts);
    fluid_settings_setint(settings, "synth.chorus.active", 0);
    fluid_settings_setnum(settings, "synth.reverb.room-size", 0.3);
    fluid_settings_setnum(settings, "synth.reverb.damp", 0.3);
    fluid_settings_setnum(settings, "synth.reverb.level", 0.4);
    library_->synth = new_fluid_synth(settings);
    for (const std::string &path : soundfonts) {
        std::error_code error;
        if (library_->synth == nullptr || !std::filesystem::is_regular_file(path, error)
            || fluid_synth_sfload(library_->synth, path.c_str(), 1) == FLUID_FAILED)
            continue;
        soundfont_ = path;
        break;
    }
    if (!sounds()) {
        log(LogLevel::Error, "sound", "no soundfont can be loaded");
        return;
    }
    calibrate();
    log(LogLevel::Info, "sound", "instruments of " + soundfont_);
}

void Synth::resetChannels()
{
    for (int channel = 0; channel < channelsPerPart; ++channel) {
        for (int part = 0; part < parts; ++part) {
            const int number = channelOf(static_cast<SynthPart>(part), channel);
            fluid_synth_set_channel_type(library_->synth, number,
                channel == drumChannel ? CHANNEL_TYPE_DRUM : CHANNEL_TYPE_MELODIC);
            fluid_synth_program_change(library_->synth, number, 0);
        }
    }
}

/// Plays a chord that nobody hears and brings its loudness to the reference.
void Synth::calibrate()
{
    constexpr std::size_t length = frames(0.7);
    std::array<std::vector<float>, 2 * synthParts> sides;
    std::array<Stereo, synthParts> sound;
    for (auto &side : sides)
        side.resize(length);
    for (std::size_t part = 0; part < synthParts; ++part)
        sound[part] = {sides[2 * part], sides[2 * part + 1]};
    for (const ChannelMessage message : {ChannelMessage{0x90, 48, 80}, ChannelMessage{0x90, 60, 80},
             ChannelMessage{0x90, 64, 80}, ChannelMessage{0x90, 67, 80}})
        play(SynthPart::Pieces, message);
    render(sound);
    double squares = 0;
    for (std::size_t i = 0; i < length; ++i)
        squares += 0.5 * (sides[0][i] * sides[0][i] + sides[1][i] * sides[1][i]);
    const double level = std::sqrt(squares / static_cast<double>(length));
    if (level > 0)
        fluid_synth_set_gain(library_->synth,
            static_cast<float>(
                std::clamp(uncalibratedGain * referenceLevel / level, lowestGain, highestGain)));
    fluid_synth_system_reset(library_->synth);
    resetChannels();
}

Synth::~Synth() = default;

void Synth::play(SynthPart part, ChannelMessage message)
{
    if (!sounds())
        return;
    fluid_synth_t *synth = library_->synth;
    const int channel = channelOf(part, message.channel());
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
    for (int channel = 0; sounds() && channel < channelsPerPart; ++channel) {
        const int number = channelOf(part, channel);
        fluid_synth_cc(library_->synth, number, resetControllers, 0);
        fluid_synth_cc(library_->synth, number, allNotesOff, 0);
    }
}

void Synth::adopt(const Synth &other)
{
    constexpr std::array<int, 6> controllers{1, 7, 10, 11, 64, 91};
    if (!sounds() || !other.sounds())
        return;
    for (int channel = 0; channel < channels; ++channel) {
        int soundfont = 0;
        int bank = 0;
        int program = 0;
        fluid_synth_get_program(other.library_->synth, channel, &soundfont, &bank, &program);
        fluid_synth_program_change(library_->synth, channel, program);
        for (const int controller : controllers) {
            int value = 0;
            fluid_synth_get_cc(other.library_->synth, channel, controller, &value);
            fluid_synth_cc(library_->synth, channel, controller, value);
        }
    }
}

void Synth::render(const std::array<Stereo, synthParts> &sound)
{
    // Reverberation and chorus of a part are mixed into its sound.
    std::array<float *, 2 * synthParts> dry{};
    std::array<float *, 4 * synthParts> effects{};
    for (std::size_t part = 0; part < synthParts; ++part) {
        const auto &[left, right] = sound[part];
        std::ranges::fill(left, 0.0F);
        std::ranges::fill(right, 0.0F);
        dry[2 * part] = effects[4 * part] = effects[4 * part + 2] = left.data();
        dry[2 * part + 1] = effects[4 * part + 1] = effects[4 * part + 3] = right.data();
    }
    if (sounds())
        fluid_synth_process(library_->synth, static_cast<int>(sound.front().left.size()),
            static_cast<int>(effects.size()), effects.data(), static_cast<int>(dry.size()),
            dry.data());
}

} // namespace kelo::engine
