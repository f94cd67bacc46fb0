// kelcontroller: the controller simulator as a server of its own, as a robot controller is in
// a real cell.

#include "controllerserver.h"
#include "controllersimulator.h"

#include "kelplugin/networkcontroller.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr quint16 kDefaultPort = 7700;
int s_signalPipe[2] = {-1, -1};

void onSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(s_signalPipe[1], &byte, 1);
}

int fail(const QString &text)
{
    std::fprintf(stderr, "kelcontroller: %s\n", qPrintable(text));
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kelcontroller"));
    QCoreApplication::setOrganizationName(QStringLiteral("kellaserweld"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("The laser welding controller simulator, served to pendants over the "
                       "network."));
    parser.addHelpOption();
    const QCommandLineOption dataOption(QStringLiteral("data-dir"),
        QStringLiteral("Keep the controller's data, its cell key and its log in <dir>."),
        QStringLiteral("dir"));
    const QCommandLineOption listenOption(QStringLiteral("listen"),
        QStringLiteral("Listen on <address:port> (default 127.0.0.1:%1).").arg(kDefaultPort),
        QStringLiteral("address:port"), QStringLiteral("127.0.0.1:%1").arg(kDefaultPort));
    const QCommandLineOption portsOption(QStringLiteral("ports"),
        QStringLiteral("Offer <n> I/O ports of each type."), QStringLiteral("n"));
    const QCommandLineOption delayOption(QStringLiteral("reply-delay"),
        QStringLiteral("Answer every request <ms> late, to try a slow network."),
        QStringLiteral("ms"));
    parser.addOptions({dataOption, listenOption, portsOption, delayOption});
    parser.process(app);

    if (!parser.isSet(dataOption) || parser.value(dataOption).isEmpty())
        return fail(
            QStringLiteral("--data-dir DIR is needed: the folder of the controller's data."));
    const QString dataDir = QDir(parser.value(dataOption)).absolutePath();
    QString host;
    quint16 port = 0;
    if (!kelplugin::NetworkController::parseAddress(parser.value(listenOption), &host, &port)) {
        return fail(QStringLiteral("--listen takes ADDRESS:PORT, such as 127.0.0.1:%1 or [::1]:%1.")
                        .arg(kDefaultPort));
    }
    const QHostAddress address(
        host == QLatin1String("localhost") ? QStringLiteral("127.0.0.1") : host);
    if (address.isNull())
        return fail(QStringLiteral("--listen: \"%1\" is no IP address.").arg(host));

    // The folder is taken first: nothing in it is read or written while another one owns it.
    kelcontroller::ControllerSimulator controller(dataDir);
    if (!controller.isOwner()) {
        fail(controller.lastError());
        return 3;
    }
    QString error;
    const QByteArray key = kelcontroller::ControllerServer::cellKey(dataDir, &error);
    if (key.isEmpty())
        return fail(error);

    QFile log(QDir(dataDir).filePath(QStringLiteral("kelcontroller.log")));
    if (!log.open(QIODevice::Append | QIODevice::Text))
        std::fprintf(stderr, "kelcontroller: no log file: %s\n", qPrintable(log.errorString()));
    const auto logLine = [&log](const QString &text) {
        const QByteArray line = QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toUtf8()
            + ' ' + text.toUtf8() + '\n';
        std::fputs(line.constData(), stderr);
        if (log.isOpen()) {
            log.write(line);
            log.flush();
        }
    };

    QObject::connect(&controller, &kelcontroller::ControllerSimulator::problem, logLine);
    bool ok = true;
    if (parser.isSet(portsOption)) {
        const int ports = parser.value(portsOption).toInt(&ok);
        if (!ok || ports < 0 || ports > 100000)
            return fail(QStringLiteral("--ports takes a number from 0 to 100000."));
        controller.setIoLayout(kelcontroller::IoLayout::uniform(ports));
    }
    kelcontroller::ControllerServer server(&controller, key);
    QObject::connect(&server, &kelcontroller::ControllerServer::logLine, logLine);
    if (parser.isSet(delayOption)) {
        const int delay = parser.value(delayOption).toInt(&ok);
        if (!ok || delay < 0 || delay > 60000)
            return fail(QStringLiteral("--reply-delay takes milliseconds from 0 to 60000."));
        server.setReplyDelay(delay);
    }
    if (!server.listen(address, port)) {
        return fail(QStringLiteral("cannot listen on %1: %2")
                        .arg(parser.value(listenOption), server.errorString()));
    }

    // Ctrl-C and a service stop end the event loop; every record is on disk already.
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, s_signalPipe) == 0) {
        auto *notifier = new QSocketNotifier(s_signalPipe[0], QSocketNotifier::Read, &app);
        QObject::connect(notifier, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
        std::signal(SIGINT, onSignal);
        std::signal(SIGTERM, onSignal);
    }
    logLine(QStringLiteral("serving %1 on %2:%3, cell key in %4")
                .arg(controller.dataFilePath(), address.toString())
                .arg(server.port())
                .arg(QDir(dataDir).filePath(kelcontroller::ControllerServer::keyFileName())));
    const int result = app.exec();
    logLine(QStringLiteral("stopped"));
    return result;
}
