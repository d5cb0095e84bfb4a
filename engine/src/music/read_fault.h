#pragma once

namespace kelo::engine {

/// Why a file gives no piece.
enum class ReadFault {
    Unknown, ///< it is none of the kinds that can be read, or damaged from the beginning
    Unsupported, ///< of a kind that is known, but not read
    Empty, ///< there are no notes in it
    TooLarge,
};

} // namespace kelo::engine
