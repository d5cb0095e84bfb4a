#include "app/overlay.h"

#include "app/display_scale.h"
#include "app/x11.h"
#include "link/link.h"
#include "voice/voice_control.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQuickView>
#include <QScreen>
#include <QSettings>

using namespace Qt::StringLiterals;

Q_DECLARE_LOGGING_CATEGORY(appLog)

namespace kelo {

namespace {

constexpr QSize panelSize{848, 272};
constexpr std::chrono::milliseconds fadeOutTime{450}; // as the view has it
constexpr int gapBelow = 26; // between the panel and the edge of the work area

const QString enabledKey = u"overlay"_s;

/// Something composes the screen, so a window may be transparent. True without X11.
bool composited()
{
    xcb_connection_t *x = x11::connection();
    return !x || x11::hasOwner(x, x11::atom(x, "_NET_WM_CM_S0"));
}

} // namespace

Overlay::Overlay(Parts parts, QObject *parent)
    : QObject(parent)
    , parts_(std::move(parts))
{
    checks_.setInterval(
        std::chrono::milliseconds(static_cast<int>(OverlayRules::checkInterval * 1000)));
    connect(&checks_, &QTimer::timeout, this, &Overlay::check);
    fadeOut_.setSingleShot(true);
    fadeOut_.setInterval(fadeOutTime);
    connect(&fadeOut_, &QTimer::timeout, this, &Overlay::leave);
}

Overlay::~Overlay() = default;

void Overlay::setUp()
{
    Link *link = parts_.link;
    connect(link, &Link::speakingChanged, this, [this, link] {
        show(link->speaking ? OverlayRules::whileSpeaking : OverlayRules::afterSpeaking);
    });
    connect(link, &Link::heardChanged, this, [this] { show(OverlayRules::afterHearing); });
    connect(link, &Link::flashAtChanged, this, [this, link] {
        if (link->flash == u"good"_s)
            show(OverlayRules::afterGoodResult);
    });
}

bool Overlay::enabled() const
{
    return parts_.settings->value(enabledKey, true).toBool();
}

void Overlay::setEnabled(bool on)
{
    parts_.settings->setValue(enabledKey, on);
    Q_EMIT enabledChanged();
}

PanelFacts Overlay::facts() const
{
    return {parts_.link->uptime(), enabled(), parts_.sight()};
}

void Overlay::show(double seconds)
{
    const bool stood = rules_.visible();
    if (!rules_.show(seconds, facts()))
        return;
    if (!window_)
        makeWindow();
    place();
    if (stood)
        return;
    checks_.start();
    seeThrough_ = composited();
    if (!drawn_) {
        connect(window_.get(), &QQuickWindow::frameSwapped, this, &Overlay::firstFrameShown,
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    }
    window_->show();
    window_->raise();
    Q_EMIT visibleChanged(); // while it was still fading out
}

void Overlay::firstFrameShown()
{
    drawn_ = window_->isVisible();
    Q_EMIT visibleChanged();
}

void Overlay::check()
{
    if (!rules_.check(parts_.link->speaking, facts()))
        return;
    checks_.stop();
    fadeOut_.start();
    Q_EMIT visibleChanged();
}

void Overlay::leave()
{
    if (rules_.visible())
        return; // it has come back meanwhile
    window_->hide();
    drawn_ = false;
}

void Overlay::makeWindow()
{
    window_ = std::make_unique<QQuickView>(parts_.engine, nullptr);
    window_->setTitle(tr("Kelo captions"));
    // Without the window manager, or some would give it clicks, a frame or a place in the task
    // list, or put it below a window that fills the screen.
    window_->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
        | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus
        | Qt::BypassWindowManagerHint);
    window_->setColor(Qt::transparent);
    window_->setResizeMode(QQuickView::SizeRootObjectToView);
    window_->setInitialProperties({
        {u"link"_s, QVariant::fromValue(parts_.link)},
        {u"voice"_s, QVariant::fromValue(parts_.voice)},
        {u"overlay"_s, QVariant::fromValue(this)},
        {u"magnification"_s, QVariant::fromValue(parts_.scale)},
    });
    window_->setSource(QUrl(u"qrc:/qt/qml/Kelo/App/OverlayView.qml"_s));
    if (window_->status() != QQuickView::Ready)
        qFatal("the caption panel could not be made");
    connect(parts_.scale, &DisplayScale::factorChanged, this, &Overlay::place);
    if (!x11::connection())
        qCInfo(appLog)
            << "this desktop places windows itself: the caption panel shows where it may";
}

void Overlay::place()
{
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    QRect frame(QPoint(), (panelSize * parts_.scale->factor()).boundedTo(area.size()));
    frame.moveCenter(area.center());
    frame.moveBottom(area.bottom() - gapBelow);
    if (!x11::connection()) {
        // Compositors that tile let a window of one size alone float above the others.
        window_->setMinimumSize(frame.size());
        window_->setMaximumSize(frame.size());
    }
    window_->setScreen(QGuiApplication::primaryScreen());
    window_->setGeometry(frame);
}

} // namespace kelo
