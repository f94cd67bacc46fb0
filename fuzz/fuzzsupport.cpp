#include "fuzzsupport.h"

#include "support/testenvironment.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

void discardMessage(QtMsgType, const QMessageLogContext &, const QString &)
{ }

} // namespace

namespace fuzzsupport {

void initialise()
{
    if (qApp)
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: libFuzzer leaves through exit(), and an application torn down among
    // Qt's own exit-time statics touches ones already gone. Held by a static, so it is still
    // reachable and not a leak.
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static QApplication *app = new QApplication(argc, argv);
    Q_UNUSED(app)
    qInstallMessageHandler(discardMessage);

    // The plug-in logs to ./log/...; pointing that file at /dev/null keeps a long run from
    // filling the disk. The working folder stays, so corpus paths on the command line work.
    QDir().mkpath(QStringLiteral("log/kelplugin/kellaserweld"));
    if (!QFileInfo::exists(testenv::logFilePath()))
        QFile::link(QStringLiteral("/dev/null"), testenv::logFilePath());

    testenv::initPluginResources();
}

} // namespace fuzzsupport
