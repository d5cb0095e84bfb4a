#include "voice/language/language_model.h"

#include <QMap>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kelo {

namespace {

using namespace Qt::StringLiterals;

constexpr int order = 3;
constexpr double discountShare = 0.5;
constexpr double never = -99; // the format's logarithm of zero

/// The words that follow a history, with their counts.
using Followers = QMap<QString, double>;
using Histories = QMap<QStringList, Followers>;

/// The counts by length of history.
std::array<Histories, order> countsOf(const QList<CountedSentence> &sentences)
{
    std::array<Histories, order> counts;
    for (const CountedSentence &sentence : sentences) {
        const QStringList words = QStringList{u"<s>"_s} + sentence.words + QStringList{u"</s>"_s};
        for (qsizetype at = 1; at < words.size(); ++at) {
            for (qsizetype length = 0; length < order && length <= at; ++length)
                counts[static_cast<std::size_t>(length)][words.sliced(at - length, length)]
                      [words[at]] += sentence.count;
        }
    }
    return counts;
}

double log10Of(double probability)
{
    return probability > 0 ? std::max(std::log10(probability), never) : never;
}

class Model {
public:
    explicit Model(const QList<CountedSentence> &sentences)
        : counts_(countsOf(sentences))
    {
    }

    [[nodiscard]] const Histories &counts(int length) const
    {
        return counts_[static_cast<std::size_t>(length)];
    }

    /// Of a word that was seen after `history`.
    [[nodiscard]] double probability(const QStringList &history, const QString &word) const
    {
        const Followers &followers = counts(static_cast<int>(history.size()))[history];
        return (followers[word] - discount(history, followers)) / total(followers);
    }

    /// What the shorter history's probability is multiplied with for words not seen after this.
    [[nodiscard]] double backoff(const QStringList &history) const
    {
        const auto found = counts(static_cast<int>(history.size())).find(history);
        if (found == counts(static_cast<int>(history.size())).end())
            return 1;
        double left = 1;
        double leftBelow = 1;
        for (const QString &word : found->keys()) {
            left -= probability(history, word);
            leftBelow -= probability(history.sliced(1), word);
        }
        return leftBelow > 1e-9 ? std::max(left, 0.0) / leftBelow : 1e-9;
    }

private:
    static double total(const Followers &followers)
    {
        double sum = 0;
        for (const double count : followers)
            sum += count;
        return sum;
    }
    static double discount(const QStringList &history, const Followers &followers)
    {
        if (history.isEmpty())
            return 0;
        return discountShare * *std::min_element(followers.begin(), followers.end());
    }

    std::array<Histories, order> counts_;
};

void write(QTextStream &out, double probability, const QStringList &words, const double *backoff)
{
    out << log10Of(probability) << '\t' << words.join(u' ');
    if (backoff)
        out << '\t' << log10Of(*backoff);
    out << '\n';
}

} // namespace

QByteArray arpaModel(const QList<CountedSentence> &sentences, double loneWord, double begunWord)
{
    const Model model(sentences);
    QByteArray bytes;
    QTextStream out(&bytes);
    out.setRealNumberNotation(QTextStream::FixedNotation);

    out << "\\data\\\n";
    for (int length = 0; length < order; ++length) {
        qsizetype grams = length == 0 ? 1 : 0; // <s> is listed though it follows nothing
        for (const Followers &followers : model.counts(length))
            grams += followers.size();
        out << "ngram " << length + 1 << '=' << grams << '\n';
    }
    for (int length = 0; length < order; ++length) {
        out << "\n\\" << length + 1 << "-grams:\n";
        if (length == 0) {
            const double backoff = model.backoff({u"<s>"_s});
            write(out, 0, {u"<s>"_s}, &backoff);
        }
        const Histories &histories = model.counts(length);
        for (auto history = histories.begin(); history != histories.end(); ++history) {
            for (const QString &word : history->keys()) {
                const QStringList gram = history.key() + QStringList{word};
                const bool lone = length == 0 && word != "</s>"_L1;
                const double counted = model.probability(history.key(), word);
                const double probability =
                    length > 0 ? std::pow(counted, begunWord) : counted * (lone ? loneWord : 1);
                const double backoff = length + 1 < order ? model.backoff(gram) : 1;
                write(out, probability, gram, length + 1 < order ? &backoff : nullptr);
            }
        }
    }
    out << "\n\\end\\\n";
    out.flush();
    return bytes;
}

} // namespace kelo
