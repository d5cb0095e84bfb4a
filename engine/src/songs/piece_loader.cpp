#include "songs/piece_loader.h"

#include "songs/library.h"

#include <chrono>
#include <cstdint>
#include <system_error>
#include <utility>

namespace kelo::engine {

namespace {

constexpr std::uintmax_t soonRead = 32'768; // bytes

/// A small file is read when it is wanted: to wait for a thread on a busy machine takes longer.
std::launch howToRead(const std::filesystem::path &file)
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return !error && size <= soonRead ? std::launch::deferred : std::launch::async;
}

} // namespace

PieceLoader::PieceLoader(const std::filesystem::path &file, std::shared_ptr<MidiProgress> progress)
    : progress_(std::move(progress))
    , reading_(std::async(
          howToRead(file), [path = file, told = progress_.get()] { return loadPiece(path, told); }))
{
}

PieceLoader::~PieceLoader()
{
    progress_->cancelled = true;
}

std::optional<std::variant<Piece, ReadFault>> PieceLoader::take(double seconds)
{
    if (!reading_.valid()
        || reading_.wait_for(std::chrono::duration<double>(seconds)) == std::future_status::timeout)
        return {};
    return reading_.get();
}

} // namespace kelo::engine
