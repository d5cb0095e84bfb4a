#include "support/scripted_engine.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/decoding_recogniser.h"
#include "voice/recognition/vosk_kind.h"
#include "voice/wake_lab/recording.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// A recogniser that the user brought along, by a stand-in for its library.
class VoskTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        writeFile(path(u"words"_s), "the kay low hello play music some");
        writeFile(
            path(u"dict"_s), "hello HH AH L OW\nkay K EY\nlow L OW\nkilo K IY L OW\nplay P L EY\n");
        kind_ = voskKind(library, folder_.path(), path(u"dict"_s));
        recogniser_ = std::make_unique<DecodingRecogniser>(std::vector{kind_});
    }

    void isThereWhenLibraryAndModelAre()
    {
        QVERIFY(recogniser_->isAvailable() && recogniser_->isOnDevice());
        QVERIFY(recogniser_->name().startsWith(u"Vosk"_s));
        QVERIFY(!voskKind(u"libnowhere.so"_s, folder_.path(), {}).available);
        QVERIFY(!voskKind(u"libm.so.6"_s, folder_.path(), {}).available);
        QVERIFY(!voskKind(library, path(u"nowhere"_s), {}).available);
    }

    void onesThatCannotBeLoadedGiveWayToOthers()
    {
        writeFile(path(u"says"_s), "hello");
        const QTemporaryDir empty; // a folder that is no model
        const DecoderKind broken = voskKind(library, empty.path(), {});
        for (const auto &[kinds, heard] : {std::pair{std::vector{broken}, u""_s},
                 {std::vector{DecoderKind{}, broken, kind_}, u"hello"_s}}) {
            DecodingRecogniser recogniser(kinds);
            QCOMPARE(recogniser.name(), broken.name);
            QTest::ignoreMessage(
                QtWarningMsg, qPrintable(broken.name + u": the model could not be loaded"_s));
            QCOMPARE(recognised(recogniser, {}, speech()), heard);
            QCOMPARE(recogniser.name(), heard.isEmpty() ? QString() : kind_.name);
            QCOMPARE(bool(recogniser.teacher()), recogniser.isAvailable());
        }
    }

    void writesTheNameForWhatSoundsLikeIt()
    {
        const TaughtModel kelo = recogniser_->teacher()(
            WakeTraining::of(u"Kelo"_s), SpeechModelFiles::of(folder_.path(), u"Kelo"_s), {});
        writeFile(path(u"says"_s), "hey kay low [unk] play some music");
        QCOMPARE(recognised(*recogniser_, {}, speech()), u"hey kay low play some music"_s);
        QCOMPARE(recognised(*recogniser_, kelo, speech(), {u"Play some music!"_s, u"Kelo"_s}),
            u"hey Kelo play some music"_s);
        const QByteArray grammar = readFile(path(u"grammar"_s));
        for (const char *phrase :
            {"\"kay low\"", "\"hey kay low\"", "\"play some music\"", "\"ninety\"", "\"[unk]\""})
            QVERIFY2(grammar.contains(phrase), grammar + "\n" + phrase);
        QVERIFY2(!grammar.contains("kilo") && !grammar.contains("kelo"), grammar); // unknown to it
    }

    void tellsWhileItIsSpoken()
    {
        writeFile(path(u"says"_s), "hello");
        QStringList told;
        std::atomic<bool> over = false;
        const auto task = recogniser_->start({}, [&](const auto &transcript, const auto &) {
            told += (transcript->final ? u"="_s : QString()) + transcript->words;
            over = transcript->final;
        });
        const Samples sound = speech();
        const auto speak = [&] {
            for (std::size_t at = 0; at + 320 <= sound.size(); at += 320)
                task->append(
                    {{}, QByteArray(reinterpret_cast<const char *>(sound.data() + at), 640)});
        };
        speak();
        QTRY_VERIFY(over);
        QCOMPARE(told, (QStringList{u"hello"_s, u"=hello"_s}));
        speak(); // which is no part of a recording
        QCOMPARE(recognised(*recogniser_, {}, Samples(16000)), QString());
    }

private:
    [[nodiscard]] QString path(const QString &name) const { return folder_.filePath(name); }

    /// A second of noise and as much of silence.
    static Samples speech()
    {
        Samples samples(32000);
        for (std::size_t i = 0; i < 16000; ++i)
            samples[i] = static_cast<qint16>((i * 7919 % 40000) - 20000);
        return samples;
    }

    const QString library = QStringLiteral(VOSK_STAND_IN);
    QTemporaryDir folder_;
    DecoderKind kind_;
    std::unique_ptr<DecodingRecogniser> recogniser_;
};

QTEST_GUILESS_MAIN(VoskTest)
#include "vosk_test.moc"
