#pragma once

#include "editedform.h"
#include "recordstate.h"
#include "ui_weldiopage.h"

#include <QHash>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <vector>

class QComboBox;
class QJsonArray;
class QJsonObject;
class QLabel;
class SwitchButton;
class WeldSettingPage;

// The I/O mapping page: which controller ports drive the laser, the gas and the wire feeder,
// and which ports report back. Edits the controller's weld_io_config record.
class WeldioPage : public QWidget, public EditedForm
{
    Q_OBJECT
public:
    // settingPage holds the welding main switch that locks this page while welding is on.
    WeldioPage(WeldSettingPage *settingPage, QWidget *parent = nullptr);
    ~WeldioPage() override;

    void initStyle();
    // Judges the controller's answer to a save and tells the operator.
    void checkSaveResult(const QJsonArray &result);

    // The record as the widgets hold it.
    QJsonObject record() const;
    // Why Save would refuse this record (a port used twice, an empty port on a row in use), in
    // the operator's words; empty when it would send it.
    // portKey, if given, gets the port key of the row at fault.
    static QString recordRefusal(const QJsonObject &record, QString *portKey = nullptr);
    // Fills the widgets from a record, key by key in the record's write order.
    void loadRecord(const QJsonObject &record);
    // Whether the form holds the controller's record, and whether it was edited since.
    kellaser::RecordState *recordState() const { return m_state; }

    bool hasUnsavedChanges() const override;
    QString unsavedChangesName() const override;
    bool saveChanges() override;
    void discardChanges() override;

signals:
    void settingChanged();

protected:
    void showEvent(QShowEvent *event) override;

private slots:
    void setPowerPlaneStatus(bool enable);
    void setFrequencyPlaneStatus(bool enable);
    void setDutyCyclePlaneStatus(bool enable);
    void setRedlightStatus(bool enable);
    void setWireSpeedPlaneStatus(bool enable);
    void setWireFeedPlaneStatus(bool enable);
    void setRetractDirectionPlaneStatus(bool enable);
    void setManualWirePlaneStatus(bool enable);
    void setManualRetractPlaneStatus(bool enable);
    void setPowerFeedbackPlaneStatus(bool enable);
    void setLightFeedbackPlaneStatus(bool enable);
    void setLaserAlarmPlaneStatus(bool enable);
    void setGasFeedbackPlaneStatus(bool enable);
    void setWireSpeedFeedbackPlaneStatus(bool enable);
    void setWireFeedFeedbackPlaneStatus(bool enable);
    void setWireFeederAlarmPlaneStatus(bool enable);
    void setGasProtectPlaneStatus(bool enable);
    void setAdhesionDetectionPlaneStatus(bool enable);
    void setDescentSignalPortStatus(bool enable);
    void setAdhesionDetectionFeedbackPlaneStatus(bool enable);
    void setExternalAlarmPlaneStatus(bool enable);

private:
    using RowSlot = void (WeldioPage::*)(bool);
    // One signal of the equipment: its keys, its widgets and the port types it offers.
    struct Row
    {
        QString portKey;
        QString typeKey;   // empty: the row has a fixed type
        QString enableKey; // empty: the row is always in use
        bool output;
        QString fixedType; // "DO" or "DI"
        QString analogType;
        QString groupType;
        QLabel *caption;
        QWidget *kind;
        QComboBox *port;
        QComboBox *type;
        SwitchButton *enable;
        RowSlot slot;
        // What the port drop-down holds, to find a port without asking the item model.
        QStringList items;
    };

    void addFixedRow(const char *portKey, const char *enableKey, bool output, QLabel *caption,
        QLabel *kind, QComboBox *port, SwitchButton *enable, RowSlot slot);
    void addSelectorRow(const char *base, bool output, QLabel *caption, QComboBox *type,
        QComboBox *port, SwitchButton *enable, RowSlot slot);
    void setRowEnabled(QWidget *caption, QWidget *kind, QWidget *port, bool enable);

    QStringList portList(const QString &type);
    QString rowPortType(const Row &row, int typeIndex) const;
    void fillPortLists();
    void fillPort(Row &row, const QStringList &items);
    void refillForType(Row &row, int typeIndex);
    void applySwitches();
    void applyEditLock();

    void save();
    void cancel();
    // Focuses the port drop-down of the row at fault and says why there.
    void pointAt(const QString &portKey);
    // Reads weld_io_config into the form (without refilling the drop-downs).
    void readRecord();

    Ui::WeldioPage m_ui;
    QPointer<WeldSettingPage> m_settingPage;
    std::vector<Row> m_rows; // in the record's write order
    // Port lists fetched during one show, so each type is asked for once per show.
    QHash<QString, QStringList> m_showPorts;
    bool m_inShow = false;
    kellaser::RecordState *m_state = new kellaser::RecordState(this);
};
