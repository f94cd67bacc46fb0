#pragma once

#include "editedform.h"
#include "recordstate.h"
#include "ui_weldsettingpage.h"

#include <QStringList>
#include <QWidget>

class QJsonArray;
class QJsonObject;
class SwitchButton;

// The device settings page: laser unit, assist gas timing, restart, wire feeder and wire-stick
// detection, and the welding main switch. Edits the controller's weld_setting_config record.
class WeldSettingPage : public QWidget, public EditedForm
{
    Q_OBJECT
public:
    explicit WeldSettingPage(QWidget *parent = nullptr);
    ~WeldSettingPage() override;

    void initStyle();
    void checkSaveResult(const QJsonArray &result);

    // The record as the widgets hold it.
    QJsonObject record() const;
    // Fills the widgets from a record with the controller's number conversions.
    void loadRecord(const QJsonObject &record);
    // Why Save would refuse this record (feedback delay below the check-out time), in the
    // operator's words; empty when it would send it.
    static QString recordRefusal(const QJsonObject &record);

    // True while laser welding is switched on; other pages lock themselves then.
    bool isMainEnabled() const;
    SwitchButton *mainSwitch() const;
    // Sections and the Save/Cancel buttons; the main switch itself is never locked.
    void setEditableArea(bool editable);

    // Whether the form holds the controller's record, and whether it was edited since.
    kellaser::RecordState *recordState() const { return m_state; }

    bool hasUnsavedChanges() const override;
    QString unsavedChangesName() const override;
    bool saveChanges() override;
    void discardChanges() override;

    // The blocking pause around the main switch, in ms; tests shorten it.
    static void setSwitchWait(int milliseconds);

signals:
    void setMainEnable(bool enable);

public slots:
    void buttontest();

protected:
    void showEvent(QShowEvent *event) override;

private slots:
    void setRetractionPlanStatus(bool isOn);
    void setWireStickingPlanStatus(bool isOn);
    void setFeederPlanStatus(bool isOn);
    void onSwitchMain(bool isOn);

private:
    bool validate();
    void save();
    void cancel();
    // Reads weld_setting_config into the form.
    void readRecord();
    void fillPortLists();
    static bool isStartupAccepted(const QJsonArray &reply);
    static void pause();

    Ui::WeldSettingPage m_ui;
    // What the two port drop-downs hold, to find a port without asking the item model.
    QStringList m_detectionPorts;
    QStringList m_feedbackPorts;
    kellaser::RecordState *m_state = new kellaser::RecordState(this);
};
