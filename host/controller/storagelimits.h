#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QString>

namespace kelcontroller {

// What the controller stores at most, checked before a save is acknowledged: well inside what
// it reads at start and what a pendant takes in one answer, so that nothing it accepted can
// keep it or a pendant from working later.
class KELPLUGIN_EXPORT StorageLimits
{
public:
    // One configuration record as compact JSON.
    static constexpr qint64 maxRecordBytes = 256 * 1024;
    // The data file as written: the five records, the points and the status.
    static constexpr qint64 maxDataFileBytes = 2 * 1024 * 1024;

    // "record too large: 1.2 MB, at most 256 KiB"
    static QString tooLarge(const QString &what, qint64 bytes, qint64 limit);
    // 1,234,567 bytes: "1.2 MB"; 2,048: "2.0 kB"; 17: "17 bytes".
    static QString sizeText(qint64 bytes);
    // 262,144: "256 KiB"; 2,097,152: "2 MiB".
    static QString limitText(qint64 bytes);
};

} // namespace kelcontroller
