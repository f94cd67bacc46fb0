#include "pendantwindow.h"
#include "pluginhost.h"
#include "programeditor.h"
#include "runlink.h"
#include "screenshotter.h"

#include "controller/controllersimulator.h"
#include "kelplugin/interfacemanager.h"
#include "kelplugin/pluginbase.h"
#include "kelplugin/qflog.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

namespace {

QString defaultPluginFolder()
{
    // Next to the build's pendant first, then the folder the build wrote the plug-ins to.
    const QString besideApp
        = QCoreApplication::applicationDirPath() + QStringLiteral("/../plugins");
    if (QDir(besideApp).exists())
        return QDir::cleanPath(besideApp);
    return QStringLiteral(KEL_DEFAULT_PLUGIN_DIR);
}

void fail(const QString &text)
{
    std::fprintf(stderr, "kelpendant: %s\n", qPrintable(text));
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kelpendant"));
    QApplication::setOrganizationName(QStringLiteral("kellaserweld"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Teach pendant simulator for pendant plug-ins"));
    parser.addHelpOption();
    const QCommandLineOption pluginsOption(QStringLiteral("plugins"),
        QStringLiteral("Load plug-in libraries from <dir>."), QStringLiteral("dir"),
        defaultPluginFolder());
    const QCommandLineOption dataOption(QStringLiteral("data-dir"),
        QStringLiteral("Keep the simulated controller's data in <dir>."), QStringLiteral("dir"));
    const QCommandLineOption portsOption(QStringLiteral("ports"),
        QStringLiteral("Offer <n> I/O ports of each type."), QStringLiteral("n"));
    const QCommandLineOption levelOption(QStringLiteral("user-level"),
        QStringLiteral("Start with user level <n> (0-5)."), QStringLiteral("n"),
        QStringLiteral("3"));
    const QCommandLineOption shotOption(QStringLiteral("screenshot"),
        QStringLiteral("Render every window and page to PNG files "
                       "in <dir> and exit."),
        QStringLiteral("dir"));
    const QCommandLineOption langOption(QStringLiteral("lang"),
        QStringLiteral("Show the plug-ins in <language>, such as zh_CN."),
        QStringLiteral("language"));
    parser.addOptions(
        {pluginsOption, dataOption, portsOption, levelOption, shotOption, langOption});
    parser.process(app);

    bool ok = true;
    const int level = parser.value(levelOption).toInt(&ok);
    if (!ok || level < 0 || level > 5) {
        fail(QStringLiteral("--user-level takes a number from 0 to 5."));
        return 2;
    }

    kelcontroller::ControllerSimulator controller(parser.value(dataOption));
    if (parser.isSet(portsOption)) {
        const int ports = parser.value(portsOption).toInt(&ok);
        if (!ok || ports < 0 || ports > 100000) {
            fail(QStringLiteral("--ports takes a number from 0 to 100000."));
            return 2;
        }
        controller.setIoLayout(kelcontroller::IoLayout::uniform(ports));
    }
    controller.setUserLevel(level);
    kelplugin::setControllerBackend(&controller);

    PendantWindow window(&controller);
    // Leaves the plug-in a centre area of about 1024 by 768, as on the pendant.
    window.resize(1680, 1010);

    PluginHost host;
    QObject::connect(&host, &PluginHost::problem, &window, &PendantWindow::reportProblem);
    QObject::connect(&host, &PluginHost::problem, [](const QString &text) { fail(text); });
    host.loadFolder(parser.value(pluginsOption));
    if (host.loadedKeys().isEmpty())
        fail(QStringLiteral("no plug-in found in %1").arg(parser.value(pluginsOption)));

    // Plug-ins register their translations as resources when loaded, so load them now.
    QTranslator translator;
    if (parser.isSet(langOption)) {
        const QString language = parser.value(langOption);
        const QString suffix
            = language.startsWith(QLatin1String("zh")) ? QStringLiteral("cn") : language;
        const QString qm = QStringLiteral(":/kellaserweld/language/kellaserweld_%1.qm").arg(suffix);
        if (translator.load(qm))
            QApplication::installTranslator(&translator);
        else
            window.reportProblem(
                QStringLiteral("No translation %1 for language %2.").arg(qm, language));
    }

    host.startAll();
    for (kelplugin::PluginBase *plugin : host.plugins()) {
        for (const QString &key : host.loadedKeys())
            window.setPluginLabel(key, plugin->pluginLabel());
    }
    // The program editor lists what the plug-ins registered in afterInit.
    auto *programEditor = new ProgramEditor;
    programEditor->setObjectName(QStringLiteral("ProgramEditor"));
    programEditor->reloadCatalogue();
    window.addPendantPage(programEditor, QApplication::translate("kelpendant", "Program"));
    RunLink runLink(programEditor, controller.runner(), window.messageList());

    int result = 0;
    if (parser.isSet(shotOption)) {
        Screenshotter shooter(&window, parser.value(shotOption), &controller);
        const QStringList written = shooter.run();
        for (const QString &file : written)
            std::printf("%s\n", qPrintable(file));
        for (const QString &error : shooter.errors())
            fail(error);
        result = shooter.errors().isEmpty() && !written.isEmpty() ? 0 : 1;
    } else {
        window.show();
        // A real pendant reports the connection once its link is up.
        QTimer::singleShot(0, &controller, [&controller] { controller.setConnected(true); });
        result = app.exec();
    }
    host.shutdown();
    kelplugin::setControllerBackend(nullptr);
    kelplugin::QFLog::closeAll();
    return result;
}
