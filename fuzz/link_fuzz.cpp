// The engine's output as a stream of bytes: split, handled, and then looked at the way everything
// drawn does. Whatever comes, the link must stay up and keep to its bounds.

#include "link/line_splitter.h"
#include "link/link.h"
#include "link/manual_time.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace kelo;

namespace {

void check(bool holds, const char *what)
{
    if (!holds)
        qFatal("%s", what);
}

void look(Link &link)
{
    const double now = link.uptime();
    const qsizetype length = link.caption->size();
    qsizetype end = 0;
    for (const Segment &segment : link.segments) {
        check(segment.start >= end && segment.length >= 0, "segments overlap");
        end = segment.start + segment.length;
    }
    check(end <= length, "a segment leaves the caption");
    const double exact = link.spokenExact(now);
    check(std::isfinite(link.glide(exact, now)) && exact <= static_cast<double>(length), "cursor");
    const qsizetype segment = link.segmentIndex(exact);
    check(segment == 0 || segment < static_cast<qsizetype>(link.segments.size()), "segment index");
    link.updateBars(now);
    for (const double bar : link.bars)
        check(std::isfinite(bar), "a bar is no number");
    check(std::isfinite(link.level), "level");
    check(!link.rollZero || std::isfinite(*link.rollZero), "roll's zero");
    check(link.ripples.size() <= 400 && link.echoes.size() <= 400, "too many ripples");
    check(link.roll.size() <= 1'000'000, "too many notes");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    static int argc = 1;
    static char name[] = "link_fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static const QTemporaryDir folder;
    QLoggingCategory::setFilterRules(u"kelo.*=false"_s);

    ManualTime time;
    Link link({folder.path(), folder.path(), {},
        std::make_unique<QSettings>(folder.filePath(u"settings.ini"_s), QSettings::IniFormat),
        time});
    LineSplitter lines;
    lines.append({reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size)});
    lines.append("\n");
    while (const auto line = lines.next()) {
        // The process hands on nothing else than valid text.
        const bool text = line->isValidUtf8();
        link.handle(text ? line->toByteArray() : QString::fromUtf8(*line).toUtf8());
        time.advance(0.05);
        look(link);
    }
    time.advance(10);
    look(link);
    return 0;
}
