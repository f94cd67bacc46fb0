#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonValue>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;
class QSpinBox;
class QTableWidget;
class QTimer;

class CellLink;

// The pendant's controls for what a real cell decides elsewhere: who is logged in, whether
// the robot is powered, whether the controller is reachable, and faults to try the plug-in
// against. It also shows the controller's state, where it is, and its command traffic.
class ControlPanel : public QWidget
{
    Q_OBJECT
public:
    explicit ControlPanel(CellLink *cell, QWidget *parent = nullptr);

    void refreshState();
    // The assigned output ports with their live values, while a weld may change them.
    void refreshOutputs();
    // The change history, filtered by record; force rebuilds it even when nothing was added.
    void refreshHistory(bool force = false);
    // The shown record's history as CSV; false, told to the operator, when it fails.
    bool exportHistoryCsv(const QString &path);

signals:
    // The operator logged in at another level; the cell already has it.
    void userLevelChanged(int level);

private:
    void addTraffic(const QString &command, const QJsonValue &payload, const QJsonArray &reply);

    CellLink *m_cell;
    QSpinBox *m_userLevel;
    QCheckBox *m_powered;
    QCheckBox *m_connected;
    QSpinBox *m_faultCode;
    QLabel *m_link;
    QLabel *m_state;
    QLabel *m_dataFile;
    QListWidget *m_traffic;
    QTableWidget *m_outputs;
    QTimer *m_outputTimer;
    QComboBox *m_historyFilter;
    QTableWidget *m_history;
    int m_historyShown = -1;
    QDateTime m_historyLast;
};
