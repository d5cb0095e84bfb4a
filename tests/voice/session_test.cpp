#include "support/table.h"
#include "voice/ear_line.h"
#include "voice/scripted.h"

#ifdef KELO_PULSE
#include "voice/capture/pulse_library.h"
#endif

#include <QRegularExpression>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

namespace {

/// Does what a line of a script says.
void play(VoiceFixture &voice, const QString &line)
{
    const QString what = line.section(u' ', 0, 0);
    const QString rest = line.section(u' ', 1);
    const auto say = [&](std::size_t session, const QString &words, bool final) {
        voice.recogniser->handlers.at(session)(Transcript{words, final}, std::nullopt);
    };
    const std::size_t newest = voice.recogniser->handlers.size() - 1;
    const QHash<QString, std::function<void()>> deeds{
        {u"begin"_s, [&] { voice->begin(); }},
        {u"stop"_s, [&] { voice->stop(); }},
        {u"toggle"_s, [&] { voice->toggle(); }},
        {u"resume"_s, [&] { voice->resumeIfWanted(); }},
        {u"listen"_s, [&] { voice->listen(); }},
        {u"anew"_s, [&] { voice->startOver(); }},
        {u"vocabulary"_s, [&] { voice->setVocabulary(rest.split(u'|', Qt::SkipEmptyParts)); }},
        {u"choose"_s, [&] { voice->chooseMicrophone(rest); }},
        {u"wait"_s, [&] { voice.link.time.advance(rest.toDouble()); }},
        {u"engine"_s, [&] { voice.link.say({rest.toUtf8()}); }},
        {u"command"_s, [&] { voice.link->send(rest); }},
        {u"name"_s, [&] { voice.link->handle("name " + rest.toUtf8()); }},
        {u"typing"_s, [&] { voice.link->handle(rest == u"on"_s ? "typing 1" : "typing 0"); }},
        {u"partly"_s, [&] { say(newest, rest, false); }},
        {u"finally"_s, [&] { say(newest, rest, true); }},
        {u"stale"_s, [&] { say(rest.toUInt(), u"old"_s, true); }},
        {u"nothing"_s, [&] { voice.recogniser->handlers.back()(std::nullopt, std::nullopt); }},
        {u"fail"_s,
            [&] {
                voice.recogniser->handlers.back()(std::nullopt,
                    RecogniserError{
                        rest.section(u' ', 0, 0), rest.section(u' ', 1).toInt(), u"it broke"_s});
            }},
        {u"refuse"_s,
            [&] {
                voice.permissions->speech = rest != u"speech"_s;
                voice.permissions->hearing = rest != u"hearing"_s;
            }},
        {u"opening"_s,
            [&] {
                voice.microphone->opening = rest == u"fails"_s ? Microphone::Opening::NotAttached
                    : rest == u"impossible"_s                  ? Microphone::Opening::NoInput
                                                               : Microphone::Opening::Started;
            }},
        {u"recogniser"_s,
            [&] {
                voice.recogniser->available = rest != u"missing"_s;
                voice.recogniser->onDevice = rest != u"elsewhere"_s;
            }},
        {u"devices"_s, // id=Name, built-in ones with "!", the default with "*"
            [&] {
                voice.microphone->devices.clear();
                for (const QString &device : rest.split(u',', Qt::SkipEmptyParts)) {
                    QString id = device.section(u'=', 0, 0);
                    voice.microphone->devices.append({id.remove(u'!').remove(u'*'),
                        device.section(u'=', 1), device.contains(u'!'), device.contains(u'*')});
                }
            }},
        {u"told"_s, [&] { Q_EMIT voice.microphone->devicesChanged(); }},
        {u"lose"_s, [&] { Q_EMIT voice.microphone->lost(); }},
        {u"look"_s, [&] { voice->refreshMicrophones(); }},
        {u"complain"_s, [&] { voice.recogniser->requests.last().log(rest); }},
        {u"sound"_s, // peak of 32768, buffers of 20 ms
            [&] {
                const std::vector<qint16> samples(
                    320, static_cast<qint16>(rest.section(u' ', 0, 0).toInt()));
                for (int i = 0; i < rest.section(u' ', 1).toInt(); ++i) {
                    voice.microphone->hear(
                        {{}, QByteArray(reinterpret_cast<const char *>(samples.data()), 640)});
                    voice.link.time.advance(0.02);
                }
            }},
    };
    if (!deeds.contains(what))
        qFatal("no such deed: %s", qPrintable(what));
    deeds[what]();
}

#ifdef KELO_PULSE
/// What becomes of a source of the sound server's.
QString pluggedIn(const QByteArray &described)
{
    const QByteArrayList words = described.split(' ');
    QByteArrayList names = words.sliced(2);
    pa_source_info source{};
    source.name = "id";
    source.description = " A  Mic ";
    source.monitor_of_sink = words[0] == "monitor" ? 0 : PA_INVALID_INDEX;
    source.proplist = pa_proplist_new();
    if (words[0] != "-")
        pa_proplist_sets(source.proplist, PA_PROP_DEVICE_FORM_FACTOR, words[0].constData());
    pa_proplist_sets(source.proplist, PA_PROP_DEVICE_BUS, words[1].constData());
    std::vector<pa_source_port_info> ports;
    for (QByteArray &word : names) {
        word.replace(':', '\0'); // the name ends there
        const qsizetype type = word.indexOf('\0') + 1;
        pa_source_port_info port{};
        port.name = word.constData();
        port.type = word[type] == 'm' ? PA_DEVICE_PORT_TYPE_MIC : PA_DEVICE_PORT_TYPE_LINE;
        port.available = word[type + 2] == 'n' ? PA_PORT_AVAILABLE_NO
            : word[type + 2] == 'y'            ? PA_PORT_AVAILABLE_YES
                                               : PA_PORT_AVAILABLE_UNKNOWN;
        ports.push_back(port);
    }
    std::vector<pa_source_port_info *> pointers;
    for (auto &port : ports)
        pointers.push_back(&port);
    source.ports = pointers.data();
    source.n_ports = static_cast<uint32_t>(pointers.size());
    source.active_port = pointers.empty() ? nullptr : pointers[0];
    const auto device = pulse::microphoneOf(source, u"id"_s);
    pa_proplist_free(source.proplist);
    if (device && (device->name != u"A Mic"_s || !device->systemDefault))
        return u"something else"_s;
    return !device ? u"none"_s : device->builtIn ? u"built in"_s : u"plugged in"_s;
}
#endif

} // namespace

