#pragma once

#include "practice/played_bar.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct sqlite3;

namespace kelo::engine {

/// What was practised, bar by bar, in an SQLite file that is the user's own: one table, `played`,
/// with the columns `at` (local time, "2025-03-07 10:00:10"), `piece`, `bar`, `hand` ("both",
/// "right", "left"), `wrong` (keys) and `tempo` (percent of what is written, or nothing); and
/// `hands`, which of two readings of the hands the user chose for a `piece`.
///
/// Whatever is the matter with the file, the log goes on in memory until it can be written to; a
/// damaged one is put aside, under its name and ".damaged".
class PracticeLog {
public:
    static constexpr int mostBars = 100'000; ///< that are read; the newest ones

    /// An empty name keeps everything in memory.
    explicit PracticeLog(std::filesystem::path file = {});

    /// Keeps all of them or, for now, none.
    void add(std::span<const PlayedBar> bars);

    /// The oldest first.
    [[nodiscard]] std::vector<PlayedBar> bars();

    /// Which reading of the hands the user chose for a piece, 1 or 2; nothing where nobody did.
    [[nodiscard]] std::optional<int> readingOf(const std::string &piece);
    void keepReading(const std::string &piece, int reading);

    /// Says how many rows are gone of what was played.
    std::size_t forget(const std::string &piece);

    /// Tries again what could not be written. False while there is no room for it; what else is
    /// the matter is told as trouble.
    bool keep();

    /// What the user has to know about the file; once, then empty.
    [[nodiscard]] std::string takeTrouble();

private:
    struct Close {
        void operator()(sqlite3 *database) const;
    };
    using Database = std::unique_ptr<sqlite3, Close>;

    enum class Found { Whole, Damaged, Unusable };

    Found open(const std::filesystem::path &file);
    void complain();
    bool write();

    std::filesystem::path file_;
    Database database_;
    std::string trouble_;
    bool usable_ = false; ///< the file
    bool failed_ = false; ///< the last time
    bool told_ = false; ///< of it, as trouble
    std::vector<PlayedBar> late_; ///< that are not in the file yet
    std::map<std::string, int> lateReadings_;
};

/// The same as a table for other programs, as RFC 4180 has it: a heading, then a row a bar.
[[nodiscard]] std::string tableOf(std::span<const PlayedBar> bars);

} // namespace kelo::engine
