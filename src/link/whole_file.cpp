#include "link/whole_file.h"

#include <QSaveFile>

namespace kelo {

std::optional<QString> writeWhole(const QString &path, const QByteArray &contents)
{
    QSaveFile file(path);
    // On a full disk it is only known after flushing.
    if (file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() && file.flush()
        && file.commit())
        return std::nullopt;
    return file.errorString();
}

} // namespace kelo
