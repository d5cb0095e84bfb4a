#include "listen/sound_alike.h"
#include "listen/understanding.h"
#include "listen/wake.h"
#include "support/table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo::engine;
using kelo::test::Table;

class WakeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsNamesFromOtherWords_data()
    {
        const Table<QString, QStringList, QStringList> row{"name", "alike", "different"};
        row("kelo", u"kelo"_s,
            {u"kelo"_s, u"kilo"_s, u"keylow"_s, u"callow"_s, u"keelo"_s, u"kello"_s, u"quello"_s,
                u"gelo"_s},
            {u"hello"_s, u"yellow"_s, u"cello"_s, u"fellow"_s, u"key"_s, u"low"_s, u"kettle"_s,
                u"polo"_s, u"k"_s, u""_s});
        row("phoenix", u"phoenix"_s, {u"fenix"_s, u"finnicks"_s, u"phenix"_s},
            {u"finish"_s, u"phone"_s, u"fix"_s, u"penny"_s});
        row("luna", u"luna"_s, {u"lunar"_s, u"loona"_s, u"lunna"_s},
            {u"tuna"_s, u"moon"_s, u"lunch"_s, u"una"_s});
        row("aria", u"aria"_s, {u"area"_s, u"arya"_s}, {u"air"_s, u"maria"_s, u"are"_s, u"hear"_s});
        row("harmony", u"harmony"_s, {u"harmonie"_s, u"armony"_s, u"hominy"_s},
            {u"money"_s, u"harm"_s, u"many"_s});
    }

    void tellsNamesFromOtherWords()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, alike);
        QFETCH(QStringList, different);
        for (const QString &word : alike)
            QVERIFY2(soundsLike(word.toStdString(), name.toStdString()), qPrintable(word));
        for (const QString &word : different)
            QVERIFY2(!soundsLike(word.toStdString(), name.toStdString()), qPrintable(word));
    }

    void findsTheCommand_data()
    {
        // command: null for none, empty for the name alone
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("command");
        const auto row = [](const char *text, const char *command,
                             const QString &name = u"kelo"_s) {
            QTest::newRow(text) << name << QString::fromUtf8(command);
        };
        row("kelo play song three", "play song three");
        row("Hey Kelo, louder!", "louder");
        row("the hey uh kelo louder", "louder");
        row("so anyway. Kelo, list the songs", "list the songs");
        row("we were talking and kelo list the songs", "list the songs");
        row("kilo stop", "stop");
        row("key low what time is it", "what time is it");
        row("kelo no kelo stop", "stop");
        row("kelo stop kelo", "stop");
        row("kelo", "");
        row("hey kelo", "");
        row("kelo kelo", "");
        row("kelo flurb the wuzzle", "flurb the wuzzle"); // it is asked, and says that it can't
        row("kelo play song three and kilo of apples", "play song three and kilo of apples");
        row("the melody stop", "stop", u"melody"_s);
        row("melody flurb the wuzzle", "flurb the wuzzle", u"melody"_s);
        row("and then hey loona help", "help", u"luna"_s);

        row("a kilo of apples", nullptr);
        row("kilo", nullptr);
        row("hello stop", nullptr);
        row("I like the melody of that tune", nullptr, u"melody"_s);
        row("they sing in harmony", nullptr, u"harmony"_s);
        row("stop", nullptr);
        row("", nullptr);
    }

    void findsTheCommand()
    {
        QFETCH(QString, name);
        QFETCH(QString, command);
        const auto words = wordsOf(QTest::currentDataTag());
        const auto found = findCommand(words, name.toStdString(),
            [](std::span<const Word> rest) { return understand(rest, {}).has_value(); });
        QCOMPARE(found.has_value(), !command.isNull());
        QStringList text;
        for (std::size_t i = 0; found && i < found->count; ++i)
            text << QString::fromStdString(words[found->first + i].text);
        QCOMPARE(text.join(u' '), command);
    }
};

QTEST_APPLESS_MAIN(WakeTest)
#include "wake_test.moc"
