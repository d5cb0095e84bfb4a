#include "voice/language/short_talk.h"

using namespace Qt::StringLiterals;

namespace kelo {

const QList<QStringList> &shortTalk()
{
    static const QList<QStringList> talk = [] {
        QList<QStringList> sentences;
        const QString all =
            u"how old is it|where were you|when are you coming|who was that|what are you "
            u"doing|what do you think|"
            "what happened|what is wrong|what is for dinner|where did you go|why not|why did you "
            "do that|how much is it|"
            "how far is it|how was your day|how was school|did you sleep well|did you eat|are you "
            "hungry|are you tired|"
            "are you sure|are you coming|are you there|is it raining|is that so|is he at home|is "
            "she asleep|was it good|"
            "do you like it|do you know him|do you want some tea|do you need a hand|don't you "
            "think|have you seen my keys|"
            "have you been there|can you see it|can you reach it|could you help me|could you pass "
            "the salt|would you like some|"
            "will you be late|shall we go|shall we eat|let me see|let me think|let me know|let's "
            "eat|let's see|give me that|"
            "give me a minute|hand me the book|look at that|look at me|listen to me|come here|come "
            "in|come on|sit down|stand up|"
            "wake up|hurry up|shut the door|close the window|open the door|turn around|watch "
            "out|be careful|calm down|go away|"
            "go to bed|get up|get dressed|take it easy|take your time|take a seat|wash your "
            "hands|wait for me|never mind|"
            "no way|no problem|not now|not yet|not at all|of course|of course not|oh dear|oh no|oh "
            "my god|oh well|good luck|"
            "good night|good boy|good idea|well done|see you later|see you tomorrow|have fun|have "
            "a nice day|happy birthday|"
            "i am hungry|i am tired|i am cold|i am coming|i am going out|i don't know|i don't "
            "care|i don't think so|i know|"
            "i see|i think so|i hope so|i love you|i forgot|i told you|i was asleep|it is late|it "
            "is cold|it is over|"
            "it is raining|it hurts|it works|he is asleep|he left|she is here|she told me|they are "
            "gone|we are late|we won|"
            "that is enough for me|that is fine|that is funny|that is great|that is mine|that is "
            "terrible|that smells good|"
            "this is nice|this is hard|there it is|there you are|here you are|here we go|you are "
            "right|you are funny|you bet|"
            "you look tired|the phone is ringing|the baby is crying|the food is ready|the door is "
            "open|dinner is ready|"
            "mind your head|my back hurts|my head hurts|my tea is cold|pass me the bread|pour me a "
            "glass|put it there|"
            "put it down|read me the letter|remember me|stay here|stay where you are|tell me about "
            "it|tell him|thank god|"
            "too bad|too late|what a day|what a mess|what a shame|what a pity|what about you|what else|who knows|who cares"_s;
        for (const QString &sentence : all.split(u'|'))
            sentences.append(sentence.split(u' '));
        return sentences;
    }();
    return talk;
}

} // namespace kelo
