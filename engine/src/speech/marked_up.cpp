#include "speech/speech_dispatcher.h"
#include "speech/word_marks.h"

#include <string_view>

namespace kelo::engine {

std::string markedUp(const std::string &text)
{
    WordMarks words(text);
    std::string marked = "<speak>";
    int character = 0;
    bool between = true;
    for (const char c : text) {
        const bool continues = (static_cast<unsigned char>(c) & 0xc0) == 0x80;
        if (between && c != ' ') {
            if (const auto word = words.begin(character, 0)) {
                marked += "<mark name=\"" + std::to_string(word->from) + ' '
                    + std::to_string(word->length) + "\"/>";
            }
        }
        between = c == ' ';
        character += continues ? 0 : 1;
        switch (c) {
        case '&':
            marked += "&amp;";
            break;
        case '<':
            marked += "&lt;";
            break;
        case '>':
            marked += "&gt;";
            break;
        default:
            marked += c;
        }
    }
    return marked + "</speak>";
}

} // namespace kelo::engine
