#include "storagelimits.h"

#include "changehistory.h"
#include "recordstore.h"

#include "kelplugin/messagestream.h"

namespace kelcontroller {

// Every limit leaves room: a record or the data file fits a pendant's answer many times over,
// the history's answer (its entries as JSON) too, and all of them the start-up read.
static_assert(StorageLimits::maxRecordBytes * 8 < kelplugin::MessageStream::maxMessageBytes,
    "a record must fit a pendant's answer");
static_assert(StorageLimits::maxDataFileBytes * 4 < kelplugin::MessageStream::maxMessageBytes,
    "the data file must fit a pendant's answer");
static_assert(ChangeHistory::maxBytes * 2 < kelplugin::MessageStream::maxMessageBytes,
    "the change history must fit a pendant's answer");
static_assert(StorageLimits::maxDataFileBytes * 16 < RecordStore::maxReadBytes,
    "the data file must be read at start");
static_assert(ChangeHistory::maxEntryBytes * 2 < ChangeHistory::keptBytes,
    "the history must keep more than one entry");
static_assert(StorageLimits::maxRecordBytes * 2 < ChangeHistory::maxEntryBytes,
    "a change of a record of the largest size must be storable in the history");

QString StorageLimits::tooLarge(const QString &what, qint64 bytes, qint64 limit)
{
    return QStringLiteral("%1 too large: %2, at most %3")
        .arg(what, sizeText(bytes), limitText(limit));
}

QString StorageLimits::sizeText(qint64 bytes)
{
    if (bytes < 1000)
        return QStringLiteral("%1 bytes").arg(bytes);
    if (bytes < 1000 * 1000)
        return QStringLiteral("%1 kB").arg(double(bytes) / 1e3, 0, 'f', 1);
    return QStringLiteral("%1 MB").arg(double(bytes) / 1e6, 0, 'f', 1);
}

QString StorageLimits::limitText(qint64 bytes)
{
    if (bytes % (1024 * 1024) == 0)
        return QStringLiteral("%1 MiB").arg(bytes / (1024 * 1024));
    if (bytes % 1024 == 0)
        return QStringLiteral("%1 KiB").arg(bytes / 1024);
    return QStringLiteral("%1 bytes").arg(bytes);
}

} // namespace kelcontroller
