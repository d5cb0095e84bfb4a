#include "app/desktop/autostart_file.h"
#include "support/files.h"
#include "support/table.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kelo;
using namespace kelo::test;

/// The login entry as real files, read by the tools of the desktop.
class LoginTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { folder_ = std::make_unique<QTemporaryDir>(); }

    void startsTheProgramHiddenWhereverItIs_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"my  programs/kelo display", "100%/%u%%f/kelo", "a=b/kelo",
                 "a\\b\\\\c\"d'e/ke\"lo\\", "$HOME `id` $(id) ~ * ?/kelo;#&", "برامج/鍵盤"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }

    void startsTheProgramHiddenWhereverItIs()
    {
        QFETCH(const QString, name);
        // A program that notes how it was called.
        const QString executable = folder_->filePath(name);
        const QString notes = folder_->filePath(u"called"_s);
        writeFile(
            executable, "#!/bin/sh\nprintf '%s\\n' \"$0\" \"$@\" > '" + notes.toUtf8() + "'\n");
        QFile::setPermissions(executable, QFile::ReadOwner | QFile::ExeOwner);

        QVERIFY(item(executable).set(true));
        QVERIFY(item(executable).on());
        QProcess validator;
        validator.start(u"desktop-file-validate"_s, {item().path()});
        QVERIFY(validator.waitForFinished());
        QCOMPARE(validator.readAll(), QByteArray());
        QCOMPARE(validator.exitCode(), 0);

        QCOMPARE(QProcess::execute(u"gio"_s, {u"launch"_s, item().path()}), 0);
        QTRY_COMPARE(readFile(notes), executable.toUtf8() + "\n--hidden\n");
    }

    void readsWhatTheDesktopMadeOfIt()
    {
        const auto on = [this](const QByteArray &entry) {
            writeFile(item().path(), entry);
            return item().on();
        };
        const QByteArray group = "[Desktop Entry]\nType=Application\nExec=kelo --hidden\n";
        checkRows<QByteArray, bool>(on,
            {{"hidden", group + "Hidden=true\n", false},
                {"disabled", group + "X-GNOME-Autostart-enabled = false \n", false},
                {"in another group", group + "[Desktop Action x]\nHidden=true\n", true},
                {"empty", {}, true}, {"no text", QByteArray(200'000, '\0'), true},
                {"carriage returns", group + "Hidden=true\r\n", false}});
        QVERIFY(item().set(true));
        QVERIFY(item().on());
        QVERIFY(item().set(false));
        QVERIFY(!item().on() && !QFile::exists(item().path()));
        QVERIFY2(item().set(false), "off already is no failure");
    }

    void saysWhenItFails()
    {
        AutostartFile nowhere(u"/dev/null"_s, u"/usr/bin/kelo"_s);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"can't write"_s));
        QVERIFY(!nowhere.set(true));
        QVERIFY(!nowhere.on());
        QVERIFY(nowhere.set(false));
    }

    void keepsWhatThereWasOnAFullDisk()
    {
        QVERIFY(item(u"/usr/bin/kelo"_s).set(true));
        const QByteArray before = readFile(item().path());
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit room{};
        getrlimit(RLIMIT_FSIZE, &room);
        const rlimit none{0, room.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"can't write"_s));
        const bool written = item(u"/opt/kelo"_s).set(true);
        setrlimit(RLIMIT_FSIZE, &room);
        QVERIFY(!written);
        QCOMPARE(readFile(item().path()), before);
    }

private:
    [[nodiscard]] AutostartFile item(const QString &executable = u"/usr/bin/kelo"_s) const
    {
        return AutostartFile(folder_->path(), executable);
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

QTEST_GUILESS_MAIN(LoginTest)
#include "login_test.moc"
