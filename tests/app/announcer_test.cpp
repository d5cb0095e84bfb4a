#include "app/announcer.h"
#include "app/display_scale.h"
#include "app/overlay.h"
#include "support/link_fixture.h"
#include "voice/voice_control.h"
#include "welcome/welcome_questions.h"

#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// What a user of a screen reader is told of all that changes.
class AnnouncerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void announcesWhatChanges_data();
    void announcesWhatChanges();
    void saysNothingThatHoldsAlready();
    void repeatsCaptionsForReadersOnly();
    void announcesTheQuestionsToReaders();

private:
    std::unique_ptr<LinkFixture> link_;
    std::unique_ptr<QSettings> settings_;
    std::unique_ptr<VoiceControl> voice_;
    std::unique_ptr<WelcomeQuestions> questions_;
    std::unique_ptr<Overlay> overlay_;
    std::unique_ptr<DisplayScale> scale_;
    std::unique_ptr<Announcer> announcer_;
    QStringList said_;
};

void AnnouncerTest::init()
{
    link_ = std::make_unique<LinkFixture>();
    Link &link = link_->link();
    settings_ =
        std::make_unique<QSettings>(link_->folder.filePath(u"display.ini"_s), QSettings::IniFormat);
    voice_ = std::make_unique<VoiceControl>();
    questions_ = std::make_unique<WelcomeQuestions>(link, link_->ears);
    overlay_ = std::make_unique<Overlay>(Overlay::Parts{
        &link, voice_.get(), settings_.get(), nullptr, [] { return MainWindow::Seen; }});
    scale_ = std::make_unique<DisplayScale>(*settings_);
    announcer_ = std::make_unique<Announcer>(Announcer::Sources{
        &link, voice_.get(), questions_.get(), overlay_.get(), scale_.get(), settings_.get()});
    said_.clear();
    connect(
        announcer_.get(), &Announcer::said, this, [this](const QString &text) { said_ += text; });
}

void AnnouncerTest::cleanup()
{
    announcer_.reset();
    overlay_.reset();
    questions_.reset();
    scale_.reset();
    voice_.reset();
    link_.reset();
}

void AnnouncerTest::announcesWhatChanges_data()
{
    QTest::addColumn<QByteArrayList>("lines");
    QTest::addColumn<QString>("said");
    const auto row = [](const char *name, QByteArrayList lines, const QString &said) {
        QTest::newRow(name) << lines << u"Kelo is online. "_s + said;
    };
    row("a mode", {"mode teach"}, u"Mode: lesson"_s);
    row("larger captions", {"access large 1"}, u"Larger captions on"_s);
    row("high contrast", {"access contrast 1"}, u"High contrast on"_s);
    row("an update", {"update 3.2|Notes."}, u"New update: version 3.2"_s);
    row("a piece", {"rollnew Waltz"}, u"Visualiser open. Playing Waltz"_s);
    row("a pause", {"paused 1"}, u"Paused"_s);
    row("a piano", {"kbd Stage Piano 88"}, u"Piano connected: Stage Piano 88"_s);
}

void AnnouncerTest::announcesWhatChanges()
{
    QFETCH(const QByteArrayList, lines);
    for (const QByteArray &line : lines)
        link_->link().handle(line);
    QTRY_COMPARE(said_.size(), 1);
    QTEST(said_.constFirst(), "said");
}

void AnnouncerTest::saysNothingThatHoldsAlready()
{
    link_->say({"mode idle", "kbd", "paused 0", "access large 0"});
    overlay_->setEnabled(true);
    voice_->status = u"OFF"_s;
    scale_->reset();
    link_->link().state = u"STARTING"_s;
    link_->say({"say Good evening."});
    QTRY_COMPARE(said_, QStringList{u"Kelo is online"_s});

    link_->time.advance(2);
    voice_->status = u"LISTENING FOR “KELO”"_s;
    overlay_->setEnabled(false);
    scale_->larger();
    QTRY_COMPARE(said_.size(), 2);
    QCOMPARE(said_.constLast(),
        u"Voice control: listening for “kelo”. Caption panel off. Size 125 percent"_s);
}

void AnnouncerTest::repeatsCaptionsForReadersOnly()
{
    link_->say({"say Not for you."});
    QTRY_COMPARE(said_, QStringList{u"Kelo is online"_s});
    settings_->setValue(u"reader"_s, true);
    link_->say({"say Once more."});
    QTRY_COMPARE(said_.constLast(), u"Once more."_s);
    link_->time.advance(2);
    link_->say({"say Once more."});
    QTRY_COMPARE(said_.count(u"Once more."_s), 2);
}

void AnnouncerTest::announcesTheQuestionsToReaders()
{
    link_->say({"welcome"});
    questions_->setAnswers({.reader = true});
    questions_->next();
    QTRY_VERIFY(!said_.isEmpty());
    QVERIFY(said_.constLast().startsWith(u"What should I call you?"_s));
    QVERIFY(said_.constLast().contains(u"Return continues."_s));
}

QTEST_MAIN(AnnouncerTest)
#include "announcer_test.moc"
