#pragma once

#include "link/link.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace kelo {

/// The voice log for a list view: the newest lines of `Link::transcript`, oldest first.
///
/// Lines leave at the top and arrive at the bottom, so a view keeps its rows, its place and what a
/// screen reader reads. However fast the engine talks, the rows follow once a turn of the event
/// loop.
class TranscriptModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kelo::Link *link READ link WRITE setLink NOTIFY linkChanged)

public:
    enum Role { TimeRole = Qt::UserRole, TextRole };

    static constexpr qsizetype mostRows = 200;

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] Link *link() const { return link_; }
    void setLink(Link *link);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void linkChanged();

private:
    void schedule();
    void update();

    QPointer<Link> link_;
    QList<Spoken> rows_;
    bool scheduled_ = false;
};

} // namespace kelo