/// The rules by which voice control is switched on and off, microphones are chosen, sessions
/// replace each other and words reach the engine.
class SessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void followsTheScript_data() { macros_ = scriptRows(QStringLiteral(KELO_SESSIONS)); }

    void followsTheScript()
    {
        QFETCH(QString, script);
        QStringList known = macros_.split(u'\n');
        std::reverse(known.begin(), known.end()); // they build on those above
        for (const QString &macro : std::as_const(known))
            script.replace(
                QRegularExpression("(?<=[:;] )"_L1 + macro.section(u" = "_s, 0, 0) + "\\b"_L1),
                macro.section(u" = "_s, 1));
        VoiceFixture voice;
        voice.link->setVoiceInput(voice.voice.get());
        for (const QString &step : script.split(u'\n')) {
            play(voice, step.section(u": "_s, 0, 0));
            QCOMPARE(voice.trace(), step.section(u": "_s, 1).split(u"; "_s, Qt::SkipEmptyParts));
        }
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
        QVERIFY(voice->status.get() == u"OFF"_s && !voice->on);
    }

    void teachesTheNameAndListensAnew()
    {
        VoiceFixture voice;
        voice.recogniser->teachable = true;
        voice->begin();
        QVERIFY(!voice.recogniser->requests.last().taught);
        QStringList trace;
        QTRY_VERIFY((trace += voice.trace(), trace.contains(u"taught Kelo"_s)));
        QVERIFY(trace.contains(u"log the recogniser has been taught the name"_s));
        voice.link->handle("name Luna");
        voice->listen(); // no model of an old name
        QVERIFY(!voice.recogniser->requests.last().taught);
        QTRY_VERIFY((trace += voice.trace(), trace.contains(u"taught Luna"_s)));
        voice.link->handle("name Aria");
        voice->listen();
        voice->stop();
        const auto sessions = voice.recogniser->handlers.size();
        QTRY_COMPARE(voice.recogniser->taughtNames.load(), 3);
        QTest::qWait(20);
        QCOMPARE(voice.recogniser->handlers.size(), sessions); // taught while off: nobody listens
    }

    void prefersMicrophones()
    {
        const QList<MicrophoneDevice> all{{u"usb"_s, u"USB Mic"_s, false, false},
            {u"phone"_s, u"Phone"_s, false, true},
            {u"book"_s, u"Ann's MacBook Pro"_s, false, false},
            {u"inner"_s, u"Internal"_s, true, false}};
        const auto chosen = [&all](const QString &situation) { // what is there > what is wanted
            auto devices = all;
            devices.removeIf([&](const auto &device) {
                return !situation.section(u'>', 0, 0).split(u' ').contains(device.id);
            });
            const auto *device = chosenMicrophone(devices, situation.section(u"> "_s, 1));
            return device ? device->id : QString();
        };
        checkRows<QString, QString>(chosen,
            {{"built in", u"usb phone book inner > "_s, u"inner"_s},
                {"named after the computer", u"usb phone book > "_s, u"book"_s},
                {"the default", u"usb phone > "_s, u"phone"_s}, {"any", u"usb > "_s, u"usb"_s},
                {"the user's", u"usb phone book inner > usb"_s, u"usb"_s},
                {"the user's is not there", u"usb phone > book"_s, u"phone"_s},
                {"none", u"> usb"_s, QString()}});
    }

