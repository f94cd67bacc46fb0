#include "fuzzsupport.h"

#include "support/testenvironment.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

void discardMessage(QtMsgType, const QMessageLogContext &, const QString &)
{ }

} // namespace

namespace fuzzsupport {

void initialise(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Lives until exit, like the application.
    static QApplication app(*argc, *argv);
    qInstallMessageHandler(discardMessage);

    static QTemporaryDir scratch;
    QDir::setCurrent(scratch.path());
    QDir().mkpath(QStringLiteral("log/kelplugin/kellaserweld"));
    QFile::link(QStringLiteral("/dev/null"), testenv::logFilePath());

    testenv::initPluginResources();
}

} // namespace fuzzsupport
