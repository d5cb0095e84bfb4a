#pragma once

#include "assistant/assistant.h"
#include "assistant/demo.h"
#include "piano/midi_thru.h"
#include "piano/piano.h"
#include "program/environment.h"
#include "protocol/input.h"
#include "protocol/wire.h"
#include "setup/sound_queue.h"
#include "songs/library.h"
#include "sound/mixer.h"
#include "sound/monotonic_time.h"
#include "sound/output.h"
#include "sound/sound_desk.h"
#include "speech/speaker.h"
#include "speech/synthesiser.h"
#include "studio/mackie_control.h"
#include "studio/reaper_control.h"
#include "studio/virtual_midi_port.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <span>

namespace kelo::engine {

/// The assistant and all that it works with.
class Engine {
public:
    /// `news` is called on other threads when `advance` has something to do. `showsItself`: the
    /// demonstration runs, in place of a piano, and keeps nothing.
    Engine(Wire &lines, std::function<void()> news, bool showsItself);

    /// Does what is due, and what the inputs ask for.
    void advance(std::span<const Input> inputs);

    [[nodiscard]] std::optional<double> deadline() const;
    [[nodiscard]] bool finished() const { return assistant_.finished(); }
    [[nodiscard]] int pianoFile() const { return piano_.file(); }

private:
    void show();
    [[nodiscard]] static std::uint64_t millisecondsSinceEpoch();

    Wire &wire_;
    AudioClock clock_{monotonicNow()};
    Mixer mixer_{std::make_unique<Synth>(firstSoundfonts()), clock_};
    SoundDesk desk_;
    const DataFolder data_;
    const std::filesystem::path &home_ = data_.path();
    SoundQueue queue_{home_ / "sound.json"};
    Output output_;
    SpeechDispatcher dispatcher_;
    Synthesiser voice_;
    Piano piano_;
    VirtualMidiPort surfacePort_;
    MackieControl mackie_{surfacePort_};
    MidiThru through_{
        mixer_.music(), clock_, [this](ChannelMessage message) { piano_.send(message); }};
    Speaker speaker_{wire_, dispatcher_, voice_, mixer_, clock_};
    Player player_{wire_, through_, clock_};
    Metronome metronome_{wire_, mixer_.ticks(), clock_};
    Band band_{wire_, mixer_.band(), clock_};
    const std::filesystem::path songs_ = data_.songs();
    Library library_{songs_};
    ReaperControl reaper_{home_ / "reaper", millisecondsSinceEpoch()};
    Assistant assistant_{{wire_, speaker_, player_, metronome_, band_, through_, mixer_.keys(),
                             library_, desk_, openWithDesktop, &mackie_, &reaper_},
        {home_ / "profile.json", home_ / "commands.html", songs_, home_ / "takes",
            home_ / "composition.json", home_ / "progress.json", home_ / "practice.db",
            data_.downloads()},
        std::random_device{}()};
    std::optional<Demo> demo_;
    bool audible_ = false;
};

} // namespace kelo::engine
