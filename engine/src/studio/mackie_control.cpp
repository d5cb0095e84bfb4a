#include "studio/mackie_control.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelo::engine {

namespace {

/// Buttons and their lights, by their notes on the first channel.
enum Button {
    RecordReady = 0x00, ///< of the first track
    Select = 0x18,
    ChannelLeft = 0x30,
    ChannelRight = 0x31,
    Undo = 0x51,
    Marker = 0x54,
    FastForward = 0x5c,
    Stop = 0x5d,
    Play = 0x5e,
    Record = 0x5f,
};

constexpr int tracks = 8;
constexpr std::uint8_t on = 0x7f;

constexpr std::array<std::uint8_t, 5> systemHead{0xf0, 0x00, 0x00, 0x66, 0x14};
constexpr std::array<std::uint8_t, 7> serial{'K', 'E', 'L', 'O', '0', '0', '1'};
constexpr std::array<std::uint8_t, 4> challenge{1, 2, 3, 4};

enum SystemMessage { Query = 0x00, Here = 0x01, HostReply = 0x02, Confirmed = 0x03 };

} // namespace

bool MackieControl::send(StudioCommand command)
{
    if (!connected_)
        return false;
    switch (command) {
    case StudioCommand::Play:
        press({Play});
        return true;
    case StudioCommand::Stop:
        press({Stop});
        return true;
    case StudioCommand::Record:
        press({Record});
        return true;
    case StudioCommand::ToStart: // a second stop goes back
        press({Stop});
        press({Stop});
        return true;
    case StudioCommand::NextTrack:
        selectTrack(1);
        return true;
    case StudioCommand::PreviousTrack:
        selectTrack(-1);
        return true;
    case StudioCommand::Arm:
        press({RecordReady + selected_});
        return true;
    case StudioCommand::Undo:
        press({Undo});
        return true;
    case StudioCommand::AddMarker:
        press({Marker});
        return true;
    case StudioCommand::NextMarker:
        press({Marker, FastForward});
        return true;
    case StudioCommand::Faster:
    case StudioCommand::Slower:
        break;
    }
    return false;
}

/// Presses them one after the other, so that the first is held with the second, and lets go.
void MackieControl::press(std::initializer_list<int> buttons)
{
    const auto tell = [this](int button, std::uint8_t value) {
        port_.send(std::array<std::uint8_t, 3>{0x90, static_cast<std::uint8_t>(button), value});
    };
    for (const int button : buttons)
        tell(button, on);
    for (auto button = std::rbegin(buttons); button != std::rend(buttons); ++button)
        tell(*button, 0);
    if (!std::exchange(waits_, true))
        pressedAt_ = now_;
}

/// Beyond the eight tracks that it shows the surface moves on by one.
void MackieControl::selectTrack(int step)
{
    const int wanted = selected_ + step;
    if (wanted < 0 || wanted >= tracks)
        press({step > 0 ? ChannelRight : ChannelLeft});
    selected_ = std::clamp(wanted, 0, tracks - 1);
    press({Select + selected_});
}

void MackieControl::advance(double now)
{
    now_ = now;
    for (const MidiPort::Message &message : port_.take())
        take(message);
    if (waits_ && now - pressedAt_ > patience) {
        waits_ = false;
        connected_ = false;
    }
}

void MackieControl::take(const MidiPort::Message &message)
{
    const bool system = message.size() > systemHead.size()
        && std::equal(systemHead.begin(), systemHead.end(), message.begin());
    const bool light = message.size() == 3 && message[0] == 0x90;
    if (!system && !light)
        return;
    if (system)
        answer(message);
    connected_ = true;
    waits_ = false;
    if (light && message[2] == on && message[1] >= Select && message[1] < Select + tracks)
        selected_ = message[1] - Select;
}

void MackieControl::answer(const MidiPort::Message &message)
{
    MidiPort::Message reply(systemHead.begin(), systemHead.end());
    const int kind = message[systemHead.size()];
    if (kind != Query && kind != HostReply)
        return;
    reply.push_back(kind == Query ? Here : Confirmed);
    reply.insert(reply.end(), serial.begin(), serial.end());
    if (kind == Query)
        reply.insert(reply.end(), challenge.begin(), challenge.end());
    reply.push_back(0xf7);
    port_.send(reply);
}

} // namespace kelo::engine
