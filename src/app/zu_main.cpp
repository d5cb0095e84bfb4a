#include "app/zu_main.h"

#include "app/app_delegate.h"
#include "app/arguments.h"
#include "app/launch.h"
#include "app/session.h"
#include "app/single_instance.h"
#include "app/snapshot.h"
#include "link/link.h"
#include "link/paths.h"
#include "voice/voice_control.h"
#include "voice/wake_lab/wake_lab.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

void nameApplication()
{
    QCoreApplication::setOrganizationName(u"Kelo"_s);
    QCoreApplication::setApplicationName(u"Kelo"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(KELO_VERSION));
}

int runDisplay(const kelo::Arguments &arguments)
{
    using namespace kelo;
    // Before the link takes the environment that the engine gets.
    const bool startedByLogin = takeLoginMarks();
    SingleInstance instance(baseDir());
    if (instance.raisedAnother())
        return 0;
    instance.listen();
    // What is started from here on is not to come forward in a process that goes.
    QObject::connect(
        qApp, &QCoreApplication::aboutToQuit, &instance, &SingleInstance::stopListening);
    AppDelegate delegate(Link::shared(), VoiceControl::shared());
    QObject::connect(
        &instance, &SingleInstance::raiseRequested, &delegate, &AppDelegate::showWindow);
    const int status = delegate.launch(arguments, startedByLogin) ? QCoreApplication::exec() : 0;
    instance.stopListening();
    // What must last is on the disk, and the engine has been asked to end. To free windows and
    // speech models takes longer than whoever quits ought to wait.
    Link::shared().leaveEngine();
    std::fflush(nullptr);
    std::_Exit(status);
}

} // namespace

extern "C" int zu_main(int argc, char **argv)
{
    kelo::session::openMissingStreams();
    QStringList list;
    for (int i = 0; i < argc; ++i)
        list.append(QString::fromLocal8Bit(argv[i]));
    const auto arguments = kelo::Arguments::read(list);
    nameApplication();
    if (arguments.help || arguments.version) {
        const QCoreApplication application(argc, argv); // the help names the program
        const QByteArray help = kelo::Arguments::helpText().toLocal8Bit();
        std::fputs(arguments.help ? help.constData() : "kelo " KELO_VERSION "\n", stdout);
        return 0;
    }
    if (arguments.wakeTestReport && !arguments.snapshotFolder) {
        const QCoreApplication application(argc, argv);
        return kelo::WakeLab::run(
            *arguments.wakeTestReport, arguments.wakeTestName, arguments.quick);
    }
    if (!arguments.snapshotFolder)
        kelo::session::catchEndRequests();
    if (!kelo::session::prepareDisplay())
        return 1;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(u"app.kelo.assistant"_s);
    if (arguments.snapshotFolder)
        return kelo::writeSnapshots(*arguments.snapshotFolder, arguments.snapshotNames);
    return runDisplay(arguments);
}
