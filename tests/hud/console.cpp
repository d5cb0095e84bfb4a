#include "console.h"

#include "hud/focus_keeper.h"
#include "support/files.h"
#include "support/items.h"
#include "support/lines.h"
#include "support/pictures.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMetaEnum>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QRegularExpression>
#include <QStyleHints>
#include <QTest>
#include <QtGui/private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

Q_IMPORT_QML_PLUGIN(Kelo_HudPlugin)

using namespace Qt::StringLiterals;

namespace kelo::test {

namespace {

void collect(QQuickItem *item, QList<QQuickItem *> &found)
{
    if (!item->isVisible())
        return;
    found.append(item);
    for (QQuickItem *child : item->childItems())
        collect(child, found);
}

} // namespace

void Console::show(QSize size, bool furnished)
{
    // As while a screen reader runs: that is when Qt's own controls enter the tree.
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    QCursor::setPos(1599, 999); // beside the window
    view.engine()->addImportPath(u"qrc:/qt/qml"_s);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    QVariantMap given{
        {u"link"_s, QVariant::fromValue(&link.link())}, {u"voice"_s, QVariant::fromValue(&voice)}};
    QByteArray qml = "import QtQuick\nimport Kelo.Hud\n" + import
        + "\nQtObject { id: room; property Link link; property VoiceControl voice\n"
          "property QtObject questions\n"
          "property Component visualiserScreen: VisualiserScreen {\n"
          "link: room.link; voice: room.voice; scene: Item { objectName: 'scene' } }\n"
          "property Component welcomeScreen: "
        + welcomeScreen + '\n';
    QStringList places{u"visualiserScreen"_s, u"welcomeScreen"_s};
    for (const char *place : {"backdrop", "core", "caption", "keyStrip", "flashFrame"}) {
        qml += "property Component " + QByteArray(place) + ": Rectangle { objectName: '" + place
            + "'; color: 'transparent'; border.color: '#204020' }\n";
        if (furnished)
            places << QString::fromLatin1(place);
    }
    QQmlComponent component(view.engine());
    component.setData(qml + "}\n", {});
    room_.reset(component.createWithInitialProperties({{u"link"_s, given[u"link"_s]},
        {u"voice"_s, given[u"voice"_s]}, {u"questions"_s, QVariant::fromValue(questions)}}));
    QVERIFY2(room_, qPrintable(component.errorString()));
    for (const QString &place : places)
        given.insert(place, room_->property(place.toUtf8()));
    view.setInitialProperties(given);
    view.setSource(QUrl(u"qrc:/qt/qml/Kelo/Hud/ContentView.qml"_s));
    view.resize(size);
    view.show();
    view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    resize(size);
}

void Console::resize(QSize size)
{
    view.resize(size);
    QTRY_COMPARE(view.size(), size);
    QTest::qWait(50); // a few frames, so that everything has found its place
}

QString Console::follow(const QString &script)
{
    for (const QString &step : script.split(u'\n', Qt::SkipEmptyParts)) {
        if (!take(step.trimmed()))
            return step.trimmed() + u"  The focus is on: "_s + focused();
    }
    return {};
}

bool Console::take(const QString &step)
{
    const QString word = step.section(u' ', 0, 0);
    const QString rest = step.section(u' ', 1);
    QAccessibleInterface *named = word == u"press" || word == u"focus" ? find(rest) : nullptr;
    if (step.startsWith(u'@')) {
        link.say({step.sliced(1).toUtf8()});
    } else if (word == u"state") {
        link.bring(rest);
    } else if (word == u"leave") {
        FocusKeeper::of(view)->leave();
    } else if (word == u"press" || word == u"focus") {
        if (named)
            named->actionInterface()->doAction(word == u"press"
                    ? QAccessibleActionInterface::pressAction()
                    : QAccessibleActionInterface::setFocusAction());
        return named;
    } else if (word == u"=") {
        return QTest::qWaitFor(
            [&] { return rest.isEmpty() ? focused().isEmpty() : focused().startsWith(rest); });
    } else if (word == u"sent") {
        return QTest::qWaitFor([&] {
            const QByteArray input = link.engine.input();
            return input.endsWith(rest.toUtf8()) || input.endsWith(rest.toUtf8() + '\n');
        });
    } else if (word == u">") {
        for (int i = 0; i < 200 && !focused().startsWith(rest); ++i)
            QTest::keyClick(&view, Qt::Key_Tab);
        return focused().startsWith(rest);
    } else {
        const QKeyCombination key = QKeySequence::fromString(step)[0];
        QTest::keyClick(&view, key.key(), key.keyboardModifiers());
    }
    return true;
}

QList<QQuickItem *> Console::visibleItems() const
{
    QList<QQuickItem *> found;
    collect(view.rootObject(), found);
    return found;
}

QStringList Console::texts() const
{
    QStringList found;
    for (const QQuickItem *item : visibleItems()) {
        const QRectF place = item->mapRectToScene(item->boundingRect());
        if (item->inherits("QQuickText"))
            found << u"%1 at %2,%3 %4x%5"_s.arg(item->property("text").toString())
                         .arg(place.x())
                         .arg(place.y())
                         .arg(place.width())
                         .arg(place.height());
    }
    return found;
}

QRectF Console::shown(const QQuickItem *item)
{
    QRectF rect = item->mapRectToScene(item->boundingRect());
    for (const QQuickItem *above = item->parentItem(); above; above = above->parentItem()) {
        if (above->clip())
            rect &= above->mapRectToScene(above->boundingRect());
    }
    return rect;
}

QString Console::unlike(const QString &sheet, int number)
{
    const auto wrong = [&] {
        return standsUnlike(itemsIn(*view.rootObject()), u"%1-%2"_s.arg(sheet).arg(number));
    };
    if (qEnvironmentVariableIsSet("KELO_KEEP_PICTURES"))
        QTest::qWait(2000);
    else
        (void)QTest::qWaitFor(
            [&] { return isAsKept(view.grabWindow(), sheet, number) && wrong().isEmpty(); }, 15000);
    const QString picture = unlikeKept(view.grabWindow(), sheet, number);
    return picture.isEmpty() ? wrong() : picture;
}

QString Console::standsUnlike(const QStringList &items, const QString &kept)
{
    return unlikeLines(
        items, QStringLiteral(KEPT_ITEMS) + u'/' + kept + u".txt"_s, "KELO_KEEP_PICTURES");
}

QString Console::standsUnlikeAt(const QString &size) const
{
    static const QRegularExpression part(
        u"^ *(UpdateBanner|Header|HudButton|Panel|VoiceLog|CommandList|Flow|Grid|GridLayout|Column|"
        "Loader|Readout|VoiceReadout|Legend|Scroller|Console) "_s);
    const auto wrong = [&] {
        QStringList parts = itemsIn(*view.rootObject()).filter(part);
        for (QString &each : parts)
            each = each.section(u" | "_s, 0, 0).trimmed();
        return standsUnlike(parts, u"at/"_s + QString(size).replace(u' ', u'-'));
    };
    (void)QTest::qWaitFor([&] { return wrong().isEmpty(); });
    return wrong();
}

QStringList Console::touched(const QStringList &names)
{
    QStringList lines;
    for (const QString &name : names) {
        const auto *item = qobject_cast<QQuickItem *>(find(name)->object());
        const QPoint middle = shown(item).center().toPoint();
        QTest::mouseMove(&view, middle);
        lines << name + u", under the mouse:"_s << itemsIn(*item);
        QTest::mousePress(&view, Qt::LeftButton, {}, middle);
        lines << name + u", held:"_s << itemsIn(*item);
        QTest::mouseMove(&view, {1, 1});
        QTest::mouseRelease(&view, Qt::LeftButton, {}, {1, 1});
    }
    return lines;
}

QString Console::readsUnlike(const QString &kept)
{
    QStringList told;
    QStringList stops;
    QString description;
    for (QAccessibleInterface *each : tree()) {
        const QAccessible::State now = each->state();
        QString line =
            QLatin1StringView(QMetaEnum::fromType<QAccessible::Role>().valueToKey(each->role()));
        line += u": "_s + each->text(QAccessible::Name);
        if (now.checkable)
            line += now.checked ? u" [on]"_s : u" [off]"_s;
        if (now.invisible)
            line += u" [invisible]"_s;
        const QString before = std::exchange(description, each->text(QAccessible::Description));
        if (!description.isEmpty())
            line += description == before ? u" //"_s : u" // "_s + description;
        told << line;
        if (now.focusable)
            stops << each->text(QAccessible::Name);
    }
    QStringList reached;
    for (qsizetype i = 0; i < stops.size(); ++i) {
        QTest::keyClick(&view, Qt::Key_Tab);
        reached << focused();
    }
    const auto first = std::find(reached.begin(), reached.end(), stops.value(0));
    std::rotate(reached.begin(), first, reached.end());
    if (reached != stops)
        return u"Tab visits "_s + reached.join(u", "_s);

    const QString file = QStringLiteral(KEPT_READINGS) + u'/' + kept + u".txt"_s;
    if (qEnvironmentVariableIsSet("KELO_KEEP_PICTURES"))
        writeFile(file, told.join(u'\n').toUtf8() + '\n');
    const QStringList expected = QString::fromUtf8(readFile(file)).trimmed().split(u'\n');
    for (qsizetype i = 0; i < std::max(told.size(), expected.size()); ++i) {
        if (told.value(i) != expected.value(i))
            return u"line %1: is %2, was %3"_s.arg(i + 1).arg(told.value(i), expected.value(i));
    }
    return {};
}

QList<QAccessibleInterface *> Console::tree()
{
    QList<QAccessibleInterface *> found;
    const std::function<void(QAccessibleInterface *)> collect = [&](QAccessibleInterface *from) {
        for (int i = 0; i < from->childCount(); ++i) {
            found.append(from->child(i));
            collect(found.constLast());
        }
    };
    collect(QAccessible::queryAccessibleInterface(&view));
    return found;
}

QAccessibleInterface *Console::find(const QString &name)
{
    for (QAccessibleInterface *each : tree()) {
        if (each->text(QAccessible::Name).startsWith(name))
            return each;
    }
    return nullptr;
}

QString Console::focused() const
{
    if (FocusKeeper::of(view)->kind() == FocusKeeper::Kind::Nothing)
        return {};
    return QAccessible::queryAccessibleInterface(view.activeFocusItem())->text(QAccessible::Name);
}

} // namespace kelo::test
