#include "app/main_view.h"

#include "app/announcer.h"
#include "app/app_delegate.h"
#include "app/display_scale.h"
#include "hud/theme.h"
#include "link/link.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QQmlEngine>
#include <QQuickView>

using namespace Qt::StringLiterals;

namespace kelo {

void fillWithMainView(QQuickView &window, const MainViewParts &parts)
{
    // The platform's own glyphs are drawn the same way on every run; distance fields are not.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    window.engine()->addImportPath(u"qrc:/qt/qml"_s);
    window.setColor(Hud::shared().bg());
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    const auto followScale = [scale = parts.scale] {
        Hud::shared().setMagnified(scale->factor() != 1);
    };
    QObject::connect(parts.scale, &DisplayScale::factorChanged, &window, followScale);
    followScale();
    window.setInitialProperties({
        {u"link"_s, QVariant::fromValue(parts.link)},
        {u"voice"_s, QVariant::fromValue(parts.voice)},
        {u"questions"_s, QVariant::fromValue(parts.questions)},
        {u"magnification"_s, QVariant::fromValue(parts.scale)},
        {u"announcer"_s, QVariant::fromValue(parts.announcer)},
        {u"shell"_s, QVariant::fromValue(parts.shell)},
    });
    window.setSource(QUrl(u"qrc:/qt/qml/Kelo/App/MainView.qml"_s));
    if (window.status() != QQuickView::Ready)
        qFatal("the display could not be made");
}

} // namespace kelo
