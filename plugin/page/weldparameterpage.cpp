#include "weldparameterpage.h"

#include "editorpreviews.h"
#include "equipmentlimits.h"
#include "pagesave.h"
#include "weldprofile.h"

#include "core/commandchannel.h"
#include "widget/fieldguard.h"
#include "widget/headerwidgetview.h"
#include "widget/switchbutton.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QComboBox>
#include <QDebug>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableWidgetItem>

#include <algorithm>
#include <cmath>

namespace {

const QString kPluginKey = QStringLiteral("kellaserweld");
const QString kWeldDataRecord = QStringLiteral("weld_param_config");
const QString kMatchRecord = QStringLiteral("weld_param_match");
const QString kWeldDataCommand = QStringLiteral("set_weld_param_list_config");
const QString kMatchCommand = QStringLiteral("set_weld_param_match_config");
const QString kWeldDataPrefix = QStringLiteral("LsData");
const QString kMatchPrefix = QStringLiteral("PowerData");
const QString kPowerData = QStringLiteral("power_data");
const QString kSettingRecord = QStringLiteral("weld_setting_config");

// The controller only runs linear ramps; the selectors show it and cannot change it.
constexpr int kFixedRampMode = 2;
constexpr int kMinimumLevel = 3;

enum class Kind { Name, Text, Integer, Choice, Switch, AlwaysTrue, FixedRamp };

struct WeldDataField
{
    const char *key;
    Kind kind;
    const char *widget;
    int defaultValue; // for a set the record lacks
};

// Write order of a weld data set, and the editor widget of each key.
const WeldDataField kWeldDataFields[] = {
    {"LsDataID", Kind::Name, nullptr, 0},
    {"Tips", Kind::Text, "lineEdit_Tips", 0},
    {"toggle_start", Kind::AlwaysTrue, nullptr, 1},
    {"laser_power_start", Kind::Integer, "spinBox_laser_power_start", 750},
    {"frequency_start", Kind::Integer, "spinBox_frequency_start", 2000},
    {"duty_cycle_start", Kind::Integer, "spinBox_duty_cycle_start", 100},
    {"ramp_mode_start", Kind::FixedRamp, "comboBox_ramp_mode_start", kFixedRampMode},
    {"ramp_value_start", Kind::Integer, "spinBox_ramp_value_start", 100},
    {"delay_time_start", Kind::Integer, "spinBox_delay_time_start", 50},
    {"welding_speed", Kind::Integer, "spinBox_welding_speed", 20},
    {"laser_power_weld", Kind::Integer, "spinBox_laser_power_weld", 1500},
    {"frequency_weld", Kind::Integer, "spinBox_frequency_weld", 2000},
    {"duty_cycle_weld", Kind::Integer, "spinBox_duty_cycle_weld", 100},
    {"toggle_end", Kind::AlwaysTrue, nullptr, 1},
    {"laser_power_end", Kind::Integer, "spinBox_laser_power_end", 500},
    {"frequency_end", Kind::Integer, "spinBox_frequency_end", 2000},
    {"duty_cycle_end", Kind::Integer, "spinBox_duty_cycle_end", 100},
    {"ramp_mode_end", Kind::FixedRamp, "comboBox_ramp_mode_end", kFixedRampMode},
    {"ramp_value_end", Kind::Integer, "spinBox_ramp_value_end", 100},
    {"delay_time_end", Kind::Integer, "spinBox_delay_time_end", 50},
    {"wire_feed_enable_start", Kind::Switch, "pushButton_wire_feed_enable_start", 0},
    {"feeding_speed_start", Kind::Integer, "spinBox_feeding_speed_start", 20},
    {"wire_mode_start", Kind::Choice, "comboBox_wire_mode_start", 0},
    {"wire_feed_time_start", Kind::Integer, "spinBox_wire_feed_time_start", 100},
    {"feeding_speed_run", Kind::Integer, "spinBox_feeding_speed_run", 40},
    {"wire_feed_enable_end", Kind::Switch, "pushButton_wire_feed_enable_end", 0},
    {"wire_speed_end", Kind::Integer, "spinBox_wire_speed_end", 20},
    {"wire_mode_end", Kind::Choice, "comboBox_wire_mode_end", 0},
    {"wire_feed_time_end", Kind::Integer, "spinBox_wire_feed_time_end", 100},
    {"wire_stick_enable_end", Kind::Switch, "pushButton_wire_stick_enable_end", 1},
    {"wire_retraction_end", Kind::Switch, "pushButton_wire_retraction_end", 1},
    {"wire_retract_end", Kind::Integer, "spinBox_wire_retract_end", 20},
    {"wire_retract_time_end", Kind::Integer, "spinBox_wire_retract_time_end", 200},
    {"wire_fill_com_end", Kind::Switch, "pushButton_wire_fill_com_end", 0},
    {"fill_delay_time_end", Kind::Integer, "spinBox_fill_delay_time_end", 0},
    {"fill_wire_speed_end", Kind::Integer, "spinBox_fill_wire_speed_end", 20},
    {"fill_wire_time_end", Kind::Integer, "spinBox_fill_wire_time_end", 100},
};

// Header sections of the matching table that host the enable switches, and their keys.
struct MatchSwitch
{
    int section;
    const char *key;
    const char *name;
};
const MatchSwitch kMatchSwitches[] = {
    {2, "power_enable", "pushButton_power_enable"},
    {3, "frequency_enable", "pushButton_frequency_enable"},
    {4, "dutycycle_enable", "pushButton_dutycycle_enable"},
};

// Ranges of the matching table's value columns 1..4: speed, power, frequency, duty cycle.
const int kMatchMaximum[] = {500, 9999, 9999, 100};
const char *const kMatchUnits[] = {"mm/s", "W", "Hz", "%"};
constexpr int kMatchPowerColumn = 2;

// Rows of the weld data editor that only matter for some selector choices.
struct DependentRow
{
    const char *selector;
    const char *label;
    const char *widget;
};
const DependentRow kRampRows[] = {
    {"comboBox_ramp_mode_start", "label_ramp_value_start", "spinBox_ramp_value_start"},
    {"comboBox_ramp_mode_end", "label_ramp_value_end", "spinBox_ramp_value_end"},
};
const DependentRow kWireTimeRows[] = {
    {"comboBox_wire_mode_start", "label_wire_feed_time_start", "spinBox_wire_feed_time_start"},
    {"comboBox_wire_mode_end", "label_wire_feed_time_end", "spinBox_wire_feed_time_end"},
};
const char *const kWireGroups[] = {"groupBox_wireStart", "groupBox_wireWeld", "groupBox_wireEnd"};
constexpr int kFillerWireMode = 1;

int userLevel()
{
    return kelplugin::kelPluginInterface().getUserOperateLevel();
}

// List cells are created on first use and only retexted afterwards.
void setCellText(QTableWidget *table, int row, int column, const QString &text)
{
    QTableWidgetItem *item = table->item(row, column);
    if (!item) {
        item = new QTableWidgetItem;
        item->setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
        table->setItem(row, column, item);
    }
    item->setText(text);
}

int selectedRow(const QTableWidget *table)
{
    const QModelIndexList selected = table->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.first().row();
}

QSpinBox *cellSpinBox(QTableWidget *table, int row, int column)
{
    return qobject_cast<QSpinBox *>(table->cellWidget(row, column));
}

} // namespace

