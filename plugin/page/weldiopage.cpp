#include "weldiopage.h"

#include "pagesave.h"
#include "portcatalogue.h"
#include "weldsettingpage.h"

#include "core/commandchannel.h"
#include "core/logline.h"
#include "core/styledescription.h"
#include "widget/fieldguard.h"
#include "widget/stylesheet.h"
#include "widget/switchbutton.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

namespace {

const QString &pluginKey()
{
    static const QString key = QStringLiteral("kellaserweld");
    return key;
}

const QString &saveCommand()
{
    static const QString command = QStringLiteral("set_weld_io_config");
    return command;
}

const QString &recordKey()
{
    static const QString key = QStringLiteral("weld_io_config");
    return key;
}

const int kVisibleItems = 7;

} // namespace

WeldioPage::WeldioPage(WeldSettingPage *settingPage, QWidget *parent)
    : QWidget(parent), m_settingPage(settingPage)
{
    m_ui.setupUi(this);
    initStyle();

    // Record write order; outputs and inputs keep their display order within it.
    addFixedRow("laser_enable_port", nullptr, true, m_ui.label_laser_enable,
        m_ui.label_laser_enable_kind, m_ui.comboBox_laser_enable_port, nullptr, nullptr);
    addSelectorRow("power", true, m_ui.label_power, m_ui.comboBox_power_type,
        m_ui.comboBox_power_port, m_ui.pushButton_power_enabled, &WeldioPage::setPowerPlaneStatus);
    addSelectorRow("frequency", true, m_ui.label_frequency, m_ui.comboBox_frequency_type,
        m_ui.comboBox_frequency_port, m_ui.pushButton_frequency_enabled,
        &WeldioPage::setFrequencyPlaneStatus);
    addSelectorRow("duty_cycle", true, m_ui.label_duty_cycle, m_ui.comboBox_duty_cycle_type,
        m_ui.comboBox_duty_cycle_port, m_ui.pushButton_duty_cycle_enabled,
        &WeldioPage::setDutyCyclePlaneStatus);
    addFixedRow("red_light_port", "red_light_enabled", true, m_ui.label_red_light,
        m_ui.label_red_light_kind, m_ui.comboBox_red_light_port, m_ui.pushButton_red_light_enabled,
        &WeldioPage::setRedlightStatus);
    addFixedRow("gas_protect_port", nullptr, true, m_ui.label_gas_protect,
        m_ui.label_gas_protect_kind, m_ui.comboBox_gas_protect_port, nullptr,
        &WeldioPage::setGasProtectPlaneStatus);
    addSelectorRow("wire_speed", true, m_ui.label_wire_speed, m_ui.comboBox_wire_speed_type,
        m_ui.comboBox_wire_speed_port, m_ui.pushButton_wire_speed_enabled,
        &WeldioPage::setWireSpeedPlaneStatus);
    addFixedRow("wire_feed_port", "wire_feed_enabled", true, m_ui.label_wire_feed,
        m_ui.label_wire_feed_kind, m_ui.comboBox_wire_feed_port, m_ui.pushButton_wire_feed_enabled,
        &WeldioPage::setWireFeedPlaneStatus);
    addFixedRow("retract_direction_port", "retract_direction_enabled", true,
        m_ui.label_retract_direction, m_ui.label_retract_direction_kind,
        m_ui.comboBox_retract_direction_port, m_ui.pushButton_retract_direction_enabled,
        &WeldioPage::setRetractDirectionPlaneStatus);
    addFixedRow("manual_wire_feed_port", "manual_wire_feed_enabled", true,
        m_ui.label_manual_wire_feed, m_ui.label_manual_wire_feed_kind,
        m_ui.comboBox_manual_wire_feed_port, m_ui.pushButton_manual_wire_feed_enabled,
        &WeldioPage::setManualWirePlaneStatus);
    addFixedRow("manual_retract_port", "manual_retract_enabled", true, m_ui.label_manual_retract,
        m_ui.label_manual_retract_kind, m_ui.comboBox_manual_retract_port,
        m_ui.pushButton_manual_retract_enabled, &WeldioPage::setManualRetractPlaneStatus);
    addSelectorRow("power_feedback", false, m_ui.label_power_feedback,
        m_ui.comboBox_power_feedback_type, m_ui.comboBox_power_feedback_port,
        m_ui.pushButton_power_feedback_enabled, &WeldioPage::setPowerFeedbackPlaneStatus);
    addFixedRow("light_feedback_port", "light_feedback_enabled", false, m_ui.label_light_feedback,
        m_ui.label_light_feedback_kind, m_ui.comboBox_light_feedback_port,
        m_ui.pushButton_light_feedback_enabled, &WeldioPage::setLightFeedbackPlaneStatus);
    addFixedRow("laser_alarm_port", "laser_alarm_enabled", false, m_ui.label_laser_alarm,
        m_ui.label_laser_alarm_kind, m_ui.comboBox_laser_alarm_port,
        m_ui.pushButton_laser_alarm_enabled, &WeldioPage::setLaserAlarmPlaneStatus);
    addFixedRow("shield_gas_feedback_port", "shield_gas_feedback_enabled", false,
        m_ui.label_shield_gas_feedback, m_ui.label_shield_gas_feedback_kind,
        m_ui.comboBox_shield_gas_feedback_port, m_ui.pushButton_shield_gas_feedback_enabled,
        &WeldioPage::setGasFeedbackPlaneStatus);
    addSelectorRow("wire_speed_feedback", false, m_ui.label_wire_speed_feedback,
        m_ui.comboBox_wire_speed_feedback_type, m_ui.comboBox_wire_speed_feedback_port,
        m_ui.pushButton_wire_speed_feedback_enabled, &WeldioPage::setWireSpeedFeedbackPlaneStatus);
    addFixedRow("wire_feed_feedback_port", "wire_feed_feedback_enabled", false,
        m_ui.label_wire_feed_feedback, m_ui.label_wire_feed_feedback_kind,
        m_ui.comboBox_wire_feed_feedback_port, m_ui.pushButton_wire_feed_feedback_enabled,
        &WeldioPage::setWireFeedFeedbackPlaneStatus);
    addFixedRow("wire_feeder_alarm_port", "wire_feeder_alarm_enabled", false,
        m_ui.label_wire_feeder_alarm, m_ui.label_wire_feeder_alarm_kind,
        m_ui.comboBox_wire_feeder_alarm_port, m_ui.pushButton_wire_feeder_alarm_enabled,
        &WeldioPage::setWireFeederAlarmPlaneStatus);
    addFixedRow("adhesion_detection_en_port", "adhesion_detection_enabled", true,
        m_ui.label_adhesion_detection_en, m_ui.label_adhesion_detection_en_kind,
        m_ui.comboBox_adhesion_detection_en_port, m_ui.pushButton_adhesion_detection_enabled,
        &WeldioPage::setAdhesionDetectionPlaneStatus);
    addFixedRow("descent_signal_port", "descent_signal_enabled", true, m_ui.label_descent_signal,
        m_ui.label_descent_signal_kind, m_ui.comboBox_descent_signal_port,
        m_ui.pushButton_descent_signal_enabled, &WeldioPage::setDescentSignalPortStatus);
    addFixedRow("adhesion_detection_feedback_port", "adhesion_detection_feedback_enabled", false,
        m_ui.label_adhesion_detection_feedback, m_ui.label_adhesion_detection_feedback_kind,
        m_ui.comboBox_adhesion_detection_feedback_port,
        m_ui.pushButton_adhesion_detection_feedback_enabled,
        &WeldioPage::setAdhesionDetectionFeedbackPlaneStatus);
    addFixedRow("external_alarm_port", "external_alarm_enabled", false, m_ui.label_external_alarm,
        m_ui.label_external_alarm_kind, m_ui.comboBox_external_alarm_port,
        m_ui.pushButton_external_alarm_enabled, &WeldioPage::setExternalAlarmPlaneStatus);

    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const Row &row = m_rows[i];
        if (row.enable)
            connect(row.enable, &SwitchButton::onChanged, this, row.slot);
        if (row.type) {
            connect(row.type, qOverload<int>(&QComboBox::currentIndexChanged), this,
                [this, i](int index) { refillForType(m_rows[i], index); });
        }
    }
    const auto combos = findChildren<QComboBox *>();
    for (QComboBox *combo : combos)
        combo->setMaxVisibleItems(kVisibleItems);
    for (const Row &row : m_rows)
        PortCatalogue::fitDropDown(row.port);

    m_state->setForm([this] { return record(); });
    connect(m_ui.pushButton_Save, &QPushButton::clicked, this, &WeldioPage::save);
    connect(m_ui.pushButton_Cancel, &QPushButton::clicked, this, &WeldioPage::cancel);
    FieldGuard::install(this);
}

