#include "support/table.h"
#include "voice/capture/resampler.h"
#include "voice/recognition/decoding_recogniser.h"
#include "voice/recognition/decoding_session.h"
#include "voice/recognition/level_gate.h"

#include <QTest>

#include <semaphore>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// What happens, in order.
class Events {
public:
    void add(const QString &event)
    {
        const std::lock_guard lock(mutex_);
        all_ << event;
    }
    QString take()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(all_, {}).join(u"; "_s);
    }

private:
    std::mutex mutex_;
    QStringList all_;
};

/// What a decoder hears next.
struct Hearing {
    QStringList words;
    bool speaks = true; ///< else the speaker has fallen silent
    std::optional<QString> problem;
    Events events;
};

class ScriptedDecoder final : public SpeechDecoder {
public:
    explicit ScriptedDecoder(Hearing &hearing)
        : hearing_(hearing)
    {
    }

    std::optional<QString> expect(const std::optional<TaughtModel> &taught,
        const QStringList &phrases, const std::stop_token & /*stop*/) override
    {
        hearing_.events.add(
            u"expects "_s + (taught ? taught->name : QString()) + phrases.join(u','));
        return hearing_.problem;
    }
    void begin(const std::stop_token & /*stop*/) override { hearing_.events.add(u"begins"_s); }
    bool process(const Samples &samples) override
    {
        seconds_ += secondsOf(samples);
        return hearing_.speaks;
    }
    [[nodiscard]] QStringList words() const override { return hearing_.words; }
    void end() override { hearing_.events.add(u"ends after %1"_s.arg(std::exchange(seconds_, 0))); }
    void abandon() override { hearing_.events.add(u"abandons"_s); }

private:
    Hearing &hearing_;
    double seconds_ = 0;
};

Samples voice(double seconds, int level = 5000)
{
    Samples samples(static_cast<std::size_t>(seconds * 16000));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<qint16>(i / 20 % 2 ? level : -level);
    return samples;
}

RecognitionTask::Handler into(Events &events)
{
    return [&events](const auto &transcript, const auto &error) {
        if (transcript)
            events.add((transcript->final ? u"final "_s : u"partly "_s) + transcript->words);
        if (error)
            events.add(u"error %1 %2"_s.arg(error->domain, QString::number(error->code)));
    };
}

} // namespace

