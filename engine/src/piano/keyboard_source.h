#pragma once

#include "midi/channel_message.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// Where a piano may be found.
class KeyboardSource {
public:
    KeyboardSource() = default;
    KeyboardSource(const KeyboardSource &) = delete;
    KeyboardSource &operator=(const KeyboardSource &) = delete;
    virtual ~KeyboardSource() = default;

    /// Opens what is there and lets go of what is not; true when that has changed anything.
    virtual bool look() = 0;
    /// Something has come or gone: it is worth looking at once.
    [[nodiscard]] virtual bool stirred() { return false; }
    /// Why no piano can ever be found here; empty where one may be.
    [[nodiscard]] virtual std::string_view trouble() const { return {}; }
    /// A file to wait for; -1 for none.
    [[nodiscard]] virtual int file() const { return -1; }
    [[nodiscard]] virtual std::vector<ChannelMessage> take() = 0;
    virtual void send(ChannelMessage message) = 0;

    /// What the piano is called; empty while there is none.
    [[nodiscard]] const std::string &name() const { return name_; }

protected:
    void setName(std::string name) { name_ = std::move(name); }

private:
    std::string name_;
};

} // namespace kelo::engine