WeldioPage::~WeldioPage() = default;

void WeldioPage::addFixedRow(const char *portKey, const char *enableKey, bool output,
    QLabel *caption, QLabel *kind, QComboBox *port, SwitchButton *enable, RowSlot slot)
{
    const QString fixedType = output ? QStringLiteral("DO") : QStringLiteral("DI");
    m_rows.push_back({QLatin1String(portKey), QString(),
        enableKey ? QString(QLatin1String(enableKey)) : QString(), output, fixedType, QString(),
        QString(), caption, kind, port, nullptr, enable, slot, QStringList()});
}

void WeldioPage::addSelectorRow(const char *base, bool output, QLabel *caption, QComboBox *type,
    QComboBox *port, SwitchButton *enable, RowSlot slot)
{
    const QString name = QLatin1String(base);
    m_rows.push_back({name + QLatin1String("_port"), name + QLatin1String("_type"),
        name + QLatin1String("_enabled"), output, QString(),
        output ? QStringLiteral("AO") : QStringLiteral("AI"),
        output ? QStringLiteral("GO") : QStringLiteral("GI"), caption, type, port, type, enable,
        slot, QStringList()});
}

void WeldioPage::initStyle()
{
    kellaser::logInfo() << "WeldioPage::initStyle";
    // Group boxes, frames and labels take the common look of the plug-in's pages.
    kellaser::applyStyleSheet(
        this, kellaser::StyleDescription::fromResource().styleSheet(objectName()));
}

