#include "hud/try_saying.h"

using namespace Qt::StringLiterals;

namespace kelo {

using namespace std::chrono_literals;

TrySayingHint::TrySayingHint(QObject *parent)
    : QObject(parent)
{
    connect(&minutes_, &QTimer::timeout, this, [this] {
        ++minute_;
        Q_EMIT changed();
    });
    minutes_.setTimerType(Qt::VeryCoarseTimer);
    minutes_.start(60s);
}

QString TrySayingHint::text() const
{
    const QStringList examples{tr("play me something"), tr("surprise me"), tr("what can you do"),
        tr("teach me a song"), tr("jam with me")};
    const QString &example = examples[minute_ % examples.size()];
    return voiceOn_ ? tr("PRESS A AND TYPE  “%2”  OR SAY  “%1, %2”").arg(assistant_, example)
                    : tr("PRESS A AND TYPE  “%1, %2”").arg(assistant_, example);
}

} // namespace kelo
