#include "assistant/words.h"

#include "listen/words.h"

#include <array>
#include <cstdio>

namespace kelo::engine {

std::string_view helpFor(Mode mode)
{
    switch (mode) {
    case Mode::Idle:
        return "Left and right go through the choices, Space opens one. M is the song menu. "
               "N says all choices. O plays a MIDI file of yours, Return pauses it. "
               "A lets you type a command, Slash opens a page with all of them. Zero leaves "
               "any mode.";
    case Mode::Menu:
        return "Left and right go through the songs. Space starts the lesson for one, "
               "Return plays it. L reads the list, N counts. Minus and equals change the tempo. "
               "Zero goes home.";
    case Mode::Teach:
        return "I play a part and you play it back. Space plays it again, N says its notes. "
               "Right skips ahead, left goes back. Minus and equals change the tempo. "
               "Say right hand, left hand or both hands to choose. Zero goes home.";
    case Mode::Ear:
        return "I play a note, you find it on your piano. Space plays it again, "
               "N tells you what it was. Zero goes home.";
    case Mode::Talk:
        return "In talk mode you don't need my name. Just say what you want. "
               "T or Zero ends it.";
    }
    return {};
}

std::string suggestionsFor(Mode mode, std::string_view assistantName)
{
    std::string name(assistantName);
    std::string_view things;
    switch (mode) {
    case Mode::Idle:
        things = "song menu; teach me song two; play the minuet in G; ear training; metronome at "
                 "ninety; live band; or what time is it";
        break;
    case Mode::Menu:
        things = "next; play it; teach me this; play song three; slower; or list the songs";
        break;
    case Mode::Teach:
        things = "repeat; next; go back; note names; right hand; both hands; slower; or drop this "
                 "song";
        break;
    case Mode::Ear:
        things = "repeat; what notes; or go home";
        break;
    case Mode::Talk:
        return "Say, without my name: play song three; metronome at ninety; louder; or go home.";
    }
    return "Say " + name + ", and then: " + std::string(things) + ".";
}

std::string_view refusalOf(Action action)
{
    switch (action) {
    case Action::Compose:
        return "I can't make or change music myself. I play songs, teach them and play along.";
    case Action::Jam:
        return "I can't answer with music of my own. The live band plays along with your chords: "
               "press B.";
    case Action::Album:
        return "There is no album here. S keeps what you play, and it is then in the song menu.";
    case Action::Jazz:
        return "I don't have a jazz course. The live band plays along with your chords, if you "
               "like: press B.";
    case Action::Studio:
        return "I can't work other programs. I stay with you and the piano.";
    case Action::World:
        return "I can't look into the world for you. I know music, the time and the day.";
    case Action::NaturalVoice:
        return "I can't install another voice. V changes between those that I have.";
    default:
        return {};
    }
}

std::string timeInWords(int hour, int minute)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "It is %02d:%02d.", hour, minute);
    return text.data();
}

std::string dateInWords(const Day &today)
{
    constexpr std::array<std::string_view, 7> days{
        "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    constexpr std::array<std::string_view, 13> months{"", "January", "February", "March", "April",
        "May", "June", "July", "August", "September", "October", "November", "December"};
    // January and February count with the year before, whose leap day they follow.
    constexpr std::array<int, 13> offsets{0, 0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
    if (today.month < 1 || today.month > 12)
        return {};
    const int year = today.month < 3 ? today.year - 1 : today.year;
    const auto month = static_cast<std::size_t>(today.month);
    const int day = (year + year / 4 - year / 100 + year / 400 + offsets[month] + today.day) % 7;
    return "It is " + std::string(days[static_cast<std::size_t>(day)]) + ", the "
        + ordinalInWords(today.day) + " of " + std::string(months[month]) + ".";
}

} // namespace kelo::engine