void WeldioPage::checkSaveResult(const QJsonArray &result)
{
    kellaser::CommandChannel::checkReply(result, saveCommand(),
        QStringLiteral("WeldioPage::checkSaveResult failed. "), tr("Saved successfully"),
        tr("Save failed. Please check the parameter configuration."));
}

QJsonObject WeldioPage::record() const
{
    QJsonObject record;
    for (const Row &row : m_rows) {
        if (row.type)
            record.insert(row.typeKey, row.type->currentIndex());
        record.insert(row.portKey, row.port->currentText());
        if (row.enable)
            record.insert(row.enableKey, row.enable->isOn());
    }
    return record;
}

void WeldioPage::loadRecord(const QJsonObject &record)
{
    // A type change refills the row's drop-down, so the type must be set before the port.
    for (const Row &row : m_rows) {
        if (row.type)
            row.type->setCurrentIndex(record.value(row.typeKey).toInt());
        PortCatalogue::selectPort(row.port, row.items, record.value(row.portKey).toString());
        if (row.enable)
            row.enable->setOn(record.value(row.enableKey).toBool(false), true);
    }
}

void WeldioPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    auto &host = kelplugin::kelPluginInterface();
    m_inShow = true;
    const QJsonValue io = host.getKelServiceData(recordKey());
    fillPortLists();
    if (io.isObject())
        loadRecord(io.toObject());
    m_state->note(recordKey(), io.isObject());
    m_inShow = false;
    m_showPorts.clear();

    const QJsonValue settings = host.getKelServiceData(QStringLiteral("weld_setting_config"));
    if (settings.isObject()) {
        const bool direction
            = settings.toObject().value(QStringLiteral("wire_feed_type")).toInt() != 0;
        m_ui.label_retract_direction->setText(direction ? tr("Direction") : tr("Retract"));
    }
    applySwitches();
    applyEditLock();
}

