#include "songs/piece_loader.h"

#include "songs/library.h"

#include <chrono>
#include <utility>

namespace kelo::engine {

PieceLoader::PieceLoader(std::filesystem::path file, std::shared_ptr<MidiProgress> progress)
    : progress_(std::move(progress))
    , reading_(std::async(std::launch::async,
          [path = std::move(file), told = progress_.get()] { return loadPiece(path, told); }))
{
}

PieceLoader::~PieceLoader()
{
    progress_->cancelled = true;
}

std::optional<std::variant<Piece, ReadFault>> PieceLoader::take(double seconds)
{
    if (!reading_.valid()
        || reading_.wait_for(std::chrono::duration<double>(seconds)) != std::future_status::ready)
        return {};
    return reading_.get();
}

} // namespace kelo::engine
