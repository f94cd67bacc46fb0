#pragma once

#include "weldmonitor.h"

#include "kelplugin/kelplugin_global.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

#include <memory>

namespace kelcontroller {

class JournalFile;

// The controller's log of welds, LaserOn to laser off: the last welds with their samples and
// totals that are never reset, kept in their own file beside the controller's data file, one
// weld per line with the totals after it.
class KELPLUGIN_EXPORT WeldRecords
{
public:
    static constexpr int kept = 50;
    // Five minutes at 20 samples per second; a longer weld keeps its first samples.
    static constexpr int maxSamples = 6000;
    // One weld's line; a larger one (long names) is stored without its samples.
    static constexpr qint64 maxWeldBytes = 1024 * 1024;
    // The file grows to maxBytes or kept + 10 welds, then keeps the newest within keptBytes.
    static constexpr qint64 keptBytes = 16 * 1024 * 1024;
    static constexpr qint64 maxBytes = 24 * 1024 * 1024;

    struct Weld
    {
        QDateTime start;
        qint64 durationMs = 0;
        QString program;
        int line = 0; // 1-based
        QString dataSet;
        QString matchSet;
        double lengthMm = 0.0;
        qint64 laserOnMs = 0;
        double wireMm = 0.0;
        bool simulated = false;
        bool completed = false;
        QVector<MonitorSample> samples; // t from the weld's start
    };

    explicit WeldRecords(const QString &filePath);
    ~WeldRecords();

    QString filePath() const;
    // Reads the file; a damaged one is put aside and the log starts empty. Returns what went
    // wrong, empty when nothing did.
    QString load();
    // Logs a finished weld under the next id and appends it to the file; false, with error
    // set, when the file cannot be written (the weld stays logged in memory) or the weld had
    // to be stored without its samples.
    bool add(const Weld &weld, QString *error);
    // Nothing is written from now on: the folder is not ours.
    void block(const QString &why);

    // "weld_records": totals and the summaries, newest first.
    QJsonObject list() const;
    // "weld_record.<id>": the summary with its samples; undefined for an unknown id.
    QJsonValue weld(int id) const;

private:
    // A logged weld: its summary, and the whole entry as the file holds it, serialised once so
    // that logging a weld does not serialise the other 49 again.
    struct Entry
    {
        QJsonObject summary;
        QByteArray json;
    };

    std::unique_ptr<JournalFile> m_journal;
    QVector<Entry> m_welds; // newest first
    QJsonObject m_totals;
    int m_nextId = 1;
    QString m_blocked; // why nothing is written, empty when it is
};

} // namespace kelcontroller
