#pragma once

#include "ui_weldrecordsdialog.h"

#include <QDialog>

class QJsonValue;

// The last welds the controller recorded ("weld_records"), with the running totals, and their
// export as CSV, one row per sample of "weld_record.<id>".
class WeldRecordsDialog : public QDialog
{
    Q_OBJECT
public:
    struct Totals
    {
        int welds = 0;
        qint64 laserOnMs = 0;
        double wireUsedMm = 0;
    };

    explicit WeldRecordsDialog(QWidget *parent = nullptr);
    ~WeldRecordsDialog() override;

    static Totals totalsFrom(const QJsonValue &records);
    static QString totalsText(const Totals &totals);

    // "weld_id,t_ms,power_W,..." and a line break.
    static QByteArray csvHeader();
    // One line per sample of a "weld_record.<id>" reply; nothing for anything but an object.
    static QByteArray csvRows(int id, const QJsonValue &record);
    // Writes the header and the samples of the given welds to path, whole or not at all; a
    // failure is told to the operator. Returns whether the file was written.
    bool exportCsv(const QString &path, const QList<int> &ids);

    // Reads "weld_records" from the controller and fills the list and the totals.
    void reload();
    // Fills the list and the totals from a "weld_records" reply.
    void showRecords(const QJsonValue &records);

protected:
    void showEvent(QShowEvent *event) override;

private:
    enum Column {
        Start,
        Program,
        Line,
        DataSet,
        MatchSet,
        Duration,
        Length,
        LaserOn,
        Wire,
        Marks,
        ColumnCount
    };

    QList<int> allIds() const;
    void exportWelds(const QList<int> &ids, const QString &suggestedName);
    void updateButtons();

    Ui::WeldRecordsDialog m_ui;
};
