#include "weldsettingpage.h"

#include "pagesave.h"
#include "portcatalogue.h"

#include "core/commandchannel.h"
#include "core/styledescription.h"
#include "widget/fieldguard.h"
#include "widget/stylesheet.h"
#include "widget/switchbutton.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QThread>

#include <cmath>
#include <limits>

namespace {

const QString &pluginKey()
{
    static const QString key = QStringLiteral("kellaserweld");
    return key;
}

const QString &saveCommand()
{
    static const QString command = QStringLiteral("set_weld_setting_config");
    return command;
}

const QString &enableCommand()
{
    static const QString command = QStringLiteral("set_weld_enable");
    return command;
}

const QString &recordKey()
{
    static const QString key = QStringLiteral("weld_setting_config");
    return key;
}

int switchWaitMs = 300;

// The controller stores some of these as floating point: truncate toward zero, saturated.
int truncated(const QJsonValue &value)
{
    const double number = value.toDouble();
    if (std::isnan(number))
        return 0;
    if (number >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (number <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return int(number);
}

} // namespace

WeldSettingPage::WeldSettingPage(QWidget *parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    initStyle();

    // The main switch only asks; the page decides whether it turns.
    m_ui.pushButton_main_enable->setAutoToggle(false);
    connect(m_ui.pushButton_main_enable, &SwitchButton::clickedRaw, this,
        &WeldSettingPage::onSwitchMain);
    connect(m_ui.pushButton_Retraction, &SwitchButton::onChanged, this,
        &WeldSettingPage::setRetractionPlanStatus);
    connect(m_ui.pushButton_WireSticking, &SwitchButton::onChanged, this,
        &WeldSettingPage::setWireStickingPlanStatus);
    connect(m_ui.pushButton_Feeder, &SwitchButton::onChanged, this,
        &WeldSettingPage::setFeederPlanStatus);
    // The main switch is not an edit of the settings: it is sent on its own.
    m_state->setForm([this] {
        QJsonObject form = record();
        form.remove(QStringLiteral("laser_main_enable"));
        return form;
    });
    connect(m_ui.pushButton_save, &QPushButton::clicked, this, &WeldSettingPage::save);
    connect(m_ui.pushButton_cancel, &QPushButton::clicked, this, &WeldSettingPage::cancel);

    PortCatalogue::fitDropDown(m_ui.comboBox_detection_do);
    PortCatalogue::fitDropDown(m_ui.comboBox_feedback_di);

    // Sections start in step with their switches, which start off.
    setRetractionPlanStatus(m_ui.pushButton_Retraction->isOn());
    setWireStickingPlanStatus(m_ui.pushButton_WireSticking->isOn());
    setFeederPlanStatus(m_ui.pushButton_Feeder->isOn());
    FieldGuard::install(this);
}

WeldSettingPage::~WeldSettingPage() = default;

bool WeldSettingPage::hasUnsavedChanges() const
{
    // A form that does not hold the controller's record has nothing to lose.
    return m_state->allRead() && m_state->isEdited();
}

QString WeldSettingPage::unsavedChangesName() const
{
    return tr("the device settings");
}

bool WeldSettingPage::saveChanges()
{
    save();
    return !hasUnsavedChanges();
}

void WeldSettingPage::discardChanges()
{
    readRecord();
}

void WeldSettingPage::initStyle()
{
    kellaser::applyStyleSheet(
        this, kellaser::StyleDescription::fromResource().styleSheet(objectName()));
}

void WeldSettingPage::checkSaveResult(const QJsonArray &result)
{
    kellaser::CommandChannel::checkReply(result, saveCommand(),
        QStringLiteral("WeldSettingPage::checkSaveResult failed. "), tr("Saved successfully"),
        tr("Save failed. Please check the parameter configuration."));
}

QJsonObject WeldSettingPage::record() const
{
    QJsonObject r;
    r.insert(QStringLiteral("laser_main_enable"), m_ui.pushButton_main_enable->isOn());
    r.insert(QStringLiteral("laser_comm_type"), m_ui.comboBox_laser_comm_type->currentIndex());
    r.insert(QStringLiteral("laser_power"), m_ui.spinBox_laser_power->value());
    r.insert(QStringLiteral("feedback_delay"), m_ui.spinBox_feedback_delay->value());
    r.insert(QStringLiteral("pre_gas_time"), m_ui.spinBox_pre_gas_time->value());
    r.insert(QStringLiteral("delay_off_time"), m_ui.spinBox_delay_off_time->value());
    r.insert(QStringLiteral("detection_delay"), m_ui.spinBox_detection_delay->value());
    r.insert(QStringLiteral("manual_gas_time"), m_ui.spinBox_manual_gas_time->value());
    r.insert(QStringLiteral("retraction_enable"), m_ui.pushButton_Retraction->isOn());
    r.insert(
        QStringLiteral("retraction_distance"), m_ui.doubleSpinBox_retraction_distance->value());
    r.insert(QStringLiteral("retraction_speed"), m_ui.doubleSpinBox_retraction_speed->value());
    r.insert(QStringLiteral("wiresticking_enable"), m_ui.pushButton_WireSticking->isOn());
    r.insert(QStringLiteral("detection_time"), m_ui.spinBox_detection_time->value());
    r.insert(QStringLiteral("detection_do"), m_ui.comboBox_detection_do->currentText());
    r.insert(QStringLiteral("feedback_di"), m_ui.comboBox_feedback_di->currentText());
    r.insert(QStringLiteral("feeder_enable"), m_ui.pushButton_Feeder->isOn());
    r.insert(QStringLiteral("wire_feeder_comm_type"),
        m_ui.comboBox_wire_feeder_comm_type->currentIndex());
    r.insert(QStringLiteral("wire_feed_type"), m_ui.comboBox_wire_feed_type->currentIndex());
    r.insert(QStringLiteral("max_feed_speed"), m_ui.doubleSpinBox_max_feed_speed->value());
    r.insert(QStringLiteral("manual_feed_speed"), m_ui.doubleSpinBox_manual_feed_speed->value());
    r.insert(
        QStringLiteral("manual_retract_speed"), m_ui.doubleSpinBox_manual_retract_speed->value());
    r.insert(
        QStringLiteral("wire_feedback_detection"), m_ui.spinBox_wire_feedback_detection->value());
    r.insert(QStringLiteral("laser_check_out_time"), m_ui.spinBox_laser_check_out_time->value());
    return r;
}

void WeldSettingPage::loadRecord(const QJsonObject &r)
{
    const auto flag = [&r](const char *key) { return r.value(QLatin1String(key)).toBool(false); };
    const auto number = [&r](const char *key) { return r.value(QLatin1String(key)).toInt(); };
    const auto real = [&r](const char *key) { return truncated(r.value(QLatin1String(key))); };
    const auto text = [&r](const char *key) { return r.value(QLatin1String(key)).toString(); };

    m_ui.pushButton_main_enable->setOn(flag("laser_main_enable"), true);
    m_ui.pushButton_Retraction->setOn(flag("retraction_enable"), true);
    m_ui.pushButton_WireSticking->setOn(flag("wiresticking_enable"), true);
    m_ui.pushButton_Feeder->setOn(flag("feeder_enable"), true);

    m_ui.comboBox_laser_comm_type->setCurrentIndex(number("laser_comm_type"));
    m_ui.comboBox_wire_feeder_comm_type->setCurrentIndex(number("wire_feeder_comm_type"));
    m_ui.comboBox_wire_feed_type->setCurrentIndex(number("wire_feed_type"));
    PortCatalogue::selectPort(m_ui.comboBox_detection_do, m_detectionPorts, text("detection_do"));
    PortCatalogue::selectPort(m_ui.comboBox_feedback_di, m_feedbackPorts, text("feedback_di"));

    m_ui.spinBox_laser_power->setValue(real("laser_power"));
    m_ui.spinBox_feedback_delay->setValue(real("feedback_delay"));
    m_ui.doubleSpinBox_retraction_distance->setValue(real("retraction_distance"));
    m_ui.doubleSpinBox_retraction_speed->setValue(real("retraction_speed"));
    m_ui.doubleSpinBox_max_feed_speed->setValue(real("max_feed_speed"));
    m_ui.doubleSpinBox_manual_feed_speed->setValue(real("manual_feed_speed"));
    m_ui.doubleSpinBox_manual_retract_speed->setValue(real("manual_retract_speed"));

    m_ui.spinBox_pre_gas_time->setValue(number("pre_gas_time"));
    m_ui.spinBox_delay_off_time->setValue(number("delay_off_time"));
    m_ui.spinBox_detection_delay->setValue(number("detection_delay"));
    m_ui.spinBox_manual_gas_time->setValue(number("manual_gas_time"));
    m_ui.spinBox_detection_time->setValue(number("detection_time"));
    m_ui.spinBox_wire_feedback_detection->setValue(number("wire_feedback_detection"));
    m_ui.spinBox_laser_check_out_time->setValue(number("laser_check_out_time"));
}

bool WeldSettingPage::isMainEnabled() const
{
    return m_ui.pushButton_main_enable->isOn();
}

SwitchButton *WeldSettingPage::mainSwitch() const
{
    return m_ui.pushButton_main_enable;
}

void WeldSettingPage::setEditableArea(bool editable)
{
    for (QWidget *area : {static_cast<QWidget *>(m_ui.frame_laser_unit),
             static_cast<QWidget *>(m_ui.frame_assist_gas),
             static_cast<QWidget *>(m_ui.frame_restart),
             static_cast<QWidget *>(m_ui.frame_wire_feeder),
             static_cast<QWidget *>(m_ui.frame_wire_sticking),
             static_cast<QWidget *>(m_ui.pushButton_save),
             static_cast<QWidget *>(m_ui.pushButton_cancel)}) {
        area->setEnabled(editable);
    }
}

void WeldSettingPage::setSwitchWait(int milliseconds)
{
    switchWaitMs = milliseconds;
}

void WeldSettingPage::buttontest()
{
    kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_WARNING, QStringLiteral("123123"));
}

void WeldSettingPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    fillPortLists();
    readRecord();
    // On show the restart fields open whatever their switch says; only a change of the switch
    // closes them again.
    m_ui.doubleSpinBox_retraction_distance->setEnabled(true);
    m_ui.doubleSpinBox_retraction_speed->setEnabled(true);
    setFeederPlanStatus(m_ui.pushButton_Feeder->isOn());
    setEnabled(kelplugin::kelPluginInterface().getUserOperateLevel() >= 3);
    setEditableArea(!isMainEnabled());
}

