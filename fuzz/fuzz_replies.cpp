// Any bytes as a controller reply: the search check, its messages and log lines, and the
// first-element check must cope with every JSON shape and value.

#include "fuzzsupport.h"

#include "core/commandchannel.h"
#include "support/recordingshell.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdlib>

using kellaser::CommandChannel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QJsonDocument doc = QJsonDocument::fromJson(fuzzsupport::input(data, size));
    // An object is tried as the single element of a reply, so both shapes get explored.
    const QJsonArray reply = doc.isArray() ? doc.array() : QJsonArray {doc.object()};

    // The commands the plug-in checks, plus the first key the input itself names, so the
    // fuzzer does not have to guess a command to reach the deeper branches.
    QStringList commands {QStringLiteral("set_virtual_welding"),
        QStringLiteral("set_weld_manual_gas"), QStringLiteral("set_weld_io_config")};
    const QJsonObject first
        = reply.at(0).toObject().value(QStringLiteral("kellaserweld")).toObject();
    if (!first.isEmpty())
        commands.append(first.constBegin().key());

    RecordingShell shell;
    for (const QString &command : qAsConst(commands)) {
        const CommandChannel::Entry entry = CommandChannel::findReturn(reply, command);
        const CommandChannel::Outcome outcome = CommandChannel::checkReply(reply, command,
            QStringLiteral("Fuzz::checkSaveResult failed. "), QStringLiteral("ok"),
            QStringLiteral("failed"));
        // The two halves of the search check must agree, and report at most one message.
        if (outcome != entry.outcome || shell.messages.size() > 1)
            std::abort();
        if ((entry.outcome == CommandChannel::Outcome::Success)
            != (entry.code == 0 && entry.outcome != CommandChannel::Outcome::NotFound))
            std::abort();
        shell.clear();
        CommandChannel::firstElementReturn(reply, command);
    }
    return 0;
}