/// From sound to transcripts, with a decoder that hears what a test says.
class DecodingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sessionsTellWhatIsHeard_data()
    {
        // steps: seconds of voice: what the decoder hears > what happens; "!" when it ends there
        const Table<bool, QStringList> row{"live", "steps"};
        row("words come as they stand", true,
            {u"0.05: play > "_s, u"0.1: play > "_s, u"0.1: play > partly play"_s, u"0.1: play > "_s,
                u"0.1: play it > "_s, u"0.2: play it > partly play it"_s,
                u"!: play it now > ends after 0.7; final play it now"_s, u"stop > "_s});
        row("the name is written as the user writes it", true,
            {u"0.3: kelo > "_s, u"0.2: kelo > partly Kelo 2"_s,
                u"finish: kelo stop > ends after 0.5; final Kelo 2 stop"_s});
        row("a noise is no result", true,
            {u"0.2: the > partly the"_s, u"!:  > ends after 0.25; begins"_s, u"stop > abandons"_s});
        row("a recording is heard to its end", false,
            {u"!: one > ends after 0.05; begins"_s, u"0.3: two > partly one two"_s,
                u"finish: two > ends after 0.3; final one two"_s});
        row("nothing was said", true,
            {u"0.1:  > "_s, u"finish:  > ends after 0.1; error kAFAssistantErrorDomain 1110"_s});
        row("a very long one is cut", true,
            {u"29.95: la > partly la"_s, u"0.05: la > ends after 30; final la"_s});
        row("the caller lost interest", true,
            {u"cancel > "_s, u"1: la > "_s, u"stop > abandons"_s});
    }

    void sessionsTellWhatIsHeard()
    {
        QFETCH(bool, live);
        QFETCH(QStringList, steps);
        Hearing hearing;
        hearing.problem = u"half deaf"_s;
        ScriptedDecoder decoder(hearing);
        SoundCleaner cleaner;
        RecognitionRequest request;
        request.contextualStrings = QStringList{u"play"_s, u"stop"_s};
        request.live = live;
        request.taught = TaughtModel{u"Kelo 2"_s, {}, {}, {}};
        request.log = [&](const QString &line) { hearing.events.add(u"log "_s + line); };
        const auto task = std::make_shared<DecodingTask>(
            std::make_shared<DecodingMailbox>(), request, into(hearing.events));
        QTest::ignoreMessage(QtWarningMsg, "half deaf");
        auto session = std::make_unique<DecodingSession>(decoder, cleaner, task);
        QCOMPARE(hearing.events.take(), u"expects Kelo 2play,stop; log half deaf; begins"_s);
        for (const QString &step : std::as_const(steps)) {
            const QString what = step.section(u" > "_s, 0, 0).section(u": "_s, 0, 0);
            hearing.words =
                step.section(u" > "_s, 0, 0).section(u": "_s, 1).split(u' ', Qt::SkipEmptyParts);
            hearing.words.replaceInStrings(u"kelo"_s, u"kelo_2"_s);
            hearing.speaks = what != u"!";
            if (what == u"cancel")
                task->cancel();
            else if (what == u"finish")
                session->finish();
            else if (what == u"stop")
                session.reset();
            else if (what == u"!")
                session->hear(voice(0.05));
            else
                for (int i = 0; i < qRound(what.toDouble() * 20); ++i)
                    session->hear(voice(0.05));
            QCOMPARE(step.section(u" > "_s, 0, 0) + u" > "_s + hearing.events.take(), step);
        }
    }

    /// What comes after a result is the beginning of what is said next, unless it is long ago or
    /// was not asked for any more.
    void soundIsHandedOn_data()
    {
        const Table<bool, int, bool, QString> row{"finished", "age", "live", "heard"};
        row("at once", true, 0, true, u"ends after 0.3"_s);
        row("soon", true, 800, true, u"ends after 0.3"_s);
        row("late", true, 1200, true, u"ends after 0.1"_s);
        row("to a recording", true, 0, false, u"ends after 0.1"_s);
        row("from what was given up", false, 0, true, u"ends after 0.1"_s);
    }

    void soundIsHandedOn()
    {
        QFETCH(const bool, finished);
        QFETCH(const int, age);
        Hearing hearing;
        hearing.words = QStringList{u"play"_s};
        hearing.speaks = !finished;
        std::counting_semaphore<2> loading(finished ? 1 : 0);
        const auto fails = [](const auto & /*stop*/) { return nullptr; };
        const auto loads = [&](const auto & /*stop*/) {
            loading.acquire();
            return std::make_unique<ScriptedDecoder>(hearing);
        };
        DecodingRecogniser recogniser({{u"gone"_s, false, fails, nullptr},
            {u"broken"_s, true, fails, nullptr}, {u"scripted"_s, true, loads, nullptr}});
        QCOMPARE(recogniser.name(), u"broken"_s);
        QTest::ignoreMessage(QtWarningMsg, "broken: the model could not be loaded");
        QString told;
        const auto tells = [&](const QString &event) {
            return QTest::qWaitFor([&] { return (told += hearing.events.take()).contains(event); });
        };
        const auto sound = [](double seconds) {
            const Samples samples = voice(seconds);
            return AudioBuffer{{AudioFormat::Sample::Int16, 16000, 1},
                {reinterpret_cast<const char *>(samples.data()),
                    static_cast<qsizetype>(samples.size() * 2)}};
        };
        RecognitionRequest request;
        request.log = [&](const QString &line) { hearing.events.add(line); };
        const auto before = recogniser.start(request, into(hearing.events));
        before->append(sound(0.05));
        QVERIFY(!finished || tells(u"final"_s));
        before->append(sound(0.2));
        static_cast<DecodingTask &>(*before).appended -= std::chrono::milliseconds(age);
        told.clear();
        hearing.speaks = true;
        QFETCH(const bool, live);
        request.live = live;
        const auto next = recogniser.start(request, into(hearing.events));
        next->append(sound(0.1));
        next->endAudio();
        loading.release();
        QVERIFY(tells(u"final"_s));
        QFETCH(const QString, heard);
        QVERIFY2(told.contains(heard), qPrintable(told));
        QCOMPARE(recogniser.name(), u"scripted"_s);
    }

    void gateOpensForWhatRisesAboveTheRoom_data()
    {
        // levels: tenths of a second * level; passed: tenths that come through with each
        const Table<QString, QString> row{"levels", "passed"};
        row("a voice in a quiet room", u"8*5 3*900 13*5"_s, u"00000000 611 1111111111000"_s);
        row("a fan starts and stops", u"12*20 90*100 40*30 3*120 15*70 3*130"_s,
            u"000000000000 6"_s + QString(60, u'1') + QString(29, u'0') + u' ' + QString(40, u'0')
                + u" 611 111111111111111 111"_s);
        row("just above the room", u"95*70 2*113 12*70 1*115 12*70 1*118"_s,
            QString(55, u'1') + QString(40, u'0') + u" 00 000000000000 6 111111111100 3"_s);
        row("just audible", u"12*10 2*63 2*64 2*65"_s, u"000000000000 00 61 11"_s);
    }

    void gateOpensForWhatRisesAboveTheRoom()
    {
        QFETCH(QString, levels);
        LevelGate gate;
        QString passed;
        for (const QString &part : levels.split(u' ')) {
            for (int i = 0; i < part.section(u'*', 0, 0).toInt(); ++i)
                passed += QString::number(
                    gate.pass(voice(0.1, part.section(u'*', 1).toInt())).size() / 1600);
            passed += u' ';
        }
        QTEST(passed.trimmed(), "passed");
    }

    void ratesThatCannotBeAreSilent()
    {
        checkRows<int, bool>([](int rate) { return !Resampler(rate).finish(voice(0.5)).empty(); },
            {{"too low", 3999, false}, {"lowest", 4000, true}, {"highest", 768'000, true},
                {"too high", 768'001, false}});
    }
};

QTEST_GUILESS_MAIN(DecodingTest)
#include "decoding_test.moc"