#ifdef KELO_PULSE
    void knowsWhatIsPluggedIn()
    {
        // Form factor and bus, then the ports as name:type:available; the first is in use.
        checkRows<QByteArray, QString>(pluggedIn,
            {{"a laptop", "internal pci analog-input-internal-mic:m:? mic:m:n", u"built in"_s},
                {"a laptop's digital one", "internal pci [In]Mic1:m:?", u"built in"_s},
                {"told by the bus", "- pci analog-input-internal-mic:m:?", u"built in"_s},
                {"a headset", "internal pci mic:m:y internal-mic:m:?", u"plugged in"_s},
                {"an empty jack", "internal pci front-mic:m:n rear-mic:m:n", u"none"_s},
                {"something in the jack", "internal pci front-mic:m:y", u"plugged in"_s},
                {"a line input", "internal pci linein:l:?", u"plugged in"_s},
                {"the bus says nothing", "- pci", u"plugged in"_s},
                {"no ports at all", "internal pci", u"built in"_s},
                {"a camera", "webcam usb mic:m:?", u"plugged in"_s},
                {"what the speakers play", "monitor -", u"none"_s}});
    }
#endif

    void handsWordsOn()
    {
        const QString family = u"👩‍👩‍👧"_s;
        const QString accented = u"e\u0301"_s;
        const QString counted = accented.repeated(300) + family.repeated(300);
        checkRows<QString, QString>([](const QString &words) { return earLine(words, true); },
            {{"as they are", u"Kelo, play  me «Für Elise»! "_s,
                 u"~ear 1 Kelo, play  me «Für Elise»! \n"_s},
                {"no second line", u"a\nb\r\nc\td\u0000e\u001ff"_s, u"~ear 1 abcdef\n"_s},
                {"no second command", u"stop~quit"_s, u"~ear 1 stopquit\n"_s},
                {"delete is no control here", u"a\u007fb"_s, u"~ear 1 a\u007fb\n"_s},
                {"beyond the basic plane", u"\U0001D11E\n~"_s, u"~ear 1 \U0001D11E\n"_s},
                {"the end of much", QString(400, u'a') + QString(600, u'b'),
                    u"~ear 1 "_s + QString(600, u'b') + u'\n'},
                {"counted when clean", QString(500, u'a') + QString(101, u'~'),
                    u"~ear 1 "_s + QString(500, u'a') + u'\n'},
                {"as a reader counts", u'x' + counted, u"~ear 1 "_s + counted + u'\n'}});
        QCOMPARE(earLine(u"a"_s, false), u"~ear 0 a\n"_s);
    }

    void knowsWhenTheAssistantFellSilent()
    {
        VoiceFixture voice;
        voice.link.time.advance(5);
        voice.link.say({"done"}); // it had said nothing
        QCOMPARE(voice->quietSince, 0.0);
        for (const bool awaiting : {false, true}) {
            voice->awaitAnswer(awaiting);
            voice.link.say({"say Really?"});
            voice.link.time.advance(2);
            voice.link.say({"done"});
            QCOMPARE(voice->quietSince, voice.link.time.now());
            QCOMPARE(voice->openUntil, awaiting ? voice.link.time.now() + 8 : 0.0);
        }
    }

    void keepsItsLogSmall()
    {
        VoiceFixture voice;
        const QString log = voice.link.dataDir + u"/voice-log.txt"_s;
        QVERIFY(QFile::remove(log));
        voice->log(u"lost"_s); // whoever wants a log makes it
        QVERIFY(!QFile::exists(log));
        voice.link.write(u"voice-log.txt"_s, "before\n");
        voice.link.time.advance(5);
        voice->log(u"naïve"_s);
        QCOMPARE(voice.link.read(u"voice-log.txt"_s), QByteArray("before\n12:00:05  naïve\n"));
        voice.link.write(u"voice-log.old.txt"_s, "older\n");
        voice.link.write(u"voice-log.txt"_s, QByteArray((1 << 20) + 1, 'x'));
        voice->log(u"anew"_s);
        QCOMPARE(voice.link.read(u"voice-log.txt"_s), QByteArray("12:00:05  anew\n"));
        QCOMPARE(voice.link.read(u"voice-log.old.txt"_s), QByteArray((1 << 20) + 1, 'x'));
    }

private:
    QString macros_;
};

QTEST_GUILESS_MAIN(SessionTest)
#include "session_test.moc"
