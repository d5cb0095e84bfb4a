#include "support/files.h"
#include "voice/name/taught_name.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/decoding_recogniser.h"
#include "voice/recognition/sphinx_decoder.h"
#include "voice/recognition/sphinx_kind.h"
#include "voice/recognition/sphinx_utterance.h"
#include "voice/wake_lab/recording.h"
#include "voice/wake_lab/speech_sample.h"

#include <QTemporaryDir>
#include <QTest>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

const QString model = QStringLiteral(KELO_POCKETSPHINX);

/// What a decoder makes of a whole utterance.
QStringList wordsIn(SphinxDecoder &decoder, const Samples &sound, const std::stop_token &stop = {})
{
    decoder.begin(stop);
    decoder.process(sound);
    decoder.end();
    return decoder.words();
}

} // namespace

/// The recogniser on recordings: what it is taught, what it is told to expect, what it is spared.
class DecoderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!speakToFile(u"a"_s, u"gmw/en"_s, 160, folder_.filePath(u"a.wav"_s)))
            QSKIP("RECOGNITION IS NOT TESTED, please install: espeak-ng");
    }

    void teachingLetsItHearTheName()
    {
        DecodingRecogniser recogniser({sphinxKind(model)});
        const Samples speech = spoken(u"Hey Kelo, what's the weather. Kelo, stop"_s);
        const QString plain = recognised(recogniser, {}, speech);
        QVERIFY2(!plain.isEmpty() && !plain.contains(u"Kelo"_s), qPrintable(plain));
        const auto taught = taughtTo(recogniser, u"Kelo"_s);
        const QString words = recognised(recogniser, taught, speech);
        QVERIFY2(words.count(u"Kelo"_s) == 2, qPrintable(words)); // across the pause, too
    }

    void whatMayBeAskedForIsPreferred()
    {
        DecodingRecogniser recogniser({sphinxKind(model)});
        const auto taught = taughtTo(recogniser, u"Kelo"_s);
        const Samples speech = spoken(u"Kelo, what time is it"_s);
        for (const auto &[phrase, written] :
            {std::pair{u"what dime is it"_s, u"dime"_s}, {u"full band"_s, u"time"_s}}) {
            const QString words = recognised(recogniser, taught, speech, {phrase});
            QVERIFY2(words.contains(written), qPrintable(words));
        }
    }

    /// What follows the name is heard again for what may be asked for.
    void requestsWinOverWhatTheyAreTakenFor()
    {
        DecodingRecogniser recogniser({sphinxKind(model)});
        const Samples speech = spoken(u"Kelo, go home"_s, u"gmw/en"_s, 175); // freely, it is others
        QCOMPARE(recognised(recogniser, taughtTo(recogniser, u"Kelo"_s), speech,
                     {u"slower"_s, u"louder"_s, u"go home"_s, u"song menu"_s, u"stop"_s}),
            u"Kelo go home"_s);
    }

    void aFirstCallIsHeard()
    {
        for (const double loudness : {1.0, 0.1}) { // close by, and by a quiet microphone
            DecodingRecogniser recogniser({sphinxKind(model)});
            Samples speech = spoken(u"Hey Luna, what's the weather"_s, u"gmw/en-GB-scotland"_s);
            for (qint16 &sample : speech)
                sample = static_cast<qint16>(sample * loudness);
            const QString words = recognised(recogniser, taughtTo(recogniser, u"Luna"_s), speech);
            QVERIFY2(words.contains(u"Luna"_s), qPrintable(words));
        }
        DecodingRecogniser recogniser({sphinxKind(model)});
        const QString request = recognised(recogniser, taughtTo(recogniser, u"Kelo"_s),
            spoken(u"Hey Kelo, stop"_s, u"gmw/en"_s, 160),
            u"stop|song ten|song two|go home|tempo two|tempo ten|song menu|louder|slower"_s.split(
                u'|'));
        QVERIFY2(request.endsWith(u"Kelo stop"_s), qPrintable(request));
    }

    void doubtsLeaveTheOtherWords()
    {
        const Samples speech = spoken(u"I said hello to my brother and went home"_s);
        for (const QString &name : {u"Zentari"_s, u"hello"_s}) { // not there; an everyday word
            DecodingRecogniser recogniser({sphinxKind(model)});
            const auto taught = taughtTo(recogniser, name);
            for (int time = 0; time < 2; ++time) { // what is heard again leaves no trace
                const auto words = recognised(recogniser, taught, speech).split(u' ');
                QVERIFY2(words.contains(u"brother"_s) && words.contains(u"home"_s)
                        && words.contains(name) == (name != u"Zentari"_s),
                    qPrintable(words.join(u' ')));
            }
        }
    }

    /// Otherwise what was heard first could not be compared with what is heard then.
    void heardAgainItSoundsTheSame()
    {
        err_set_logfp(nullptr);
        const QByteArray folder = model.toUtf8();
        const std::unique_ptr<cmd_ln_t, decltype(&cmd_ln_free_r)> config(
            cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", (folder + "/en-us").constData(), "-dict",
                (folder + "/cmudict-en-us.dict").constData(), "-lm",
                (folder + "/en-us.lm.bin").constData(), "-fwdflat", "no", nullptr),
            cmd_ln_free_r);
        const Samples greeting = spoken(u"good morning"_s);
        const Samples question = spoken(u"what time is it"_s);
        QList<std::pair<QStringList, double>> next;
        for (const int times : {0, 2}) {
            const std::unique_ptr<ps_decoder_t, decltype(&ps_free)> decoder(
                ps_init(config.get()), ps_free);
            QVERIFY(decoder);
            SphinxUtterance utterance(decoder.get());
            const auto heard = [&] { return std::pair(utterance.words(), utterance.score()); };
            const auto hear = [&](const Samples &sound) {
                utterance.begin();
                utterance.add(sound);
                utterance.end();
                return heard();
            };
            const auto first = hear(greeting);
            QVERIFY(!first.first.isEmpty());
            for (int time = 0; time < times; ++time) {
                utterance.again("_default"); // the library's name for the one it was made with
                QCOMPARE(heard(), first);
            }
            next.append(hear(question));
        }
        QVERIFY(!next[0].first.isEmpty());
        QCOMPARE(next[1], next[0]); // nor does it change what comes after it
    }

    void damagedModelsAreLeftOut()
    {
        const std::pair<QString, QByteArray> damages[] = {
            {u"luna-lm"_s, "\\data\\\nngram 1=5\n"}, // cut short
            {u"luna-lm"_s, {}}, // gone
            {u"luna-lm"_s, QByteArray(5000, '\xff')}, // no model
            {u"luna-vocab"_s, "luna ZZ\n"}, // other words
        };
        const DecodingRecogniser recogniser({sphinxKind(model)});
        const auto decoder = SphinxDecoder::load(model);
        QVERIFY(decoder);
        for (const auto &[file, contents] : damages) {
            const auto taught = taughtTo(recogniser, u"Luna"_s);
            QFile::remove(folder_.filePath(file));
            if (!contents.isEmpty())
                writeFile(folder_.filePath(file), contents);
            QVERIFY(!decoder->expect({}, {}));
            QVERIFY2(decoder->expect(taught, {}), contents);
        }
        QVERIFY(!wordsIn(*decoder, spoken(u"what time is it"_s)).isEmpty()); // goes on without
    }

    void expectationsMayChangeForever()
    {
        auto decoder = SphinxDecoder::load(model);
        QVERIFY(decoder);
        const Samples speech = spoken(u"what time is it"_s);
        for (int i = 0; i < 12; ++i) {
            QVERIFY(!decoder->expect({},
                i % 4 ? QStringList{u"jazz lesson"_s, u"number %1"_s.arg(i % 7)}
                      : QStringList{u"qwzx%1"_s.arg(i), u"!"_s}));
            QVERIFY(!wordsIn(*decoder, speech).isEmpty());
        }
    }

    void silenceAndNoSoundAreNoWords()
    {
        DecodingRecogniser recogniser({sphinxKind(model)});
        QCOMPARE(recognised(recogniser, {}, {}), QString());
        QCOMPARE(recognised(recogniser, {}, Samples(16000)), QString());
        QCOMPARE(recognised(recogniser, {}, Samples(16000, 32767)), QString());
        // Sessions that are dropped in the middle, tasks that outlive their recogniser.
        std::shared_ptr<RecognitionTask> task;
        {
            DecodingRecogniser brief({sphinxKind(model)});
            for (int i = 0; i < 20; ++i) {
                task = brief.start({}, [](const auto &, const auto &) {});
                task->append({{}, QByteArray(640, '\x55')});
                if (i % 2)
                    task->cancel();
            }
        }
        task->append({{}, QByteArray(640, '\x55')});
        task->endAudio();
        task->cancel();
    }

    void withoutAModelItIsNotAvailable()
    {
        DecodingRecogniser recogniser({sphinxKind(folder_.path())});
        QVERIFY(!recogniser.isAvailable() && !recogniser.teacher());
        writeFile(SphinxDecoder::dictionaryIn(folder_.path()), {}); // there is no more than that
        DecodingRecogniser broken({sphinxKind(folder_.path())});
        QVERIFY(broken.isAvailable());
        QCOMPARE(recognised(broken, {}, Samples(1600)), QString());
        QVERIFY(!broken.isAvailable());
    }

    void strangeNamesCanBeTaught()
    {
        DecodingRecogniser recogniser({sphinxKind(model)});
        const Samples question = spoken(u"what time is it"_s);
        for (const QString &name : {u"Kelo 2"_s, u"Ольга"_s, u"</s> \\end\\ (2)"_s, u"the"_s,
                 u"my very own dear music teacher at home"_s, QString(300, u'k')})
            QVERIFY(!recognised(recogniser, taughtTo(recogniser, name), question).isEmpty());
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, taughtTo(recogniser, u"?!"_s));
    }

    /// What is not wanted any more is not searched.
    void whatIsAbandonedCostsNothing()
    {
        auto decoder = SphinxDecoder::load(model);
        QVERIFY(decoder);
        DecodingRecogniser recogniser({sphinxKind(model)});
        const auto taught = taughtTo(recogniser, u"Kelo"_s);
        const Samples speech = spoken(u"everyone could see that Kelo had nothing to say"_s);
        std::stop_source stop;
        stop.request_stop();
        QVERIFY(!decoder->expect(taught, {u"zyrkal sonata"_s}, stop.get_token()));
        QVERIFY(!wordsIn(*decoder, speech).contains(u"kelo"_s)); // it was left as it was
        QVERIFY(!decoder->expect(taught, {u"zyrkal sonata"_s}));
        const double searched = decoder->secondsSearched();
        wordsIn(*decoder, speech, stop.get_token());
        decoder->begin();
        decoder->process(Samples(speech.begin(), speech.begin() + 16000));
        decoder->abandon();
        QVERIFY(decoder->words().isEmpty());
        QVERIFY(decoder->secondsSearched() - searched < 1.1);
        QVERIFY(!wordsIn(*decoder, speech).isEmpty());
    }

private:
    QTemporaryDir folder_;
    TaughtModel taughtTo(const DecodingRecogniser &recogniser, const QString &name)
    {
        return recogniser.teacher()(WakeTraining::of(name),
            SpeechModelFiles::of(folder_.path(), name.size() > 50 ? u"x"_s : name), {});
    }
    Samples spoken(const QString &text, const QString &voice = u"gmw/en-US"_s, int speed = 150)
    {
        const QString file = folder_.filePath(u"a.wav"_s);
        speakToFile(text, voice, speed, file);
        return inRoom(readSpeech(file).value_or(Samples()), {}, random_);
    }

    std::mt19937 random_{1};
};

QTEST_GUILESS_MAIN(DecoderTest)
#include "decoder_test.moc"
