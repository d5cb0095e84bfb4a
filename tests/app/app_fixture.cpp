#include "app_fixture.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace kelo::test {

void AppFixture::initTestCase()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null");
    QCoreApplication::setOrganizationName(u"Kelo"_s);
    QCoreApplication::setApplicationName(u"Test"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void AppFixture::init()
{
    QSettings().clear();
    link_ = std::make_unique<LinkFixture>();
    voice_ = std::make_unique<VoiceControl>();
    delegate_ = std::make_unique<AppDelegate>(link_->link(), *voice_);
}

void AppFixture::cleanup()
{
    link_->link().stop();
    delegate_.reset();
    voice_.reset();
    link_.reset();
}

} // namespace kelo::test