QStringList WeldioPage::portList(const QString &type)
{
    if (!m_inShow)
        return PortCatalogue::ports(type);
    auto it = m_showPorts.find(type);
    if (it == m_showPorts.end())
        it = m_showPorts.insert(type, PortCatalogue::ports(type));
    return it.value();
}

QString WeldioPage::rowPortType(const Row &row, int typeIndex) const
{
    if (!row.type)
        return row.fixedType;
    return typeIndex != 0 ? row.groupType : row.analogType;
}

void WeldioPage::fillPortLists()
{
    // One insertion per drop-down: the empty "no port" item and the whole list together.
    for (Row &row : m_rows) {
        QStringList items = portList(rowPortType(row, row.type ? row.type->currentIndex() : 0));
        items.prepend(QString());
        fillPort(row, items);
        row.port->setMaxVisibleItems(kVisibleItems);
    }
}

void WeldioPage::fillPort(Row &row, const QStringList &items)
{
    row.items = items;
    row.port->clear();
    row.port->addItems(items);
}

void WeldioPage::refillForType(Row &row, int typeIndex)
{
    // No empty item here: after a type change the row always has a port.
    fillPort(row, portList(rowPortType(row, typeIndex)));
}

void WeldioPage::applySwitches()
{
    for (const Row &row : m_rows) {
        if (row.enable)
            (this->*row.slot)(row.enable->isOn());
    }
}

void WeldioPage::applyEditLock()
{
    const bool permitted = kelplugin::kelPluginInterface().getUserOperateLevel() >= 3;
    const bool welding = m_settingPage && m_settingPage->isMainEnabled();
    setEnabled(permitted && !welding);
}

namespace {

// The rows' keys in the record's write order, for checks that have a record but no form.
const struct
{
    const char *port;
    const char *type;   // nullptr: a fixed type
    const char *enable; // nullptr: always in use
    bool output;
} kRowKeys[] {
    {"laser_enable_port", nullptr, nullptr, true},
    {"power_port", "power_type", "power_enabled", true},
    {"frequency_port", "frequency_type", "frequency_enabled", true},
    {"duty_cycle_port", "duty_cycle_type", "duty_cycle_enabled", true},
    {"red_light_port", nullptr, "red_light_enabled", true},
    {"gas_protect_port", nullptr, nullptr, true},
    {"wire_speed_port", "wire_speed_type", "wire_speed_enabled", true},
    {"wire_feed_port", nullptr, "wire_feed_enabled", true},
    {"retract_direction_port", nullptr, "retract_direction_enabled", true},
    {"manual_wire_feed_port", nullptr, "manual_wire_feed_enabled", true},
    {"manual_retract_port", nullptr, "manual_retract_enabled", true},
    {"power_feedback_port", "power_feedback_type", "power_feedback_enabled", false},
    {"light_feedback_port", nullptr, "light_feedback_enabled", false},
    {"laser_alarm_port", nullptr, "laser_alarm_enabled", false},
    {"shield_gas_feedback_port", nullptr, "shield_gas_feedback_enabled", false},
    {"wire_speed_feedback_port", "wire_speed_feedback_type", "wire_speed_feedback_enabled", false},
    {"wire_feed_feedback_port", nullptr, "wire_feed_feedback_enabled", false},
    {"wire_feeder_alarm_port", nullptr, "wire_feeder_alarm_enabled", false},
    {"adhesion_detection_en_port", nullptr, "adhesion_detection_enabled", true},
    {"descent_signal_port", nullptr, "descent_signal_enabled", true},
    {"adhesion_detection_feedback_port", nullptr, "adhesion_detection_feedback_enabled", false},
    {"external_alarm_port", nullptr, "external_alarm_enabled", false},
};

} // namespace

