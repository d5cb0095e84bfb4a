#include "hud/qml_types.h"

using namespace Qt::StringLiterals;

namespace kelo {

QString CommandTable::jobsInWords(const QString &mode)
{
    QStringList words;
    for (const ButtonJob &each : buttonJobs(mode))
        words.append(each.label + u' ' + each.job);
    return words.join(u", "_s);
}

} // namespace kelo
