#include "voice_corpus.h"

#include "listen/understanding.h"
#include "songs/library.h"

#include <QMap>

using namespace Qt::StringLiterals;

namespace kelo::bench {

namespace {

/// "<kind>" stands for any of the kind.
const QStringList &patterns()
{
    static const QStringList list = uR"(I think <person> wants to <do> the <thing> before <time>
could you bring the <adjective> <thing> to the <place>
<person> said that <person> will <do> it <time>
we were at the <place> <time> and it was <adjective>
there is a <adjective> <thing> on the table in the <place>
do you remember the <adjective> <thing> that <person> gave us <time>
if it rains <time> we can still <do> the <thing>
my <relative> would rather <do> a <thing> than go to the <place>
why did <person> leave the <thing> at the <place>
no, the <thing> is far too <adjective> for the <place>
<number> people came to the <place> and nobody could <do> the <thing>
please do not <do> the <thing> until <person> is back
it takes <number> minutes to walk from the <place> to the <place>
the <thing> costs <number> dollars and it is not even <adjective>
yes, I will <do> it <time>, right after the <adjective> meeting
what a <adjective> day, let us <do> something with my <relative>
the doctor told my <relative> to <do> less and to sleep until <time>
<person> has been looking for the <adjective> <thing> since <time>
play the left hand slowly and then <do> the <adjective> part again
she opened the window because the <place> was too <adjective>)"_s.split(u'\n');
    return list;
}

const QMap<QString, QStringList> &kinds()
{
    static const QMap<QString, QStringList> map{
        {u"person"_s,
            u"Peter|Susan|my neighbour|the teacher|David|Martha|our driver|Thomas|the "
            "boss|somebody|Jennifer|the old man"_s.split(u'|')},
        {u"relative"_s, u"brother|sister|mother|uncle|daughter|cousin|grandson|wife"_s.split(u'|')},
        {u"do"_s,
            u"fix|clean|carry|paint|sell|finish|change|borrow|practise|write about|move|"
            "forget|look at|explain|take back"_s.split(u'|')},
        {u"thing"_s,
            u"car|letter|bicycle|piano|guitar|kitchen chair|blue coat|newspaper|camera|"
            "garden fence|birthday cake|telephone|green bottle|book about trains|ticket|"
            "lamp|suitcase|radio|picture|computer"_s.split(u'|')},
        {u"place"_s,
            u"office|station|hospital|market|living room|school|bridge|concert hall|"
            "kitchen|library|airport|park behind the church|bakery"_s.split(u'|')},
        {u"adjective"_s,
            u"heavy|cheap|beautiful|broken|noisy|strange|little|expensive|quiet|"
            "terrible|warm|wooden|different|famous"_s.split(u'|')},
        {u"time"_s,
            u"tomorrow|last week|on Sunday|this evening|at six|before breakfast|in March|"
            "two years ago|next month|after lunch"_s.split(u'|')},
        {u"number"_s,
            u"three|seven|eleven|twenty|forty two|about a hundred|nineteen|six"_s.split(u'|')},
    };
    return map;
}

const QString &oneOf(const QStringList &list, std::mt19937 &random)
{
    return list[static_cast<qsizetype>(random() % static_cast<std::size_t>(list.size()))];
}

} // namespace

QStringList names()
{
    return {u"Kelo"_s, u"Apollo"_s, u"Harmony"_s, u"Phoenix"_s, u"Luna"_s, u"Melody"_s, u"Aria"_s,
        u"Zentari"_s, u"Mirabo"_s, u"Tavani"_s};
}

QStringList phrasesWith(const QString &name)
{
    return {"Hey "_L1 + name + ", what's the weather"_L1, name + " stop"_L1,
        "so anyway. "_L1 + name + ", play some music"_L1,
        "Okay "_L1 + name + ", what time is it"_L1};
}

QStringList soundAlikes()
{
    return u"kilo|hello|jello|polo|follow|hollow|hominy|phonics|lunar|tuna|malady|area|are you"_s
        .split(u'|');
}

QStringList expectedPhrases()
{
    QStringList phrases;
    const engine::Library library({});
    for (const std::string &phrase : engine::vocabulary(engine::InIdle, library.names()))
        phrases.append(QString::fromStdString(phrase));
    return phrases;
}

QStringList otherQuestions()
{
    return uR"(how old are you|how tall is he|who is your father|where do you live|what is your favourite colour
did you hear that|do you have a dog|can you swim|have you been to Spain|is it far|are they coming too
will it snow|shall I call him|let us dance|wait a moment|sit over there|give it back to me|bring me a towel
that was delicious|I am so sorry|I can't find my shoes|I need a new coat|it smells awful|he is my cousin
she is a doctor|we missed the bus|they moved to Ohio|thanks to your mother|leave him alone|cut the bread
drink your milk|feed the cat|hold my hand|put on your jacket|clean your room|my car broke down|my foot is sore
the soup is hot|the lamp is broken|your hair looks nice|your brother called|this tastes funny|that was close
what a surprise party|what a lovely garden|who ate my sandwich|who left the light on|why are you crying
when is your birthday|where is the remote|which way is north|how many cookies are left|how was the film
really|seriously|absolutely|goodbye|congratulations|excuse me|bless you|careful)"_s
        .replace(u'\n', u'|')
        .split(u'|');
}

QString everydaySentence(std::mt19937 &random)
{
    QString sentence = oneOf(patterns(), random);
    while (sentence.contains(u'<')) {
        const qsizetype start = sentence.indexOf(u'<');
        const qsizetype length = sentence.indexOf(u'>') - start + 1;
        const QString kind = sentence.sliced(start + 1, length - 2);
        sentence.replace(start, length, oneOf(kinds()[kind], random));
    }
    return sentence;
}

} // namespace kelo::bench