QString WeldioPage::recordRefusal(const QJsonObject &record, QString *portKey)
{
    const auto atFault = [portKey](const char *key) {
        if (portKey)
            *portKey = QLatin1String(key);
    };
    const auto inUse = [&record](const char *enable) {
        return !enable || record.value(QLatin1String(enable)).toBool();
    };
    for (const bool outputs : {true, false}) {
        QSet<QString> used;
        for (const auto &row : kRowKeys) {
            if (row.output != outputs || !inUse(row.enable))
                continue;
            const QString port = record.value(QLatin1String(row.port)).toString();
            if (port.isEmpty())
                continue;
            const int typeIndex = row.type ? record.value(QLatin1String(row.type)).toInt() : -1;
            const QString key = port + QLatin1Char('_') + QString::number(typeIndex);
            if (used.contains(key)) {
                atFault(row.port);
                return tr("Port %1 is already in use, save failed!").arg(port);
            }
            used.insert(key);
        }
    }
    for (const auto &row : kRowKeys) {
        if (inUse(row.enable) && record.value(QLatin1String(row.port)).toString().isEmpty()) {
            atFault(row.port);
            return tr("There is an empty port. Please check and reconfigure!");
        }
    }
    return QString();
}

void WeldioPage::save()
{
    if (!kellaser::PageSave::mayChange(tr("Insufficient user permissions!"), m_state->allRead()))
        return;
    const QJsonObject io = record();
    QString portKey;
    const QString refusal = recordRefusal(io, &portKey);
    if (!refusal.isEmpty()) {
        kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_ERROR, refusal);
        pointAt(portKey);
        return;
    }
    kellaser::PageSave::send({this, recordKey(), saveCommand(), io,
        [this](const QJsonArray &reply) { checkSaveResult(reply); }, [this] { readRecord(); },
        m_state});
}

void WeldioPage::pointAt(const QString &portKey)
{
    for (const Row &row : m_rows) {
        if (row.portKey != portKey)
            continue;
        const QString port = row.port->currentText();
        FieldGuard::point(row.port,
            port.isEmpty()
                ? tr("%1: no port assigned").arg(row.caption->text())
                : tr("%1: port %2 is already in use above").arg(row.caption->text(), port));
        return;
    }
}

bool WeldioPage::hasUnsavedChanges() const
{
    // A form that does not hold the controller's record has nothing to lose.
    return m_state->allRead() && m_state->isEdited();
}

QString WeldioPage::unsavedChangesName() const
{
    return tr("the I/O assignment");
}

bool WeldioPage::saveChanges()
{
    save();
    return !hasUnsavedChanges();
}

void WeldioPage::discardChanges()
{
    readRecord();
}

void WeldioPage::readRecord()
{
    const QJsonValue io = kelplugin::kelPluginInterface().getKelServiceData(recordKey());
    if (io.isObject())
        loadRecord(io.toObject());
    m_state->note(recordKey(), io.isObject());
}

void WeldioPage::cancel()
{
    readRecord();
    kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_INFO, tr("Cancel successful"));
}

void WeldioPage::setRowEnabled(QWidget *caption, QWidget *kind, QWidget *port, bool enable)
{
    caption->setEnabled(enable);
    kind->setEnabled(enable);
    port->setEnabled(enable);
}

void WeldioPage::setPowerPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_power, m_ui.comboBox_power_type, m_ui.comboBox_power_port, enable);
}

