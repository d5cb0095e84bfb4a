#include "support/link_fixture.h"

#include "support/files.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace kelo::test {

LinkFixture::LinkFixture()
    : dataDir(folder.filePath(u"data"_s))
    , settingsFile(folder.filePath(u"settings.ini"_s))
    , engine(folder.path())
{
    QDir().mkpath(dataDir);
}

LinkFixture::~LinkFixture() = default;

Link &LinkFixture::link()
{
    if (!link_) {
        link_ = std::make_unique<Link>(LinkSetup{dataDir, payload, engine.environment(),
            std::make_unique<QSettings>(settingsFile, QSettings::IniFormat), time});
        link_->setShell(&shell);
        link_->setVoiceInput(&ears);
        link_->setScene(&stage);
    }
    return *link_;
}

void LinkFixture::start(const QByteArray &script)
{
    engine.play(script);
    link().start();
}

void LinkFixture::bring(const QString &state)
{
    static const QStringList names{u"STARTING"_s, u"ONLINE"_s, u"RESTARTING"_s, u"OFFLINE"_s};
    link().engineIs(static_cast<EngineState>(names.indexOf(state)));
}

void LinkFixture::say(std::initializer_list<QByteArrayView> lines)
{
    for (const QByteArrayView line : lines)
        link().handle(line);
}

void LinkFixture::write(const QString &name, const QByteArray &contents) const
{
    writeFile(dataDir + u'/' + name, contents);
}

QByteArray LinkFixture::read(const QString &name) const
{
    return readFile(dataDir + u'/' + name);
}

QVariant LinkFixture::setting(const QString &key) const
{
    return QSettings(settingsFile, QSettings::IniFormat).value(key);
}

} // namespace kelo::test
