#include "voice/recognition/sphinx_requests.h"

#include "voice/language/short_talk.h"

#include <pocketsphinx.h>
#include <sphinxbase/fsg_model.h>

#include <memory>

namespace kelo {

namespace {

constexpr auto requestSearch = "requests";

/// How much likelier than a request the words that were heard freely have to be, a natural
/// logarithm. Less, since a request is expected. Chosen with questions that are none; the talk of
/// bench/voice_calls_bench counts them.
constexpr double wordsAfterName = -90;

/// The library's best path through a lattice need not be one through the graph.
class WithoutLattice {
public:
    explicit WithoutLattice(cmd_ln_t *config)
        : config_(config)
        , before_(cmd_ln_boolean_r(config, "-bestpath"))
    {
        cmd_ln_set_boolean_r(config_, "-bestpath", FALSE);
    }
    ~WithoutLattice() { cmd_ln_set_boolean_r(config_, "-bestpath", before_); }
    Q_DISABLE_COPY_MOVE(WithoutLattice)

private:
    cmd_ln_t *config_;
    long before_;
};

} // namespace

SphinxRequests::SphinxRequests(ps_decoder_t *decoder)
    : decoder_(decoder)
{
}

void SphinxRequests::expect(const QString &name, const QList<QStringList> &requests)
{
    name_ = name;
    requests_ = name.isEmpty() ? QList<QStringList>() : requests;
}

std::optional<QStringList> SphinxRequests::hear(
    const SphinxUtterance &utterance, int first, const QStringList &words) const
{
    if (words.isEmpty()
        || !search(graphOfCalls(
            name_, {{requests_, 0}, {shortTalk(), 0}, {{words}, wordsAfterName, true}})))
        return std::nullopt;
    utterance.requestAgain(requestSearch, first);
    const QStringList heard = utterance.words();
    const QStringList request = heard.sliced(heard.indexOf(name_) + 1);
    if (request.isEmpty() || request.size() == heard.size() || request == words
        || shortTalk().contains(request))
        return std::nullopt;
    return request;
}

bool SphinxRequests::search(const WordGraph &graph) const
{
    logmath_t *logarithms = ps_get_logmath(decoder_);
    const std::unique_ptr<fsg_model_t, decltype(&fsg_model_free)> model(
        fsg_model_init(requestSearch, logarithms, 1, graph.states), fsg_model_free);
    if (!model)
        return false;
    model->start_state = WordGraph::start;
    model->final_state = WordGraph::end;
    for (const WordGraph::Arc &arc : graph.arcs) {
        const QByteArray word = arc.word.toUtf8();
        char *phones = ps_lookup_word(decoder_, word.constData());
        if (!phones)
            continue; // nobody would know how it sounds
        ckd_free(phones);
        fsg_model_trans_add(model.get(), arc.from, arc.to,
            logmath_ln_to_log(logarithms, arc.weight),
            fsg_model_word_add(model.get(), word.constData()));
    }
    const WithoutLattice plain(ps_get_config(decoder_));
    return ps_set_fsg(decoder_, requestSearch, model.get()) >= 0;
}

} // namespace kelo
