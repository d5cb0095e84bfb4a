#include "support/link_fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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
        link_->setEars(&ears);
        link_->scene = &stage;
    }
    return *link_;
}

void LinkFixture::say(std::initializer_list<QByteArrayView> lines)
{
    for (const QByteArrayView line : lines)
        link().handle(line);
}

void LinkFixture::write(const QString &name, const QByteArray &contents) const
{
    const QString path = dataDir + u'/' + name;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("cannot write %s", qPrintable(path));
}

QByteArray LinkFixture::read(const QString &name) const
{
    QFile file(dataDir + u'/' + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QVariant LinkFixture::setting(const QString &key) const
{
    return QSettings(settingsFile, QSettings::IniFormat).value(key);
}

} // namespace kelo::test
