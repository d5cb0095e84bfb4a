#include "app/zu_main.h"

#include "app/app_delegate.h"
#include "app/arguments.h"
#include "app/session.h"
#include "app/single_instance.h"
#include "app/snapshot.h"
#include "link/link.h"
#include "link/paths.h"
#include "voice/voice_control.h"
#include "voice/wake_lab/wake_lab.h"

#include <QApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *usage =
    R"(Usage: kelo [--hidden]
       kelo --snapshot FOLDER [NAME]
       kelo --wake-test REPORT [NAME] [--quick]
       kelo --help | --version

  --hidden            start with the main window hidden
  --snapshot FOLDER   write a picture of every screen into FOLDER and end;
                      with NAME only of those whose names begin with it
  --wake-test REPORT  measure how well NAME (Kelo) is heard, write it to REPORT and end;
                      with --quick without teaching the name first
  --help              show this and end
  --version           show the version and end
)";

void nameApplication()
{
    QCoreApplication::setOrganizationName(u"Kelo"_s);
    QCoreApplication::setApplicationName(u"Kelo"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(KELO_VERSION));
}

int runDisplay(const kelo::Arguments &arguments)
{
    using namespace kelo;
    SingleInstance instance(baseDir());
    if (instance.raisedAnother())
        return 0;
    instance.listen();
    AppDelegate delegate(Link::shared(), VoiceControl::shared());
    QObject::connect(
        &instance, &SingleInstance::raiseRequested, &delegate, &AppDelegate::showWindow);
    delegate.launch(arguments);
    return QCoreApplication::exec();
}

} // namespace

extern "C" int zu_main(int argc, char **argv)
{
    QStringList list;
    for (int i = 1; i < argc; ++i)
        list.append(QString::fromLocal8Bit(argv[i]));
    const auto arguments = kelo::Arguments::read(list);
    if (arguments.help || arguments.version) {
        std::fputs(arguments.help ? usage : "kelo " KELO_VERSION "\n", stdout);
        return 0;
    }
    nameApplication();
    if (arguments.wakeTestReport && !arguments.snapshotFolder) {
        const QCoreApplication application(argc, argv);
        return kelo::WakeLab::run(
            *arguments.wakeTestReport, arguments.wakeTestName, arguments.quick);
    }
    if (!kelo::session::prepareDisplay()) {
        std::fputs("kelo: there is no display to show anything on\n", stderr);
        return 1;
    }
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(u"app.kelo.assistant"_s);
    if (arguments.snapshotFolder)
        return kelo::writeSnapshots(*arguments.snapshotFolder, arguments.snapshotNames);
    return runDisplay(arguments);
}
