#include "protocol/wire.h"

#include <algorithm>
#include <string>

namespace kelo::engine {

void Wire::send(std::string_view keyword, std::string_view text)
{
    std::string line = "@";
    line += keyword;
    if (!text.empty()) {
        line += ' ';
        line += text;
    }
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    sink_(line);
}

void Wire::send(std::string_view keyword, std::initializer_list<int> numbers)
{
    std::string text;
    for (const int number : numbers)
        text += (text.empty() ? "" : " ") + std::to_string(number);
    send(keyword, text);
}

} // namespace kelo::engine
