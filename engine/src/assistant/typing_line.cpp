#include "assistant/typing_line.h"

namespace kelo::engine {

TypingLine::Change TypingLine::press(Key pressed)
{
    switch (pressed) {
    case Key::Escape:
        return {End::Leave, {}};
    case Key::Return:
        return {line.find_first_not_of(' ') == std::string::npos ? End::Leave : End::Run, {}};
    case Key::Left:
    case Key::Right:
        return {};
    case Key::Delete: {
        if (line.empty())
            return {};
        const char last = line.back();
        line.pop_back();
        return {{}, last == ' ' ? "space, deleted" : std::string(1, last) + ", deleted"};
    }
    }
    if (line.size() >= longest)
        return {};
    const char character = static_cast<char>(pressed);
    line += character;
    if (character != ' ')
        return {};
    const std::string word = line.substr(0, line.size() - 1);
    return {{}, word.substr(word.rfind(' ') + 1)};
}

} // namespace kelo::engine
