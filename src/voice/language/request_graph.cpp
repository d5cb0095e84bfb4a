#include "voice/language/request_graph.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

const QStringList &ones()
{
    static const QStringList words = u"one two three four five six seven eight nine"_s.split(u' ');
    return words;
}

const QStringList &teens()
{
    static const QStringList words =
        u"ten eleven twelve thirteen fourteen fifteen sixteen seventeen eighteen nineteen"_s.split(
            u' ');
    return words;
}

const QStringList &tens()
{
    static const QStringList words =
        u"twenty thirty forty fifty sixty seventy eighty ninety"_s.split(u' ');
    return words;
}

/// What stands for any of its kind.
const auto anyNumber = u"#"_s;
const auto anyNote = u"<note>"_s;
const auto anyScale = u"<scale>"_s;
const auto anyHand = u"<hand>"_s;

/// Rarer than none, or what is left of a noise is taken for one.
constexpr double courtesy = -8;

/// "one" is more often a thing than a number: "this one".
bool isNumber(const QString &word)
{
    return word != u"one"_s
        && (ones().contains(word) || teens().contains(word) || tens().contains(word));
}

/// "a" is hardly ever one, and there is only one middle C.
bool isNote(const QStringList &sentence, qsizetype at)
{
    return sentence[at].size() == 1 && sentence[at] >= u"b"_s && sentence[at] <= u"g"_s
        && (at == 0 || sentence[at - 1] != u"middle"_s);
}

const QStringList &scales()
{
    static const QStringList words{u"major"_s, u"minor"_s};
    return words;
}

const QStringList &hands()
{
    static const QStringList words{u"left"_s, u"right"_s};
    return words;
}

const QStringList &accidentals()
{
    static const QStringList words{u"flat"_s, u"sharp"_s};
    return words;
}

/// A number alone may be any; of several in a row none, since they are a metre.
QStringList generalised(const QStringList &sentence)
{
    const auto numbers = std::ranges::count_if(sentence, isNumber);
    QStringList general;
    for (qsizetype at = 0; at < sentence.size(); ++at) {
        const QString &word = sentence[at];
        const bool afterNote = general.endsWith(anyNote);
        if (numbers == 1 && isNumber(word))
            general.append(anyNumber);
        else if (isNote(sentence, at))
            general.append(anyNote);
        else if (afterNote && scales().contains(word))
            general.append(anyScale);
        else if (hands().contains(word) && sentence.value(at + 1) == u"hand"_s)
            general.append(anyHand);
        else if (!afterNote || !accidentals().contains(word))
            general.append(word.toLower());
    }
    return general;
}

class Builder {
public:
    explicit Builder(const QString &name)
    {
        add(WordGraph::start, called_, name, 0);
        for (const int place : {called_, WordGraph::end})
            add(place, place, u"please"_s, courtesy);
        for (const QString &asking : {u"can"_s, u"could"_s, u"would"_s}) {
            const int asked = next(called_, asking);
            add(asked, called_, u"you"_s, courtesy);
        }
    }

    void addSentence(const QStringList &sentence, double weight)
    {
        int at = called_;
        for (qsizetype place = 0; place + 1 < sentence.size(); ++place)
            at = next(at, sentence[place]);
        connect(at, WordGraph::end, sentence.last(), weight);
    }

    WordGraph take() { return std::move(graph_); }

private:
    /// Sentences share what they begin with.
    int next(int from, const QString &word)
    {
        auto &known = branches_[{from, word}];
        if (known == 0) {
            known = graph_.states++;
            connect(from, known, word, 0);
        }
        return known;
    }

    void connect(int from, int to, const QString &word, double weight)
    {
        if (word == anyNumber)
            addNumber(from, to, weight);
        else if (word == anyNote)
            addNote(from, to, weight);
        else if (word == anyScale || word == anyHand)
            addAny(word == anyScale ? scales() : hands(), from, to, weight);
        else
            add(from, to, word, weight);
    }

    void addAny(const QStringList &words, int from, int to, double weight)
    {
        for (const QString &word : words)
            add(from, to, word, weight);
    }

    void addNote(int from, int to, double weight)
    {
        static const QStringList letters = u"a b c d e f g"_s.split(u' ');
        const int letter = graph_.states++;
        addAny(letters, from, to, weight);
        addAny(letters, from, letter, 0);
        addAny(accidentals(), letter, to, weight);
    }

    void addNumber(int from, int to, double weight)
    {
        const int hundred = graph_.states++;
        for (const QString &word : {u"a"_s, u"one"_s, u"two"_s})
            add(from, hundred, word, 0);
        add(hundred, to, u"hundred"_s, weight);
        const int more = graph_.states++;
        add(hundred, more, u"hundred"_s, 0);
        add(more, more, u"and"_s, 0);
        for (const int begin : {from, more}) {
            const int ten = graph_.states++;
            for (const QString &word : ones() + teens() + tens())
                add(begin, to, word, weight);
            for (const QString &word : tens())
                add(begin, ten, word, 0);
            for (const QString &word : ones())
                add(ten, to, word, weight);
        }
    }

    void add(int from, int to, const QString &word, double weight)
    {
        graph_.arcs.push_back({from, to, word, weight});
    }

    WordGraph graph_;
    int called_ = graph_.states++;
    QMap<std::pair<int, QString>, int> branches_;
};

} // namespace

QStringList withTitledNotes(const QString &phrase, QStringList words)
{
    static const QRegularExpression note(u"(?<!\\S)[A-G](?!\\S)"_s);
    if (phrase.contains(note)) {
        for (QString &word : words)
            word = word.size() == 1 ? word.toUpper() : word;
    }
    return words;
}

QStringList numberWords()
{
    return ones() + teens() + tens() + QStringList{u"hundred"_s};
}

WordGraph graphOfCalls(const QString &name, const QList<WeighedSentences> &alternatives)
{
    Builder builder(name);
    QSet<QStringList> known;
    for (const WeighedSentences &each : alternatives) {
        for (const QStringList &sentence : each.sentences) {
            const QStringList general = generalised(sentence);
            if (!sentence.isEmpty() && !known.contains(general))
                builder.addSentence(each.exact ? sentence : general, each.weight);
            known.insert(general);
        }
    }
    return builder.take();
}

} // namespace kelo
