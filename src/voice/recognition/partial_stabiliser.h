#pragma once

#include <QStringList>

#include <vector>

namespace kelo {

/// Calms what a recogniser believes while it still listens. A word is shown once it has stood for
/// a moment at its place, the assistant's name once it has stood for longer, because a name shown
/// by mistake makes the engine listen. A shown word is taken back only when the recogniser has
/// disagreed for as long. Times are seconds of sound.
class PartialStabiliser {
public:
    explicit PartialStabiliser(QString name);

    /// `words` is what the recogniser believes at `now`; returns what to show.
    const QStringList &update(const QStringList &words, double now);

private:
    struct Place {
        QString word;
        double since = 0;
    };

    QString name_;
    std::vector<Place> places_; // of the latest belief
    double lengthSince_ = 0; // since when the belief has been this long
    QStringList shown_;
};

} // namespace kelo
