#include "engine_process.h"

#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// A speech service at a socket, for one client. It answers every request; `speak` is given what
/// shall be said and gives back what to tell of it.
class SpeechService {
public:
    using Speak = std::function<QByteArrayList(const QByteArray &text, int message)>;

    QByteArrayList set; ///< what was set before something was said

    SpeechService(const QString &path, Speak speak)
        : speak_(std::move(speak))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.toUtf8().constData(), sizeof address.sun_path);
        const auto *generic = reinterpret_cast<const sockaddr *>(&address);
        if (bind(door_, generic, sizeof address) == 0 && listen(door_, 1) == 0)
            thread_ = std::jthread([this] { serve(); });
    }
    ~SpeechService()
    {
        shutdown(door_, SHUT_RDWR);
        close(door_);
    }
    Q_DISABLE_COPY_MOVE(SpeechService)

    static QByteArray event(const char *code, int message, const QByteArray &what)
    {
        const QByteArray head = QByteArray(code) + '-';
        return head + QByteArray::number(message) + "\r\n" + head + "1\r\n" + what;
    }

private:
    void serve()
    {
        const int client = accept(door_, nullptr, nullptr);
        const auto say = [client](const QByteArray &text) {
            send(client, text.constData(), static_cast<std::size_t>(text.size()), MSG_NOSIGNAL);
        };
        QByteArray text;
        bool receives = false;
        char byte = 0;
        for (QByteArray line; read(client, &byte, 1) == 1;) {
            line += byte;
            if (!line.endsWith("\r\n"))
                continue;
            line.chop(2);
            if (receives && line != ".") {
                text += line;
            } else if (receives) {
                receives = false;
                const QByteArray number = QByteArray::number(++messages_);
                say("225-" + number + "\r\n225 OK MESSAGE QUEUED\r\n");
                for (const QByteArray &told : speak_(std::exchange(text, {}), messages_))
                    say(told);
            } else if (line.toUpper() == "SPEAK") {
                receives = true;
                say("230 OK RECEIVING DATA\r\n");
            } else {
                if (line.contains("VOLUME") || line.contains("RATE") || line.contains("PITCH"))
                    set << line.mid(9);
                say("200 OK\r\n");
            }
            line.clear();
        }
        close(client);
    }

    Speak speak_;
    int door_ = socket(AF_UNIX, SOCK_STREAM, 0);
    int messages_ = 20;
    std::jthread thread_; // ends before what it uses
};

} // namespace

/// The desktop's speech service in place of the engine's own voice.
class DispatcherTest : public EngineTest {
    Q_OBJECT

private Q_SLOTS:
    void theServiceSpeaksAndTellsHowFar()
    {
        QByteArrayList said; // the service's until its last answer is here
        std::atomic<int> texts = 0;
        const SpeechService service(
            engine->path(u"speech"_s), [&](const QByteArray &text, int number) {
                using S = SpeechService;
                said << text;
                if (++texts == 1)
                    return QByteArrayList(); // the greeting is cut short
                return QByteArrayList{
                    S::event("702", number - 1, "702 END\r\n"), // of what is no more
                    S::event("701", number, "701 BEGIN\r\n"),
                    S::event("700", number, "700-0 3\r\n700 INDEX MARK\r\n"),
                    S::event("700", number, "700-nonsense\r\n700 INDEX MARK\r\n"),
                    S::event("700", number, "700-6 5\r\n700 INDEX MARK\r\n"),
                    S::event("702", number, "702 END\r\n")};
            });
        startWithService();
        QVERIFY(!engine->waitFor(u"say Good .*"_s).isEmpty());
        QTRY_COMPARE(texts, 1);
        expect("~speak All <three> keys\n",
            {u"say All <three> keys"_s, u"start"_s, u"word 0 3 180"_s, u"word 6 5 300"_s});
        QVERIFY(!engine->waitFor(u"done"_s, 3).isEmpty());
        QCOMPARE(said.last(),
            R"(<speak><mark name="0 3"/>All <mark name="5 5"/>&lt;three&gt; )"
            R"(<mark name="12 4"/>keys</speak>)"_ba);
        QCOMPARE(engine->end(), QString()); // before what it speaks to ends
    }

    void theServiceIsChosenByVoice()
    {
        std::atomic<int> texts = 0;
        const SpeechService service(engine->path(u"speech"_s), [&](const QByteArray &, int number) {
            ++texts;
            return QByteArrayList{SpeechService::event("701", number, "701 BEGIN\r\n"),
                SpeechService::event("702", number, "702 END\r\n")};
        });
        startWithService({});
        expect("\n~say use the system's voice\n", {u"say I speak.*"_s, u"start"_s, u"done"_s});
        QCOMPARE(texts, 1);
        QVERIFY(engine->profile().value(u"systemVoice"_s).toBool());
        for (const char *wish : {"quieter", "speak faster", "lower voice"})
            expect("~say " + QByteArray(wish) + '\n', {u"say .*"_s, u"done"_s});
        QCOMPARE(service.set.join(' '),
            "VOLUME 60 RATE 0 PITCH 0 VOLUME 60 RATE 15 PITCH 0 VOLUME 60 RATE 15 PITCH -20");
        expect("~say use your own voice\n", {u"say .*"_s, u"spec \\d+ 0 .*"_s});
        QCOMPARE(texts, 4);
        QCOMPARE(engine->end(), QString());
    }

    void ownVoiceWhereThereIsNoService()
    {
        startWithService();
        QVERIFY(!engine->waitFor(u"say Good .*"_s).isEmpty());
        QVERIFY(!engine->waitFor(u"spec \\d+ 0 .*"_s).isEmpty());
        QVERIFY(!engine->waitFor(u"done"_s, 30).isEmpty());
    }

private:
    void startWithService(const QString &speech = u"speech-dispatcher"_s)
    {
        engine->start({},
            {{u"KELO_SPEECH"_s, speech},
                // The client's library keeps a few bytes when it fails; only so is it seen to be
                // its.
                {u"ASAN_OPTIONS"_s, u"fast_unwind_on_malloc=0"_s},
                {u"SPEECHD_ADDRESS"_s, u"unix_socket:"_s + engine->path(u"speech"_s)}});
    }
};

QTEST_GUILESS_MAIN(DispatcherTest)
#include "dispatcher_test.moc"
