#include "support/link_fixture.h"
#include "voice/capture/microphone.h"
#include "voice/capture/permissions.h"
#include "voice/recognition/recogniser.h"
#include "voice/virtual_microphone.h"
#include "voice/voice_control.h"

#ifdef KELO_QT_MULTIMEDIA
#include "voice/capture/qt_microphone.h"
#endif

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// Everything for real: a sound server, a voice in it, the recogniser, and an engine at the end.
class HearingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (const QString missing = VirtualMicrophone::missing(); !missing.isEmpty())
            QSKIP(qPrintable(u"HEARING IS NOT TESTED, please install: "_s + missing));
        if (!Recogniser::ofThisSystem())
            QSKIP("HEARING IS NOT TESTED, please install: libpocketsphinx-dev");
        QCoreApplication::setApplicationName(u"HearingTest"_s);
        QVERIFY(microphone_.start());
        link_.engine.play("serve");
        link_.write(u"voice-log.txt"_s, {});
        init();
        voice_ = std::make_unique<VoiceControl>(VoiceSetup{&link_.link(),
            [this](const QString &line) { link_->send(line); }, Permissions::ofThisSystem(),
            Microphone::ofThisSystem(), Recogniser::ofThisSystem(),
            std::make_unique<QSettings>(link_.settingsFile, QSettings::IniFormat), link_.dataDir});
        link_->setVoiceInput(voice_.get());
        turnOn();
        QTRY_VERIFY_WITH_TIMEOUT(logHas(u"the recogniser has been taught the name"_s), 20000);
        QVERIFY(!hear(u"what time is it"_s).filter(u"~ear 1 "_s).isEmpty()); // all is loaded now
    }

    void init() { link_->start(); }

    void cleanup()
    {
        microphone_.thaw();
        link_->handle("typing 0");
        if (voice_)
            voice_->stop();
        link_->stop();
    }

    void cleanupTestCase() { voice_.reset(); }

    void hearsACommand()
    {
        turnOn();
        QTest::qWait(1000);
        const auto levels = sent().filter(u"~lvl "_s).size();
        QVERIFY2(levels >= 6 && levels <= 13, qPrintable(QString::number(levels)));

        QVERIFY(microphone_.speak(u"Kelo, play me something. nice and slow"_s));
        QStringList whileSpeaking;
        QTRY_VERIFY_WITH_TIMEOUT((whileSpeaking += sent(), !microphone_.isSpeaking()), 15000);
        QVERIFY2(!whileSpeaking.filter(u"~ear 0 "_s).isEmpty(), "no word while it was spoken");
        QVERIFY(
            whileSpeaking.filter(u"~lvl "_s).size() > whileSpeaking.count(u"~lvl 0.0000"_s) + 5);

        QStringList after;
        QTRY_VERIFY_WITH_TIMEOUT((after += sent(), !after.filter(u"~ear 1 "_s).isEmpty()), 10000);
        QTest::qWait(1500);
        const QStringList finals = (whileSpeaking + after + sent()).filter(u"~ear 1 "_s);
        QCOMPARE(finals.size(), 1);
        QVERIFY2(finals.first().contains(u"Kelo"_s), qPrintable(finals.first()));

        const QStringList again = hear(u"Kelo, play some music"_s); // the next session listens
        QCOMPARE(again.filter(u"~ear 1 "_s).size(), 1);
    }

    void survivesItsMicrophone()
    {
        turnOn();
        QVERIFY(microphone_.pull());
        QTRY_COMPARE(voice_->status.get(), u"NO MICROPHONE"_s);
        QVERIFY(logHas(u"lost the microphone: VirtualMic"_s));
        QTest::qWait(1500);
        QCOMPARE(
            voice_->status.get(), u"NO MICROPHONE"_s); // the speakers' monitor is no microphone
        QVERIFY(microphone_.plugIn());
        QTRY_COMPARE_WITH_TIMEOUT(voice_->status.get(), u"LISTENING FOR “KELO”"_s, 2000);
        sent();
        QCOMPARE(hear(u"Kelo, play some music"_s).filter(u"~ear 1 "_s).size(), 1);
    }

    void survivesItsServer()
    {
        turnOn();
        microphone_.kill();
        QTRY_COMPARE(voice_->status.get(), u"NO MICROPHONE"_s);
        QVERIFY(microphone_.start());
        QTRY_COMPARE_WITH_TIMEOUT(voice_->status.get(), u"LISTENING FOR “KELO”"_s, 2000);
        const auto levels = link_.engine.input().count("~lvl ");
        QTRY_VERIFY(link_.engine.input().count("~lvl ") > levels);
    }

    void neverWaitsForAServer()
    {
        QElapsedTimer clock;
        const auto soon = [&] { return clock.elapsed() < 200; };
        microphone_.freeze();
        clock.start();
        voice_->begin();
        QVERIFY(soon());
        QTRY_COMPARE(voice_->status.get(), u"NO MICROPHONE"_s);
        clock.start();
        voice_->stop();
        voice_->begin();
        QVERIFY(soon());
        microphone_.thaw();
        QTRY_COMPARE_WITH_TIMEOUT(voice_->status.get(), u"LISTENING FOR “KELO”"_s, 4000);

        microphone_.freeze();
        clock.start();
        voice_->listen();
        voice_->stop();
        QVERIFY(soon());
    }

    void qtHearsToo()
    {
#ifdef KELO_QT_MULTIMEDIA
        QtMicrophone microphone;
        auto search = microphone.discover();
        QTRY_VERIFY(search.isFinished());
        const auto devices = search.result();
        QCOMPARE(devices.size(), 1); // the speakers' monitor is no microphone
        std::atomic<int> loud = 0;
        const auto count = [&](const AudioBuffer &buffer) { loud += peakOf(buffer) > 0.05; };
        QCOMPARE(outcome(microphone, devices.first(), count), Microphone::Opening::Started);
        QVERIFY(microphone_.speak(u"what time is it"_s));
        QTRY_VERIFY(loud > 5);
        const QSignalSpy lost(&microphone, &Microphone::lost);
        QVERIFY(microphone_.pull());
        QTRY_COMPARE(lost.size(), 1);
        QCOMPARE(outcome(microphone, {u"nobody"_s, {}}, {}), Microphone::Opening::NotAttached);
        QVERIFY(microphone_.plugIn());
#else
        QSKIP("Qt Multimedia is not there");
#endif
    }

    void refusalsAreTold()
    {
        const auto microphone = Microphone::ofThisSystem();
        auto search = microphone->discover();
        QTRY_VERIFY(search.isFinished());
        QCOMPARE(outcome(*microphone, {u"nobody"_s, {}}, {}), Microphone::Opening::NoInput);
        microphone_.freeze();
        QCOMPARE(
            outcome(*microphone, search.result().first(), {}), Microphone::Opening::NotAttached);
    }

    void canBeSwitchedForever()
    {
        const auto threads = [] { return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs).size(); };
        turnOn();
        QTest::qWait(1000); // those of an earlier test go home
        const auto before = threads();
        for (int i = 0; i < 200; ++i) {
            voice_->stop();
            voice_->begin();
            if (i % 10 == 0)
                QTest::qWait(10);
        }
        QTRY_COMPARE(voice_->status.get(), u"LISTENING FOR “KELO”"_s);
        QTRY_COMPARE(threads(), before);
        const auto levels = link_.engine.input().count("~lvl ");
        QTRY_VERIFY(link_.engine.input().count("~lvl ") > levels);
    }

