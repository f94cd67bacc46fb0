#pragma once

#include "editedform.h"
#include "recordstate.h"
#include "weldprofile.h"

#include "ui_weldparameterpage.h"

#include <QJsonObject>
#include <QStringList>
#include <QWidget>

class QJsonArray;
class QJsonObject;
class QTableWidget;
class SwitchButton;
class WeldSettingPage;

// The weld process schedules: the weld data sets "LsData1".."LsData30" of "weld_param_config"
// and the parameter-matching sets "PowerData1".."PowerData10" of "weld_param_match", listed
// on two tabs, each opened in its own editor and saved set by set.
class WeldParameterPage : public QWidget, public EditedForm
{
    Q_OBJECT
public:
    enum StackPage { MainPage = 0, WeldDataEditor = 1, MatchingEditor = 2 };

    static constexpr int weldDataSetCount = 30;
    static constexpr int matchingSetCount = 10;
    // Matching editor: caption row plus four node rows; node column plus four value columns.
    static constexpr int matchingRows = 5;
    static constexpr int matchingColumns = 5;

    // The settings page is not needed: the main page locks this page while welding is on.
    WeldParameterPage(WeldSettingPage *settingPage, QWidget *parent = nullptr);
    ~WeldParameterPage() override;

    // The keys of a weld data set in the order they are written.
    static const QStringList &weldDataKeys();

    // Weld data set editor as a mapping: fill from a set (absent keys give 0, off or empty),
    // build a set from the form (named after the title label), or reset to the defaults.
    void setWeldDataSet(const QJsonObject &set);
    QJsonObject weldDataSet() const;
    void resetWeldDataEditor();

    // Re-read the records into the two lists.
    void refreshWeldDataList();
    void setTableMatchData();

    // Fills the matching table from processData[name]["power_data"] and the header switches
    // from its enable flags; true if at least one value was written.
    static bool parseMatchParamToTable(const QJsonObject &processData, const QString &name,
        QTableWidget *table, int startRow, int startColumn, int rowCount, int columnCount);
    // Nodes must rise strictly row over row: power, frequency and duty cycle where their
    // switch is on (a missing switch counts as on), speed always. Reports the first failure.
    static bool validateMatchingTableParams(QTableWidget *table);
    bool validateMatchingTableParams() const;
    // The matching set as saved; a missing switch is written as off.
    static QJsonObject createMatchDataJson(const QString &name, QTableWidget *table);
    QJsonObject createMatchDataJson() const;

    // The switch hosted in a header section of the matching table, if any.
    static SwitchButton *headerSwitch(QTableWidget *table, int section);
    // What Save says when the matching table's node (table row) fails on a column (1 speed,
    // 2 power, 3 frequency, 4 duty cycle).
    static QString matchingRefusalText(int column, int row);

    // Whether the lists and the open editor hold the controller's records, and whether the
    // editor was edited since it was filled.
    kellaser::RecordState *recordState() const { return m_state; }

    // The set open in an editor (named by the title label) against what was last loaded or
    // saved; it stays held after "Back" until another set is opened, which asks first.
    bool hasUnsavedChanges() const override;
    QString unsavedChangesName() const override;
    bool saveChanges() override;
    void discardChanges() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void initConnect();
    void initTables();
    void onDetailed();
    void onBack();
    void onSave();
    // Refuses values above what the laser unit and the wire feeder can do; true when within.
    bool withinEquipment(const QJsonObject &weldData);
    bool matchingWithinEquipment();
    // The editor of the set the title label names, and reading that set into it again.
    StackPage openSetEditor() const;
    void reloadOpenSet();
    void openMatchingSet(const QString &name);
    void resetMatchingTable();
    bool hasHeaderSwitches() const;
    void loadWeldDataSet();
    // Reads the set open in an editor again.
    void readOpenSet();
    void checkSaveResult(const QJsonArray &reply, const QString &command);
    void updateDependentWidgets();
    void updateButtons();
    // The previews follow every edit; loading a whole set redraws once at its end.
    void updateWeldProfile();
    void updateMatchingPreview();

    Ui::WeldParameterPage m_ui;
    bool m_loadingSet = false;
    // Values of the set as stored that the form cannot hold (missing, not a number, negative,
    // a fraction or beyond the field's range): named in the profile's hint while their field
    // still shows what loading put there (m_loadedForm).
    QVector<kellaser::WeldProfile::Problem> m_storedProblems;
    QJsonObject m_loadedForm;
    // The open set as last loaded or saved, for the unsaved-changes question.
    QJsonObject m_weldDataBaseline;
    QJsonObject m_matchingBaseline;
    kellaser::RecordState *m_state = new kellaser::RecordState(this);
};
