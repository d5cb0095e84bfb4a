#include "voice/name/wake_training.h"

#include "link/whole_file.h"

#include <QTextStream>

#include <array>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelo {

namespace {

/// The commands most often said after the name.
constexpr std::array openers{
    u"what's the weather",
    u"what time is it",
    u"play some music",
    u"stop",
    u"pause",
    u"next song",
    u"open Safari",
    u"set an alarm for seven",
    u"what can you do",
    u"play it back with the band",
    u"new composition",
    u"read the window",
    u"turn it up",
    u"remember that",
    u"add milk to my shopping list",
    u"brief me",
    u"help",
    u"louder",
    u"thank you",
    u"yes",
    u"no",
    u"play",
    u"open",
    u"what",
    u"can you",
    u"tell me",
};

constexpr std::array knownPronunciations{
    std::pair{u"kelo", u"k e l oU"},
};

QString lettersOf(const QString &name)
{
    QString letters;
    for (const char32_t scalar : name.toLower().toUcs4()) {
        if (QChar::isLetter(scalar))
            letters += QString::fromUcs4(&scalar, 1);
    }
    return letters;
}

} // namespace

WakeTraining WakeTraining::of(const QString &name)
{
    WakeTraining training{name, u"en_US"_s, u"app.kelo.assistant.wake"_s, {}, {}};
    training.phrases = {{name, 5000}, {u"Hey "_s + name, 2500}, {u"Okay "_s + name, 800}};
    for (const char16_t *opener : openers) {
        const QString called = name + u' ' + QString::fromUtf16(opener);
        training.phrases.append({called, 400});
        training.phrases.append({u"Hey "_s + called, 150});
    }
    for (const auto &[known, phonemes] : knownPronunciations) {
        if (name.toLower() == QString::fromUtf16(known))
            training.pronunciation = {name, {QString::fromUtf16(phonemes)}};
    }
    return training;
}

QByteArray WakeTraining::exported() const
{
    QString text;
    QTextStream out(&text);
    out << "locale\t" << locale << "\nidentifier\t" << identifier << '\n';
    for (const PhraseCount &phrase : phrases)
        out << "phrase\t" << phrase.count << '\t' << phrase.phrase << '\n';
    if (pronunciation) {
        for (const QString &phonemes : pronunciation->phonemes)
            out << "pronunciation\t" << pronunciation->grapheme << '\t' << phonemes << '\n';
    }
    return text.toUtf8();
}

void saveWhole(const QString &path, const QByteArray &contents)
{
    if (const auto problem = writeWhole(path, contents))
        throw std::runtime_error(problem->toStdString());
}

SpeechModelFiles SpeechModelFiles::of(const QString &folder, const QString &name)
{
    const QString stem = folder + u'/' + lettersOf(name);
    return {stem + ".bin"_L1, stem + "-lm"_L1, stem + "-vocab"_L1};
}

} // namespace kelo
