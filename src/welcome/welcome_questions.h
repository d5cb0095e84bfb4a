#pragma once

#include "welcome/answers.h"
#include "welcome/questions.h"

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace kelo {

class VoiceInput;
class Link;

/// The first-run questions: which one shows, what has been answered, what a key means.
///
/// They begin when `Link::welcome` becomes true and end when the last one is answered; then one
/// line carries all answers to the engine. The answers live here and not in the screen, so a
/// window that is closed half way loses nothing.
class WelcomeQuestions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("handed to the display by the application")
    Q_PROPERTY(int step READ step NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString sub READ sub NOTIFY changed)
    Q_PROPERTY(QString hint READ hint NOTIFY changed)
    Q_PROPERTY(QString goOnLabel READ goOnLabel NOTIFY changed)
    Q_PROPERTY(QString birthday READ birthday NOTIFY changed)
    Q_PROPERTY(kelo::Answers answers READ answers WRITE setAnswers NOTIFY changed)
    Q_PROPERTY(QList<QString> names READ names CONSTANT)
    Q_PROPERTY(QList<QString> months READ months CONSTANT)
    Q_PROPERTY(QList<QString> monthNames READ monthNames CONSTANT)
    Q_PROPERTY(QQuickWindow *window MEMBER window_ NOTIFY windowChanged)

public:
    /// Installs itself as the link's `welcomeKey` for as long as it lives.
    WelcomeQuestions(Link &link, VoiceInput &ears, QObject *parent = nullptr);
    ~WelcomeQuestions() override;

    [[nodiscard]] int step() const { return static_cast<int>(step_); }
    [[nodiscard]] QString title() const { return current().title; }
    [[nodiscard]] QString sub() const { return current().sub; }
    [[nodiscard]] QString hint() const { return current().hint; }
    /// What the button says that goes on from here.
    [[nodiscard]] QString goOnLabel() const;
    /// The chosen birthday in words.
    [[nodiscard]] QString birthday() const;
    [[nodiscard]] const Answers &answers() const { return answers_; }
    void setAnswers(const Answers &answers);

    [[nodiscard]] static QStringList names() { return assistantNames(); }
    [[nodiscard]] static QStringList months();
    [[nodiscard]] static QStringList monthNames();

    /// The question in words, to the engine's voice or to the user's screen reader.
    Q_INVOKABLE void say();
    /// On to the next question; after the last one all is done.
    Q_INVOKABLE void next();
    Q_INVOKABLE void back();
    Q_INVOKABLE void chooseName(int index);
    Q_INVOKABLE void chooseMonth(int number);
    Q_INVOKABLE void chooseDay(int number);

    /// For those who hear the engine alone: speaks what the keyboard focus came to or has just
    /// switched. A screen reader says that by itself.
    Q_INVOKABLE void speakChoice(const QString &choice);

    /// A key that went down anywhere in the window: true when it meant something here, otherwise
    /// it belongs to the control with the keyboard focus.
    bool key(int key);

Q_SIGNALS:
    void changed();
    /// A question was put: the keyboard focus belongs to what answers it.
    void asked();
    void windowChanged();
    /// For the screen reader: a whole question, and what an arrow key has just chosen unless the
    /// keyboard focus goes there, which is heard anyway. Where none runs the engine speaks them.
    void questionAnnounced(const QString &text);
    void choiceAnnounced(const QString &text);

private:
    [[nodiscard]] Question current() const { return question(step_, answers_.chosen()); }
    void welcomeChanged();
    void finish();
    bool sideways(int by);
    bool upOrDown(int by);
    void edit(void (Answers::*choose)(int), int value);
    void goTo(int step);
    [[nodiscard]] bool readerRuns() const;
    void tell(const QString &choice, const QObject *focusBefore);
    [[nodiscard]] const QObject *focused() const;

    Link &link_;
    VoiceInput &ears_;
    Step step_ = Step::Greeting;
    Answers answers_;
    QPointer<QQuickWindow> window_; // that the screen shows in
    bool underWay_ = false;
};

} // namespace kelo