WeldParameterPage::WeldParameterPage(WeldSettingPage *, QWidget *parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    auto *header = new HeaderWidgetView(Qt::Horizontal, m_ui.tableWidget_matching);
    m_ui.tableWidget_matching->setHorizontalHeader(header);
    header->setMinimumHeight(32);
    // Captions and switches need the room more than the table needs to stay narrow.
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setMinimumSectionSize(100);
    m_ui.comboBox_ramp_mode_start->setEnabled(false);
    m_ui.comboBox_ramp_mode_end->setEnabled(false);
    initTables();
    resetWeldDataEditor();
    resetMatchingTable();
    // "Node n" needs little room and the speed caption is the longest: both take what their
    // text needs and the other value columns share the rest, so no caption is cut short.
    for (int column = 0; column < qMin(2, header->count()); ++column)
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    initConnect();
    m_ui.stackedWidget->setCurrentIndex(MainPage);
    updateButtons();
    // Only an editor holds edits; the lists are views.
    m_state->setForm([this]() -> QJsonValue {
        switch (m_ui.stackedWidget->currentIndex()) {
        case WeldDataEditor:
            return weldDataSet();
        case MatchingEditor:
            return createMatchDataJson();
        default:
            return QJsonValue();
        }
    });
    FieldGuard::install(this);
}

WeldParameterPage::~WeldParameterPage() = default;

const QStringList &WeldParameterPage::weldDataKeys()
{
    static const QStringList keys = [] {
        QStringList list;
        for (const WeldDataField &field : kWeldDataFields)
            list.append(QLatin1String(field.key));
        return list;
    }();
    return keys;
}

void WeldParameterPage::initTables()
{
    const auto prepare = [](QTableWidget *list, int rows, const QString &prefix) {
        list->setRowCount(rows);
        for (int row = 0; row < rows; ++row)
            setCellText(list, row, 0, prefix + QString::number(row + 1));
        list->verticalHeader()->setVisible(false);
        list->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
        list->horizontalHeader()->setStretchLastSection(true);
    };
    prepare(m_ui.tableWidget_weldData, weldDataSetCount, kWeldDataPrefix);
    prepare(m_ui.tableWidget_matchList, matchingSetCount, kMatchPrefix);
    m_ui.tableWidget_matching->verticalHeader()->setVisible(false);
}

