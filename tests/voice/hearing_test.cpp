#include "support/link_fixture.h"
#include "voice/capture/microphone.h"
#include "voice/capture/permissions.h"
#include "voice/recognition/recogniser.h"
#include "voice/virtual_microphone.h"
#include "voice/voice_control.h"

#ifdef KELO_QT_MULTIMEDIA
#include "voice/capture/qt_microphone.h"
#endif

#include <QDeadlineTimer>
#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

constexpr int patience = 20000; // milliseconds: the machine may be busy

} // namespace

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
        link_.write(u"voice-log.txt"_s, {});
        voice_ = std::make_unique<VoiceControl>(VoiceSetup{&link_.link(),
            [this](const QString &line) { link_->send(line); }, Permissions::ofThisSystem(),
            Microphone::ofThisSystem(), Recogniser::ofThisSystem(),
            std::make_unique<QSettings>(link_.settingsFile, QSettings::IniFormat), link_.dataDir});
    }

    void init()
    {
        link_.start("serve");
        voice_->begin();
        QVERIFY(becomes(u"LISTENING FOR “KELO”"_s));
        QVERIFY(sendsMore("~lvl "));
    }

    void cleanup()
    {
        microphone_.thaw();
        if (voice_)
            voice_->stop();
        link_->stop();
    }

    void cleanupTestCase() { voice_.reset(); }

    void survivesItsMicrophone()
    {
        QVERIFY(microphone_.pull());
        QVERIFY(becomes(u"NO MICROPHONE"_s));
        QVERIFY(link_.read(u"voice-log.txt"_s).contains("  lost the microphone: VirtualMic\n"));
        QTest::qWait(1500);
        QCOMPARE(
            voice_->status.get(), u"NO MICROPHONE"_s); // the speakers' monitor is no microphone
        QVERIFY(microphone_.plugIn());
        QVERIFY(becomes(u"LISTENING FOR “KELO”"_s));
        QVERIFY(microphone_.speak(u"Kelo, play some music"_s));
        QVERIFY(sendsMore("~ear 1 "));
    }

    void survivesItsServer()
    {
        microphone_.kill();
        QVERIFY(becomes(u"NO MICROPHONE"_s));
        QVERIFY(microphone_.start());
        QVERIFY(becomes(u"LISTENING FOR “KELO”"_s));
        QVERIFY(sendsMore("~lvl "));
    }

    void neverWaitsForAServer()
    {
        voice_->stop();
        microphone_.freeze();
        QDeadlineTimer soon(200); // it answers nothing before it is thawed
        voice_->begin();
        QVERIFY(!soon.hasExpired());
        QVERIFY(becomes(u"NO MICROPHONE"_s));
        soon.setRemainingTime(200);
        voice_->stop();
        voice_->begin();
        QVERIFY(!soon.hasExpired());
        microphone_.thaw();
        QVERIFY(becomes(u"LISTENING FOR “KELO”"_s));

        microphone_.freeze();
        soon.setRemainingTime(200);
        voice_->listen();
        voice_->stop();
        QVERIFY(!soon.hasExpired());
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

    /// It has to learn the room first, and again when sound gets lost on a busy machine.
    void leavesOutWhatTheLoudspeakersPlay()
    {
        QVERIFY(microphone_.hearSpeakers());
        double loudest = 0;
        int quiet = 0; // seconds in a row
        for (int second = 0; second < 40 && quiet < 3; ++second) {
            const qsizetype before = link_.engine.input().size();
            QVERIFY(microphone_.isSpeaking()
                || microphone_.speak(
                    u"Then we walked along the river. One, two, three, four, five, six, seven, "
                    "eight, nine, ten, eleven, twelve."_s,
                    u"speakers"_s));
            QTest::qWait(1000);
            double level = 0;
            for (const QByteArray &line : link_.engine.input().sliced(before).split('\n')) {
                if (line.startsWith("~lvl "))
                    level = std::max(level, line.sliced(5).toDouble());
            }
            loudest = std::max(loudest, level);
            quiet = loudest > 0.2 && level < 0.15 * loudest ? quiet + 1 : 0;
        }
        QCOMPARE(quiet, 3);
    }

    void canBeSwitchedForever()
    {
        const auto threads = [] { return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs).size(); };
        QTest::qWait(1000); // those of an earlier test go home
        const auto before = threads();
        for (int i = 0; i < 200; ++i) {
            voice_->stop();
            voice_->begin();
            if (i % 10 == 0)
                QTest::qWait(10);
        }
        QVERIFY(becomes(u"LISTENING FOR “KELO”"_s));
        QTRY_COMPARE_WITH_TIMEOUT(threads(), before, patience);
        QVERIFY(sendsMore("~lvl "));
    }

private:
    [[nodiscard]] bool becomes(const QString &status) const
    {
        return QTest::qWaitFor([&] { return voice_->status.get() == status; }, patience);
    }

    /// One more line to the engine begins so.
    [[nodiscard]] bool sendsMore(const char *begin) const
    {
        const auto before = link_.engine.input().count(begin);
        return QTest::qWaitFor(
            [&] { return link_.engine.input().count(begin) > before; }, patience);
    }

    static Microphone::Opening outcome(
        Microphone &microphone, const MicrophoneDevice &device, const Microphone::Sink &sink)
    {
        auto opening = microphone.open(device, sink);
        return QTest::qWaitFor([&] { return opening.isFinished(); })
            ? opening.result()
            : throw std::runtime_error("no answer");
    }

    VirtualMicrophone microphone_;
    LinkFixture link_;
    std::unique_ptr<VoiceControl> voice_;
};

QTEST_GUILESS_MAIN(HearingTest)
#include "hearing_test.moc"
