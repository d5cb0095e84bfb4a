#include "app/desktop/sandbox.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace kelo {

bool insideSandbox()
{
    return QFile::exists(u"/.flatpak-info"_s) || qgetenv("container") == "flatpak";
}

} // namespace kelo