void WeldSettingPage::fillPortLists()
{
    m_detectionPorts = PortCatalogue::digitalOutputs();
    m_detectionPorts.prepend(QString());
    m_ui.comboBox_detection_do->clear();
    m_ui.comboBox_detection_do->addItems(m_detectionPorts);
    m_feedbackPorts = PortCatalogue::digitalInputs();
    m_feedbackPorts.prepend(QString());
    m_ui.comboBox_feedback_di->clear();
    m_ui.comboBox_feedback_di->addItems(m_feedbackPorts);
}

void WeldSettingPage::setRetractionPlanStatus(bool isOn)
{
    m_ui.doubleSpinBox_retraction_distance->setEnabled(isOn);
    m_ui.doubleSpinBox_retraction_speed->setEnabled(isOn);
}

void WeldSettingPage::setWireStickingPlanStatus(bool isOn)
{
    m_ui.spinBox_detection_time->setEnabled(isOn);
    m_ui.comboBox_detection_do->setEnabled(isOn);
    m_ui.comboBox_feedback_di->setEnabled(isOn);
}

void WeldSettingPage::setFeederPlanStatus(bool isOn)
{
    m_ui.comboBox_wire_feeder_comm_type->setEnabled(isOn);
    m_ui.comboBox_wire_feed_type->setEnabled(isOn);
    m_ui.spinBox_wire_feedback_detection->setEnabled(isOn);
    m_ui.doubleSpinBox_max_feed_speed->setEnabled(isOn);
    m_ui.doubleSpinBox_manual_feed_speed->setEnabled(isOn);
    m_ui.doubleSpinBox_manual_retract_speed->setEnabled(isOn);
}

