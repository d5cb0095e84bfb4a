#include "app/announcer.h"
#include "app/display_scale.h"
#include "app/login_item.h"
#include "app/overlay.h"
#include "support/link_fixture.h"
#include "support/table.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// The parts of the display that something is announced of.
class Stand {
public:
    Stand()
    {
        QObject::connect(
            &announcer, &Announcer::said, [this](const QString &text) { said += text; });
    }

    QStringList said;
    LinkFixture link;
    QSettings settings{link.folder.filePath(u"stand.ini"_s), QSettings::IniFormat};
    VoiceControl voice;
    WelcomeQuestions questions{link.link(), link.ears};
    DisplayScale scale{settings};
    Overlay overlay{
        {&link.link(), &voice, &scale, &settings, nullptr, [] { return WindowSight::Seen; }}};
    LoginItem login{link.folder.path(), u"/usr/bin/kelo"_s};
    Announcer announcer{{&link.link(), &voice, &questions, &overlay, &login, &scale}};
};

} // namespace

/// What a user of a screen reader is told of all that changes.
class AnnouncerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void announcesWhatChanges_data()
    {
        const Table<QString> row{"said"}; // after a line
        row("mode teach", u"Mode: lesson"_s);
        row("access large 1", u"Larger captions on"_s);
        row("access contrast 1", u"High contrast on"_s);
        row("update 3.2|Notes.", u"New update: version 3.2. Notes."_s);
        row("rollnew Waltz", u"Visualiser open. Playing Waltz"_s);
        row("paused 1", u"Paused"_s);
        row("typing 1", u"Typing: letters go to Kelo as text"_s);
        row("kbd Stage Piano 88", u"Piano connected: Stage Piano 88"_s);
    }

    void announcesWhatChanges()
    {
        QFETCH(const QString, said);
        Stand stand;
        stand.link.say({QTest::currentDataTag()});
        QTRY_VERIFY(!stand.said.isEmpty());
        stand.link.time.advance(1);
        QTRY_COMPARE(stand.said.join(u". "_s), u"Kelo is online. "_s + said);
    }

    void leavesToTheEngineWhatItSpeaksItself()
    {
        Stand stand;
        stand.link.say({"mode teach", "typing 1", "say A lesson.", "paused 1", "kbd Piano"});
        stand.link.time.advance(3);
        QTRY_COMPARE(stand.said, QStringList{u"Kelo is online. Piano connected: Piano"_s});
    }

    void saysNothingThatHoldsAlready()
    {
        Stand stand;
        stand.link.say({"mode idle", "kbd", "paused 0", "access large 0"});
        stand.overlay.setEnabled(true);
        stand.voice.status = u"OFF"_s;
        stand.scale.reset();
        stand.link->engineIs(EngineState::Starting);
        stand.link.say({"say Good evening."});
        QTRY_COMPARE(stand.said, QStringList{u"Kelo is online"_s});

        stand.link.time.advance(2);
        stand.voice.status = u"LISTENING FOR “KELO”"_s;
        stand.overlay.setEnabled(false);
        stand.scale.larger();
        QVERIFY(stand.login.set(true));
        QTRY_COMPARE(stand.said.size(), 2);
        QCOMPARE(stand.said.constLast(),
            u"Voice control: listening for “kelo”. Caption panel off. Size 125 percent"_s);
    }

    void announcesTheQuestionsToReaders()
    {
        Stand stand;
        stand.link.say({"welcome"});
        stand.questions.setAnswers({.reader = true});
        stand.questions.next();
        QTRY_VERIFY(!stand.said.isEmpty());
        QVERIFY(stand.said.constLast().startsWith(u"What should I call you?"_s));
        QVERIFY(stand.said.constLast().contains(u"Return continues."_s));
    }
};

QTEST_MAIN(AnnouncerTest)
#include "announcer_test.moc"