void WeldioPage::setFrequencyPlaneStatus(bool enable)
{
    setRowEnabled(
        m_ui.label_frequency, m_ui.comboBox_frequency_type, m_ui.comboBox_frequency_port, enable);
}

void WeldioPage::setDutyCyclePlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_duty_cycle, m_ui.comboBox_duty_cycle_type,
        m_ui.comboBox_duty_cycle_port, enable);
}

void WeldioPage::setRedlightStatus(bool enable)
{
    setRowEnabled(
        m_ui.label_red_light, m_ui.label_red_light_kind, m_ui.comboBox_red_light_port, enable);
}

void WeldioPage::setWireSpeedPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_wire_speed, m_ui.comboBox_wire_speed_type,
        m_ui.comboBox_wire_speed_port, enable);
}

void WeldioPage::setWireFeedPlaneStatus(bool enable)
{
    setRowEnabled(
        m_ui.label_wire_feed, m_ui.label_wire_feed_kind, m_ui.comboBox_wire_feed_port, enable);
}

void WeldioPage::setRetractDirectionPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_retract_direction, m_ui.label_retract_direction_kind,
        m_ui.comboBox_retract_direction_port, enable);
}

void WeldioPage::setManualWirePlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_manual_wire_feed, m_ui.label_manual_wire_feed_kind,
        m_ui.comboBox_manual_wire_feed_port, enable);
}

void WeldioPage::setManualRetractPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_manual_retract, m_ui.label_manual_retract_kind,
        m_ui.comboBox_manual_retract_port, enable);
}

void WeldioPage::setPowerFeedbackPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_power_feedback, m_ui.comboBox_power_feedback_type,
        m_ui.comboBox_power_feedback_port, enable);
}

void WeldioPage::setLightFeedbackPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_light_feedback, m_ui.label_light_feedback_kind,
        m_ui.comboBox_light_feedback_port, enable);
}

void WeldioPage::setLaserAlarmPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_laser_alarm, m_ui.label_laser_alarm_kind,
        m_ui.comboBox_laser_alarm_port, enable);
}

void WeldioPage::setGasFeedbackPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_shield_gas_feedback, m_ui.label_shield_gas_feedback_kind,
        m_ui.comboBox_shield_gas_feedback_port, enable);
}

void WeldioPage::setWireSpeedFeedbackPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_wire_speed_feedback, m_ui.comboBox_wire_speed_feedback_type,
        m_ui.comboBox_wire_speed_feedback_port, enable);
}

void WeldioPage::setWireFeedFeedbackPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_wire_feed_feedback, m_ui.label_wire_feed_feedback_kind,
        m_ui.comboBox_wire_feed_feedback_port, enable);
}

void WeldioPage::setWireFeederAlarmPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_wire_feeder_alarm, m_ui.label_wire_feeder_alarm_kind,
        m_ui.comboBox_wire_feeder_alarm_port, enable);
}

void WeldioPage::setGasProtectPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_gas_protect, m_ui.label_gas_protect_kind,
        m_ui.comboBox_gas_protect_port, enable);
}

void WeldioPage::setAdhesionDetectionPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_adhesion_detection_en, m_ui.label_adhesion_detection_en_kind,
        m_ui.comboBox_adhesion_detection_en_port, enable);
}

void WeldioPage::setDescentSignalPortStatus(bool enable)
{
    setRowEnabled(m_ui.label_descent_signal, m_ui.label_descent_signal_kind,
        m_ui.comboBox_descent_signal_port, enable);
}

void WeldioPage::setAdhesionDetectionFeedbackPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_adhesion_detection_feedback,
        m_ui.label_adhesion_detection_feedback_kind, m_ui.comboBox_adhesion_detection_feedback_port,
        enable);
}

void WeldioPage::setExternalAlarmPlaneStatus(bool enable)
{
    setRowEnabled(m_ui.label_external_alarm, m_ui.label_external_alarm_kind,
        m_ui.comboBox_external_alarm_port, enable);
}
