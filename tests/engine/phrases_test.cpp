#include "listen/command_page.h"
#include "listen/understanding.h"
#include "support/table.h"

#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

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

Q_DECLARE_METATYPE(Request)

class PhrasesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void understands_data()
    {
        // The examples of the jobs themselves have a test below.
        const Table<Request> row{"request"};
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
        row("turn the metronome off", {Action::Metronome, {}, {}, false});
        row("metronome at one twenty please", {Action::Metronome, 120});
        row("make the band louder", {Action::BandLouder});
        row("turn the band down", {Action::BandQuieter});
        row("not so fast slow down", {Action::Slower});
        row("play a little faster", {Action::Faster});
        row("tell me the time please", {Action::Time});
        row("what day is it today", {Action::Date});
        row("stop playing now", {Action::Stop});
        row("stop learning this song", {Action::Drop});
        row("stop the lesson", {Action::Home});
        row("pause", {Action::PauseOrCarryOn});
        row("go on", {Action::CarryOn});
        row("the next song please", {Action::Next});
        row("say that again", {Action::Again});
        row("what notes are those", {Action::NoteNames});
        row("right hand only", {Action::RightHand});
        row("only my left hand", {Action::LeftHand});
        row("high contrast off", {Action::HighContrast, {}, {}, false});
        row("what can you do", {Action::WhatCanISay});
        row("which pieces do you know", {Action::ListSongs});
        row("start the live band", {Action::Band});
        row("band off", {Action::Band, {}, {}, false});
        row("keep what i just played", {Action::Keep});
        row("open the command page", {Action::CommandPage});
        // What the display's buttons ask for.
        row("play me something", {Action::MakeUp});
        row("play fur elise", {Action::PlaySong, {}, 4});
        row("make it a video game", {Action::Compose});
        row("make it epic", {Action::Compose});
    }

    void understands()
    {
        QFETCH(Request, request);
        QVERIFY(ask(QTest::currentDataTag()) == request);
    }

    void understandsWhatSoundsAlike_data()
    {
        // meant: nothing where it is not to be guessed
        const Table<QByteArray> row{"meant"};
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
    }

    void understandsWhatSoundsAlike()
    {
        QFETCH(QByteArray, meant);
        const auto asked = understandKindly(wordsOf(QTest::currentDataTag()), songs);
        QVERIFY2(asked == ask(meant), asked ? "something else" : "nothing");
    }

    void leavesTheRestAlone_data()
    {
        const Table<QByteArray> row{"text"};
        for (const char *text : {"", "please", "of apples for the cake", "the of and", "on",
                 "is what they called the boat in the harbour", "seven",
                 "time flies like an arrow over there",
                 "he said the next bus would stop near the river bank", "minuet"})
            row(*text ? text : "nothing", QByteArray(text));
    }

    void leavesTheRestAlone()
    {
        QFETCH(QByteArray, text);
        QVERIFY(!ask(text));
    }

    void everyExampleMeansItsJob()
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
                    QVERIFY2(
                        phrase.example.find('#') == std::string_view::npos || asked->number, text);
                }
            }
        }
    }

    void offersWhatFitsTheMode()
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

    void thePageIsSoundAndTellsEveryJob()
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
};

QTEST_APPLESS_MAIN(PhrasesTest)
#include "phrases_test.moc"
