#include "voice/name/sound_alikes.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// The dictionary's words that are said like one of `sounds`; of each a few.
QHash<QString, QStringList> wordsThatSound(const QSet<QString> &sounds, const QString &path,
    const std::function<bool(const QString &)> &known, const std::stop_token &stop)
{
    constexpr qsizetype most = 4;
    static const QRegularExpression plain(u"^[a-z']+$"_s);
    QHash<QString, QStringList> words;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return words;
    while (!file.atEnd() && !stop.stop_requested()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        const QString phones = line.section(u' ', 1);
        if (!sounds.contains(phones))
            continue;
        const QString word = line.section(u' ', 0, 0).section(u'(', 0, 0);
        QStringList &alike = words[phones];
        if (alike.size() < most && !alike.contains(word) && plain.match(word).hasMatch()
            && known(word))
            alike.append(word);
    }
    return words;
}

} // namespace

QList<QStringList> soundAlikes(const QList<Phones> &ways, const QString &path,
    const std::function<bool(const QString &)> &known, qsizetype limit, const std::stop_token &stop)
{
    QSet<QString> sounds;
    for (const Phones &way : ways) {
        for (qsizetype cut = 1; cut <= way.size(); ++cut)
            sounds << way.first(cut).join(u' ') << way.sliced(cut).join(u' ');
    }
    const auto words = wordsThatSound(sounds, path, known, stop);
    QList<QStringList> alike;
    for (const bool whole : {true, false}) {
        for (const Phones &way : ways) {
            for (qsizetype cut = whole ? way.size() : 1; cut < way.size() + whole; ++cut) {
                for (const QString &first : words.value(way.first(cut).join(u' '))) {
                    QStringList rests = words.value(way.sliced(cut).join(u' '));
                    if (whole)
                        rests = {QString()};
                    for (const QString &rest : std::as_const(rests)) {
                        const QStringList both =
                            whole ? QStringList{first} : QStringList{first, rest};
                        if (alike.size() < limit && !alike.contains(both))
                            alike.append(both);
                    }
                }
            }
        }
    }
    return alike;
}

} // namespace kelo