QString WeldSettingPage::recordRefusal(const QJsonObject &record)
{
    if (record.value(QLatin1String("feedback_delay")).toDouble()
        < record.value(QLatin1String("laser_check_out_time")).toDouble())
        return tr("The detected time of the light output is later than the light output "
                  "inspection time; saving failed!");
    return QString();
}

bool WeldSettingPage::validate()
{
    const QString refusal = recordRefusal(record());
    if (!refusal.isEmpty()) {
        kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_ERROR, refusal);
        FieldGuard::point(m_ui.spinBox_feedback_delay,
            tr("%1 must not be less than %2")
                .arg(FieldGuard::fieldName(m_ui.spinBox_feedback_delay),
                    FieldGuard::fieldName(m_ui.spinBox_laser_check_out_time)));
        return false;
    }
    return true;
}

void WeldSettingPage::save()
{
    if (!kellaser::PageSave::mayChange(tr("Insufficient user permissions!"), m_state->allRead()))
        return;
    if (!validate())
        return;
    kellaser::PageSave::send({this, recordKey(), saveCommand(), record(),
        [this](const QJsonArray &reply) { checkSaveResult(reply); }, [this] { readRecord(); },
        m_state});
}

void WeldSettingPage::readRecord()
{
    const QJsonValue settings = kelplugin::kelPluginInterface().getKelServiceData(recordKey());
    if (settings.isObject())
        loadRecord(settings.toObject());
    m_state->note(recordKey(), settings.isObject());
}

