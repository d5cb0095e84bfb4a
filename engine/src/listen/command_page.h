#pragma once

#include <string>
#include <string_view>

namespace kelo::engine {

/// The page of all commands in large print: valid HTML, UTF-8, complete in itself, with headings
/// and table headers for screen readers, and light on dark where the reader prefers that.
[[nodiscard]] std::string commandPage(std::string_view assistantName);

} // namespace kelo::engine
