#include "hud/transcript_model.h"

#include <algorithm>

namespace kelo {

void TranscriptModel::setLink(Link *link)
{
    if (link == link_)
        return;
    if (link_)
        link_->disconnect(this);
    link_ = link;
    if (link_)
        connect(link_, &Link::transcriptChanged, this, &TranscriptModel::schedule);
    update();
    Q_EMIT linkChanged();
}

int TranscriptModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant TranscriptModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Spoken &line = rows_[index.row()];
    switch (role) {
    case TimeRole:
        return line.time;
    case TextRole:
        return line.text;
    default:
        return {};
    }
}

QHash<int, QByteArray> TranscriptModel::roleNames() const
{
    return {{TimeRole, "time"}, {TextRole, "text"}};
}

void TranscriptModel::schedule()
{
    if (std::exchange(scheduled_, true))
        return;
    QMetaObject::invokeMethod(this, &TranscriptModel::update, Qt::QueuedConnection);
}

void TranscriptModel::update()
{
    scheduled_ = false;
    QList<Spoken> lines = link_ ? link_->transcript.get() : QList<Spoken>();
    if (lines.size() > mostRows)
        lines = lines.last(mostRows);

    // What stays is a run of lines: it begins with the first of the new ones and reaches to the
    // last of the old ones. Everything before it has left, everything after it is new.
    const auto kept = lines.isEmpty() ? rows_.cend()
                                      : std::find(rows_.cbegin(), rows_.cend(), lines.constFirst());
    const auto leaving = std::distance(rows_.cbegin(), kept);
    if (leaving > 0) {
        beginRemoveRows({}, 0, static_cast<int>(leaving) - 1);
        rows_.remove(0, leaving);
        endRemoveRows();
    }
    if (lines.size() > rows_.size()) {
        beginInsertRows({}, rowCount(), static_cast<int>(lines.size()) - 1);
        rows_.append(lines.sliced(rows_.size()));
        endInsertRows();
    }
}

} // namespace kelo
