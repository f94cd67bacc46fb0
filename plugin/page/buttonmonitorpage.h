#pragma once

#include "ui_buttonmonitorpage.h"

#include <QDialog>
#include <QElapsedTimer>

class QDoubleSpinBox;
class QTimer;
class QJsonObject;
class QJsonValue;
class WeldRecordsDialog;

// The live welding values while the controller streams "weld_monitor_data": the five values,
// their trend, the program line and phase, and the weld totals with the list of the last welds.
// Closing the dialog stops the stream and hands the modal state back to the pendant.
class ButtonMonitorPage : public QDialog
{
    Q_OBJECT
public:
    explicit ButtonMonitorPage(QWidget *parent = nullptr);
    ~ButtonMonitorPage() override;

    // One streamed value and the box that shows it.
    struct Field
    {
        const char *key;
        const char *box;
    };
    // The fields of "weld_monitor_data" in the order of the form's rows.
    static const QList<Field> &fields();

    // Milliseconds between two reads of the stream while the dialog is open.
    // The stream brings every sample since the last read, so this only sets how smoothly the
    // trend moves.
    static constexpr int pollInterval = 100;

    // Starts the controller's stream, shows the dialog (modal to its parent) and keeps the
    // boxes in step with the stream until the dialog closes.
    void openMonitor();
    // Writes one read of the stream into the boxes, the trend and the run label; anything but
    // an object is ignored.
    void showSample(const QJsonValue &sample);

    void initStyle();

private:
    void initConnect();
    void onFinished();
    void pollStream();
    QDoubleSpinBox *box(const Field &field) const;
    void showRun(const QJsonObject &stream);
    void showTotals();

    Ui::ButtonMonitorPage m_ui;
    QTimer *m_pollTimer;
    WeldRecordsDialog *m_records;
    // Places samples of a stream that carries no time of its own.
    QElapsedTimer m_clock;
    QString m_phase;
};
