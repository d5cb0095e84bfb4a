#include "app/arguments.h"

using namespace Qt::StringLiterals;

namespace kelo {

Arguments Arguments::read(const QStringList &list)
{
    // An option that wants a value and stands last is as good as absent.
    const auto following = [&list](const QString &option) -> std::optional<QString> {
        const qsizetype at = list.indexOf(option);
        if (at < 0 || at + 1 >= list.size())
            return std::nullopt;
        return list[at + 1];
    };
    Arguments read;
    read.help = list.contains(u"--help"_s);
    read.version = list.contains(u"--version"_s);
    read.hidden = list.contains(u"--hidden"_s);
    read.quick = list.contains(u"--quick"_s);
    read.snapshotFolder = following(u"--snapshot"_s);
    const QString names = list.value(list.indexOf(u"--snapshot"_s) + 2);
    if (read.snapshotFolder && !names.startsWith(u'-'))
        read.snapshotNames = names;
    read.wakeTestReport = following(u"--wake-test"_s);
    const QString name = list.value(list.indexOf(u"--wake-test"_s) + 2);
    read.wakeTestName = name.isEmpty() || name.startsWith(u"--"_s) ? u"Kelo"_s : name;
    return read;
}

} // namespace kelo
