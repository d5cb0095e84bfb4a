#include "listen/command_page.h"
#include "listen/phrases.h"

#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kelo::engine;

namespace {

const std::vector<SongName> songs{{"Ode to Joy", "Ludwig van Beethoven"},
    {"Minuet in G", "Christian Petzold"}, {"Minuet in D", "Christian Petzold"},
    {"Prelude in C", "Johann Sebastian Bach"}, {"Für Elise", "Ludwig van Beethoven"}};

std::optional<Request> ask(const QByteArray &text)
{
    const auto words = wordsOf({text.data(), static_cast<std::size_t>(text.size())});
    return understand(words, songs);
}

} // namespace

Q_DECLARE_METATYPE(std::optional<Request>)

class PhrasesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void understands_data();
    void understands();
    void understandsWhatSoundsAlike_data();
    void understandsWhatSoundsAlike();
    void leavesTheRestAlone_data();
    void leavesTheRestAlone();
    void everyExampleMeansItsJob();
    void offersWhatFitsTheMode();
    void thePageIsSoundAndTellsEveryJob();
};

void PhrasesTest::understands_data()
{
    QTest::addColumn<std::optional<Request>>("request");
    const auto row = [](const char *text, Request request) {
        QTest::newRow(text) << std::optional(request);
    };
    row("play song three", {Action::PlaySong, 3});
    row("could you please play me song number twelve", {Action::PlaySong, 12});
    row("number two play", {Action::PlaySong, 2});
    row("play song to", {Action::PlaySong, 2});
    row("play song for me", {Action::PlaySong, 4}); // as it sounds
    row("play the minuet in g", {Action::PlaySong, {}, 1});
    row("prelude", {Action::PlaySong, {}, 3});
    row("play some bach", {Action::PlaySong, {}, 3});
    row("ode to joy by beethoven", {Action::PlaySong, {}, 0});
    row("teach me the ode to joy", {Action::Learn, {}, 0});
    row("I want to learn song four", {Action::Learn, 4});
    row("teach me this one", {Action::Learn});
    row("teach me the ode to joy left hand", {Action::Learn, {}, 0, {}, Hands::Left});
    row("learn song two with both hands please", {Action::Learn, 2, {}, {}, Hands::Both});
    row("right hand only", {Action::RightHand});
    row("play", {Action::CarryOn});
    row("metronome at ninety", {Action::Metronome, 90});
    row("ninety on the metronome", {Action::Metronome, 90, {}, true});
    row("metronome", {Action::Metronome});
    row("turn the metronome off", {Action::Metronome, {}, {}, false});
    row("stop the metronome", {Action::Metronome, {}, {}, false});
    row("metronome at one twenty please", {Action::Metronome, 120});
    row("louder", {Action::VoiceLouder});
    row("a bit louder please", {Action::VoiceLouder});
    row("make the band louder", {Action::BandLouder});
    row("turn the band down", {Action::BandQuieter});
    row("slower", {Action::Slower});
    row("not so fast slow down", {Action::Slower});
    row("play a little faster", {Action::Faster});
    row("tempo sixty", {Action::Tempo, 60});
    row("what time is it", {Action::Time});
    row("tell me the time please", {Action::Time});
    row("what day is it today", {Action::Date});
    row("help", {Action::Help});
    row("I need some help", {Action::Help});
    row("stop", {Action::Stop});
    row("stop playing now", {Action::Stop});
    row("stop listening", {Action::StopListening});
    row("stop learning this song", {Action::Drop});
    row("stop the lesson", {Action::Home});
    row("pause", {Action::PauseOrCarryOn});
    row("go on", {Action::CarryOn});
    row("next", {Action::Next});
    row("the next song please", {Action::Next});
    row("previous", {Action::Previous});
    row("go back", {Action::Previous});
    row("repeat", {Action::Again});
    row("play it again", {Action::Again});
    row("say that again", {Action::Again});
    row("note names", {Action::NoteNames});
    row("what notes are those", {Action::NoteNames});
    row("right hand only", {Action::RightHand});
    row("only my left hand", {Action::LeftHand});
    row("both hands", {Action::BothHands});
    row("large captions on", {Action::LargeCaptions, {}, {}, true});
    row("switch off the large captions", {Action::LargeCaptions, {}, {}, false});
    row("high contrast off", {Action::HighContrast, {}, {}, false});
    row("what can I say", {Action::WhatCanISay});
    row("what can you do", {Action::WhatCanISay});
    row("list the songs", {Action::ListSongs});
    row("which pieces do you know", {Action::ListSongs});
    row("how many songs are there", {Action::CountSongs});
    row("song menu", {Action::OpenMenu});
    row("ear training", {Action::EarTraining});
    row("start the live band", {Action::Band});
    row("band off", {Action::Band, {}, {}, false});
    row("full band", {Action::BandFull});
    row("change the voice", {Action::ChangeVoice});
    row("talk mode", {Action::TalkMode});
    row("keep what i just played", {Action::Keep});
    row("open the command page", {Action::CommandPage});
    // What the display's buttons ask for.
    row("play me something", {Action::MakeUp});
    row("surprise me", {Action::MakeUp});
    row("play my album", {Action::Album});
    row("jam with me", {Action::Jam});
    row("good morning", {Action::Greet});
    row("play fur elise", {Action::PlaySong, {}, 4});
    row("make it a lullaby", {Action::Compose});
    row("make it a video game", {Action::Compose});
    row("make it epic", {Action::Compose});
    row("install the natural voice", {Action::NaturalVoice});
    row("what's the weather", {Action::World});
}

