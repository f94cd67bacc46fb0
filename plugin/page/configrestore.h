#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QStringList>
#include <QVector>

class QObject;

// Puts the records of a backup back into the controller, each through the save commands its
// page uses and judged as that page's save is. A record the page would refuse is not sent.
class ConfigRestore
{
    Q_DECLARE_TR_FUNCTIONS(ConfigRestore)
public:
    struct Result
    {
        QString record;
        bool restored = false;
        QString message;
    };

    // The controller's five records now; a record it does not answer is left out.
    static QJsonObject currentRecords();
    static bool isWeldingOn();

    // Why this record of the file must not be sent: its shape, or the page's own check.
    static QString refusal(
        const QString &recordKey, const QJsonObject &record, const QJsonObject &current);
    // The same against the controller's records now: also refused when the controller did not
    // give its own, for then there is nothing to compare with or to check the file against.
    static QString refusalNow(
        const QString &recordKey, const QJsonObject &record, const QJsonObject &currentRecords);
    // Empty when every record is there; otherwise what the operator is told.
    static QString missing(const QJsonObject &currentRecords);

    // Sends the selected records in the pages' order. Refused while welding is switched on
    // (one result, record empty).
    static QVector<Result> restore(
        QObject *sender, const QJsonObject &records, const QStringList &selected);
};