void WeldSettingPage::cancel()
{
    readRecord();
    kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_INFO, tr("Cancel successful"));
}

void WeldSettingPage::pause()
{
    // Blocking on purpose: the controller needs the enable commands spaced apart.
    if (switchWaitMs > 0)
        QThread::msleep(ulong(switchWaitMs));
}

bool WeldSettingPage::isStartupAccepted(const QJsonArray &reply)
{
    if (reply.isEmpty() || !reply.first().isObject())
        return false;
    const QJsonValue ret = reply.first()
                               .toObject()
                               .value(pluginKey())
                               .toObject()
                               .value(enableCommand())
                               .toObject()
                               .value(QStringLiteral("return"));
    return ret.isBool() && ret.toBool();
}

void WeldSettingPage::onSwitchMain(bool isOn)
{
    // Switching on also sends the settings on screen, so they must be the controller's;
    // switching off sends nothing but "FALSE".
    if (!kellaser::PageSave::mayChange(
            tr("Insufficient user permissions!"), !isOn || m_state->allRead()))
        return;
    pause();
    auto &host = kelplugin::kelPluginInterface();
    if (host.getRobotEleStatus()) {
        kelplugin::ThrowLog(
            pluginKey(), kelplugin::THROW_LOG_ERROR, tr("Do not modify while powered on!"));
        return;
    }
    if (!isOn) {
        host.commandCustomData(this, pluginKey(), enableCommand(), QStringLiteral("FALSE"));
        setEditableArea(true);
        m_ui.pushButton_main_enable->setOn(false, true);
        return;
    }
    if (!validate()) {
        m_ui.pushButton_main_enable->setOn(false, true);
        return;
    }
    host.getKelServiceData(QStringLiteral("weld_io_config"));
    const QJsonArray reply
        = host.commandCustomData(this, pluginKey(), enableCommand(), QStringLiteral("TRUE"));
    pause();
    if (!isStartupAccepted(reply)) {
        kelplugin::ThrowLog(
            pluginKey(), kelplugin::THROW_LOG_ERROR, tr("Laser weld startup faild!"));
        return;
    }
    setEditableArea(false);
    m_ui.pushButton_main_enable->setOn(true, true);
    kellaser::CommandChannel::send(this, saveCommand(), record());
}
