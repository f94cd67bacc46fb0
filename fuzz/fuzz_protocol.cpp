// Any bytes from the network as the controller protocol: the framing must take whole lines
// only, never hand on a message without this protocol's version, and stop at its size limit;
// whatever a message claims as a cell state or a history entry reads without harm.

#include "fuzzsupport.h"

#include "controller/cellstate.h"
#include "controller/changehistory.h"
#include "kelplugin/messagestream.h"

#include <QBuffer>
#include <QJsonArray>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray input = fuzzsupport::input(data, size);
    QBuffer device(&input);
    device.open(QIODevice::ReadOnly);
    // A small limit, so that over-long lines, ended or not, come up as often as short ones.
    kelplugin::MessageStream stream(&device, 512);
    using Status = kelplugin::MessageStream::Status;
    int taken = 0;
    for (;;) {
        QJsonObject message;
        const Status status = stream.next(&message);
        if (status == Status::Pending)
            break;
        if (status != Status::Oversized)
            ++taken;
        if (status != Status::Message) {
            if (stream.error().isEmpty())
                std::abort(); // every refusal says why
            continue;
        }
        if (message.value(QLatin1String("v")).toInt() != kelplugin::MessageStream::version)
            std::abort();
        const QJsonObject result = message.value(QLatin1String("result")).toObject();
        const auto state = kelcontroller::CellState::fromJson(result);
        // What a state was read as is what it sends on, and reads as again.
        if (state.historySize < 0
            || kelcontroller::CellState::fromJson(state.toJson()).toJson() != state.toJson())
            std::abort();
        for (const QJsonValue &entry : message.value(QLatin1String("result")).toArray()) {
            kelcontroller::ChangeHistory::Entry parsed;
            kelcontroller::ChangeHistory::fromJson(entry, &parsed);
        }
    }
    if (taken > input.count('\n'))
        std::abort(); // a message without its line end
    return 0;
}
