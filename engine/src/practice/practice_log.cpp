#include "practice/practice_log.h"

#include "log/log.h"

#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string_view>
#include <system_error>
#include <utility>

namespace kelo::engine {

namespace {

constexpr int patience = 200; // milliseconds, while somebody else writes

constexpr const char *schema = R"(
    PRAGMA synchronous = NORMAL;
    PRAGMA secure_delete = ON;
    CREATE TABLE IF NOT EXISTS played(
        at TEXT NOT NULL, piece TEXT NOT NULL, bar INTEGER NOT NULL,
        hand TEXT NOT NULL, wrong INTEGER NOT NULL, tempo INTEGER);
    CREATE INDEX IF NOT EXISTS played_piece ON played(piece);
    CREATE TABLE IF NOT EXISTS hands(piece TEXT PRIMARY KEY, reading INTEGER NOT NULL);
)";

std::string stamp(std::chrono::local_seconds at)
{
    const auto midnight = std::chrono::floor<std::chrono::days>(at);
    const std::chrono::year_month_day day(midnight);
    const std::chrono::hh_mm_ss time(at - midnight);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d",
        static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
        static_cast<unsigned>(day.day()), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    return text.data();
}

/// The epoch where the text is no time: somebody else may have written it.
std::chrono::local_seconds timeOf(const std::string &text)
{
    using namespace std::chrono;
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    const int read = std::sscanf(
        text.c_str(), "%4d-%2u-%2u %2d:%2d:%2d", &year, &month, &day, &hour, &minute, &second);
    const year_month_day date{
        std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)};
    if (read != 6 || !date.ok())
        return {};
    return local_days(date) + hours(hour) + minutes(minute) + seconds(second);
}

Hands handsOf(std::string_view name)
{
    return name == "right" ? Hands::Right : name == "left" ? Hands::Left : Hands::Both;
}

/// A statement that is done with when it goes.
class Statement {
public:
    Statement(sqlite3 *database, const char *text)
    {
        sqlite3_prepare_v2(database, text, -1, &statement_, nullptr);
    }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;
    ~Statement() { sqlite3_finalize(statement_); }

    /// `text` has to stay until the statement is performed.
    void bind(int column, const std::string &text)
    {
        sqlite3_bind_text(statement_, column, text.data(), static_cast<int>(text.size()), nullptr);
    }
    void bind(int column, std::string &&text) = delete;
    void bind(int column, int value) { sqlite3_bind_int(statement_, column, value); }

    /// Does it, or goes on to the next row; false where something is wrong or nothing is left.
    bool step() { return (result_ = sqlite3_step(statement_)) == SQLITE_ROW; }
    bool perform()
    {
        step();
        sqlite3_reset(statement_);
        return done();
    }
    [[nodiscard]] bool done() const { return result_ == SQLITE_DONE; }

    [[nodiscard]] int number(int column) const { return sqlite3_column_int(statement_, column); }
    [[nodiscard]] std::string text(int column) const
    {
        const auto *bytes = sqlite3_column_text(statement_, column);
        const auto count = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
        return bytes ? std::string(bytes, bytes + count) : std::string();
    }

private:
    sqlite3_stmt *statement_ = nullptr;
    int result_ = SQLITE_OK;
};

