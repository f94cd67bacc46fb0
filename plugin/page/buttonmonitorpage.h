#pragma once

#include "ui_buttonmonitorpage.h"

#include <QDialog>

class QDoubleSpinBox;
class QTimer;
class QJsonValue;

// The live welding values while the controller streams "weld_monitor_data". Closing the dialog
// stops the stream and hands the modal state back to the pendant.
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
    static constexpr int pollInterval = 200;

    // Starts the controller's stream, shows the dialog (modal to its parent) and keeps the
    // boxes in step with the stream until the dialog closes.
    void openMonitor();
    // Writes one sample of the stream into the boxes; anything but an object is ignored.
    void showSample(const QJsonValue &sample);

    void initStyle();

private:
    void initConnect();
    void onFinished();
    void pollStream();
    QDoubleSpinBox *box(const Field &field) const;

    Ui::ButtonMonitorPage m_ui;
    QTimer *m_pollTimer;
};