void PhrasesTest::understands()
{
    QFETCH(std::optional<Request>, request);
    const auto asked = ask(QTest::currentDataTag());
    QVERIFY(asked.has_value());
    QCOMPARE(static_cast<int>(asked->action), static_cast<int>(request->action));
    QCOMPARE(asked->number.value_or(-1), request->number.value_or(-1));
    QCOMPARE(
        static_cast<int>(asked->song.value_or(99)), static_cast<int>(request->song.value_or(99)));
    QCOMPARE(asked->on ? *asked->on : -1, request->on ? *request->on : -1);
}

void PhrasesTest::understandsWhatSoundsAlike_data()
{
    QTest::addColumn<QByteArray>("meant"); // nothing: it is not to be guessed
    const auto row = [](const char *heard, const char *meant) {
        QTest::newRow(heard) << QByteArray(meant);
    };
    row("repeet", "repeat");
    row("reap eat", "repeat");
    row("metro gnome at ninety", "metronome at ninety");
    row("play for a lease", "play fur elise");
    row("teach me the owed to joy", "teach me the ode to joy");
    row("play the minute in g", "play the minuet in g");
    row("you training", "ear training");
    row("south", "");
    row("you", "");
    row("is clear", "");
    row("a failed", "");
}

void PhrasesTest::understandsWhatSoundsAlike()
{
    QFETCH(QByteArray, meant);
    const auto asked = understandKindly(wordsOf(QTest::currentDataTag()), songs);
    QVERIFY2(asked == ask(meant), asked ? "something else" : "nothing");
}

void PhrasesTest::leavesTheRestAlone_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"", "please", "of apples for the cake", "the of and", "on",
             "is what they called the boat in the harbour", "seven",
             "time flies like an arrow over there",
             "he said the next bus would stop near the river bank", "minuet"})
        QTest::newRow(*text ? text : "nothing") << QByteArray(text);
}

void PhrasesTest::leavesTheRestAlone()
{
    QFETCH(QByteArray, text);
    QVERIFY(!ask(text));
}

void PhrasesTest::everyExampleMeansItsJob()
{
    for (const JobGroup &group : jobGroups()) {
        for (const Job &job : group.jobs) {
            for (const Phrase &phrase : job.phrases) {
                QByteArray text(
                    phrase.example.data(), static_cast<qsizetype>(phrase.example.size()));
                text.replace("#", "three").replace("@", "prelude in c");
                if (text.isEmpty())
                    continue;
                const auto asked = ask(text);
                QVERIFY2(asked && asked->action == job.action, text);
                QVERIFY2(phrase.example.find('#') == std::string_view::npos || asked->number, text);
            }
        }
    }
}

void PhrasesTest::offersWhatFitsTheMode()
{
    const auto offers = [](unsigned where, std::string_view phrase) {
        const auto all = vocabulary(where, songs);
        return std::ranges::count(all, phrase) == 1;
    };
    QVERIFY(offers(InMenu, "play Minuet in G"));
    QVERIFY(offers(InMenu, "play song ten"));
    QVERIFY(offers(InLesson, "right hand"));
    QVERIFY(!offers(InMenu, "right hand"));
    QVERIFY(offers(InTalk, "stop"));
    const std::vector<SongName> odd(1000, {"A|B", ""});
    for (const std::string &phrase : vocabulary(Everywhere, odd))
        QVERIFY(!phrase.empty() && phrase.find('|') == std::string::npos);
    QVERIFY(vocabulary(Everywhere, odd).size() < 200);
}

void PhrasesTest::thePageIsSoundAndTellsEveryJob()
{
    const std::string page = commandPage("<Ann & Co>");
    QString html = QString::fromStdString(page);
    html.replace(u"<meta charset=\"utf-8\">"_s, QString())
        .replace(u"<br>"_s, u"<br/>"_s)
        .remove(u"<!DOCTYPE html>\n"_s);
    QXmlStreamReader reader(html);
    int rows = 0;
    QStringList kinds;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            rows += reader.name() == u"tr";
            kinds << reader.name().toString();
        }
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    int jobs = 0;
    int shown = 0;
    for (const JobGroup &group : jobGroups()) {
        shown += !group.title.empty();
        for (const Job &job : group.jobs)
            jobs += !group.title.empty() && !job.meaning.empty();
    }
    QCOMPARE(rows, jobs + shown); // and a heading each
    QVERIFY(page.find("metronome at ninety") != std::string::npos);
    QVERIFY(page.find('@') == std::string::npos || page.find("@media") != std::string::npos);
}

QTEST_APPLESS_MAIN(PhrasesTest)
#include "phrases_test.moc"
