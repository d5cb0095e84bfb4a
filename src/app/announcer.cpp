#include "app/announcer.h"

#include "app/desktop/login_item.h"
#include "app/display_scale.h"
#include "app/overlay.h"
#include "link/link.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace kelo {

Announcer::Announcer(const Sources &sources, QObject *parent)
    : QObject(parent)
    , link_(sources.link)
{
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &Announcer::sayWhatIsDue);

    followLink(sources.link);
    connect(sources.link, &Link::captionChanged, this, [this] {
        queue_.engineSpoke(link_->uptime());
        schedule();
    });
    follow(Topic::VoiceStatus, sources.voice, &VoiceControl::statusChanged,
        [voice = sources.voice] { return tr("Voice control: %1").arg(voice->status->toLower()); });
    follow(Topic::Panel, sources.overlay, &Overlay::enabledChanged, [overlay = sources.overlay] {
        return overlay->enabled() ? tr("Caption panel on") : tr("Caption panel off");
    });
    follow(Topic::LoginItem, sources.login, &LoginItem::changed, [login = sources.login] {
        return login->on() ? tr("Starts when you log in") : tr("Does not start when you log in");
    });
    follow(Topic::Scale, sources.scale, &DisplayScale::factorChanged, [scale = sources.scale] {
        return tr("Size %1 percent").arg(qRound(scale->factor() * 100));
    });
    connect(sources.questions, &WelcomeQuestions::questionAnnounced, this,
        [this](const QString &text) { happened(Topic::Question, text); });
    connect(sources.questions, &WelcomeQuestions::choiceAnnounced, this,
        [this](const QString &text) { happened(Topic::Choice, text); });
}

template <typename Sender, typename Signal>
void Announcer::follow(Topic topic, Sender *sender, Signal changed, std::function<QString()> text)
{
    queue_.assume(topic, text());
    connect(sender, changed, this, [this, topic, text = std::move(text)] {
        queue_.state(topic, text(), link_->uptime());
        schedule();
    });
}

void Announcer::followLink(Link *link)
{
    follow(Topic::LinkState, link, &Link::stateChanged,
        [link] { return tr("Kelo is %1").arg(link->state->toLower()); });
    follow(Topic::Mode, link, &Link::modeChanged,
        [link] { return tr("Mode: %1").arg(link->modeName().toLower()); });
    follow(Topic::Typing, link, &Link::typingChanged, [link] {
        return link->typing ? tr("Typing: letters go to Kelo as text") : tr("Typing is over");
    });
    follow(Topic::LargeCaptions, link, &Link::largeChanged,
        [link] { return link->large ? tr("Larger captions on") : tr("Larger captions off"); });
    follow(Topic::HighContrast, link, &Link::contrastChanged,
        [link] { return link->contrast ? tr("High contrast on") : tr("High contrast off"); });
    follow(Topic::Settings, link, &Link::settingsKeptChanged, [link] {
        return link->settingsKept ? tr("Settings are kept") : tr("Settings are not kept");
    });
    const auto update = [link] {
        return link->updateVersion->isEmpty()
            ? QString()
            : tr("New update: version %1. %2").arg(link->updateVersion, link->updateNotes);
    };
    follow(Topic::Update, link, &Link::updateVersionChanged, update);
    follow(Topic::Update, link, &Link::updateNotesChanged, update);
    follow(Topic::Visualiser, link, &Link::visualChanged,
        [link] { return link->visual ? tr("Visualiser open") : tr("Visualiser closed"); });
    follow(Topic::Paused, link, &Link::pausedChanged,
        [link] { return link->paused ? tr("Paused") : tr("Carrying on"); });
    follow(Topic::Piano, link, &Link::keyboardsChanged, [link] {
        return link->keyboards->isEmpty() ? tr("No piano connected")
                                          : tr("Piano connected: %1").arg(link->keyboards);
    });
    const auto playing = [link] {
        return link->rolling ? tr("Playing %1").arg(link->rollName) : tr("Stopped playing");
    };
    follow(Topic::Playing, link, &Link::rollingChanged, playing);
    follow(Topic::Playing, link, &Link::rollNameChanged, playing);
}

void Announcer::happened(Topic topic, const QString &text)
{
    queue_.event(topic, text);
    schedule();
}

void Announcer::schedule()
{
    const auto due = queue_.next();
    if (!due)
        return timer_.stop();
    // At least a turn of the event loop, so that fields set together are announced together.
    const double wait = std::max(0.0, *due - link_->uptime());
    timer_.start(std::chrono::milliseconds(static_cast<int>(wait * 1000)));
}

void Announcer::sayWhatIsDue()
{
    const QStringList texts = queue_.take(link_->uptime());
    if (!texts.isEmpty())
        Q_EMIT said(joined(texts));
    schedule();
}

} // namespace kelo