void WeldParameterPage::initConnect()
{
    connect(m_ui.pushButton_detailed, &QPushButton::clicked, this, &WeldParameterPage::onDetailed);
    connect(m_ui.pushButton_back, &QPushButton::clicked, this, &WeldParameterPage::onBack);
    connect(m_ui.pushButton_save, &QPushButton::clicked, this, &WeldParameterPage::onSave);
    connect(m_ui.stackedWidget, &QStackedWidget::currentChanged, this,
        &WeldParameterPage::updateButtons);
    const QList<QComboBox *> selectors {m_ui.comboBox_weld_mode, m_ui.comboBox_ramp_mode_start,
        m_ui.comboBox_ramp_mode_end, m_ui.comboBox_wire_mode_start, m_ui.comboBox_wire_mode_end};
    for (QComboBox *selector : selectors) {
        connect(selector, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &WeldParameterPage::updateDependentWidgets);
    }
    // The operator's choice of weld mode decides whether the wire runs at all; loading a set
    // derives the mode from the wire switches instead.
    connect(m_ui.comboBox_weld_mode, qOverload<int>(&QComboBox::activated), this, [this](int mode) {
        const bool wire = mode == kFillerWireMode;
        m_ui.pushButton_wire_feed_enable_start->setOn(wire, true);
        m_ui.pushButton_wire_feed_enable_end->setOn(wire, true);
    });
    for (const WeldDataField &field : kWeldDataFields) {
        const QLatin1String widget(field.widget ? field.widget : "");
        if (field.kind == Kind::Integer) {
            connect(findChild<QSpinBox *>(widget), qOverload<int>(&QSpinBox::valueChanged), this,
                &WeldParameterPage::updateWeldProfile);
        } else if (field.kind == Kind::Switch) {
            connect(findChild<SwitchButton *>(widget), &SwitchButton::onChanged, this,
                &WeldParameterPage::updateWeldProfile);
        }
    }
}

void WeldParameterPage::updateWeldProfile()
{
    if (m_loadingSet)
        return;
    const QJsonObject set = weldDataSet();
    kellaser::WeldProfile profile = kellaser::WeldProfile::fromSet(set);
    for (int i = m_storedProblems.size() - 1; i >= 0; --i) {
        const QString &key = m_storedProblems.at(i).key;
        if (set.value(key) == m_loadedForm.value(key))
            profile.problems.prepend(m_storedProblems.at(i));
    }
    m_ui.weldProfileChart->setContent(EditorPreviews::weldProfile(profile));
    m_ui.label_profileHint->setText(profile.hint());
}

void WeldParameterPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // An open editor keeps what the operator typed; one not edited shows the controller's set.
    const bool edited = m_state->isEdited();
    // Looking changes nothing: the lists, their tabs and opening a set stay at every level;
    // only the editors' fields and Save follow the user level.
    const bool editable = userLevel() >= kMinimumLevel;
    m_ui.page_weldData->setEnabled(editable);
    m_ui.page_matching->setEnabled(editable);
    m_ui.pushButton_save->setEnabled(editable);
    refreshWeldDataList();
    setTableMatchData();
    if (!edited)
        readOpenSet();
}

void WeldParameterPage::readOpenSet()
{
    if (m_ui.stackedWidget->currentIndex() == WeldDataEditor)
        loadWeldDataSet();
    else if (m_ui.stackedWidget->currentIndex() == MatchingEditor)
        openMatchingSet(m_ui.label_title->text());
}

void WeldParameterPage::updateButtons()
{
    const bool onMain = m_ui.stackedWidget->currentIndex() == MainPage;
    m_ui.pushButton_detailed->setVisible(onMain);
    m_ui.pushButton_back->setVisible(!onMain);
    m_ui.pushButton_save->setVisible(!onMain);
    m_ui.widget_title->setVisible(!onMain);
}

void WeldParameterPage::updateDependentWidgets()
{
    const auto showRow = [this](const DependentRow &row, bool visible) {
        findChild<QWidget *>(QLatin1String(row.label))->setVisible(visible);
        findChild<QWidget *>(QLatin1String(row.widget))->setVisible(visible);
    };
    // Without a ramp there is no ramp time; a wire started or stopped with the laser needs
    // no lead or lag time.
    for (const DependentRow &row : kRampRows)
        showRow(row, findChild<QComboBox *>(QLatin1String(row.selector))->currentIndex() != 0);
    for (const DependentRow &row : kWireTimeRows)
        showRow(row, findChild<QComboBox *>(QLatin1String(row.selector))->currentIndex() != 0);
    const bool wire = m_ui.comboBox_weld_mode->currentIndex() == kFillerWireMode;
    for (const char *group : kWireGroups)
        findChild<QWidget *>(QLatin1String(group))->setVisible(wire);
}

