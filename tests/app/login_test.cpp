#include "app/login_item.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kelo;

/// The login entry as real files, read by the tools of the desktop.
class LoginTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { folder_ = std::make_unique<QTemporaryDir>(); }
    void startsTheProgramHiddenWhereverItIs_data();
    void startsTheProgramHiddenWhereverItIs();
    void readsWhatTheDesktopMadeOfIt_data();
    void readsWhatTheDesktopMadeOfIt();
    void switchesOnAndOff();
    void saysWhenItFails();

private:
    [[nodiscard]] LoginItem item(const QString &executable = u"/usr/bin/kelo"_s) const
    {
        return {folder_->path(), executable};
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

void LoginTest::startsTheProgramHiddenWhereverItIs_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"kelo"_s;
    QTest::newRow("spaces") << u"my  programs/kelo display"_s;
    QTest::newRow("percent signs") << u"100%/%u%%f/kelo"_s;
    QTest::newRow("an equals sign") << u"a=b/kelo"_s;
    QTest::newRow("backslashes and quotes") << uR"(a\b\\c"d'e/ke"lo\)"_s;
    QTest::newRow("what a shell would expand") << u"$HOME `id` $(id) ~ * ?/kelo;#&"_s;
    QTest::newRow("other scripts") << u"برامج/鍵盤"_s;
}

void LoginTest::startsTheProgramHiddenWhereverItIs()
{
    QFETCH(const QString, name);
    // A program that notes how it was called.
    const QString executable = folder_->filePath(name);
    const QString notes = folder_->filePath(u"called"_s);
    QDir().mkpath(QFileInfo(executable).path());
    QFile program(executable);
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.write("#!/bin/sh\nprintf '%s\\n' \"$0\" \"$@\" > '" + notes.toUtf8() + "'\n");
    program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    program.close();

    QVERIFY(item(executable).set(true));
    QVERIFY(item(executable).on());
    QProcess validator;
    validator.start(u"desktop-file-validate"_s, {item().path()});
    QVERIFY(validator.waitForFinished());
    QCOMPARE(validator.readAll(), QByteArray());
    QCOMPARE(validator.exitCode(), 0);

    QCOMPARE(QProcess::execute(u"gio"_s, {u"launch"_s, item().path()}), 0);
    const QByteArray expected = executable.toUtf8() + "\n--hidden\n";
    const auto called = [&notes] {
        QFile file(notes);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_COMPARE(called(), expected);
}

void LoginTest::readsWhatTheDesktopMadeOfIt_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("on");
    const QByteArray group = "[Desktop Entry]\nType=Application\nExec=kelo --hidden\n";
    QTest::newRow("as it is") << group << true;
    QTest::newRow("hidden") << group + "Hidden=true\n" << false;
    QTest::newRow("not hidden") << group + "Hidden=false\n" << true;
    QTest::newRow("disabled") << group + "X-GNOME-Autostart-enabled = false \n" << false;
    QTest::newRow("enabled") << group + "X-GNOME-Autostart-enabled=true\n" << true;
    QTest::newRow("carriage returns") << group + "Hidden=true\r\n" << false;
    QTest::newRow("in another group") << group + "[Desktop Action x]\nHidden=true\n" << true;
    QTest::newRow("in a comment") << group + "# Hidden=true\n" << true;
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("no text") << QByteArray(200'000, '\0') << true;
}

void LoginTest::readsWhatTheDesktopMadeOfIt()
{
    QFETCH(const QByteArray, entry);
    QDir().mkpath(QFileInfo(item().path()).path());
    QFile file(item().path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(entry);
    file.close();
    QTEST(item().on(), "on");
    QVERIFY(item().set(true));
    QVERIFY(item().on());
}

void LoginTest::switchesOnAndOff()
{
    QVERIFY(!item().on());
    QVERIFY2(item().set(false), "off already is no failure");
    QVERIFY(item().set(true));
    QVERIFY(item().on());
    QVERIFY(item().set(false));
    QVERIFY(!item().on());
    QVERIFY(!QFile::exists(item().path()));
}

void LoginTest::saysWhenItFails()
{
    const LoginItem nowhere(u"/dev/null"_s, u"/usr/bin/kelo"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"can't write"_s));
    QVERIFY(!nowhere.set(true));
    QVERIFY(!nowhere.on());
    QVERIFY(nowhere.set(false));
}

QTEST_GUILESS_MAIN(LoginTest)
#include "login_test.moc"
