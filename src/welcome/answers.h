#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace kelo {

/// Names that the assistant offers to be called by, the best known first.
[[nodiscard]] const QStringList &assistantNames();

/// What the user has answered so far. Nothing is checked beyond what keeps the line to the engine
/// whole: an empty answer is an answer.
struct Answers {
    Q_GADGET
    QML_VALUE_TYPE(answers)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(int wake MEMBER wake)
    Q_PROPERTY(QString custom MEMBER custom)
    Q_PROPERTY(QString city MEMBER city)
    Q_PROPERTY(int month MEMBER month)
    Q_PROPERTY(int day MEMBER day)
    Q_PROPERTY(bool fahrenheit MEMBER fahrenheit)
    Q_PROPERTY(bool large MEMBER large)
    Q_PROPERTY(bool contrast MEMBER contrast)
    Q_PROPERTY(bool reader MEMBER reader)
    Q_PROPERTY(bool plays MEMBER plays)
    Q_PROPERTY(bool listen MEMBER listen)
    Q_PROPERTY(bool natural MEMBER natural)
    Q_PROPERTY(QString chosen READ chosen)
    Q_PROPERTY(bool hasOwnName READ hasOwnName)
    Q_PROPERTY(int dayCount READ dayCount)

public:
    QString name{}; ///< what the user wants to be called
    int wake = 0; ///< the assistant's name, by its place in `assistantNames`
    QString custom{}; ///< an own name for the assistant, as typed
    QString city{};
    int month = 0; ///< 1 to 12; 0 while no birthday is chosen
    int day = 0; ///< 1 to `dayCount()`; 0 while no birthday is chosen
    bool fahrenheit = false;
    bool large = false;
    bool contrast = false;
    bool reader = false; ///< uses a screen reader
    bool plays = false; ///< plays the piano or makes music
    bool listen = false; ///< allows the microphone
    bool natural = false; ///< wants the natural voice downloaded

    /// The assistant's name: the letters of the own one, when there are 3 to 12 of them, otherwise
    /// the one chosen from the list. A letter is what a reader takes for one, accents included.
    [[nodiscard]] QString chosen() const;
    /// The own name counts.
    [[nodiscard]] bool hasOwnName() const;

    /// Days of the chosen month, in a leap year since a birthday has no year; 0 while none is.
    [[nodiscard]] int dayCount() const;

    /// Takes a name of the list, and with it the own name back.
    void chooseName(int index);
    /// Takes a month, 0 for no birthday. The day follows: the first, or the last that there is.
    void chooseMonth(int number);
    /// Takes a day of the chosen month; nothing while none is chosen or for a day it does not have.
    void chooseDay(int number);

    /// `name` as it goes to the engine.
    [[nodiscard]] QString cleanedName() const;
    /// The one line that tells the engine everything, line feed included.
    [[nodiscard]] QString setupLine() const;

    friend bool operator==(const Answers &, const Answers &) = default;
};

} // namespace kelo