void WeldParameterPage::setWeldDataSet(const QJsonObject &set)
{
    m_loadingSet = true;
    m_storedProblems.clear();
    for (const auto &problem : kellaser::WeldProfile::fromSet(set).problems) {
        if (problem.issue == kellaser::WeldProfile::BadValue)
            m_storedProblems.append(problem);
    }
    for (const WeldDataField &field : kWeldDataFields) {
        const QJsonValue value = set.value(QLatin1String(field.key));
        const QLatin1String widget(field.widget ? field.widget : "");
        switch (field.kind) {
        case Kind::Name:
        case Kind::AlwaysTrue:
            break;
        case Kind::FixedRamp:
            findChild<QComboBox *>(widget)->setCurrentIndex(kFixedRampMode);
            break;
        case Kind::Text:
            findChild<QLineEdit *>(widget)->setText(value.toString());
            break;
        case Kind::Integer: {
            auto *spin = findChild<QSpinBox *>(widget);
            // toInt gives 0 for a fraction or a number beyond int; the spin box clamps the rest.
            spin->setValue(value.toInt());
            const double number = value.toDouble();
            const bool named = std::any_of(m_storedProblems.cbegin(), m_storedProblems.cend(),
                [&](const auto &problem) { return problem.key == QLatin1String(field.key); });
            if (value.isDouble() && std::isfinite(number) && number != spin->value() && !named) {
                kellaser::WeldProfile::Problem problem {kellaser::WeldProfile::OutsideForm,
                    kellaser::WeldProfile::NoLane, {}, QLatin1String(field.key)};
                problem.stored = number;
                problem.low = spin->minimum();
                problem.high = spin->maximum();
                m_storedProblems.append(problem);
            }
            break;
        }
        case Kind::Choice: {
            auto *combo = findChild<QComboBox *>(widget);
            const int index = value.toInt();
            // An unknown mode must not leave the selector empty and be saved as -1.
            combo->setCurrentIndex(index >= 0 && index < combo->count() ? index : 0);
            break;
        }
        case Kind::Switch:
            findChild<SwitchButton *>(widget)->setOn(value.toBool(), false);
            break;
        }
    }
    const bool wire = m_ui.pushButton_wire_feed_enable_start->isOn()
        || m_ui.pushButton_wire_feed_enable_end->isOn();
    m_ui.comboBox_weld_mode->setCurrentIndex(wire ? kFillerWireMode : 0);
    updateDependentWidgets();
    m_loadedForm = weldDataSet();
    m_loadingSet = false;
    updateWeldProfile();
}

void WeldParameterPage::resetWeldDataEditor()
{
    QJsonObject defaults;
    for (const WeldDataField &field : kWeldDataFields) {
        switch (field.kind) {
        case Kind::Integer:
        case Kind::Choice:
            defaults.insert(QLatin1String(field.key), field.defaultValue);
            break;
        case Kind::Switch:
            defaults.insert(QLatin1String(field.key), field.defaultValue != 0);
            break;
        default:
            break;
        }
    }
    setWeldDataSet(defaults);
}

QJsonObject WeldParameterPage::weldDataSet() const
{
    QJsonObject set;
    for (const WeldDataField &field : kWeldDataFields) {
        const QString key = QLatin1String(field.key);
        const QLatin1String widget(field.widget ? field.widget : "");
        switch (field.kind) {
        case Kind::Name:
            set.insert(key, m_ui.label_title->text());
            break;
        case Kind::AlwaysTrue:
            set.insert(key, true);
            break;
        case Kind::FixedRamp:
            set.insert(key, kFixedRampMode);
            break;
        case Kind::Text:
            set.insert(key, findChild<QLineEdit *>(widget)->text());
            break;
        case Kind::Integer:
            set.insert(key, findChild<QSpinBox *>(widget)->value());
            break;
        case Kind::Choice:
            set.insert(key, findChild<QComboBox *>(widget)->currentIndex());
            break;
        case Kind::Switch:
            set.insert(key, findChild<SwitchButton *>(widget)->isOn());
            break;
        }
    }
    return set;
}

void WeldParameterPage::refreshWeldDataList()
{
    const QJsonValue value = kelplugin::kelPluginInterface().getKelServiceData(kWeldDataRecord);
    m_state->note(kWeldDataRecord, value.isObject(), false);
    const QJsonObject record = value.toObject();
    QTableWidget *list = m_ui.tableWidget_weldData;
    for (int number = 1; number <= weldDataSetCount; ++number) {
        const auto it = record.constFind(kWeldDataPrefix + QString::number(number));
        if (it == record.constEnd())
            continue;
        const QJsonObject set = it.value().toObject();
        const int row = number - 1;
        setCellText(
            list, row, 1, QString::number(set.value(QStringLiteral("welding_speed")).toInt(0)));
        setCellText(
            list, row, 2, QString::number(set.value(QStringLiteral("laser_power_weld")).toInt(0)));
        setCellText(
            list, row, 3, QString::number(set.value(QStringLiteral("feeding_speed_run")).toInt(0)));
        setCellText(list, row, 4, set.value(QStringLiteral("Tips")).toString());
    }
}

void WeldParameterPage::setTableMatchData()
{
    const QJsonValue recordValue = kelplugin::kelPluginInterface().getKelServiceData(kMatchRecord);
    m_state->note(kMatchRecord, recordValue.isObject(), false);
    if (!recordValue.isObject()) {
        qWarning() << "setTableMatchData: weld_param_match is not an object or not found";
        return;
    }
    const QJsonObject record = recordValue.toObject();
    QTableWidget *list = m_ui.tableWidget_matchList;
    for (int number = 1; number <= matchingSetCount; ++number) {
        const QString name = kMatchPrefix + QString::number(number);
        const auto it = record.constFind(name);
        if (it == record.constEnd())
            continue;
        if (!it.value().isObject()) {
            qWarning().noquote() << "setTableMatchData:" << name << "is not an object";
            continue;
        }
        const QJsonObject set = it.value().toObject();
        if (!set.contains(kPowerData)) {
            qWarning().noquote() << "setTableMatchData:" << name << "does not contain power_data";
            continue;
        }
        if (!set.value(kPowerData).isArray()) {
            qWarning().noquote() << "setTableMatchData:" << name << "power_data is not an array";
            continue;
        }
        const QJsonArray nodes = set.value(kPowerData).toArray();
        if (nodes.isEmpty()) {
            qWarning().noquote() << "setTableMatchData:" << name << "power_data array is empty";
            continue;
        }
        // The list shows the last of the four nodes.
        const QJsonArray last = nodes.at(3).toArray();
        const bool usable = last.size() >= 4
            && std::all_of(last.begin(), last.begin() + 4,
                [](const QJsonValue &value) { return value.isDouble(); });
        if (!usable) {
            qWarning().noquote() << "setTableMatchData:" << name
                                 << "power_data element 3 is not an array of 4 numbers";
            continue;
        }
        for (int column = 1; column <= 4; ++column)
            setCellText(list, number - 1, column, QString::number(last.at(column - 1).toInt(0)));
    }
}

