#include "localcell.h"
#include "pendantwindow.h"
#include "pluginhost.h"
#include "programeditor.h"
#include "remotecell.h"
#include "runlink.h"
#include "screenshotter.h"

#include "controller/controllersimulator.h"
#include "kelplugin/interfacemanager.h"
#include "kelplugin/networkcontroller.h"
#include "kelplugin/pluginbase.h"
#include "kelplugin/qflog.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTimer>
#include <QTranslator>

#include <cstdio>
#include <memory>

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
    // A static library's resources are linked in only when something names them.
    Q_INIT_RESOURCE(kelpendant_lang);
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
        QStringLiteral("Show the pendant and its plug-ins in <language>, such as zh_CN."),
        QStringLiteral("language"));
    const QCommandLineOption controllerOption(QStringLiteral("controller"),
        QStringLiteral("Use the kelcontroller at <host:port> instead of the embedded simulator."),
        QStringLiteral("host:port"));
    const QCommandLineOption keyOption(QStringLiteral("controller-key"),
        QStringLiteral("The cell key for --controller: the controller's kelcontroller.key."),
        QStringLiteral("file"));
    parser.addOptions({pluginsOption, dataOption, portsOption, levelOption, shotOption, langOption,
        controllerOption, keyOption});
    parser.process(app);

    bool ok = true;
    const int level = parser.value(levelOption).toInt(&ok);
    if (!ok || level < 0 || level > 5) {
        fail(QStringLiteral("--user-level takes a number from 0 to 5."));
        return 2;
    }

    // The controller: simulated in this process, or a kelcontroller on the network.
    std::unique_ptr<kelcontroller::ControllerSimulator> simulator;
    std::unique_ptr<kelplugin::NetworkController> network;
    std::unique_ptr<CellLink> cell;
    if (parser.isSet(controllerOption)) {
        for (const QCommandLineOption *local : {&dataOption, &portsOption, &shotOption}) {
            if (parser.isSet(*local)) {
                fail(QStringLiteral("--%1 is for the embedded controller; leave out --controller.")
                         .arg(local->names().constFirst()));
                return 2;
            }
        }
        QString host;
        quint16 port = 0;
        if (!kelplugin::NetworkController::parseAddress(
                parser.value(controllerOption), &host, &port)) {
            fail(QStringLiteral("--controller takes HOST:PORT, such as 127.0.0.1:7700."));
            return 2;
        }
        if (!parser.isSet(keyOption)) {
            fail(QStringLiteral("--controller needs --controller-key FILE, the controller's "
                                "kelcontroller.key."));
            return 2;
        }
        QFile keyFile(parser.value(keyOption));
        if (!keyFile.open(QIODevice::ReadOnly)) {
            fail(QStringLiteral("cannot read the cell key %1: %2")
                     .arg(keyFile.fileName(), keyFile.errorString()));
            return 2;
        }
        network = std::make_unique<kelplugin::NetworkController>(
            host, port, keyFile.readLine(4096).trimmed());
        network->setClientName(
            QStringLiteral("kelpendant@%1").arg(QSysInfo::machineHostName().left(40)));
        network->setUserLevel(level);
        kelplugin::setControllerBackend(network.get());
        cell = std::make_unique<RemoteCell>(network.get());
    } else {
        simulator = std::make_unique<kelcontroller::ControllerSimulator>(parser.value(dataOption));
        if (!simulator->isOwner()) {
            fail(simulator->lastError());
            return 3;
        }
        if (parser.isSet(portsOption)) {
            const int ports = parser.value(portsOption).toInt(&ok);
            if (!ok || ports < 0 || ports > 100000) {
                fail(QStringLiteral("--ports takes a number from 0 to 100000."));
                return 2;
            }
            simulator->setIoLayout(kelcontroller::IoLayout::uniform(ports));
        }
        simulator->setUserLevel(level);
        kelplugin::setControllerBackend(simulator.get());
        cell = std::make_unique<LocalCell>(simulator.get());
    }

    // The pendant's own texts: its widgets translate as they are built, so before the window.
    const QString language = parser.value(langOption);
    const QString suffix
        = language.startsWith(QLatin1String("zh")) ? QStringLiteral("cn") : language;
    QTranslator pendantTranslator;
    if (parser.isSet(langOption)
        && pendantTranslator.load(
            QStringLiteral(":/kelpendant/language/kelpendant_%1.qm").arg(suffix)))
        QApplication::installTranslator(&pendantTranslator);

    PendantWindow window(cell.get());
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
        const QString qm = QStringLiteral(":/kellaserweld/language/kellaserweld_%1.qm").arg(suffix);
        if (translator.load(qm))
            QApplication::installTranslator(&translator);
        else
            window.reportProblem(
                QApplication::translate("kelpendant", "No translation %1 for language %2.")
                    .arg(qm, language));
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
    RunLink runLink(programEditor, cell.get(), window.messageList());

    int result = 0;
    if (parser.isSet(shotOption)) {
        Screenshotter shooter(&window, parser.value(shotOption), simulator.get());
        const QStringList written = shooter.run();
        for (const QString &file : written)
            std::printf("%s\n", qPrintable(file));
        for (const QString &error : shooter.errors())
            fail(error);
        result = shooter.errors().isEmpty() && !written.isEmpty() ? 0 : 1;
    } else {
        window.show();
        // A real pendant reports the connection once its link is up.
        QTimer::singleShot(0, cell.get(), [&cell] { cell->setConnected(true); });
        result = app.exec();
    }
    host.shutdown();
    kelplugin::setControllerBackend(nullptr);
    kelplugin::QFLog::closeAll();
    return result;
}