private:
    void turnOn()
    {
        voice_->begin();
        QTRY_COMPARE_WITH_TIMEOUT(voice_->status.get(), u"LISTENING FOR “KELO”"_s, 10000);
        QTest::qWait(200);
        sent();
    }

    static Microphone::Opening outcome(
        Microphone &microphone, const MicrophoneDevice &device, const Microphone::Sink &sink)
    {
        auto opening = microphone.open(device, sink);
        return QTest::qWaitFor([&] { return opening.isFinished(); })
            ? opening.result()
            : throw std::runtime_error("no answer");
    }

    /// Says `text` and returns what the engine was sent until a while after the final result, or
    /// until none can be expected any more.
    QStringList hear(const QString &text)
    {
        QStringList lines;
        const bool began = microphone_.speak(text);
        QDeadlineTimer patience(20000);
        while (began && !patience.hasExpired() && lines.filter(u"~ear 1 "_s).isEmpty()) {
            QTest::qWait(50);
            lines += sent();
        }
        QTest::qWait(1500);
        return lines + sent();
    }

    /// What the engine was sent since the last call.
    QStringList sent()
    {
        const QByteArray all = link_.engine.input();
        const qsizetype end = all.lastIndexOf('\n') + 1;
        const QByteArray news = all.sliced(read_, std::max(end - read_, qsizetype{0}));
        read_ = end;
        return QString::fromUtf8(news).split(u'\n', Qt::SkipEmptyParts);
    }

    [[nodiscard]] bool logHas(const QString &text) const
    {
        return link_.read(u"voice-log.txt"_s).contains("  " + text.toUtf8() + '\n');
    }

    VirtualMicrophone microphone_;
    LinkFixture link_;
    std::unique_ptr<VoiceControl> voice_;
    qsizetype read_ = 0;
};

QTEST_GUILESS_MAIN(HearingTest)
#include "hearing_test.moc"