void WeldParameterPage::onDetailed()
{
    const int tab = m_ui.tabWidget->currentIndex();
    QTableWidget *list = tab == 0 ? m_ui.tableWidget_weldData
        : tab == 1                ? m_ui.tableWidget_matchList
                                  : nullptr;
    const int row = list ? selectedRow(list) : -1;
    if (row < 0) {
        kelplugin::ThrowLog(kPluginKey, kelplugin::THROW_LOG_WARNING,
            tr("Please select a row of data in the table first"));
        return;
    }
    // Opening a set replaces the one still held in its editor.
    if (!mayLeave(this)) {
        m_ui.stackedWidget->setCurrentIndex(openSetEditor());
        return;
    }
    const QString number = QString::number(row + 1);
    m_ui.label_title->clear();
    if (tab == 0) {
        m_ui.label_title->setText(kWeldDataPrefix + number);
        loadWeldDataSet();
        m_ui.stackedWidget->setCurrentIndex(WeldDataEditor);
    } else {
        m_ui.label_title->setText(kMatchPrefix + number);
        openMatchingSet(m_ui.label_title->text());
        m_ui.stackedWidget->setCurrentIndex(MatchingEditor);
    }
    // The editor just shown is what an edit is measured against.
    m_state->markFilled();
}

WeldParameterPage::StackPage WeldParameterPage::openSetEditor() const
{
    const QString name = m_ui.label_title->text();
    if (name.startsWith(kWeldDataPrefix))
        return WeldDataEditor;
    if (name.startsWith(kMatchPrefix))
        return MatchingEditor;
    return MainPage;
}

void WeldParameterPage::reloadOpenSet()
{
    if (openSetEditor() == WeldDataEditor)
        loadWeldDataSet();
    else if (openSetEditor() == MatchingEditor)
        openMatchingSet(m_ui.label_title->text());
}

bool WeldParameterPage::hasUnsavedChanges() const
{
    switch (openSetEditor()) {
    case WeldDataEditor:
        return !m_weldDataBaseline.isEmpty() && weldDataSet() != m_weldDataBaseline;
    case MatchingEditor:
        return !m_matchingBaseline.isEmpty() && createMatchDataJson() != m_matchingBaseline;
    case MainPage:
        break;
    }
    return false;
}

QString WeldParameterPage::unsavedChangesName() const
{
    return m_ui.label_title->text();
}

bool WeldParameterPage::saveChanges()
{
    // Saved as by its own Save button, with its editor in front.
    m_ui.stackedWidget->setCurrentIndex(openSetEditor());
    onSave();
    return !hasUnsavedChanges();
}

void WeldParameterPage::discardChanges()
{
    reloadOpenSet();
}

void WeldParameterPage::loadWeldDataSet()
{
    const QJsonValue value = kelplugin::kelPluginInterface().getKelServiceData(kWeldDataRecord);
    const QJsonObject record = value.toObject();
    const QJsonValue set = record.value(m_ui.label_title->text());
    // Anything but a set object is a set the controller does not have yet.
    if (!set.isObject()) {
        resetWeldDataEditor();
        m_weldDataBaseline = value.isObject() ? weldDataSet() : QJsonObject();
        m_state->note(kWeldDataRecord, value.isObject());
        return;
    }
    setWeldDataSet(set.toObject());
    m_weldDataBaseline = weldDataSet();
    m_state->note(kWeldDataRecord, true);
    qDebug().noquote() << "wire_retract_time_end:"
                       << set.toObject().value(QStringLiteral("wire_retract_time_end")).toInt();
}

void WeldParameterPage::onBack()
{
    m_ui.stackedWidget->setCurrentIndex(MainPage);
    // A set saved in the editor shows in the list at once.
    refreshWeldDataList();
    setTableMatchData();
    m_state->markFilled();
}

void WeldParameterPage::onSave()
{
    const int page = m_ui.stackedWidget->currentIndex();
    if (page != WeldDataEditor && page != MatchingEditor)
        return;
    const QString &record = page == WeldDataEditor ? kWeldDataRecord : kMatchRecord;
    if (!kellaser::PageSave::mayChange(
            tr("Insufficient user permissions!"), m_state->isRead(record)))
        return;
    const QString name = m_ui.label_title->text();
    const auto saved = [](const kellaser::CommandChannel::Entry &entry) {
        return entry.outcome == kellaser::CommandChannel::Outcome::Success;
    };
    if (page == WeldDataEditor) {
        const QJsonObject set = weldDataSet();
        if (!withinEquipment(set))
            return;
        if (saved(kellaser::PageSave::send(
                {this, kWeldDataRecord, kWeldDataCommand, QJsonObject {{name, set}},
                    [this](const QJsonArray &reply) { checkSaveResult(reply, kWeldDataCommand); },
                    [this] { loadWeldDataSet(); }, m_state})))
            m_weldDataBaseline = set;
        return;
    }
    if (!validateMatchingTableParams())
        return;
    const QJsonObject set = createMatchDataJson();
    if (set.isEmpty() || !matchingWithinEquipment())
        return;
    if (saved(
            kellaser::PageSave::send({this, kMatchRecord, kMatchCommand, QJsonObject {{name, set}},
                [this](const QJsonArray &reply) { checkSaveResult(reply, kMatchCommand); },
                [this, name] { openMatchingSet(name); }, m_state})))
        m_matchingBaseline = set;
}

