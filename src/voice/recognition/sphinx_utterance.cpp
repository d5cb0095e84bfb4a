#include "voice/recognition/sphinx_utterance.h"

#include <pocketsphinx.h>
#include <sphinxbase/fe.h>
#include <sphinxbase/feat.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <type_traits>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

static_assert(std::is_same_v<mfcc_t, float>, "a library built for whole numbers");

/// The library counts in 1024 times the logarithm to the base of 1.0001.
const double natural = 1024 * std::log(1.0001);

/// It takes this from every key phrase that it finds.
constexpr int keyPhraseOffset = 1500;

/// How far the mean loudness may move in an utterance, in units of its feature; this is 7 dB. With
/// what was expected so wrong, a third of the names is lost.
constexpr float farLouder = 8;

/// A mean of a few seconds is as much of what was said as of the voice. So this many frames of the
/// speech that the model was made with count beside them.
constexpr int typicalFrames = 200;

/// "read(2)" is another way to say "read"; "<sil>" and "[NOISE]" are no words.
QString tokenOf(const char *word)
{
    const QString token = QString::fromUtf8(word);
    return token.startsWith(u'<') || token.startsWith(u'[') ? QString()
                                                            : token.section(u'(', 0, 0).trimmed();
}

template <typename Visit> void forEachSegment(ps_decoder_t *decoder, Visit visit)
{
    for (ps_seg_t *segment = ps_seg_iter(decoder); segment; segment = ps_seg_next(segment)) {
        int first = 0;
        int last = 0;
        ps_seg_frames(segment, &first, &last);
        visit(segment, first, last);
    }
}

} // namespace

SphinxUtterance::SphinxUtterance(ps_decoder_t *decoder)
    : decoder_(decoder)
    , typical_(mean().now)
{
}

void SphinxUtterance::begin(const std::stop_token &stop)
{
    stop_ = stop;
    features_.clear();
    before_ = mean();
    hardlyKnown_ = before_.frames < typicalFrames;
    ps_start_utt(decoder_);
}

void SphinxUtterance::add(const Samples &sound)
{
    fe_t *frontEnd = ps_get_fe(decoder_);
    constexpr std::size_t most = 64; // frames at a time
    std::vector<mfcc_t> features(most * width());
    std::array<mfcc_t *, most> rows{};
    for (std::size_t i = 0; i < most; ++i)
        rows[i] = features.data() + i * width();
    const int16 *next = sound.data();
    std::size_t left = sound.size();
    while (left > 0) {
        int32 frames = most;
        int32 begun = 0;
        const std::size_t before = left;
        fe_process_frames(frontEnd, &next, &left, rows.data(), &frames, &begun);
        if (frames == 0 && left == before)
            break;
        const auto end = features.begin() + static_cast<std::ptrdiff_t>(width()) * frames;
        process({features.begin(), end});
        features_.insert(features_.end(), features.begin(), end);
    }
}

/// The library changes what it is given, and loses the thread when that is more than it can buffer.
void SphinxUtterance::process(std::vector<float> features) const
{
    for (std::size_t at = 0; at < features.size() && !stop_.stop_requested(); at += width()) {
        mfcc_t *row = features.data() + at;
        ps_process_cep(decoder_, &row, 1, FALSE, FALSE);
    }
}

/// Of a frame of features.
std::size_t SphinxUtterance::width() const
{
    return static_cast<std::size_t>(fe_get_output_size(ps_get_fe(decoder_)));
}

void SphinxUtterance::end()
{
    ps_end_utt(decoder_);
    if (const Mean after = mean(); std::abs(after.now[0] - before_.now[0]) > farLouder) {
        before_ = after;
        repeat(before_, 0);
    }
}

void SphinxUtterance::abandon()
{
    ps_end_utt(decoder_);
}

bool SphinxUtterance::inSpeech() const
{
    return ps_get_in_speech(decoder_);
}

void SphinxUtterance::again(const char *search, int first) const
{
    ps_set_search(decoder_, search);
    repeat(before_, first);
}

void SphinxUtterance::requestAgain(const char *search, int first) const
{
    ps_set_search(decoder_, search);
    repeat(hardlyKnown_ ? withTypical(mean()) : before_, first);
}

void SphinxUtterance::repeat(const Mean &expected, int first) const
{
    const Mean after = mean();
    setMean(expected);
    ps_start_utt(decoder_);
    const std::size_t from = std::min(features_.size(), static_cast<std::size_t>(first) * width());
    process({features_.begin() + static_cast<std::ptrdiff_t>(from), features_.end()});
    ps_end_utt(decoder_);
    setMean(after);
}

SphinxUtterance::Mean SphinxUtterance::mean() const
{
    const cmn_t &mean = *ps_get_feat(decoder_)->cmn_struct;
    return {{mean.cmn_mean, mean.cmn_mean + mean.veclen}, {mean.sum, mean.sum + mean.veclen},
        mean.nframe};
}

/// How loud it is stays: that is the microphone's.
SphinxUtterance::Mean SphinxUtterance::withTypical(Mean mean) const
{
    const auto heard = static_cast<float>(mean.frames);
    const float share = heard / (heard + typicalFrames);
    for (std::size_t i = 1; i < mean.now.size(); ++i)
        mean.now[i] = share * mean.now[i] + (1 - share) * typical_[i];
    return mean;
}

void SphinxUtterance::setMean(const Mean &mean) const
{
    cmn_t &library = *ps_get_feat(decoder_)->cmn_struct;
    std::ranges::copy(mean.now, library.cmn_mean);
    std::ranges::copy(mean.sum, library.sum);
    library.nframe = mean.frames;
}

QStringList SphinxUtterance::words() const
{
    return QString::fromUtf8(ps_get_hyp(decoder_, nullptr)).split(u' ', Qt::SkipEmptyParts);
}

double SphinxUtterance::score() const
{
    int32 score = 0;
    ps_get_hyp(decoder_, &score);
    return score * natural;
}

std::vector<AccountedWord> SphinxUtterance::account() const
{
    const double weight = cmd_ln_float32_r(ps_get_config(decoder_), "-lw");
    std::vector<AccountedWord> words;
    forEachSegment(decoder_, [&](ps_seg_t *segment, int first, int last) {
        int32 acoustic = 0;
        int32 language = 0;
        int32 backedOff = 0;
        ps_seg_prob(segment, &acoustic, &language, &backedOff);
        words.push_back(
            {tokenOf(ps_seg_word(segment)), first, last, std::exp(language * natural / weight)});
    });
    return words;
}

double SphinxUtterance::clarity(int first, int last) const
{
    double best = -std::numeric_limits<double>::infinity();
    forEachSegment(decoder_, [&](ps_seg_t *segment, int from, int to) {
        if (from >= last || to <= first)
            return;
        const int ratio = ps_seg_prob(segment, nullptr, nullptr, nullptr) + keyPhraseOffset;
        best = std::max(best, ratio * natural / (to - from + 1));
    });
    return best;
}

} // namespace kelo
