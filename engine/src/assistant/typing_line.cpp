#include "assistant/typing_line.h"

namespace kelo::engine {

TypingLine::Change TypingLine::press(Key pressed)
{
    switch (pressed) {
    case Key::Escape:
        return {End::Leave, {}};
    case Key::Return:
        return {line_.find_first_not_of(' ') == std::string::npos ? End::Leave : End::Run, {}};
    case Key::Left:
    case Key::Right:
        return {};
    case Key::Delete: {
        if (line_.empty())
            return {};
        const char last = line_.back();
        line_.pop_back();
        return {{}, last == ' ' ? "space, deleted" : std::string(1, last) + ", deleted"};
    }
    }
    if (line_.size() >= longest)
        return {};
    const char character = static_cast<char>(pressed);
    line_ += character;
    if (character != ' ')
        return {};
    const std::string word = line_.substr(0, line_.size() - 1);
    return {{}, word.substr(word.rfind(' ') + 1)};
}

} // namespace kelo::engine