namespace {

// The refusal of a value above the equipment's limit: the message names the field and the
// limit, the hint at the field gives the limit.
void refuseAboveLimit(QWidget *field, EquipmentLimits::Kind kind, int value, int limit)
{
    const QString name = FieldGuard::fieldName(field);
    const bool power = kind == EquipmentLimits::Power;
    const QString message = power
        ? WeldParameterPage::tr("%1: %2 W is above the laser unit's maximum power of %3 W "
                                "(device settings). Nothing was saved.")
        : WeldParameterPage::tr("%1: %2 mm/s is above the wire feeder's maximum speed of %3 mm/s "
                                "(device settings). Nothing was saved.");
    kelplugin::ThrowLog(
        kPluginKey, kelplugin::THROW_LOG_WARNING, message.arg(name).arg(value).arg(limit));
    const QString hint = power ? WeldParameterPage::tr("At most %1 W: the laser unit's maximum")
                               : WeldParameterPage::tr("At most %1 mm/s: the feeder's maximum");
    FieldGuard::point(field, hint.arg(limit));
}

} // namespace

bool WeldParameterPage::withinEquipment(const QJsonObject &weldData)
{
    const EquipmentLimits limits = EquipmentLimits::fromSettings(
        kelplugin::kelPluginInterface().getKelServiceData(kSettingRecord));
    const EquipmentLimits::Breach breach = limits.firstBreach(weldData);
    if (breach.kind == EquipmentLimits::None)
        return true;
    for (const WeldDataField &field : kWeldDataFields) {
        if (breach.key == QLatin1String(field.key)) {
            refuseAboveLimit(findChild<QSpinBox *>(QLatin1String(field.widget)), breach.kind,
                breach.value, breach.limit);
        }
    }
    return false;
}

bool WeldParameterPage::matchingWithinEquipment()
{
    const EquipmentLimits limits = EquipmentLimits::fromSettings(
        kelplugin::kelPluginInterface().getKelServiceData(kSettingRecord));
    QTableWidget *table = m_ui.tableWidget_matching;
    for (int row = 1; limits.maxPower() >= 0 && row < table->rowCount(); ++row) {
        QSpinBox *power = cellSpinBox(table, row, kMatchPowerColumn);
        if (power && power->value() > limits.maxPower()) {
            refuseAboveLimit(power, EquipmentLimits::Power, power->value(), limits.maxPower());
            return false;
        }
    }
    return true;
}

void WeldParameterPage::checkSaveResult(const QJsonArray &reply, const QString &command)
{
    kellaser::CommandChannel::checkReply(reply, command,
        QStringLiteral("WeldParameterPage::checkSaveResult failed. "), tr("Saved successfully"),
        tr("Save failed. Please check the parameter configuration."));
}

// ---- parameter matching ----

SwitchButton *WeldParameterPage::headerSwitch(QTableWidget *table, int section)
{
    auto *header = table ? dynamic_cast<HeaderWidgetView *>(table->horizontalHeader()) : nullptr;
    return header ? qobject_cast<SwitchButton *>(header->sectionWidget(section)) : nullptr;
}

bool WeldParameterPage::hasHeaderSwitches() const
{
    for (const MatchSwitch &s : kMatchSwitches) {
        if (!headerSwitch(m_ui.tableWidget_matching, s.section))
            return false;
    }
    return true;
}

