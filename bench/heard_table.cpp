// Makes heard.tsv again, into standard output: what the recogniser writes down, step by step,
// when an assistant is called by its name and asked for something, and when people merely talk.
// Speech is made by espeak-ng. It is told the same phrases as in use.

#include "listen/understanding.h"
#include "songs/library.h"
#include "voice/name/wake_training.h"
#include "voice/recognition/decoding_recogniser.h"
#include "voice/recognition/sphinx_kind.h"
#include "voice/wake_lab/speech_sample.h"
#include "voice_corpus.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>

#include <array>
#include <future>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::engine;

namespace {

struct Asked {
    QString words;
    unsigned where;
};

const QList<Asked> &asked()
{
    static const QList<Asked> list{{u"stop"_s, InIdle}, {u"louder"_s, InIdle},
        {u"slower"_s, InLesson}, {u"what time is it"_s, InIdle}, {u"help"_s, InIdle},
        {u"next"_s, InLesson}, {u"repeat"_s, InLesson}, {u"note names"_s, InLesson},
        {u"play song three"_s, InMenu}, {u"play the minuet in g"_s, InIdle},
        {u"teach me the ode to joy"_s, InIdle}, {u"metronome at ninety"_s, InIdle},
        {u"song menu"_s, InIdle}, {u"right hand"_s, InLesson}, {u"go home"_s, InLesson},
        {u"ear training"_s, InIdle}, {u"what can i say"_s, InIdle}, {u"pause"_s, InLesson}};
    return list;
}

struct Listener {
    QString name;
    bool taught;
    int voices; ///< how many of them say each phrase
};

/// What is said where nobody is called, although it holds the words of commands.
const QStringList &mentions()
{
    static const QStringList list =
        u"the bus will stop at the station|she told him to repeat the question|we go home at six|"
        "the next train is slower|I need some help with the suitcase|what time is it in London|"
        "play the left hand slowly|could you turn the radio a bit louder please"_s.split(u'|');
    return list;
}

class Table {
public:
    void fill();

private:
    void row(const QString &kind, const Listener &listener, const QString &said,
        const QString &sentence, unsigned where);
    [[nodiscard]] QStringList stepsOf(const Samples &sound, const RecognitionRequest &request);

    QTemporaryDir folder;
    DecodingRecogniser recogniser{{sphinxKind(QStringLiteral(KELO_POCKETSPHINX))}};
    Library library{{}};
    std::optional<TaughtModel> taught;
    std::mt19937 random{7};
    qsizetype turn = 0;
};

QStringList Table::stepsOf(const Samples &sound, const RecognitionRequest &request)
{
    QStringList steps;
    std::promise<void> over;
    const auto task = recogniser.start(request, [&](const auto &transcript, const auto &error) {
        const bool final = error || transcript->final;
        if (transcript && (final || steps.isEmpty() || steps.last() != transcript->words))
            steps << (final ? u"="_s : QString()) + transcript->words;
        if (final)
            over.set_value();
    });
    constexpr std::size_t buffer = 320; // 20 ms
    for (std::size_t at = 0; at + buffer <= sound.size(); at += buffer) {
        task->append(
            {{}, QByteArray(reinterpret_cast<const char *>(sound.data() + at), 2 * buffer)});
        QThread::msleep(20); // as it is spoken: the words then come one by one
    }
    task->endAudio();
    over.get_future().wait();
    return steps;
}

void Table::row(const QString &kind, const Listener &listener, const QString &said,
    const QString &sentence, unsigned where)
{
    constexpr std::array speeds{140, 175, 200};
    constexpr std::array<std::optional<double>, 2> rooms{std::nullopt, 20.0};
    const QString &voice = sampleVoices()[turn % sampleVoices().size()];
    const int speed = speeds[static_cast<std::size_t>(turn) % speeds.size()];
    const auto room = rooms[static_cast<std::size_t>(turn) % rooms.size()];
    ++turn;
    const QString file = folder.filePath(u"speech.wav"_s);
    const auto speech =
        speakToFile(sentence, voice, speed, file) ? readSpeech(file) : std::optional<Samples>();
    if (!speech)
        qFatal("espeak-ng is missing");
    RecognitionRequest request{{}, taught, true, {}};
    for (const std::string &phrase : vocabulary(where, library.names()))
        request.contextualStrings << QString::fromStdString(phrase);
    const QStringList steps = stepsOf(inRoom(*speech, room, random), request);
    QTextStream(stdout) << kind << '\t' << listener.name << '\t' << (listener.taught ? 1 : 0)
                        << '\t' << said << '\t' << steps.join(u" / "_s) << '\n';
}

void Table::fill()
{
    const QList<Listener> listeners{{u"Kelo"_s, true, 4}, {u"Melody"_s, true, 2},
        {u"Apollo"_s, true, 1}, {u"Luna"_s, true, 1}, {u"Kelo"_s, false, 1}};
    for (const Listener &listener : listeners) {
        taught.reset();
        if (listener.taught)
            taught = recogniser.teacher()(WakeTraining::of(listener.name),
                SpeechModelFiles::of(folder.path(), listener.name), {});
        for (const Asked &each : asked()) {
            for (int voice = 0; voice < listener.voices; ++voice)
                row(u"wake"_s, listener, each.words, listener.name + u", "_s + each.words,
                    each.where);
        }
        for (int i = 0; i < 6 * listener.voices; ++i)
            row(u"talk"_s, listener, {}, bench::everydaySentence(random), InIdle);
        for (const QString &sentence : listener.taught ? mentions() : QStringList())
            row(u"talk"_s, listener, {}, sentence, InLesson);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Table().fill();
    return 0;
}
