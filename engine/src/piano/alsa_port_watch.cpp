#include "log/log.h"
#include "piano/port_watch.h"

#include <alsa/asoundlib.h>
#include <poll.h>

#include <cerrno>

namespace kelo::engine {

struct PortWatch::Client {
    Client() = default;
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;
    ~Client()
    {
        if (sequencer)
            snd_seq_close(sequencer);
    }

    bool open()
    {
        if (snd_seq_open(&sequencer, "default", SND_SEQ_OPEN_INPUT, SND_SEQ_NONBLOCK) < 0)
            return false;
        snd_seq_set_client_name(sequencer, "Kelo watch");
        const int port = snd_seq_create_simple_port(sequencer, "news",
            SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT, SND_SEQ_PORT_TYPE_APPLICATION);
        return port >= 0
            && snd_seq_connect_from(
                   sequencer, port, SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE)
            >= 0;
    }

    snd_seq_t *sequencer = nullptr;
};

PortWatch::PortWatch()
    : client_(std::make_unique<Client>())
{
    if (client_->open())
        return;
    client_.reset();
    log(LogLevel::Info, "piano", "the MIDI system announces nothing to us");
}

PortWatch::~PortWatch() = default;

int PortWatch::file() const
{
    pollfd source{-1, POLLIN, 0};
    if (client_)
        snd_seq_poll_descriptors(client_->sequencer, &source, 1, POLLIN);
    return source.fd;
}

MidiSystem::News PortWatch::take()
{
    MidiSystem::News news;
    snd_seq_event_t *event = nullptr;
    while (client_) {
        const int read = snd_seq_event_input(client_->sequencer, &event);
        if (read == -EAGAIN)
            break;
        news.stirred = true;
        if (read == -ENOSPC) // some were lost
            continue;
        if (read < 0 || !event) {
            client_.reset();
            break;
        }
        if (event->type == SND_SEQ_EVENT_CLIENT_EXIT || event->type == SND_SEQ_EVENT_PORT_EXIT)
            news.gone.push_back(event->data.addr.client);
    }
    return news;
}

} // namespace kelo::engine
