#pragma once

#include "activities/activity.h"
#include "songs/piece_loader.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace kelo::engine {

/// What is to become of a file that has been read; false where nothing begins with it.
using WhenRead = std::function<bool(std::variant<Piece, ReadFault> read, const Moment &now)>;

/// Waiting for a large file that is being read; says how far that is.
class LoadingActivity : public Activity {
public:
    LoadingActivity(
        Session &shared, std::unique_ptr<PieceLoader> loader, std::string title, WhenRead whenRead);

    void enter(const Moment &now) override;
    void advance(const Moment &now) override;
    [[nodiscard]] std::optional<double> deadline() const override { return nextLook_; }

    [[nodiscard]] std::string place() const override;
    [[nodiscard]] std::string_view help() const override;
    [[nodiscard]] std::string_view suggestions() const override { return "stop"; }

private:
    std::unique_ptr<PieceLoader> loader_;
    std::string title_;
    WhenRead whenRead_;
    double nextLook_ = 0;
    double nextWord_ = 0;
};

/// Reads a file that goes by `title`, at once where that is soon done; false where nothing begins.
bool readFile(Session &session, const std::filesystem::path &file, const std::string &title,
    WhenRead whenRead, const Moment &now);

/// Plays a MIDI file: at once where it is soon read, else when it has been.
void playFile(Session &session, const std::filesystem::path &file, const Moment &now);

} // namespace kelo::engine
