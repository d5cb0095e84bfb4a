#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace kelo::engine {

/// Where the jazz course was left.
struct JazzPlace {
    std::size_t lesson = 0;
    std::size_t key = 0; ///< how many of the lesson's keys have been played

    friend bool operator==(const JazzPlace &, const JazzPlace &) = default;
};

/// How far the user has come in lessons and in the jazz course. Each change is on the disk before
/// the call returns, where the disk has room for it, so that not even a crash loses it.
class Progress {
public:
    static constexpr std::size_t mostPieces = 500; ///< the one left longest ago is forgotten

    /// Goes on with what `file` holds; an empty name keeps nothing.
    explicit Progress(std::filesystem::path file = {});

    /// The bar where the lesson on this piece goes on, from 1.
    [[nodiscard]] int barOf(const std::string &piece) const;
    void reach(const std::string &piece, int bar);
    /// Whose lesson was left last; empty where all were ended.
    [[nodiscard]] std::string lastPiece() const;
    void forget(const std::string &piece);

    [[nodiscard]] JazzPlace jazz() const { return jazz_; }
    void reach(JazzPlace place);

    /// Tries again what could not be written. False while the disk would not have it.
    bool keep();

private:
    struct Lesson {
        std::string piece;
        int bar = 1;

        friend bool operator==(const Lesson &, const Lesson &) = default;
    };

    void save();

    std::filesystem::path file_;
    bool kept_ = true;
    std::vector<Lesson> lessons_; ///< the last one last
    JazzPlace jazz_;
};

} // namespace kelo::engine
