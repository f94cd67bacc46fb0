#include "factoryrecords.h"

#include <QJsonArray>

namespace kelcontroller {

namespace {

QJsonArray curveNodes(double rawMax, int physicalMin, int physicalMax)
{
    return QJsonArray {QJsonArray {0.0, physicalMin}, QJsonArray {rawMax, physicalMax}};
}

QJsonObject weldDataSet(int number, const QString &tips, int speed, int power, int frequency,
    int duty, bool wire, int wireSpeed)
{
    return QJsonObject {
        {QStringLiteral("LsDataID"), QStringLiteral("LsData%1").arg(number)},
        {QStringLiteral("Tips"), tips},
        {QStringLiteral("toggle_start"), true},
        {QStringLiteral("laser_power_start"), power / 2},
        {QStringLiteral("frequency_start"), frequency},
        {QStringLiteral("duty_cycle_start"), duty},
        {QStringLiteral("ramp_mode_start"), 2},
        {QStringLiteral("ramp_value_start"), 100},
        {QStringLiteral("delay_time_start"), 50},
        {QStringLiteral("welding_speed"), speed},
        {QStringLiteral("laser_power_weld"), power},
        {QStringLiteral("frequency_weld"), frequency},
        {QStringLiteral("duty_cycle_weld"), duty},
        {QStringLiteral("toggle_end"), true},
        {QStringLiteral("laser_power_end"), power / 3},
        {QStringLiteral("frequency_end"), frequency},
        {QStringLiteral("duty_cycle_end"), duty},
        {QStringLiteral("ramp_mode_end"), 2},
        {QStringLiteral("ramp_value_end"), 100},
        {QStringLiteral("delay_time_end"), 50},
        {QStringLiteral("wire_feed_enable_start"), wire},
        {QStringLiteral("feeding_speed_start"), wire ? wireSpeed / 2 : 0},
        {QStringLiteral("wire_mode_start"), 0},
        {QStringLiteral("wire_feed_time_start"), wire ? 100 : 0},
        {QStringLiteral("feeding_speed_run"), wire ? wireSpeed : 0},
        {QStringLiteral("wire_feed_enable_end"), wire},
        {QStringLiteral("wire_speed_end"), wire ? wireSpeed / 2 : 0},
        {QStringLiteral("wire_mode_end"), 0},
        {QStringLiteral("wire_feed_time_end"), wire ? 100 : 0},
        {QStringLiteral("wire_stick_enable_end"), false},
        {QStringLiteral("wire_retraction_end"), wire},
        {QStringLiteral("wire_retract_end"), wire ? 20 : 0},
        {QStringLiteral("wire_retract_time_end"), wire ? 200 : 0},
        {QStringLiteral("wire_fill_com_end"), false},
        {QStringLiteral("fill_delay_time_end"), 0},
        {QStringLiteral("fill_wire_speed_end"), 0},
        {QStringLiteral("fill_wire_time_end"), 0},
    };
}

QJsonObject matchSet(int number, const QJsonArray &nodes)
{
    return QJsonObject {
        {QStringLiteral("PowerDataID"), QStringLiteral("PowerData%1").arg(number)},
        {QStringLiteral("power_enable"), true},
        {QStringLiteral("frequency_enable"), false},
        {QStringLiteral("dutycycle_enable"), false},
        {QStringLiteral("power_data"), nodes},
    };
}

} // namespace

QJsonObject FactoryRecords::ioConfig()
{
    // Outputs on DO1.., inputs on DI1..; analogue set-points on AO1..AO4, feedback on AI1..AI2.
    // Only the two rows without a switch (laser on, assist gas) are live out of the box.
    return QJsonObject {
        {QStringLiteral("laser_enable_port"), QStringLiteral("DO1")},
        {QStringLiteral("power_type"), 0},
        {QStringLiteral("power_port"), QStringLiteral("AO1")},
        {QStringLiteral("power_enabled"), false},
        {QStringLiteral("frequency_type"), 0},
        {QStringLiteral("frequency_port"), QStringLiteral("AO2")},
        {QStringLiteral("frequency_enabled"), false},
        {QStringLiteral("duty_cycle_type"), 0},
        {QStringLiteral("duty_cycle_port"), QStringLiteral("AO3")},
        {QStringLiteral("duty_cycle_enabled"), false},
        {QStringLiteral("red_light_port"), QStringLiteral("DO3")},
        {QStringLiteral("red_light_enabled"), false},
        {QStringLiteral("gas_protect_port"), QStringLiteral("DO2")},
        {QStringLiteral("wire_speed_type"), 0},
        {QStringLiteral("wire_speed_port"), QStringLiteral("AO4")},
        {QStringLiteral("wire_speed_enabled"), false},
        {QStringLiteral("wire_feed_port"), QStringLiteral("DO4")},
        {QStringLiteral("wire_feed_enabled"), false},
        {QStringLiteral("retract_direction_port"), QStringLiteral("DO5")},
        {QStringLiteral("retract_direction_enabled"), false},
        {QStringLiteral("manual_wire_feed_port"), QStringLiteral("DO6")},
        {QStringLiteral("manual_wire_feed_enabled"), false},
        {QStringLiteral("manual_retract_port"), QStringLiteral("DO7")},
        {QStringLiteral("manual_retract_enabled"), false},
        {QStringLiteral("power_feedback_type"), 0},
        {QStringLiteral("power_feedback_port"), QStringLiteral("AI1")},
        {QStringLiteral("power_feedback_enabled"), false},
        {QStringLiteral("light_feedback_port"), QStringLiteral("DI1")},
        {QStringLiteral("light_feedback_enabled"), false},
        {QStringLiteral("laser_alarm_port"), QStringLiteral("DI2")},
        {QStringLiteral("laser_alarm_enabled"), false},
        {QStringLiteral("shield_gas_feedback_port"), QStringLiteral("DI3")},
        {QStringLiteral("shield_gas_feedback_enabled"), false},
        {QStringLiteral("wire_speed_feedback_type"), 0},
        {QStringLiteral("wire_speed_feedback_port"), QStringLiteral("AI2")},
        {QStringLiteral("wire_speed_feedback_enabled"), false},
        {QStringLiteral("wire_feed_feedback_port"), QStringLiteral("DI4")},
        {QStringLiteral("wire_feed_feedback_enabled"), false},
        {QStringLiteral("wire_feeder_alarm_port"), QStringLiteral("DI5")},
        {QStringLiteral("wire_feeder_alarm_enabled"), false},
        {QStringLiteral("adhesion_detection_en_port"), QStringLiteral("DO8")},
        {QStringLiteral("adhesion_detection_enabled"), false},
        {QStringLiteral("descent_signal_port"), QStringLiteral("DO9")},
        {QStringLiteral("descent_signal_enabled"), false},
        {QStringLiteral("adhesion_detection_feedback_port"), QStringLiteral("DI6")},
        {QStringLiteral("adhesion_detection_feedback_enabled"), false},
        {QStringLiteral("external_alarm_port"), QStringLiteral("DI7")},
        {QStringLiteral("external_alarm_enabled"), false},
    };
}

QJsonObject FactoryRecords::settingConfig()
{
    return QJsonObject {
        {QStringLiteral("laser_main_enable"), false},
        {QStringLiteral("laser_comm_type"), 0},
        {QStringLiteral("laser_power"), 3000},
        {QStringLiteral("feedback_delay"), 1000},
        {QStringLiteral("pre_gas_time"), 300},
        {QStringLiteral("delay_off_time"), 300},
        {QStringLiteral("detection_delay"), 300},
        {QStringLiteral("manual_gas_time"), 5000},
        {QStringLiteral("retraction_enable"), false},
        {QStringLiteral("retraction_distance"), 5},
        {QStringLiteral("retraction_speed"), 20},
        {QStringLiteral("wiresticking_enable"), false},
        {QStringLiteral("detection_time"), 200},
        {QStringLiteral("detection_do"), QString()},
        {QStringLiteral("feedback_di"), QString()},
        {QStringLiteral("feeder_enable"), true},
        {QStringLiteral("wire_feeder_comm_type"), 0},
        {QStringLiteral("wire_feed_type"), 0},
        {QStringLiteral("max_feed_speed"), 200},
        {QStringLiteral("manual_feed_speed"), 10},
        {QStringLiteral("manual_retract_speed"), 10},
        {QStringLiteral("wire_feedback_detection"), 1000},
        {QStringLiteral("laser_check_out_time"), 200},
    };
}

QJsonObject FactoryRecords::curveConfig()
{
    // Raw values are the 0..10 V of an analogue output.
    return QJsonObject {
        {QStringLiteral("laser_power_node"), 2},
        {QStringLiteral("power_nodes_data"), curveNodes(10.0, 0, 6000)},
        {QStringLiteral("laser_feed_node"), 2},
        {QStringLiteral("feed_nodes_data"), curveNodes(10.0, 0, 200)},
        {QStringLiteral("laser_frequency_node"), 2},
        {QStringLiteral("frequency_nodes_data"), curveNodes(10.0, 0, 5000)},
        {QStringLiteral("laser_dutycycle_node"), 2},
        {QStringLiteral("dutycycle_nodes_data"), curveNodes(10.0, 1, 100)},
    };
}

QJsonObject FactoryRecords::paramConfig()
{
    return QJsonObject {
        {QStringLiteral("LsData1"),
            weldDataSet(1, QStringLiteral("Steel 1 mm"), 20, 1500, 2000, 100, false, 0)},
        {QStringLiteral("LsData2"),
            weldDataSet(2, QStringLiteral("Steel 2 mm, wire"), 15, 2500, 2000, 100, true, 40)},
        {QStringLiteral("LsData3"),
            weldDataSet(3, QStringLiteral("Aluminium 1.5 mm"), 25, 2000, 5000, 80, true, 60)},
    };
}

QJsonObject FactoryRecords::paramMatch()
{
    const auto row = [](int speed, int power, int frequency, int duty) {
        return QJsonArray {double(speed), double(power), double(frequency), double(duty)};
    };
    return QJsonObject {
        {QStringLiteral("PowerData1"),
            matchSet(1,
                QJsonArray {row(5, 800, 2000, 40), row(10, 1200, 3000, 60), row(20, 1800, 4000, 80),
                    row(30, 2400, 5000, 100)})},
        {QStringLiteral("PowerData2"),
            matchSet(2,
                QJsonArray {row(10, 1000, 2000, 50), row(20, 1500, 2500, 60),
                    row(40, 2200, 3000, 70), row(60, 3000, 3500, 80)})},
    };
}

QStringList FactoryRecords::points()
{
    return {QStringLiteral("p10"), QStringLiteral("p20"), QStringLiteral("p30")};
}

QHash<QString, QVector3D> FactoryRecords::pointPositions()
{
    return {{QStringLiteral("p10"), QVector3D(400.0f, 0.0f, 300.0f)},
        {QStringLiteral("p20"), QVector3D(500.0f, 0.0f, 300.0f)},
        {QStringLiteral("p30"), QVector3D(500.0f, 100.0f, 300.0f)}};
}

QJsonObject FactoryRecords::record(const QString &key)
{
    if (key == QLatin1String("weld_io_config"))
        return ioConfig();
    if (key == QLatin1String("weld_setting_config"))
        return settingConfig();
    if (key == QLatin1String("weld_curve_config"))
        return curveConfig();
    if (key == QLatin1String("weld_param_config"))
        return paramConfig();
    if (key == QLatin1String("weld_param_match"))
        return paramMatch();
    return QJsonObject();
}

} // namespace kelcontroller
