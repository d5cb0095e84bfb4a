#pragma once

#include <functional>
#include <initializer_list>
#include <string_view>

namespace kelo::engine {

/// The way out: lines that begin with "@", one call of the sink a line, its line feed included.
class Wire {
public:
    using Sink = std::function<void(std::string_view line)>;

    explicit Wire(Sink lineSink)
        : sink_(std::move(lineSink))
    {
    }

    /// Sends "@keyword text". Text that comes from outside goes through `oneLine` first.
    void send(std::string_view keyword, std::string_view text = {});

    /// Sends "@keyword 1 2 3".
    void send(std::string_view keyword, std::initializer_list<int> numbers);

private:
    Sink sink_;
};

} // namespace kelo::engine
