#include "support/link_fixture.h"
#include "support/table.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

const QByteArray letters(16, 'p');

} // namespace

class InboundTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesBecomeState_data()
    {
        const Table<QVariantMap> row{"expected"};
        row("mode teach", {{u"mode"_s, u"teach"_s}, {u"modeName"_s, u"LESSON"_s}});
        row("mode", {{u"mode"_s, u""_s}});
        row("mode  a b ", {{u"mode"_s, u" a b "_s}});
        row("mode talk\r", {{u"mode"_s, u"talk\r"_s}, {u"modeName"_s, u"STANDBY"_s}});
        row("Mode talk", {{u"mode"_s, u"idle"_s}});
        row(" mode talk", {{u"mode"_s, u"idle"_s}});
        row("kbd Grand Piano ♭", {{u"keyboards"_s, u"Grand Piano ♭"_s}});
        row("voice Ann", {{u"voice"_s, u"Ann"_s}});
        row("now ten past two", {{u"now"_s, u"ten past two"_s}});
        row("bandstyle bass", {{u"bandStyle"_s, u"bass"_s}});
        row("bandlevel soft", {{u"bandLevel"_s, u"soft"_s}});
        row("hands left", {{u"hands"_s, u"left"_s}});
        row("daw 1", {{u"daw"_s, true}});
        row("daw 1 ", {{u"daw"_s, false}});
        row("typing 1", {{u"typing"_s, true}});
        row("paused 1", {{u"paused"_s, true}});
        row("live 1", {{u"live"_s, true}});
        row("jazz |Blues|| Autumn |", {{u"jazz"_s, QStringList{u"Blues"_s, u" Autumn "_s}}});
        row("jazz", {{u"jazz"_s, QStringList{}}});
        row("name Max", {{u"assistant"_s, u"Max"_s}, {u"user"_s, u""_s}});
        row("name Max|Ann|x", {{u"assistant"_s, u"Max"_s}, {u"user"_s, u"Ann"_s}});
        row("name |Ann", {{u"assistant"_s, u"Kelo"_s}, {u"user"_s, u"Ann"_s}});
        row("name Max|friend", {{u"assistant"_s, u"Max"_s}, {u"user"_s, u""_s}});
        row("beat 3", {{u"beat"_s, 3}, {u"flash"_s, u"beat"_s}, {u"flashAt"_s, 1000.0}});
        row("beat -9223372036854775808", {{u"beat"_s, std::numeric_limits<qint64>::min()}});
        row("beat", {{u"beat"_s, -1}, {u"flash"_s, u"beat"_s}});
        row("beat 99999999999999999999", {{u"beat"_s, -1}, {u"flash"_s, u"beat"_s}});
        row("flash wrong", {{u"flash"_s, u"wrong"_s}, {u"flashAt"_s, 1000.0}});
        row("heard play it", {{u"heard"_s, u"play it"_s}});
        row("access large 1", {{u"large"_s, true}});
        row("access contrast 1", {{u"contrast"_s, true}});
        row("access large 1 1", {{u"large"_s, false}});
        row("update  1.2\t|new\tsongs |x",
            {{u"updateVersion"_s, u"1.2"_s}, {u"updateNotes"_s, u"new\tsongs "_s}});
        row("update 2", {{u"updateVersion"_s, u"2"_s}, {u"updateNotes"_s, u""_s}});
        row("window visual 1", {{u"visual"_s, true}});
        row("welcome", {{u"welcome"_s, true}});
        row("rollnew Für Elise",
            {{u"rollName"_s, u"Für Elise"_s}, {u"rolling"_s, true}, {u"visual"_s, true}});
    }

    void linesBecomeState()
    {
        QFETCH(QVariantMap, expected);
        LinkFixture fixture;
        fixture.say({QTest::currentDataTag()});
        for (auto field = expected.cbegin(); field != expected.cend(); ++field)
            QCOMPARE(fixture->property(qPrintable(field.key())), field.value());
    }

    void anyLineIsASignOfLife()
    {
        LinkFixture fixture;
        for (const char *line : {"", " ", "mode", "nonsense 1 2 3", "on x", "\r"}) {
            fixture.bring(u"OFFLINE"_s);
            fixture.say({line});
            QCOMPARE(fixture->state.get(), u"ONLINE"_s);
        }
    }

    void sentencesAndWords()
    {
        LinkFixture fixture;
        Link &link = fixture.link();
        fixture.say({"say Grüße 🎹, my friend.", "word x 6 2 250 9"});
        QCOMPARE(link.segments, cut(link.caption));
        QVERIFY(link.speaking && link.captionLive && link.gotWord);
        QCOMPARE(link.spokenTo.get(), 8);
        QCOMPARE(link.wordTime, 0.25);
        QCOMPARE(link.voiceAnchor, 1000 - 0.03);
        QCOMPARE(link.transcript->last(), (Spoken{1, u"12:00:00"_s, u"Grüße 🎹, my friend."_s}));

        fixture.time.advance(1);
        fixture.say({"word 9"}); // too short, but its duration is gone
        QCOMPARE(link.wordTime, 0.0);
        QCOMPARE(link.wordAt, 1000.0);
        fixture.say({"word 9 1"});
        QCOMPARE(link.wordAt, 1001.0);
        QCOMPARE(link.pulseAt, 1001.0);
        QCOMPARE(link.voiceAnchor, 1000 - 0.03);

        fixture.say({"done"});
        QCOMPARE(link.spokenTo.get(), link.caption->size());
        QCOMPARE(link.doneAt, 1001.0);
        link.glide(20, 1001);
        fixture.say({"say Next"});
        QCOMPARE(link.glide(0, link.uptime()), 0.0);
        QVERIFY(!link.gotWord);
        QCOMPARE(link.spokenTo.get(), 0);
    }

    void captionsStayForAWhile()
    {
        LinkFixture fixture;
        Link &link = fixture.link();
        fixture.say({"say one", "done"});
        fixture.time.advance(3);
        fixture.say({"done"}); // the first one counts
        QVERIFY(link.captionLive);
        fixture.time.advance(1.5);
        QVERIFY(!link.captionLive);

        fixture.say({"say two", "done"});
        fixture.time.advance(2);
        fixture.say({"say three"});
        fixture.time.advance(3);
        QVERIFY(link.captionLive);
        fixture.say({"done"});
        fixture.time.advance(1);
        fixture.say({"say four", "done"});
        fixture.time.advance(3.9);
        QVERIFY(link.captionLive);
        fixture.time.advance(0.2);
        QVERIFY(!link.captionLive);

        for (int i = 0; i < 1000; ++i)
            fixture.say({"say five", "done"});
        QVERIFY(fixture.time.waiting() <= 1);
    }

    void theVoiceLogIsBounded()
    {
        LinkFixture fixture;
        const auto &log = fixture->transcript;
        fixture.say({"name Max", "heard", "heard play it"});
        QCOMPARE(log.get()[0].text, u"▸ YOU: Max"_s);
        QCOMPARE(log.get()[1].text, u"▸ YOU: play it"_s);
        for (int i = 0; i < 100; ++i)
            fixture.say({"heard more"});
        QCOMPARE(log->size(), 102);
        fixture.say({"say enough"});
        QCOMPARE(log->size(), 60);
        QCOMPARE(log->first().id, 44);
        QCOMPARE(log->last().id, 103);
        for (int i = 0; i < 10'100; ++i)
            fixture.say({"heard more"});
        QVERIFY(log->size() <= 10'000);
    }

    void spectraFillFrames_data()
    {
        // line: what follows "spec 7 new" and two frames of "p"
        const Table<QByteArray, QList<double>> row{"line", "firstBands"};
        row("appended", "spec 7 2 " + QByteArray(32, 'a'), {1, 1, 0, 0});
        row("replaced and appended", "spec 7 1 " + QByteArray(32, 'd'), {1, 0.2, 0.2});
        row("no gaps", "spec 7 3 " + letters, {1, 1});
        row("the part of a frame is dropped", "spec 7 2 " + letters + "ppp", {1, 1, 1});
        row("too few letters", "spec 7 2 " + letters.chopped(1), {1, 1});
        row("too few to be fatal", "spec 7 -5 abc", {1, 1});
        row("stale", "spec 8 2 " + letters, {1, 1});
        row("no id", "spec x 2 " + letters, {1, 1});
        row("no index", "spec 7 x " + letters, {1, 1});
        row("no letters", "spec 7 2", {1, 1});
        row("below a, above p", "spec 7 1 A" + letters + "ppp" + QByteArray(12, 'z') + 'x',
            {1, 0, 1});
        row("emptied", "spec 9 new and more", {});
        row("beyond the largest number", "spec 7 9223372036854775807 " + letters + letters, {1, 1});
        row("negative", "spec 7 -1 " + letters + letters, {1, 1});
    }

    void spectraFillFrames()
    {
        QFETCH(QByteArray, line);
        LinkFixture fixture;
        fixture.say({"start", "word 0 1", "spec 7 new"});
        QVERIFY(!fixture->voiceAnchor);
        QCOMPARE(fixture->voiceStart, 0.0);
        const QByteArray two = "spec 7 0 " + letters + letters;
        fixture.say({two, line});
        QList<double> firstBands;
        for (const VoiceFrame &frame : fixture->voiceFrames)
            firstBands << frame[0];
        QTEST(firstBands, "firstBands");
    }

    void keysRippleAndName()
    {
        LinkFixture fixture;
        Link &link = fixture.link();
        fixture.say({"on 60 127", "on 64 90"});
        fixture.time.advance(1);
        fixture.say({"on 67 80"});
        QCOMPARE(link.chord, u"C MAJOR"_s);
        QCOMPARE(link.chordAt, 1001.0);
        QCOMPARE(link.pulseAt, 1001.0);
        fixture.time.advance(1);
        fixture.say({"on 64 100", "on 64 0", "on 67 -3", "on 99 0"});
        QCOMPARE(link.ripples,
            (QList<Ripple>{{60, 1000, 1, {}}, {64, 1000, 90 / 127.0, {}},
                {67, 1001, 80 / 127.0, 1002}, {64, 1002, 100 / 127.0, 1002}}));
        QCOMPARE(link.down, (QHash<qint64, qint64>{{60, 127}}));
        QCOMPARE(link.chord, u"C MAJOR"_s);
        QCOMPARE(link.chordAt, 1002.0);

        fixture.stage.calls.clear();
        fixture.time.advance(1);
        fixture.say({"out 40 127", "out 52 1", "out 40 0"});
        QCOMPARE(link.played, QSet<qint64>{52});
        QCOMPARE(link.echoes.size(), 2);
        QCOMPARE(link.echoes[0].off, 1003.0);
        QCOMPARE(link.pulseAt, 1002.0);
        QCOMPARE(fixture.stage.calls[0], u"note 40 1 0"_s);
        QCOMPARE(fixture.stage.calls[2], u"note 40 0 0"_s);
    }

    void onlyTwoIntegersMakeANote()
    {
        for (const char *rest :
            {"", " ", " 60", " 60 x", " 60 100 5", " 60 1.5", " 99999999999999999999 1"}) {
            LinkFixture fixture;
            fixture.say({"on"_ba + rest, "out"_ba + rest});
            QVERIFY2(fixture.stage.calls.isEmpty(), rest);
        }
        for (const char *rest : {" 60 100", "  60  100 ", " 60 x 100", " +60 +100"}) {
            LinkFixture fixture;
            fixture.say({"on"_ba + rest, "out"_ba + rest});
            QCOMPARE(fixture->down, (QHash<qint64, qint64>{{60, 100}}));
            QCOMPARE(fixture->played, QSet<qint64>{60});
        }
    }

    void notesAreBounded()
    {
        LinkFixture fixture;
        for (int pitch = 0; pitch < 1000; ++pitch) {
            for (const char *keyword : {"on ", "out "})
                fixture->handle(keyword + QByteArray::number(pitch) + " 64");
        }
        QCOMPARE(fixture->ripples.size(), 400);
        QCOMPARE(fixture->ripples.first().pitch, 600);
        QCOMPARE(fixture->echoes.size(), 400);
        QVERIFY(fixture->down.size() <= 400 && fixture->played.size() <= 400);

        const QByteArray notes = "rolln " + QByteArray("1,1,60,64,0;").repeated(50'000);
        for (int i = 0; i < 21; ++i)
            fixture->handle(notes);
        QCOMPARE(fixture->roll.size(), 1'000'000U);
    }

    void rollsAreRead()
    {
        LinkFixture fixture;
        fixture.say({"rolln 2,0.5,60,64,0;1,1e1,-1,999,7", "rolln ;;3,,1,60,64,0,;", "rolln",
            "rolln 9,1,60,64;9,1,60,64,0,0;9,1,60.0,64,0;nan,1,60,64,0;9,inf,60,64,0",
            "rolln  9,1,60,64,0;4,1,60,64,0; 9,1,60,64,0;9,1, 60,64,0"});
        const std::vector<RollNote> notes{
            {2, 0.5, 60, 64, 0}, {1, 10, -1, 999, 7}, {3, 1, 60, 64, 0}, {4, 1, 60, 64, 0}};
        QVERIFY(fixture->roll == notes);
    }

    void rollsStartAndStop()
    {
        LinkFixture fixture;
        Link &link = fixture.link();
        fixture.say({"rolln 0,1,60,64,0", "rollstart -0.5 x 12.5"});
        QCOMPARE(link.rollZero, 999.5);
        QCOMPARE(link.rollLength, 12.5);
        fixture.say({"rollstart 3", "rollstart 1 2 3", "rollstart nan 2"});
        QCOMPARE(link.rollZero, 999.5);
        fixture.say({"rollnew again"});
        QVERIFY(!link.rollZero && link.roll.empty() && link.rolling);
        fixture.say({"rolln 0,1,60,64,0", "rollstart 0 1", "rollstop"});
        QVERIFY(!link.rollZero && !link.rolling && link.visual);
        QCOMPARE(link.roll.size(), 1U);
        QCOMPARE(fixture.stage.calls, (QStringList{u"clearRoll"_s, u"clearRoll"_s}));
    }

    void requestsReachTheRoomsAbove_data()
    {
        const Table<QStringList> row{"calls"};
        row("welcome", {u"showMainWindow"_s});
        row("window visual 1", {u"showMainWindow"_s});
        row("window visual 0", {});
        row("window show 1", {u"showMainWindow"_s});
        row("window show yes", {u"hideMainWindow"_s});
        row("window show", {});
        row("window full 1", {u"setFullScreen 1"_s});
        row("window full 0", {u"setFullScreen 0"_s});
        row("window login 1", {u"setLoginItem 1"_s});
        row("window other 1", {});
        row("update 1.2|notes", {u"showOverlay 45"_s});
        row("update \t|notes", {});
        row("relaunch", {u"relaunch"_s});
        row("earreset", {u"listen"_s});
        row("ears off", {u"stop"_s});
        row("ears off ", {});
        row("vocab a||b c|", {u"vocabulary a,b c"_s});
    }

    void requestsReachTheRoomsAbove()
    {
        LinkFixture fixture;
        fixture.ears.on = true;
        fixture.say({QTest::currentDataTag()});
        QTEST(fixture.shell.calls + fixture.ears.calls, "calls");
        fixture.ears.on = false;
        fixture.ears.calls.clear();
        fixture.say({"earreset"});
        QVERIFY(fixture.ears.calls.isEmpty());
    }

    void withoutRoomsAboveNothingHappens()
    {
        LinkFixture fixture;
        fixture->setShell(nullptr);
        fixture->setVoiceInput(nullptr);
        fixture->setScene(nullptr);
        fixture.say({"welcome", "window visual 1", "window show 0", "window full 1",
            "window login 1", "update 1", "relaunch", "earreset", "ears off", "vocab a", "on 60 1",
            "out 60 1", "rollnew x", "rollstop", "access contrast 1"});
        QVERIFY(fixture->contrast);
    }

    void absurdNumbersLeaveNumbers()
    {
        LinkFixture fixture;
        Link &link = fixture.link();
        const QByteArrayList numbers{"9223372036854775807", "-9223372036854775808", "-1", "0",
            "1e308", "-1e308", "99999999999999999999"};
        for (const QByteArray &a : numbers) {
            for (const QByteArray &b : numbers) {
                fixture.say({"say x", "spec 1 new"});
                for (const QByteArray &line : {"word " + a + ' ' + b + ' ' + a, "on " + a + ' ' + b,
                         "out " + a + ' ' + b, "rolln " + a + ',' + b + ',' + a + ',' + b + ',' + a,
                         "rollstart " + a + ' ' + b, "spec " + a + " new",
                         "spec " + a + " 0 " + letters,
                         "spec " + a + ' ' + b + ' ' + letters + letters, "buttons " + a + ' ' + b})
                    link.handle(line);
                const double now = link.uptime() + 0.01;
                link.updateBars(now);
                QVERIFY(
                    std::ranges::all_of(link.bars, [](double bar) { return std::isfinite(bar); }));
                for (const double value :
                    {link.level, link.spokenExact(now), link.glide(link.spokenExact(now), now)})
                    QVERIFY(std::isfinite(value));
                QCOMPARE(link.segmentIndex(link.spokenExact(now)), 0);
            }
        }
    }
};

QTEST_GUILESS_MAIN(InboundTest)
#include "inbound_test.moc"
