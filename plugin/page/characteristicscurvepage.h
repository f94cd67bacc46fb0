#pragma once

#include "editedform.h"
#include "recordstate.h"
#include "ui_characteristicscurvepage.h"

#include <QPointF>
#include <QPointer>
#include <QVector>
#include <QWidget>

#include <array>

class CustomChart;
class QComboBox;
class QLabel;
class QJsonArray;
class QJsonObject;
class QJsonValue;
class QTableWidget;
class WeldSettingPage;

// The characteristic curve page: node tables for laser power, wire feed speed, PWM frequency
// and PWM duty cycle. The controller fits a line through each table and stores it; the page
// checks the tables, shows nodes and line in a chart and keeps nothing itself.
class CharacteristicsCurvePage : public QWidget, public EditedForm
{
    Q_OBJECT
public:
    // Tab order; the port lookup and the per-curve keys are indexed by it.
    enum Curve { Power, FeedSpeed, Frequency, DutyCycle, CurveCount };

    // settingPage tells whether the welding main switch is on; none means it is off.
    explicit CharacteristicsCurvePage(WeldSettingPage *settingPage, QWidget *parent = nullptr);
    ~CharacteristicsCurvePage() override;

    void initStyle();
    void checkSaveResult(const QJsonArray &result, const QString &command);

    // The curve object of one tab: its node count and its rows [raw, physical].
    QJsonObject curveObject(Curve curve) const;
    // Fills all four tabs from a weld_curve_config record; the power node count gates all.
    // False when nothing was loaded.
    bool loadRecord(const QJsonValue &record);
    // Whether the tables hold the controller's record, and whether they were edited since.
    kellaser::RecordState *recordState() const { return m_state; }
    // Enables the tabs whose set-point has a port and writes the port into the header.
    void applyPorts(const QJsonValue &ioRecord);
    struct Fit
    {
        double slope = 0.0;
        double intercept = 0.0;
    };
    // The fitted line in a compute reply: every element overwrites, so the last one decides
    // and one without a fit reads 0.
    static Fit fitFromReply(const QJsonArray &reply);
    // The record keys of one curve and the command that saves them.
    struct CurveSave
    {
        QString nodeCountKey;
        QString nodesKey;
        QString command;
    };
    static CurveSave curveSave(Curve curve);
    // Why Save would refuse these (raw, physical) nodes: fewer than two, or a node not above
    // the one before it in both values; empty when it would send them.
    static QString nodesRefusal(const QVector<QPointF> &nodes);
    // The first node (0-based) that is not above the one before it, -1 when there is none.
    static int firstFallingNode(const QVector<QPointF> &nodes);

    // Checks one tab's table and tells the operator about the first bad row.
    bool validate(Curve curve);

    // Each tab counts on its own: saving one tab leaves another's changes unsaved.
    bool hasUnsavedChanges() const override;
    QString unsavedChangesName() const override;
    bool saveChanges() override;
    void discardChanges() override;

protected:
    void showEvent(QShowEvent *event) override;

    // The feed speed tab has the same handlers, outside the meta-object.
    void onComputeFeedSpeedChart();
    void refreshFeedSpeedCmb(int index);

protected slots:
    void onComputePowerChart();
    void onComputeDutyCycleChart();
    void onComputeFrequencyChart();
    void refreshPowerCmb(int index);
    void refreshDutyCycleCmb(int index);
    void refreshFrequencyCmb(int index);

private:
    struct CurveWidgets
    {
        QWidget *tab;
        QComboBox *nodeCount;
        QTableWidget *table;
        CustomChart *chart;
        // Under the chart, so the node table keeps its three columns.
        QTableWidget *fitTable;
        QLabel *fit;
    };

    void computeChart(Curve curve);
    // Asks the controller for the fit of the tab as it stands and feeds the chart.
    void drawFit(Curve curve);
    static QString yAxisLabel(const QString &chartName);
    void refreshTable(Curve curve, int index);
    void save(Curve curve);
    void cancel(Curve curve);
    // Reads weld_curve_config into the tables.
    void readRecord();
    void fillTable(Curve curve, int nodeCount, const QJsonValue &rows);
    // Gives the table rows numbered 1.. with their editors, keeping the rows it has.
    void resizeTable(Curve curve, int rows);
    // Each node's distance from the chart's line in the table under the chart, the largest one
    // marked there, in the node table and on the chart, R² below; cleared once a node changes.
    void showFitQuality(Curve curve);
    void clearFitQuality(Curve curve);
    void setUpFitTable(Curve curve);
    static void setNode(QTableWidget *table, int row, double raw, int physical);
    bool isLocked() const;
    bool isModified(Curve curve) const;

    Ui::CharacteristicsCurvePage m_ui;
    std::array<CurveWidgets, CurveCount> m_curves;
    QPointer<WeldSettingPage> m_settingPage;
    kellaser::RecordState *m_state = new kellaser::RecordState(this);
};