void WeldParameterPage::resetMatchingTable()
{
    QTableWidget *table = m_ui.tableWidget_matching;
    table->clear();
    table->setRowCount(0);
    table->setColumnCount(matchingColumns);
    table->setRowCount(matchingRows);
    table->setHorizontalHeaderLabels(
        QStringList() << QString() << QString() << QString() << QString() << QString());
    const QStringList captions {tr("Nodes"), tr("Welding Speed (mm/s)"), tr("Power (W)"),
        tr("Frequency (Hz)"), tr("Duty Cycle (%)")};
    for (int column = 0; column < matchingColumns; ++column) {
        auto *item = new QTableWidgetItem(captions.at(column));
        item->setTextAlignment(Qt::AlignCenter);
        item->setFlags(Qt::ItemIsEnabled);
        table->setItem(0, column, item);
    }
    for (int row = 1; row < matchingRows; ++row) {
        auto *node = new QTableWidgetItem(tr("Node %1").arg(row));
        node->setTextAlignment(Qt::AlignCenter);
        node->setFlags(Qt::ItemIsEnabled);
        table->setItem(row, 0, node);
        for (int column = 1; column < matchingColumns; ++column) {
            auto *spin = new QSpinBox;
            spin->setRange(0, kMatchMaximum[column - 1]);
            FieldGuard::guard(spin,
                QStringLiteral("%1 · %2").arg(node->text(), captions.at(column)),
                QLatin1String(kMatchUnits[column - 1]));
            spin->setAlignment(Qt::AlignCenter);
            spin->setStyleSheet(QStringLiteral("QSpinBox{border:none;background:transparent;}"));
            table->setCellWidget(row, column, spin);
            connect(spin, qOverload<int>(&QSpinBox::valueChanged), this,
                &WeldParameterPage::updateMatchingPreview);
        }
    }
    auto *header = dynamic_cast<HeaderWidgetView *>(table->horizontalHeader());
    for (const MatchSwitch &s : kMatchSwitches) {
        auto *toggle = new SwitchButton;
        toggle->setObjectName(QLatin1String(s.name));
        header->setSectionWidget(s.section, toggle);
        connect(toggle, &SwitchButton::onChanged, this, &WeldParameterPage::updateMatchingPreview);
    }
    updateMatchingPreview();
}

void WeldParameterPage::openMatchingSet(const QString &name)
{
    if (name.isEmpty()) {
        if (!hasHeaderSwitches())
            resetMatchingTable();
        return;
    }
    const QJsonValue value = kelplugin::kelPluginInterface().getKelServiceData(kMatchRecord);
    const QJsonObject record = value.toObject();
    if (record.contains(name)) {
        resetMatchingTable();
        parseMatchParamToTable(record, name, m_ui.tableWidget_matching, 1, 1, 4, 4);
        // Loading sets the switches without a signal.
        updateMatchingPreview();
    } else {
        qDebug().noquote() << "has No value " << name;
        if (!hasHeaderSwitches())
            resetMatchingTable();
    }
    m_matchingBaseline = value.isObject() ? createMatchDataJson() : QJsonObject();
    m_state->note(kMatchRecord, value.isObject());
}

bool WeldParameterPage::parseMatchParamToTable(const QJsonObject &processData, const QString &name,
    QTableWidget *table, int startRow, int startColumn, int rowCount, int columnCount)
{
    if (processData.isEmpty()) {
        qWarning() << "parseMatchParamToTable: Process data is empty";
        return false;
    }
    if (name.isEmpty()) {
        qWarning() << "parseMatchParamToTable: PowerData parameter is empty";
        return false;
    }
    if (!table) {
        qWarning() << "parseMatchParamToTable: TableWidget pointer is null";
        return false;
    }
    if (startRow < 0 || startColumn < 0 || rowCount <= 0 || columnCount <= 0) {
        qWarning() << "parseMatchParamToTable: Invalid position or size parameters";
        return false;
    }
    if (!processData.contains(name)) {
        qWarning().noquote() << "parseMatchParamToTable: PowerData" << name << "not found";
        return false;
    }
    if (!processData.value(name).isObject()) {
        qWarning().noquote() << "parseMatchParamToTable: PowerData" << name
                             << "value is not a JSON object";
        return false;
    }
    const QJsonObject set = processData.value(name).toObject();
    for (const MatchSwitch &s : kMatchSwitches) {
        if (SwitchButton *toggle = headerSwitch(table, s.section))
            toggle->setOn(set.value(QLatin1String(s.key)).toBool(false), false);
    }
    if (!set.contains(kPowerData)) {
        qWarning() << "parseMatchParamToTable: 'power_data' field not found";
        return false;
    }
    if (!set.value(kPowerData).isArray()) {
        qWarning() << "parseMatchParamToTable: 'power_data' is not an array";
        return false;
    }
    const QJsonArray nodes = set.value(kPowerData).toArray();
    if (nodes.isEmpty()) {
        qWarning() << "parseMatchParamToTable: 'power_data' array is empty";
        return false;
    }
    const int count = std::min(int(nodes.size()), rowCount);
    if (table->rowCount() < startRow + count)
        table->setRowCount(startRow + count);
    if (table->columnCount() < startColumn + columnCount)
        table->setColumnCount(startColumn + columnCount);
    bool written = false;
    for (int r = 0; r < count; ++r) {
        const QJsonValue element = nodes.at(r);
        if (!element.isArray()) {
            qWarning().noquote() << "parseMatchParamToTable: 'power_data' element" << r
                                 << "is not an array";
            continue;
        }
        const QJsonArray values = element.toArray();
        const int columns = std::min(int(values.size()), columnCount);
        for (int c = 0; c < columns; ++c) {
            const int value = values.at(c).toInt(0);
            if (QSpinBox *spin = cellSpinBox(table, startRow + r, startColumn + c)) {
                spin->setValue(value);
            } else {
                // Rows grown beyond the editor's own have no spin boxes: keep the number as text.
                setCellText(table, startRow + r, startColumn + c, QString::number(value));
            }
            written = true;
        }
    }
    if (!written)
        qWarning() << "parseMatchParamToTable: No valid data found in 'power_data' array";
    return written;
}

bool WeldParameterPage::validateMatchingTableParams() const
{
    return validateMatchingTableParams(m_ui.tableWidget_matching);
}

