#include "voice/scripted.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// The rules by which voice control is switched on and off, sessions replace each other and words
/// reach the engine.
class SessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void turningOn_data()
    {
        struct Case {
            const char *name;
            std::function<void(VoiceFixture &)> prepare;
            QString status;
            bool on;
            QStringList log;
            QStringList events;
        };
        const QStringList allowed{u"turning on"_s, u"speech recognition permission: allowed"_s,
            u"microphone permission: allowed"_s};
        const QStringList found = allowed + QStringList{u"microphones found: Desk Mic"_s};
        const Case cases[] = {
            {"all well", [](auto &) {}, u"LISTENING FOR “KELO”"_s, true,
                found + QStringList{u"using microphone: Desk Mic"_s},
                {u"open desk"_s, u"start 0"_s}},
            {"no speech", [](auto &f) { f.permissions->speech = false; }, u"SPEECH NOT ALLOWED"_s,
                false, {u"turning on"_s, u"speech recognition permission: not allowed"_s}, {}},
            {"no hearing", [](auto &f) { f.permissions->hearing = false; },
                u"MICROPHONE NOT ALLOWED"_s, false,
                allowed.first(2) + QStringList{u"microphone permission: not allowed"_s}, {}},
            {"no microphone", [](auto &f) { f.microphone->devices.clear(); }, u"NO MICROPHONE"_s,
                true,
                allowed
                    + QStringList{u"microphones found: none"_s, u"could not open any microphone"_s},
                {}},
            {"no input", [](auto &f) { f.microphone->opening = Microphone::Opening::NoInput; },
                u"NO MICROPHONE"_s, true, found + QStringList{u"could not open any microphone"_s},
                {}},
            {"not attached",
                [](auto &f) { f.microphone->opening = Microphone::Opening::NotAttached; },
                u"NO MICROPHONE"_s, true, found + QStringList{u"could not attach Desk Mic"_s}, {}},
            {"no recogniser", [](auto &f) { f.recogniser->available = false; },
                u"RECOGNISER UNAVAILABLE"_s, true,
                found
                    + QStringList{u"using microphone: Desk Mic"_s,
                        u"the speech recogniser is not available"_s},
                {u"open desk"_s}},
            {"another name", [](auto &f) { f.link->handle("name Zoë"); }, u"LISTENING FOR “ZOË”"_s,
                true, found + QStringList{u"using microphone: Desk Mic"_s},
                {u"open desk"_s, u"start 0"_s}},
        };
        QTest::addColumn<std::function<void(VoiceFixture &)>>("prepare");
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("on");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QStringList>("events");
        for (const Case &c : cases)
            QTest::newRow(c.name) << c.prepare << c.status << c.on << c.log << c.events;
    }

    void turningOn()
    {
        QFETCH(std::function<void(VoiceFixture &)>, prepare);
        VoiceFixture voice;
        prepare(voice);
        QStringList told;
        QObject::connect(voice.voice.get(), &VoiceControl::statusChanged, this,
            [&] { told.append(voice->status); });
        QCOMPARE(voice->status.get(), u"OFF"_s);
        voice->begin();
        QCOMPARE(told.first(), u"ASKING PERMISSION"_s);
        QTEST(voice->status.get(), "status");
        QTEST(voice->on.get(), "on");
        QTEST(voice.logged(), "log");
        QTEST(voice.events, "events");
        QCOMPARE(voice.setting().toBool(), voice->on.get());
        QCOMPARE(voice.sent(), QStringList());
    }

    void answersFromAnotherThread()
    {
        VoiceFixture voice;
        voice.permissions->fromAnotherThread = true;
        QObject::connect(voice.voice.get(), &VoiceControl::statusChanged, voice.voice.get(),
            [] { QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread()); });
        voice->begin();
        QCOMPARE(voice->status.get(), u"ASKING PERMISSION"_s);
        QTRY_COMPARE(voice->status.get(), u"LISTENING FOR “KELO”"_s);
        voice->stop();
        voice->begin();
        voice->stop(); // the answers that come now are not wanted any more
        QTest::qWait(50);
        QCOMPARE(voice->status.get(), u"OFF"_s);
        QVERIFY(!voice->on && !voice.setting().toBool());
    }

    void prefersBuiltInMicrophones_data()
    {
        QTest::addColumn<QList<MicrophoneDevice>>("devices");
        QTest::addColumn<QString>("chosen");
        const MicrophoneDevice usb{u"usb"_s, u"USB Mic"_s, false, false};
        const MicrophoneDevice phone{u"phone"_s, u"Phone"_s, false, true};
        const MicrophoneDevice book{u"book"_s, u"Ann's MacBook Pro"_s, false, false};
        const MicrophoneDevice inner{u"inner"_s, u"Internal"_s, true, false};
        using Devices = QList<MicrophoneDevice>;
        QTest::newRow("built in") << Devices{usb, phone, book, inner} << u"inner"_s;
        QTest::newRow("named after the computer") << Devices{usb, phone, book} << u"book"_s;
        QTest::newRow("the default") << Devices{usb, phone} << u"phone"_s;
        QTest::newRow("any") << Devices{usb} << u"usb"_s;
    }

    void prefersBuiltInMicrophones()
    {
        QFETCH(QList<MicrophoneDevice>, devices);
        VoiceFixture voice;
        voice.microphone->devices = devices;
        voice->begin();
        QTEST(voice.microphone->openDevice, "chosen");
    }

    void withoutOnDeviceSpeechItSaysSoAndStops()
    {
        VoiceFixture voice;
        voice.recogniser->onDevice = false;
        voice->begin();
        QCOMPARE(voice->status.get(), u"OFF"_s);
        QVERIFY(!voice->on && !voice.microphone->isOpen());
        QCOMPARE(voice.setting().toBool(), false);
        QCOMPARE(voice.sent(),
            QStringList{u"~speak I can't listen yet. This Mac hasn't set up speech recognition "
                        u"that stays on "
                        "the Mac. Turn on Dictation in System Settings, under Keyboard, wait a "
                        "minute for it "
                        "to download, then switch my listening back on."_s});
        QCOMPARE(voice.logged().last(2),
            (QStringList{
                u"on-device recognition is not available: not listening"_s, u"turned off"_s}));
        voice.link.time.advance(100);
        QCOMPARE(voice.sent(), QStringList());
        QCOMPARE(voice.events, (QStringList{u"open desk"_s, u"close"_s}));
    }

    void stopsInOrder()
    {
        VoiceFixture voice;
        voice->begin();
        voice.microphone->hear({{}, QByteArray(640, '\x40')});
        QVERIFY(voice->level > 0);
        voice.logged();
        voice.events.clear();
        voice->toggle();
        QCOMPARE(voice.events, (QStringList{u"cancel 0"_s, u"end 0"_s, u"close"_s}));
        QCOMPARE(voice->status.get(), u"OFF"_s);
        QCOMPARE(voice->level.get(), 0.0);
        QCOMPARE(voice.setting(), QVariant(u"false"_s));
        QCOMPARE(voice.logged(), QStringList{u"turned off"_s});
        voice->listen();
        voice->startOver();
        voice.link.time.advance(100);
        QCOMPARE(voice.events.size(), 3);
        voice->toggle();
        QVERIFY(voice->on);
    }

    void resumesOnlyIfWanted()
    {
        VoiceFixture voice;
        voice->resumeIfWanted();
        QCOMPARE(voice->status.get(), u"OFF"_s);
        QSettings(voice.link.settingsFile, QSettings::IniFormat).setValue("voice", true);
        voice->resumeIfWanted();
        QVERIFY(voice->on);
    }

    void comesBackWithTheMicrophone()
    {
        VoiceFixture voice;
        voice->begin();
        const auto devices = voice.microphone->devices;
        voice.logged();
        voice.events.clear();
        voice.microphone->pull();
        QCOMPARE(voice->status.get(), u"NO MICROPHONE"_s);
        QVERIFY(voice->on);
        voice->listen(); // the engine may still ask
        voice.link.time.advance(60);
        QCOMPARE(voice.events, (QStringList{u"cancel 0"_s, u"end 0"_s}));
        QCOMPARE(voice->status.get(), u"NO MICROPHONE"_s);
        QCOMPARE(voice.logged(), QStringList{u"lost the microphone: Desk Mic"_s});

        voice.microphone->devices = devices;
        voice.link.time.advance(1);
        QCOMPARE(voice->status.get(), u"LISTENING FOR “KELO”"_s);
        QCOMPARE(voice.logged(), QStringList{u"using microphone: Desk Mic"_s});
        voice.link.time.advance(40); // the watchdog is back too
        QCOMPARE(voice.events.last(), u"start 2"_s);

        voice.microphone->pull();
        voice->stop();
        voice.microphone->devices = devices;
        voice.link.time.advance(10);
        QVERIFY(!voice.microphone->isOpen());
    }

    void handsWordsOn_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("sent");
        QTest::newRow("as they are")
            << u"Kelo, play  me «Für Elise»! "_s << u"Kelo, play  me «Für Elise»! "_s;
        QTest::newRow("none") << QString() << QString();
        QTest::newRow("no second line") << u"a\nb\r\nc\td\u0000e\u001ff"_s << u"abcdef"_s;
        QTest::newRow("no second command") << u"stop~quit"_s << u"stopquit"_s;
        QTest::newRow("delete is no control here") << u"a\u007fb"_s << u"a\u007fb"_s;
        QTest::newRow("beyond the basic plane") << u"\U0001D11E\n~"_s << u"\U0001D11E"_s;
        QTest::newRow("the end of much")
            << QString(400, u'a') + QString(600, u'b') << QString(600, u'b');
        QTest::newRow("just enough") << QString(600, u'b') << QString(600, u'b');
        QTest::newRow("counted when clean")
            << QString(500, u'a') + QString(100, u'~') << QString(500, u'a');
        const QString family = u"👩‍👩‍👧"_s;
        const QString accented = u"e\u0301"_s;
        QTest::newRow("as a reader counts") << u"x"_s + accented.repeated(300)
                + family.repeated(300) << accented.repeated(300) + family.repeated(300);
        QTest::newRow("a cut never splits")
            << u"é"_s + family.repeated(600) << family.repeated(600);
    }

    void handsWordsOn()
    {
        QFETCH(QString, words);
        QFETCH(QString, sent);
        VoiceFixture voice;
        voice->begin();
        voice.recogniser->say(words);
        voice.recogniser->say(words); // also when nothing is new
        voice.recogniser->say(words, true);
        QCOMPARE(voice.sent(),
            (QStringList{u"~ear 0 "_s + sent, u"~ear 0 "_s + sent, u"~ear 1 "_s + sent}));
    }

    void dropsWordsWhileTheUserTypes()
    {
        VoiceFixture voice;
        voice->begin();
        voice.link->handle("typing 1");
        voice.recogniser->say(u"play"_s);
        voice.recogniser->say(u"play it"_s, true);
        voice.link->handle("typing 0");
        QCOMPARE(voice.sent(), QStringList());
        voice.link.time.advance(0.5);
        QCOMPARE(voice.events.last(), u"start 1"_s);
        QCOMPARE(voice.sent(), QStringList()); // nor later
    }

    void renewsOnceAfterTheEnd()
    {
        VoiceFixture voice;
        voice->begin();
        voice.recogniser->say(u"partly"_s);
        voice.link.time.advance(1);
        QCOMPARE(voice.events.last(), u"start 0"_s);
        voice.recogniser->handlers.back()(
            Transcript{u"done"_s, true}, RecogniserError{u"d"_s, 1, {}});
        voice.link.time.advance(0.39);
        QCOMPARE(voice.events.last(), u"start 0"_s);
        voice.link.time.advance(0.02);
        QCOMPARE(voice.events.last(3), (QStringList{u"cancel 0"_s, u"end 0"_s, u"start 1"_s}));
        voice.link.time.advance(5);
        QCOMPARE(voice.recogniser->handlers.size(), 2U);

        // Replaced in the meantime, the pending renewal has nothing to do.
        voice.recogniser->say(u"done"_s, true);
        voice.link.time.advance(0.2);
        voice->listen();
        voice.link.time.advance(5);
        QCOMPARE(voice.recogniser->handlers.size(), 3U);

        voice.recogniser->say(u"done"_s, true);
        voice->stop();
        voice.link.time.advance(5);
        QCOMPARE(voice.recogniser->handlers.size(), 3U);
    }

    void ignoresStaleSessions()
    {
        VoiceFixture voice;
        voice->begin();
        voice->listen();
        voice.recogniser->say(0, u"old"_s, true);
        voice.recogniser->handlers.front()(std::nullopt, RecogniserError{u"old"_s, 7, {}});
        voice.recogniser->handlers.back()(std::nullopt, std::nullopt);
        voice.link.time.advance(1);
        QCOMPARE(voice.sent(), QStringList());
        QCOMPARE(voice.logged().filter(u"error"_s), QStringList());
        QCOMPARE(voice.recogniser->handlers.size(), 2U);
        voice->stop();
        voice.recogniser->say(u"too late"_s);
        QCOMPARE(voice.sent(), QStringList());
        voice->begin();
        voice.recogniser->say(1, u"before it was off"_s, false);
        QCOMPARE(voice.sent(), QStringList());
    }

    void logsUnexpectedErrorsOnly_data()
    {
        QTest::addColumn<QString>("domain");
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("logged");
        for (const int code : {203, 216, 301, 1110}) {
            QTest::addRow("expected %d", code) << u"kAFAssistantErrorDomain"_s << code << false;
            QTest::addRow("elsewhere %d", code) << u"kLSRErrorDomain"_s << code << true;
        }
        QTest::newRow("another code") << u"kAFAssistantErrorDomain"_s << 1101 << true;
    }

    void logsUnexpectedErrorsOnly()
    {
        QFETCH(QString, domain);
        QFETCH(int, code);
        QFETCH(bool, logged);
        VoiceFixture voice;
        voice->begin();
        voice.logged();
        voice.recogniser->fail(domain, code);
        const QString line = u"recogniser error %1 %2: it broke"_s.arg(domain).arg(code);
        QCOMPARE(voice.logged(), logged ? QStringList{line} : QStringList());
        QVERIFY(voice->on);
        voice.link.time.advance(0.5);
        QCOMPARE(voice.events.last(), u"start 1"_s);
    }

    void watchdogBarksOnlyInQuiet()
    {
        VoiceFixture voice;
        const auto sessions = [&] { return voice.recogniser->handlers.size(); };
        voice->begin();
        voice.link.time.advance(39.9);
        QCOMPARE(sessions(), 1U);
        voice.link.time.advance(0.2); // 40: quiet
        QCOMPARE(sessions(), 2U);
        voice.link.time.advance(34);
        voice.recogniser->say(u"hm"_s);
        voice.link.time.advance(6); // 80: words 5.9 s ago
        QCOMPARE(sessions(), 2U);
        voice.link.time.advance(33.8);
        voice.recogniser->say(u"hm"_s); // nothing new
        voice.link.time.advance(6.2); // 120
        QCOMPARE(sessions(), 3U);
        voice.link->handle("say x");
        voice.link.time.advance(40); // 160: the assistant speaks
        QCOMPARE(sessions(), 3U);
        voice.link->handle("done");
        voice.link.time.advance(40);
        QCOMPARE(sessions(), 4U);
        voice->begin(); // on already: starts over, and its 40 seconds too
        QCOMPARE(sessions(), 5U);
        voice.link.time.advance(39.9);
        QCOMPARE(sessions(), 5U);
        voice.link.time.advance(0.2);
        QCOMPARE(sessions(), 6U);
    }

    void expectsTheRightPhrases()
    {
        VoiceFixture voice;
        voice.link->handle("name Luna");
        voice->begin();
        QCOMPARE(voice.recogniser->requests.last().contextualStrings,
            (QStringList{u"Luna"_s, u"Hey Luna"_s, u"composition"_s, u"metronome"_s, u"REAPER"_s,
                u"Clair de Lune"_s, u"ear training"_s, u"jazz lesson"_s}));
        voice->setVocabulary({u"one"_s, u"two three"_s});
        QCOMPARE(voice.recogniser->handlers.size(), 1U); // not before the next session
        voice->startOver();
        QCOMPARE(voice.recogniser->requests.last().contextualStrings,
            (QStringList{u"one"_s, u"two three"_s}));
        voice->setVocabulary({});
        voice->startOver();
        QCOMPARE(voice.recogniser->requests.last().contextualStrings.size(), 8);
    }

    void followsTheEngine()
    {
        VoiceFixture voice;
        voice.link->setVoiceInput(voice.voice.get());
        voice.link->send(u"#voice"_s);
        QVERIFY(voice->on);
        voice.link.say({"vocab sonata|fugue", "earreset"});
        QCOMPARE(voice.recogniser->requests.last().contextualStrings,
            (QStringList{u"sonata"_s, u"fugue"_s}));
        voice.link.say({"ears off"});
        QCOMPARE(voice->status.get(), u"OFF"_s);
        voice.link.say({"earreset"});
        QCOMPARE(voice.recogniser->handlers.size(), 2U);
        voice.link->send(u"#voice"_s);
        QVERIFY(voice->on);
    }

    void metersTheMicrophone()
    {
        VoiceFixture voice;
        voice->begin();
        voice.logged();
        const auto hear = [&](qint16 value) {
            const std::vector<qint16> samples(320, value);
            voice.microphone->hear(
                {{}, QByteArray(reinterpret_cast<const char *>(samples.data()), 640)});
            voice.link.time.advance(0.02);
        };
        for (int i = 0; i < 11; ++i)
            hear(0); // reports at 0, 0.1 and 0.2 s
        QCOMPARE(voice.sent(), QStringList(3, u"~lvl 0.0000"_s));
        QCOMPARE(voice->level.get(), 0.0);
        QCOMPARE(voice.logged(),
            (QStringList{u"hearing sound: 1 buffers so far, recent peak 0.000"_s,
                u"hearing sound: 6 buffers so far, recent peak 0.000"_s}));
        hear(3277);
        for (int i = 0; i < 5; ++i)
            hear(0);
        QCOMPARE(voice.sent(), QStringList{u"~lvl 0.1000"_s});
        QVERIFY(qAbs(voice->level - 0.6) < 0.001);
        for (int i = 0; i < 5; ++i)
            hear(-32768);
        QCOMPARE(voice.sent(), QStringList{u"~lvl 1.0000"_s});
        QCOMPARE(voice->level.get(), 1.0);
        QCOMPARE(voice.recogniser->buffers, 22);
        for (int i = 22; i < 6010; ++i)
            hear(0);
        QCOMPARE(voice.logged(),
            (QStringList{u"hearing sound: 6001 buffers so far, recent peak 0.000"_s,
                u"hearing sound: 6006 buffers so far, recent peak 0.000"_s}));
        voice->stop();
        hear(32767);
        QCOMPARE(voice->level.get(), 0.0);
    }

    void writesNoLogOfItsOwn()
    {
        VoiceFixture voice;
        QVERIFY(QFile::remove(voice.link.dataDir + u"/voice-log.txt"_s));
        voice->begin();
        QVERIFY(!QFile::exists(voice.link.dataDir + u"/voice-log.txt"_s));
        voice.link.write(u"voice-log.txt"_s, "before\n");
        voice.link.time.advance(5);
        voice->log(u"naïve"_s);
        QCOMPARE(voice.link.read(u"voice-log.txt"_s), QByteArray("before\n12:00:05  naïve\n"));
    }
};

QTEST_GUILESS_MAIN(SessionTest)
#include "session_test.moc"
