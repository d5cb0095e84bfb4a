#include "link_dump.h"

#include <QMetaProperty>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelo::test {

namespace {

/// All of a short list; of a long one how many there are, the first and the last.
template <typename List, typename Show> QString listed(const List &list, Show show)
{
    QStringList parts;
    if (std::size(list) > 6)
        parts = {QString::number(std::size(list)) + u':', show(*std::begin(list)), u".."_s,
            show(*std::prev(std::end(list)))};
    else
        for (const auto &item : list)
            parts << show(item);
    return parts.join(u' ');
}

QString shown(const std::optional<double> &value)
{
    return value ? test::shown(*value) : u"none"_s;
}

QString shown(const Ripple &ripple)
{
    return u"%1@%2*%3-%4"_s.arg(ripple.pitch)
        .arg(test::shown(ripple.at), test::shown(ripple.strength), shown(ripple.off));
}

QString shown(const QVariant &value)
{
    if (value.typeId() == QMetaType::QStringList)
        return test::shown(value.toStringList().join(u'|'));
    if (value.typeId() == QMetaType::QString)
        return test::shown(value.toString());
    return value.typeId() == QMetaType::Double ? test::shown(value.toDouble()) : value.toString();
}

QString sorted(QList<qint64> keys, const QHash<qint64, qint64> &velocities = {})
{
    std::ranges::sort(keys);
    return listed(keys, [&](qint64 key) {
        const QString pitch = QString::number(key);
        return velocities.isEmpty() ? pitch : u"%1*%2"_s.arg(pitch).arg(velocities[key]);
    });
}

} // namespace

QString shown(double value)
{
    return QString::number(value, 'g', 8);
}

QString shown(const QString &text)
{
    QString escaped = text.size() > 100 ? text.left(20) + u"...%1"_s.arg(text.size()) : text;
    escaped.replace(u'\n', u"\\n"_s).replace(u'\r', u"\\r"_s).replace(u'\t', u"\\t"_s);
    return u'"' + escaped + u'"';
}

QString shown(const std::vector<Segment> &segments)
{
    return listed(segments, [](Segment s) { return u"%1+%2"_s.arg(s.start).arg(s.length); });
}

LinkDump dump(const Link &link)
{
    LinkDump all;
    const QMetaObject &meta = Link::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        all[QString::fromLatin1(meta.property(i).name())] = shown(meta.property(i).read(&link));
    all[u"transcript"_s] = listed(link.transcript.get(), [](const Spoken &line) {
        return u"%1 %2 %3"_s.arg(line.id).arg(line.time, test::shown(line.text));
    });
    all[u"welcomeKey"_s] = link.welcomeKey.get() ? u"taken"_s : QString();
    all[u"segments"_s] = test::shown(link.segments);
    all[u"voiceFrames"_s] = listed(link.voiceFrames, [](const VoiceFrame &frame) {
        return u"%1/%2/%3"_s.arg(frame.front()).arg(frame[7]).arg(frame.back());
    });
    all[u"roll"_s] = listed(link.roll, [](const RollNote &note) {
        return u"%1,%2,%3,%4,%5"_s.arg(test::shown(note.t), test::shown(note.dur))
            .arg(note.pitch)
            .arg(note.vel)
            .arg(note.track);
    });
    all[u"bars"_s] = listed(std::array{0, 20, 57, 59, 60, 93}, [&link](int bar) {
        return QString::number(link.bars[static_cast<std::size_t>(bar)], 'g', 6);
    });
    const auto ripples = [](const Ripple &ripple) { return shown(ripple); };
    all[u"ripples"_s] = listed(link.ripples, ripples);
    all[u"echoes"_s] = listed(link.echoes, ripples);
    all[u"down"_s] = sorted(link.down.keys(), link.down);
    all[u"played"_s] = sorted(link.played.values());
    all[u"buttons"_s] = listed(link.buttons, [](qint64 key) { return QString::number(key); });
    all[u"chord"_s] = test::shown(link.chord);
    all[u"rollZero"_s] = shown(link.rollZero);
    all[u"voiceAnchor"_s] = shown(link.voiceAnchor);
    for (const auto &[name, value] : {std::pair{"rollLength", link.rollLength},
             {"sayStarted", link.sayStarted}, {"doneAt", link.doneAt}, {"wordAt", link.wordAt},
             {"wordTime", link.wordTime}, {"voiceStart", link.voiceStart}, {"level", link.level},
             {"levelAt", link.levelAt}, {"barsAt", link.barsAt}, {"pulseAt", link.pulseAt},
             {"chordAt", link.chordAt}, {"gotWord", static_cast<double>(link.gotWord)},
             {"wordFrom", static_cast<double>(link.wordFrom)},
             {"wordLen", static_cast<double>(link.wordLen)},
             {"voiceId", static_cast<double>(link.voiceId)}})
        all[QString::fromLatin1(name)] = test::shown(value);
    return all;
}

} // namespace kelo::test