bool WeldParameterPage::validateMatchingTableParams(QTableWidget *table)
{
    if (!table) {
        qWarning() << "validateMatchingTableParams: tableWidget_matching is null";
        return false;
    }
    if (table->rowCount() < matchingRows) {
        qWarning() << "validateMatchingTableParams: table does not have enough rows";
        return false;
    }
    const auto switchOn = [table](int section) {
        SwitchButton *toggle = headerSwitch(table, section);
        return !toggle || toggle->isOn();
    };
    struct Check
    {
        int column;
        bool enabled;
        const char *name;
    };
    const QList<Check> checks {
        {2, switchOn(2), "Power"},
        {3, switchOn(3), "Frequency"},
        {4, switchOn(4), "Duty Cycle"},
        {1, true, "Speed"},
    };
    for (int row = 2; row < matchingRows; ++row) {
        for (int column = 1; column < matchingColumns; ++column) {
            if (!cellSpinBox(table, row - 1, column) || !cellSpinBox(table, row, column)) {
                qWarning().noquote()
                    << "validateMatchingTableParams: missing spinbox widgets at row" << row;
                return false;
            }
        }
        for (const Check &check : checks) {
            if (!check.enabled)
                continue;
            const int previous = cellSpinBox(table, row - 1, check.column)->value();
            const int current = cellSpinBox(table, row, check.column)->value();
            if (previous < current)
                continue;
            qWarning().noquote() << "validateMatchingTableParams:" << check.name
                                 << "validation failed at row" << row << ". Previous:" << previous
                                 << " Current:" << current;
            kelplugin::ThrowLog(
                kPluginKey, kelplugin::THROW_LOG_WARNING, matchingRefusalText(check.column, row));
            QSpinBox *field = cellSpinBox(table, row, check.column);
            FieldGuard::point(field,
                tr("%1 must be greater than in node %2")
                    .arg(FieldGuard::fieldName(field))
                    .arg(row - 1));
            return false;
        }
    }
    return true;
}

QString WeldParameterPage::matchingRefusalText(int column, int row)
{
    switch (column) {
    case 2:
        return tr("Power parameter validation failed at row %1. Previous row value must be less "
                  "than current row value.")
            .arg(row);
    case 3:
        return tr("Frequency parameter validation failed at row %1. Previous row value must be "
                  "less than current row value.")
            .arg(row);
    case 4:
        return tr("Duty Cycle parameter validation failed at row %1. Previous row value must be "
                  "less than current row value.")
            .arg(row);
    default:
        return tr("Speed parameter validation failed at row %1. Previous row value must be less "
                  "than current row value.")
            .arg(row);
    }
}

void WeldParameterPage::updateMatchingPreview()
{
    QTableWidget *table = m_ui.tableWidget_matching;
    // The table is built spin box by spin box; a half-built table has nothing to show yet.
    for (int row = 1; row < matchingRows; ++row) {
        for (int column = 1; column < matchingColumns; ++column) {
            if (row >= table->rowCount() || !cellSpinBox(table, row, column))
                return;
        }
    }
    QVector<kellaser::MatchingCurve::Node> nodes;
    for (int row = 1; row < matchingRows; ++row) {
        kellaser::MatchingCurve::Node node {};
        for (int column = 1; column < matchingColumns; ++column)
            node[size_t(column - 1)] = cellSpinBox(table, row, column)->value();
        nodes.append(node);
    }
    std::array<bool, 4> shown {true, false, false, false};
    for (const MatchSwitch &s : kMatchSwitches) {
        const SwitchButton *toggle = headerSwitch(table, s.section);
        shown[size_t(s.section - 1)] = toggle && toggle->isOn();
    }
    m_ui.matchingChart->setContent(EditorPreviews::matching(nodes, shown));
    const auto refusal = kellaser::MatchingCurve::firstRefusal(nodes, shown);
    m_ui.label_matchingHint->setText(
        refusal.node < 0 ? QString() : matchingRefusalText(refusal.column + 1, refusal.node + 1));
}

QJsonObject WeldParameterPage::createMatchDataJson() const
{
    return createMatchDataJson(m_ui.label_title->text(), m_ui.tableWidget_matching);
}

QJsonObject WeldParameterPage::createMatchDataJson(const QString &name, QTableWidget *table)
{
    if (name.isEmpty()) {
        qWarning() << "createMatchDataJson: PowerDataID is empty";
        return {};
    }
    QJsonObject set {{QStringLiteral("PowerDataID"), name}};
    for (const MatchSwitch &s : kMatchSwitches) {
        SwitchButton *toggle = headerSwitch(table, s.section);
        set.insert(QLatin1String(s.key), toggle && toggle->isOn());
    }
    QJsonArray nodes;
    for (int row = 1; table && row < table->rowCount(); ++row) {
        QJsonArray values;
        for (int column = 1; column < table->columnCount(); ++column) {
            if (QSpinBox *spin = cellSpinBox(table, row, column)) {
                values.append(double(spin->value()));
            } else {
                const QTableWidgetItem *item = table->item(row, column);
                const double value = item ? item->text().toDouble() : 0.0;
                values.append(std::isfinite(value) ? value : 0.0);
            }
        }
        nodes.append(values);
    }
    set.insert(kPowerData, nodes);
    return set;
}
