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

} // namespace

/// The rules by which voice control is switched on and off, microphones are chosen, sessions
/// replace each other and words reach the engine.
class SessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// A line of a script is what happens and, after a colon, what must follow from it: all of it,
    /// in this order. Words in capitals stand for what often follows.
    void followsTheScript_data()
    {
        QTest::addColumn<QString>("script");
        const auto row = [](const char *name, const char *script) {
            QTest::newRow(name) << QString::fromUtf8(script);
        };
        row("turned on and off", R"(
toggle: ON
sound 16384 1: level 1.00; ~lvl 0.5000; log hearing sound: 1 buffers so far, recent peak 0.500
toggle: on false; cancel 0; end 0; close; status OFF; in use -; level 0.00; setting voice false; log turned off
sound 16384 9
listen
anew
wait 100
toggle: AGAIN 1
)");
        row("no speech", R"(
refuse speech
begin: status ASKING PERMISSION; status SPEECH NOT ALLOWED; log turning on; log speech recognition permission: not allowed
)");
        row("no hearing", R"(
refuse hearing
begin: status ASKING PERMISSION; status MICROPHONE NOT ALLOWED; log turning on; log speech recognition permission: allowed; log microphone permission: not allowed
)");
        row("no recogniser", R"(
recogniser missing
begin: status ASKING PERMISSION; on true; open desk; in use Desk Mic; status RECOGNISER UNAVAILABLE; setting voice true; PERMITTED; log microphones found: Desk Mic; log using microphone: Desk Mic; log the speech recogniser is not available
)");
        row("speech would leave the machine", R"(
recogniser elsewhere
begin: status ASKING PERMISSION; on true; open desk; in use Desk Mic; status ON-DEVICE SPEECH NOT READY; ~speak I can't listen yet. This Mac hasn't set up speech recognition that stays on the Mac. Turn on Dictation in System Settings, under Keyboard, wait a minute for it to download, then switch my listening back on.; on false; close; status OFF; in use -; setting voice false; PERMITTED; log microphones found: Desk Mic; log using microphone: Desk Mic; log on-device recognition is not available: not listening; log turned off
wait 100
)");
        row("at launch", R"(
resume
begin: ON
stop: OFF 0
resume
begin: AGAIN 1
resume: ALREADY 1 2
)");
        row("a microphone that cannot be used is told once, tried ever more seldom", R"(
opening fails
begin: status ASKING PERMISSION; on true; open desk; status NO MICROPHONE; setting voice true; PERMITTED; log microphones found: Desk Mic; log could not attach Desk Mic
wait 1.1: open desk
wait 2: open desk
wait 3.8
wait 0.3: open desk
opening impossible
wait 60: open desk; open desk; open desk
opening works
wait 31: BACK 0; EXPECTATIONS; log using microphone: Desk Mic
wait 40.1: RENEWED 0 1
)");
        row("no input", R"(
opening impossible
begin: status ASKING PERMISSION; on true; open desk; status NO MICROPHONE; setting voice true; PERMITTED; log microphones found: Desk Mic; log could not open any microphone
stop: on false; close; status OFF; setting voice false; log turned off
wait 100
)");
        row("a microphone that keeps going away is told twice", R"(
begin: ON
wait 20
lose: LOST 0; log lost the microphone: Desk Mic
wait 1.1: BACK 1; log using microphone: Desk Mic
lose: LOST 1; log lost the microphone: Desk Mic
wait 2.1: BACK 2; log using microphone: Desk Mic
lose: LOST 2
wait 4.1: BACK 3
wait 10.1: log using microphone: Desk Mic
lose: LOST 3; log lost the microphone: Desk Mic
stop: on false; close; status OFF; setting voice false; log turned off
told
wait 100
)");
        row("microphones come and go", R"(
devices
begin: status ASKING PERMISSION; on true; status NO MICROPHONE; setting voice true; PERMITTED; log microphones found: none; log could not open any microphone
listen
wait 10
devices *desk=Desk Mic
told
told
wait 0.25: BACK 0; EXPECTATIONS; log using microphone: Desk Mic
devices *desk=Desk Mic,!usb=USB Mic
told
wait 0.25
listen: RENEWED 0 1
)");
        row("the user chooses", R"(
devices *desk=Desk Mic,!lid=Inner,usb=USB Mic
choose usb: setting microphone usb
begin: status ASKING PERMISSION; on true; open usb; in use USB Mic; status LISTENING FOR “KELO”; start 0; EXPECTATIONS; setting voice true; PERMITTED; log microphones found: Desk Mic, Inner, USB Mic; log using microphone: USB Mic
choose usb
choose desk: open desk; in use Desk Mic; RENEWED 0 1; setting microphone desk; log microphones found: Desk Mic, Inner, USB Mic; log using microphone: Desk Mic
devices !lid=Inner
lose: cancel 1; end 1; status NO MICROPHONE; in use -; log lost the microphone: Desk Mic
wait 1.1: open lid; in use Inner; status LISTENING FOR “KELO”; start 2; log using microphone: Inner
devices !lid=Inner,desk=Desk Mic
told
wait 0.25: open desk; in use Desk Mic; RENEWED 2 3; log using microphone: Desk Mic
)");
        row("sessions end once", R"(
begin: ON
partly one: ~ear 0 one
partly one: ~ear 0 one
wait 1
finally one two: ~ear 1 one two
wait 0.39
wait 0.02: RENEWED 0 1
finally one two: ~ear 1 one two
wait 0.2
listen: RENEWED 1 2
wait 5
stale 0
stale 1
nothing
wait 1
finally x: ~ear 1 x
stop: OFF 2
partly too late
wait 5
begin: AGAIN 3
stale 2
)");
        row("typing", R"(
begin: ON
typing on
partly play
finally play it
typing off
wait 0.5: RENEWED 0 1
)");
        row("errors", R"(
begin: ON
fail kAFAssistantErrorDomain 203
wait 0.5: RENEWED 0 1
fail kAFAssistantErrorDomain 216
fail kAFAssistantErrorDomain 301
fail kAFAssistantErrorDomain 1110
fail kAFAssistantErrorDomain 1101: log recogniser error kAFAssistantErrorDomain 1101: it broke
fail kLSRErrorDomain 1110: log recogniser error kLSRErrorDomain 1110: it broke
wait 0.5: RENEWED 1 2
complain no room: log no room
complain no room
complain room again: log room again
)");
        row("the watchdog acts in quiet only", R"(
begin: ON
wait 39.9
wait 0.2: RENEWED 0 1
wait 34
partly hm: ~ear 0 hm
wait 6
wait 33.8
partly hm: ~ear 0 hm
wait 6.2: RENEWED 1 2
engine say Hello there
wait 40
engine done
wait 40: RENEWED 2 3
begin: ALREADY 3 4
wait 39.9
wait 0.2: RENEWED 4 5
)");
        row("the engine steers", R"(
command #voice: ON
name Zoë
engine vocab sonata|fugue
engine earreset: cancel 0; end 0; status LISTENING FOR “ZOË”; start 1; expect sonata|fugue
engine ears off: OFF 1
engine earreset
command #voice: status ASKING PERMISSION; on true; open desk; in use Desk Mic; status LISTENING FOR “ZOË”; start 2; setting voice true; PERMITTED; log microphones found: Desk Mic; log using microphone: Desk Mic
vocabulary
anew: RENEWED 2 3; expect Zoë|Hey Zoë|composition|metronome|REAPER|Clair de Lune|ear training|jazz lesson
)");
        row("loudness", R"(
begin: ON
sound 0 11: ~lvl 0.0000; ~lvl 0.0000; ~lvl 0.0000; log hearing sound: 1 buffers so far, recent peak 0.000; log hearing sound: 6 buffers so far, recent peak 0.000
sound 3277 1
sound 0 5: level 0.60; ~lvl 0.1000
sound -32768 5: level 1.00; ~lvl 1.0000
)");
    }

    void followsTheScript()
    {
        QFETCH(QString, script);
        const QString permitted = u"log turning on; log speech recognition permission: allowed; "
                                  "log microphone permission: allowed"_s;
        const QString expectations = u"expect Kelo|Hey Kelo|composition|metronome|REAPER|Clair de "
                                     "Lune|ear training|jazz lesson"_s;
        const QString listening = u"status LISTENING FOR “KELO”"_s;
        const QString found = u"log microphones found: Desk Mic; log using microphone: Desk Mic"_s;
        const QString open = "open desk; in use Desk Mic; "_L1 + listening;
        const QString on = "status ASKING PERMISSION; on true; "_L1 + open + "; start "_L1;
        const std::pair<const char *, QString> macros[] = {
            {"ON", on + "0; EXPECTATIONS; setting voice true; PERMITTED; "_L1 + found},
            {"EXPECTATIONS", expectations},
            {"PERMITTED", permitted},
            {"AGAIN (\\d)", on + "\\1; setting voice true; "_L1 + permitted + "; "_L1 + found},
            {"ALREADY (\\d) (\\d)",
                "status ASKING PERMISSION; cancel \\1; end \\1; "_L1 + listening
                    + "; start \\2; "_L1 + permitted},
            {"OFF (\\d)",
                u"on false; cancel \\1; end \\1; close; status OFF; in use -; "
                "setting voice false; log turned off"_s},
            {"RENEWED (\\d) (\\d)", u"cancel \\1; end \\1; start \\2"_s},
            {"LOST (\\d)", u"cancel \\1; end \\1; status NO MICROPHONE; in use -"_s},
            {"BACK (\\d)", open + "; start \\1"_L1},
        };
        for (const auto &[macro, lines] : macros)
            script.replace(
                QRegularExpression("(?<=[:;] )"_L1 + QString::fromLatin1(macro) + "\\b"_L1), lines);
        VoiceFixture voice;
        voice.link->setVoiceInput(voice.voice.get());
        for (const QString &step : script.trimmed().split(u'\n')) {
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

    void prefersMicrophones_data()
    {
        QTest::addColumn<QString>("there"); // by their ids
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("built in") << u"usb phone book inner"_s << u""_s << u"inner"_s;
        QTest::newRow("named after the computer") << u"usb phone book"_s << u""_s << u"book"_s;
        QTest::newRow("the default") << u"usb phone"_s << u""_s << u"phone"_s;
        QTest::newRow("any") << u"usb"_s << u""_s << u"usb"_s;
        QTest::newRow("the user's") << u"usb phone book inner"_s << u"usb"_s << u"usb"_s;
        QTest::newRow("the user's is not there") << u"usb phone"_s << u"book"_s << u"phone"_s;
        QTest::newRow("none") << u""_s << u"usb"_s << u""_s;
    }

    void prefersMicrophones()
    {
        const QList<MicrophoneDevice> all{{u"usb"_s, u"USB Mic"_s, false, false},
            {u"phone"_s, u"Phone"_s, false, true},
            {u"book"_s, u"Ann's MacBook Pro"_s, false, false},
            {u"inner"_s, u"Internal"_s, true, false}};
        QFETCH(QString, there);
        QFETCH(QString, wanted);
        QList<MicrophoneDevice> devices;
        std::copy_if(all.begin(), all.end(), std::back_inserter(devices),
            [&](const auto &device) { return there.split(u' ').contains(device.id); });
        const MicrophoneDevice *chosen = chosenMicrophone(devices, wanted);
        QTEST(chosen ? chosen->id : QString(), "chosen");
    }

#ifdef KELO_PULSE
    void knowsWhatIsPluggedIn_data()
    {
        QTest::addColumn<QByteArray>("properties"); // form factor and bus
        QTest::addColumn<QByteArray>("ports"); // name:type:available, the first is in use
        QTest::addColumn<QString>("what");
        const auto row = [](const char *name, const char *properties, const char *ports,
                             const QString &what) {
            QTest::newRow(name) << QByteArray(properties) << QByteArray(ports) << what;
        };
        row("a laptop", "internal pci", "analog-input-internal-mic:m:? mic:m:n", u"built in"_s);
        row("a laptop's digital one", "internal pci", "[In] Mic1:m:?", u"built in"_s);
        row("told by the bus alone", "- pci", "analog-input-internal-mic:m:?", u"built in"_s);
        row("a headset in the laptop", "internal pci", "mic:m:y internal-mic:m:?", u"plugged in"_s);
        row("an empty jack", "internal pci", "front-mic:m:n rear-mic:m:n", u"none"_s);
        row("something in the jack", "internal pci", "front-mic:m:y", u"plugged in"_s);
        row("a line input", "internal pci", "linein:l:?", u"plugged in"_s);
        row("the bus says nothing", "- pci", "", u"plugged in"_s);
        row("no ports at all", "internal pci", "", u"built in"_s);
        row("a camera", "webcam usb", "mic:m:?", u"plugged in"_s);
        row("what the speakers play", "monitor", "", u"none"_s);
    }

    void knowsWhatIsPluggedIn()
    {
        QFETCH(QByteArray, properties);
        QFETCH(QByteArray, ports);
        const auto words = properties.split(' ');
        pa_source_info source{};
        source.name = "id";
        source.description = " A  Mic ";
        source.monitor_of_sink = properties == "monitor" ? 0 : PA_INVALID_INDEX;
        source.proplist = pa_proplist_new();
        if (words[0] != "-")
            pa_proplist_sets(source.proplist, PA_PROP_DEVICE_FORM_FACTOR, words[0].constData());
        pa_proplist_sets(source.proplist, PA_PROP_DEVICE_BUS, words.value(1).constData());
        const auto listed =
            ports.isEmpty() ? QByteArrayList() : ports.replace("] M", "]M").split(' ');
        std::vector<pa_source_port_info> infos(static_cast<std::size_t>(listed.size()));
        std::vector<pa_source_port_info *> pointers;
        QByteArrayList names;
        for (std::size_t i = 0; i < infos.size(); ++i) {
            const auto parts = listed[static_cast<qsizetype>(i)].split(':');
            names.append(parts[0]);
            infos[i].name = names.last().constData();
            infos[i].type = parts[1] == "m" ? PA_DEVICE_PORT_TYPE_MIC : PA_DEVICE_PORT_TYPE_LINE;
            infos[i].available = parts[2] == "n" ? PA_PORT_AVAILABLE_NO
                : parts[2] == "y"                ? PA_PORT_AVAILABLE_YES
                                                 : PA_PORT_AVAILABLE_UNKNOWN;
            pointers.push_back(&infos[i]);
        }
        source.ports = pointers.data();
        source.n_ports = static_cast<uint32_t>(pointers.size());
        source.active_port = pointers.empty() ? nullptr : pointers[0];
        const auto device = pulse::microphoneOf(source, u"id"_s);
        pa_proplist_free(source.proplist);
        QVERIFY(!device || (device->name == u"A Mic"_s && device->systemDefault));
        QTEST(!device ? u"none"_s : device->builtIn ? u"built in"_s : u"plugged in"_s, "what");
    }
#endif

    void handsWordsOn_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("sent");
        const auto row = [](const char *name, const QString &words, const QString &sent) {
            QTest::newRow(name) << words << sent;
        };
        row("as they are", u"Kelo, play  me «Für Elise»! "_s, u"Kelo, play  me «Für Elise»! "_s);
        row("no second line", u"a\nb\r\nc\td\u0000e\u001ff"_s, u"abcdef"_s);
        row("no second command", u"stop~quit"_s, u"stopquit"_s);
        row("delete is no control here", u"a\u007fb"_s, u"a\u007fb"_s);
        row("beyond the basic plane", u"\U0001D11E\n~"_s, u"\U0001D11E"_s);
        row("the end of much", QString(400, u'a') + QString(600, u'b'), QString(600, u'b'));
        row("counted when clean", QString(500, u'a') + QString(101, u'~'), QString(500, u'a'));
        const QString family = u"👩‍👩‍👧"_s;
        const QString accented = u"e\u0301"_s;
        row("as a reader counts", u"x"_s + accented.repeated(300) + family.repeated(300),
            accented.repeated(300) + family.repeated(300));
    }

    void handsWordsOn()
    {
        QFETCH(QString, words);
        QFETCH(QString, sent);
        QCOMPARE(earLine(words, false), u"~ear 0 "_s + sent + u'\n');
        QCOMPARE(earLine(words, true), u"~ear 1 "_s + sent + u'\n');
    }

    void knowsWhenTheAssistantFellSilent()
    {
        VoiceFixture voice;
        voice.link.time.advance(5);
        voice.link.say({"done"}); // it had said nothing
        QCOMPARE(voice->quietSince, 0.0);
        for (const bool awaiting : {false, true}) {
            voice->awaiting = awaiting;
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
};

QTEST_GUILESS_MAIN(SessionTest)
#include "session_test.moc"
