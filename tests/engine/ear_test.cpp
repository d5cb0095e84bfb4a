#include "listen/ear.h"
#include "listen/understanding.h"
#include "sums.h"
#include "support/table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

namespace {

/// A line from the microphone: when it comes, whether final, what the assistant is saying.
struct Line {
    double at;
    QString words;
    bool final = false;
    const char *saying = nullptr;
};

bool isCommand(std::span<const Word> words)
{
    return understand(words, {}).has_value();
}

/// What is heard of the lines, "time: command" each, by the ear's own deadlines.
QStringList heard(Ear &ear, const QList<Line> &lines)
{
    QStringList all;
    const auto note = [&](const std::optional<std::string> &command, double at) {
        if (command)
            all << u"%1: %2"_s.arg(at, 0, 'f', 1).arg(QString::fromStdString(*command));
    };
    const auto expireUntil = [&](double time) {
        while (ear.deadline() && *ear.deadline() <= time) {
            const double due = *ear.deadline();
            note(ear.expire(due), due);
        }
    };
    for (const Line &line : lines) {
        expireUntil(line.at);
        std::optional<Ear::Saying> saying;
        if (line.saying)
            saying.emplace(line.saying, QLatin1StringView(line.saying).endsWith(u'?'));
        note(ear.hear(line.final, line.words.toStdString(), saying, line.at), line.at);
    }
    expireUntil(1e9);
    return all;
}

} // namespace

Q_DECLARE_METATYPE(QList<Line>)

class EarTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hearsEachCommandOnce_data()
    {
        const Table<QList<Line>, QStringList> row{"lines", "commands"};
        row("waits for words that are still coming",
            {{0, u"kelo"_s}, {0.3, u"kelo play"_s}, {0.9, u"kelo play song"_s},
                {1.5, u"kelo play song three"_s}},
            {u"2.2: play song three"_s});
        row("the same words again are no change",
            {{0, u"kelo stop"_s}, {0.3, u"kelo stop"_s}, {0.6, u"Kelo, stop."_s}},
            {u"0.7: stop"_s});
        row("a final one needs no waiting", {{0, u"kelo"_s}, {0.2, u"kelo help"_s, true}},
            {u"0.2: help"_s});
        row("the final after the silence is old news",
            {{0, u"kelo help"_s}, {1.2, u"kelo help"_s, true}, {20, u"kelo"_s}},
            {u"0.7: help"_s, u"20.7: "_s});
        row("a session that goes on repeats nothing",
            {{0, u"kelo play"_s}, {1.0, u"kelo play song three"_s},
                {1.9, u"kelo play song three"_s, true}},
            {u"0.7: play"_s});
        row("words that mean nothing wait for better ones",
            {{0, u"kelo please top"_s}, {0.8, u"kelo please stop"_s},
                {1.3, u"kelo please stop it"_s, true}, {20, u"kelo high"_s},
                {20.2, u"kelo high kelo you to"_s}},
            {u"1.3: please stop it"_s, u"22.5: high"_s});
        row("words that change their minds repeat nothing",
            {{0, u"kelo stop"_s}, {0.8, u"kelo stop"_s}, {1.3, u"kelo stop it"_s, true}},
            {u"0.7: stop"_s});
        row("but a second command in it counts",
            {{0, u"kelo louder"_s}, {1.4, u"kelo louder kelo"_s},
                {1.6, u"kelo louder kelo help"_s}},
            {u"0.7: louder"_s, u"2.3: help"_s});
        row("the same command twice in fresh sessions counts twice",
            {{0, u"kelo louder"_s}, {1.0, u"kelo"_s}, {1.2, u"kelo louder"_s, true},
                {2.0, u"kelo"_s}, {2.3, u"kelo louder"_s, true}},
            {u"0.7: louder"_s, u"1.2: louder"_s, u"2.3: louder"_s});
        row("talk without the name", {{0, u"so i said stop"_s}, {1, u"so i said stop it"_s, true}},
            {});
        row("the name that was only misheard for a moment",
            {{0, u"kelo"_s}, {0.3, u"hello there"_s}, {2, u"hello there"_s, true}}, {});
        row("its own voice",
            {{0, u"kelo play song three"_s, false, "Say Kelo, play song three, or stop."},
                {1, u"kelo play song three says"_s, true, "Say Kelo, play song three, or stop."}},
            {});
        row("its own voice, after it has ended",
            {{0, u"say kelo help"_s, false, "Say Kelo, help."}, {1.0, u"say kelo help"_s},
                {1.5, u"say kelo help"_s, true}},
            {});
        row("stop cuts in at once",
            {{0, u"the third note"_s, false, "The third note is C."},
                {0.4, u"the third note kelo stop"_s, false, "The third note is C."},
                {0.6, u"the third note kelo stop"_s}},
            {u"0.4: stop"_s});
        row("a command over what it says",
            {{0, u"the third"_s, false, "The third note is C."},
                {0.3, u"the third kelo"_s, false, "The third note is C."},
                {0.6, u"the third kelo louder"_s, false, "The third note is C."},
                {1.2, u"the third kelo louder please"_s}},
            {u"1.9: louder please"_s});
        row("the name alone, or half of a command, over what it says",
            {{0, u"kelo"_s, true, "One."}, {20, u"kelo next week"_s, true, "Two."}}, {});
        row("an answer over the question",
            {{0, u"yes"_s, false, "Yes?"}, {0.2, u"yes"_s, true, "Yes?"},
                {2, u"song"_s, false, "Yes?"}, {2.4, u"song three"_s, true, "Yes?"}},
            {u"2.4: song three"_s});
        row("a command that follows its own voice",
            {{0, u"the third note"_s, false, "The third note is C."},
                {1.0, u"the third note kelo"_s}, {1.3, u"the third note kelo next"_s, true}},
            {u"1.3: next"_s});
        row("nothing at all", {{0, u""_s}, {1, u""_s, true}, {2, u"  . "_s, true}}, {});
    }

    void hearsEachCommandOnce()
    {
        QFETCH(QList<Line>, lines);
        QFETCH(QStringList, commands);
        Ear ear(isCommand, isCommand);
        QCOMPARE(heard(ear, lines), commands);
    }

    void hearsTheSameEachTime()
    {
        const QByteArrayList words = QByteArray(
            "kelo kelo kilo stop stop louder help play song three the um key low hey and")
                                         .split(' ');
        Chance chance(1);
        QByteArray all;
        for (int session = 0; session < 300; ++session) {
            Ear ear(isCommand, isCommand);
            ear.setOpen(session % 5 == 0);
            QList<Line> lines;
            QByteArrayList said;
            double now = 0;
            for (int i = 0; i < 8; ++i) {
                now += 0.1 * (1 + chance.below(chance.oneIn(6) ? 100 : 9));
                if (chance.oneIn(4))
                    said.clear();
                if (chance.oneIn(6) && !said.isEmpty())
                    said.removeLast();
                said << chance.of(words);
                lines << Line{now, QString::fromUtf8(said.join(' ')), chance.oneIn(3),
                    chance.oneIn(4) ? "Song three?" : nullptr};
            }
            if (session % 3 == 0)
                ear.expectAnswer(now / 2);
            all += heard(ear, lines).join(u' ').toUtf8() + (ear.takeOverheard() ? "!\n" : "\n");
        }
        QCOMPARE(unlikeKept(u"ear"_s, {qChecksum(all)}), QString());
    }

    void needsNoNameWhenAsked()
    {
        Ear ear(isCommand, isCommand);
        ear.expectAnswer(0);
        QCOMPARE(heard(ear, {{1, u"song"_s}, {1.3, u"song three"_s, true}, {3, u"louder"_s, true}}),
            QStringList({u"1.3: song three"_s})); // one answer
        ear.expectAnswer(10);
        QCOMPARE(heard(ear, {{19, u"louder"_s, true}}), QStringList());
        ear.setOpen(true);
        QCOMPARE(heard(ear, {{30, u"louder"_s, true}, {40, u"kelo louder"_s, true}}),
            QStringList({u"30.0: louder"_s, u"40.0: louder"_s}));
    }
};

QTEST_APPLESS_MAIN(EarTest)
#include "ear_test.moc"
