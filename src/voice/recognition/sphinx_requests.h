#pragma once

#include "voice/language/request_graph.h"
#include "voice/recognition/sphinx_utterance.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace kelo {

/// Hears what follows the assistant's name once more, for the requests that are expected alone.
/// Belongs to the decoder's thread.
class SphinxRequests {
public:
    /// `decoder` outlives this.
    explicit SphinxRequests(ps_decoder_s *decoder);

    /// From now on these are expected, in the decoder's words; `name` is its word for the name.
    void expect(const QString &name, const QList<QStringList> &requests);
    [[nodiscard]] bool expectsNothing() const { return requests_.isEmpty(); }

    /// The request that was made in `utterance` from frame `first` on, where the name begins, when
    /// it fits the sound about as well as `words` do, which were heard after the name. Nothing
    /// otherwise. Leaves the decoder with a search of its own.
    [[nodiscard]] std::optional<QStringList> hear(
        const SphinxUtterance &utterance, int first, const QStringList &words) const;

private:
    [[nodiscard]] bool search(const WordGraph &graph) const;

    ps_decoder_s *decoder_;
    QString name_;
    QList<QStringList> requests_;
};

} // namespace kelo