bool perform(sqlite3 *database, const char *text)
{
    return sqlite3_exec(database, text, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::string quoted(const std::string &text)
{
    std::string result = "\"";
    for (const char c : text)
        result.append(c == '"' ? 2 : 1, c);
    return result + '"';
}

} // namespace

void PracticeLog::Close::operator()(sqlite3 *database) const
{
    sqlite3_close(database);
}

PracticeLog::PracticeLog(std::filesystem::path file)
    : file_(std::move(file))
{
    if (file_.empty()) {
        file_ = ":memory:";
        usable_ = open(file_) == Found::Whole;
        return;
    }
    std::error_code error;
    std::filesystem::create_directories(file_.parent_path(), error);
    const Found found = open(file_);
    usable_ = found == Found::Whole;
    if (usable_)
        return;
    if (found == Found::Damaged) {
        database_.reset();
        std::filesystem::rename(file_, file_.string() + ".damaged", error);
    }
    usable_ = found == Found::Damaged && open(file_) == Found::Whole;
    if (!usable_) {
        complain();
        return;
    }
    log(LogLevel::Warning, "practice", file_.string() + " was damaged, and is put aside");
    trouble_ = "The file of what you practised was damaged. I put it aside and began a new one. ";
}

PracticeLog::Found PracticeLog::open(const std::filesystem::path &file)
{
    sqlite3 *database = nullptr;
    const int result = sqlite3_open_v2(
        file.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    database_.reset(database);
    sqlite3_busy_timeout(database, patience);
    const bool opened = result == SQLITE_OK && perform(database, schema);
    const int fault = sqlite3_errcode(database);
    if (!opened)
        return fault == SQLITE_NOTADB || fault == SQLITE_CORRUPT ? Found::Damaged : Found::Unusable;
    // The beginning of a file may be whole where the rest is not.
    Statement check(database, "PRAGMA quick_check(1)");
    if (!check.step() || check.text(0) != "ok")
        return Found::Damaged;
    // It may be another program's, and what can be read need not be writable.
    const bool ours =
        perform(database, "SELECT at, piece, bar, hand, wrong, tempo FROM played LIMIT 0");
    return ours && perform(database, "PRAGMA user_version = 1") ? Found::Whole : Found::Unusable;
}

/// Goes on in memory.
void PracticeLog::complain()
{
    if (std::exchange(failed_, true))
        return;
    log(LogLevel::Warning, "practice", file_.string() + ": " + sqlite3_errmsg(database_.get()));
    const bool full = sqlite3_errcode(database_.get()) == SQLITE_FULL;
    sqlite3_busy_timeout(database_.get(), 0); // it is tried again and again
    // Where the folder takes nothing at all, that is told as one.
    if (full || ::access(file_.parent_path().c_str(), W_OK) != 0)
        return;
    told_ = true;
    trouble_ = "I can't keep what you practise. I remember it, and try again until I end. ";
}

/// All that is late, or nothing.
bool PracticeLog::write()
{
    sqlite3 *database = database_.get();
    bool good = perform(database, "BEGIN IMMEDIATE");
    if (good) {
        Statement insert(database, "INSERT INTO played VALUES(?, ?, ?, ?, ?, nullif(?, 0))");
        Statement replace(database, "INSERT OR REPLACE INTO hands VALUES(?, ?)");
        for (const PlayedBar &each : late_) {
            const std::string at = stamp(each.at);
            const std::string hand(nameOf(each.hands));
            insert.bind(1, at);
            insert.bind(2, each.piece);
            insert.bind(3, each.bar);
            insert.bind(4, hand);
            insert.bind(5, each.wrong);
            insert.bind(6, each.tempo);
            good = good && insert.perform();
        }
        for (const auto &[piece, reading] : lateReadings_) {
            replace.bind(1, piece);
            replace.bind(2, reading);
            good = good && replace.perform();
        }
        if (!good)
            complain(); // before the statements go, and what was wrong with them
    }
    good = good && perform(database, "COMMIT");
    if (good) {
        late_.clear();
        lateReadings_.clear();
    } else {
        complain();
        perform(database, "ROLLBACK");
    }
    return good;
}

bool PracticeLog::keep()
{
    if (late_.empty() && lateReadings_.empty())
        return true;
    usable_ = usable_ || open(file_) == Found::Whole;
    if (!usable_ || !write())
        return told_;
    if (std::exchange(told_, false))
        trouble_ = "What you practised is kept now. ";
    if (std::exchange(failed_, false))
        sqlite3_busy_timeout(database_.get(), patience);
    return true;
}

void PracticeLog::add(std::span<const PlayedBar> bars)
{
    late_.insert(late_.end(), bars.begin(), bars.end());
    keep();
}

std::vector<PlayedBar> PracticeLog::bars()
{
    std::vector<PlayedBar> all;
    Statement select(database_.get(),
        "SELECT * FROM (SELECT at, piece, bar, hand, wrong, tempo, rowid AS number FROM played "
        "ORDER BY at DESC, number DESC LIMIT ?) ORDER BY at, number");
    select.bind(1, mostBars);
    while (select.step())
        all.push_back({timeOf(select.text(0)), select.text(1), select.number(2),
            handsOf(select.text(3)), select.number(4), select.number(5)});
    if (!select.done())
        log(LogLevel::Warning, "practice", sqlite3_errmsg(database_.get()));
    all.insert(all.end(), late_.begin(), late_.end());
    return all;
}

std::optional<int> PracticeLog::readingOf(const std::string &piece)
{
    if (const auto late = lateReadings_.find(piece); late != lateReadings_.end())
        return late->second;
    Statement select(database_.get(), "SELECT reading FROM hands WHERE piece = ?");
    select.bind(1, piece);
    return select.step() ? std::optional(select.number(0)) : std::nullopt;
}

void PracticeLog::keepReading(const std::string &piece, int reading)
{
    lateReadings_[piece] = reading;
    keep();
}

std::size_t PracticeLog::forget(const std::string &piece)
{
    lateReadings_.erase(piece);
    const std::size_t late =
        std::erase_if(late_, [&](const PlayedBar &bar) { return bar.piece == piece; });
    Statement removeReading(database_.get(), "DELETE FROM hands WHERE piece = ?");
    removeReading.bind(1, piece);
    removeReading.perform();
    Statement remove(database_.get(), "DELETE FROM played WHERE piece = ?");
    remove.bind(1, piece);
    if (!remove.perform())
        return late;
    return late + static_cast<std::size_t>(sqlite3_changes(database_.get()));
}

std::string PracticeLog::takeTrouble()
{
    return std::exchange(trouble_, {});
}

std::string tableOf(std::span<const PlayedBar> bars)
{
    std::string table = "time,piece,bar,hand,wrong keys,tempo percent\r\n";
    for (const PlayedBar &each : bars)
        table += stamp(each.at) + ',' + quoted(each.piece) + ',' + std::to_string(each.bar) + ','
            + std::string(nameOf(each.hands)) + ',' + std::to_string(each.wrong) + ','
            + (each.tempo > 0 ? std::to_string(each.tempo) : "") + "\r\n";
    return table;
}

} // namespace kelo::engine
