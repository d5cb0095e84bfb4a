#include "hud/command_table.h"
#include "rig.h"
#include "support/files.h"

#include <QRegularExpression>
#include <QTest>

#include <map>

using namespace Qt::StringLiterals;

namespace {

/// commands.txt: how to get into each mode, and what must follow each input there.
struct Promises {
    std::map<QString, QStringList> ways; ///< into a mode
    std::map<std::pair<QString, QString>, QStringList> effects; ///< by mode ("*": any) and input
};

QStringList stepsOf(const QString &text)
{
    QStringList steps;
    for (const QString &step : text.split(u';', Qt::SkipEmptyParts))
        steps << step.trimmed();
    return steps;
}

const Promises &promises()
{
    static const Promises all = [] {
        Promises read;
        const QString file = QFINDTESTDATA("commands.txt");
        const QString text = QString::fromUtf8(kelo::test::readFile(file));
        for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts)) {
            if (line.startsWith(u"= ")) {
                const QString mode = line.mid(2).section(u' ', 0, 0);
                read.ways[mode] = stepsOf(line.mid(2 + mode.size()));
            } else if (!line.startsWith(u'#')) {
                const QStringList parts = line.split(u" | "_s);
                read.effects[{parts.value(0), parts.value(1)}] = stepsOf(parts.value(2));
            }
        }
        return read;
    }();
    return all;
}

/// The input of the table for what a command of the display sends.
QString inputOf(QString send)
{
    if (send.startsWith(u'~'))
        return send.trimmed();
    return send.replace(u"\n"_s, u"\\n"_s)
        .replace(u" "_s, u"\\s"_s)
        .replace(u"\x1b"_s, u"\\e"_s)
        .replace(u"\x7f"_s, u"\\x7f"_s);
}

QStringList inputsIn(const QString &mode)
{
    QStringList inputs;
    for (const kelo::CommandGroup &group : kelo::commandGroups() + QList{kelo::practiceGroup()}) {
        for (const kelo::Command &command : group.commands) {
            if (!command.send.startsWith(u'#') && command.listed(mode))
                inputs << inputOf(command.send);
        }
    }
    for (int key = 1; key <= kelo::buttonJobs(mode).size(); ++key)
        inputs << u"top %1"_s.arg(key);
    return inputs;
}

} // namespace

/// Whether every command of the display does what it says, in every mode that lists it.
class CommandsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsItsPromise_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("input");
        for (const auto &[mode, way] : promises().ways) {
            if (mode == u"all")
                continue;
            for (const QString &input : inputsIn(mode))
                QTest::newRow(qPrintable(mode + u": "_s + input)) << mode << input;
        }
    }

    void keepsItsPromise()
    {
        QFETCH(QString, mode);
        QFETCH(QString, input);
        auto effect = promises().effects.find({mode, input});
        if (effect == promises().effects.end())
            effect = promises().effects.find({u"*"_s, input});
        QVERIFY2(effect != promises().effects.end(), "nobody says what this does");
        Rig rig;
        rig.start();
        QStringList steps = promises().ways.at(u"all"_s) + promises().ways.at(mode);
        const QString failure = failureOf(rig, steps << u"mode "_s + mode);
        const qsizetype before = rig.lines.size();
        steps = effect->second;
        steps.prepend(input.startsWith(u"top") ? input : u"> "_s + input);
        QCOMPARE(failure + failureOf(rig, steps), QString());
        const auto name = QString::fromUtf8(QTest::currentDataTag());
        QCOMPARE(promises_.unlikeKept(name, rig, before), QString());
    }

private:
    KeptEvenings promises_{QFINDTESTDATA("promises.txt")};
};

QTEST_GUILESS_MAIN(CommandsTest)
#include "commands_test.moc"
