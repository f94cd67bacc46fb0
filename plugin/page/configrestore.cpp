#include "configrestore.h"

#include "characteristicscurvepage.h"
#include "configbackup.h"
#include "matchingcurve.h"
#include "weldiopage.h"
#include "weldparameterpage.h"
#include "weldsettingpage.h"

#include "core/commandchannel.h"

#include "kelplugin/interfacemanager.h"

#include <QHash>
#include <QJsonArray>

namespace {

QString curveRefusal(const QJsonObject &record)
{
    for (int c = 0; c < CharacteristicsCurvePage::CurveCount; ++c) {
        const auto save = CharacteristicsCurvePage::curveSave(CharacteristicsCurvePage::Curve(c));
        if (!record.contains(save.nodesKey) && !record.contains(save.nodeCountKey))
            continue;
        QVector<QPointF> nodes;
        for (const QJsonValue &row : record.value(save.nodesKey).toArray()) {
            const QJsonArray pair = row.toArray();
            nodes.append({pair.at(0).toDouble(), pair.at(1).toDouble()});
        }
        const QString refusal = CharacteristicsCurvePage::nodesRefusal(nodes);
        if (!refusal.isEmpty())
            return save.nodesKey + QStringLiteral(": ") + refusal;
    }
    return QString();
}

QString matchRefusal(const QJsonObject &record)
{
    for (auto it = record.constBegin(); it != record.constEnd(); ++it) {
        const QJsonObject set = it.value().toObject();
        QVector<kellaser::MatchingCurve::Node> nodes;
        for (const QJsonValue &row : set.value(QLatin1String("power_data")).toArray()) {
            const QJsonArray cells = row.toArray();
            // The editor shows four nodes of four whole numbers; its check sees those.
            if (nodes.size() < WeldParameterPage::matchingRows - 1)
                nodes.append({double(cells.at(0).toInt()), double(cells.at(1).toInt()),
                    double(cells.at(2).toInt()), double(cells.at(3).toInt())});
        }
        const std::array<bool, 4> checked {true, set.value(QLatin1String("power_enable")).toBool(),
            set.value(QLatin1String("frequency_enable")).toBool(),
            set.value(QLatin1String("dutycycle_enable")).toBool()};
        const auto refused = kellaser::MatchingCurve::firstRefusal(nodes, checked);
        if (refused.node >= 0)
            return it.key() + QStringLiteral(": ")
                + WeldParameterPage::matchingRefusalText(refused.column + 1, refused.node + 1);
    }
    return QString();
}

bool succeeded(const QJsonArray &reply, const QString &command, QString *message)
{
    const auto entry = kellaser::CommandChannel::findReturn(reply, command);
    if (entry.outcome == kellaser::CommandChannel::Outcome::Success)
        return true;
    *message = entry.outcome == kellaser::CommandChannel::Outcome::NotFound
        ? ConfigRestore::tr("%1: the controller did not answer.").arg(command)
        : ConfigRestore::tr("%1: the controller refused it (code %2).")
              .arg(command)
              .arg(entry.code);
    return false;
}

} // namespace

QJsonObject ConfigRestore::currentRecords()
{
    QJsonObject records;
    for (const QString &key : ConfigBackup::recordKeys()) {
        const QJsonValue record = kelplugin::kelPluginInterface().getKelServiceData(key);
        if (record.isObject())
            records.insert(key, record);
    }
    return records;
}

QString ConfigRestore::missing(const QJsonObject &currentRecords)
{
    for (const QString &key : ConfigBackup::recordKeys()) {
        if (!currentRecords.contains(key))
            return tr("the controller did not give the record %1").arg(key);
    }
    return {};
}

QString ConfigRestore::refusalNow(
    const QString &recordKey, const QJsonObject &record, const QJsonObject &currentRecords)
{
    if (!currentRecords.contains(recordKey))
        return tr("the controller did not give its own record to compare with");
    return refusal(recordKey, record, currentRecords.value(recordKey).toObject());
}

bool ConfigRestore::isWeldingOn()
{
    return kelplugin::kelPluginInterface()
        .getKelServiceData(QStringLiteral("weld_setting_config.laser_main_enable"))
        .toBool();
}

QString ConfigRestore::refusal(
    const QString &recordKey, const QJsonObject &record, const QJsonObject &current)
{
    const QString shape = ConfigBackup::shapeRefusal(recordKey, record, current);
    if (!shape.isEmpty())
        return shape;
    if (recordKey == QLatin1String("weld_io_config"))
        return WeldioPage::recordRefusal(record);
    if (recordKey == QLatin1String("weld_setting_config"))
        return WeldSettingPage::recordRefusal(record);
    if (recordKey == QLatin1String("weld_curve_config"))
        return curveRefusal(record);
    if (recordKey == QLatin1String("weld_param_match"))
        return matchRefusal(record);
    return QString();
}

QVector<ConfigRestore::Result> ConfigRestore::restore(
    QObject *sender, const QJsonObject &records, const QStringList &selected)
{
    if (isWeldingOn())
        return {{QString(), false, tr("Welding is switched on: nothing was restored.")}};
    const QJsonObject current = currentRecords();
    QVector<Result> results;
    for (const QString &key : ConfigBackup::recordKeys()) {
        if (!selected.contains(key) || !records.contains(key))
            continue;
        const QJsonObject record = records.value(key).toObject();
        Result result {key, false, refusalNow(key, record, current)};
        if (!result.message.isEmpty()) {
            results.append(result);
            continue;
        }
        QStringList failures;
        QString message;
        const auto send = [&](const QString &command, const QJsonObject &payload) {
            if (!succeeded(
                    kellaser::CommandChannel::send(sender, command, payload), command, &message))
                failures.append(message);
        };
        if (key == QLatin1String("weld_curve_config")) {
            // One command per curve, as the curve page's tabs save them.
            for (int c = 0; c < CharacteristicsCurvePage::CurveCount; ++c) {
                const auto save
                    = CharacteristicsCurvePage::curveSave(CharacteristicsCurvePage::Curve(c));
                if (record.contains(save.nodesKey))
                    send(save.command,
                        {{save.nodeCountKey, record.value(save.nodeCountKey)},
                            {save.nodesKey, record.value(save.nodesKey)}});
            }
        } else {
            static const QHash<QString, QString> commands {
                {QStringLiteral("weld_io_config"), QStringLiteral("set_weld_io_config")},
                {QStringLiteral("weld_setting_config"), QStringLiteral("set_weld_setting_config")},
                {QStringLiteral("weld_param_config"), QStringLiteral("set_weld_param_list_config")},
                {QStringLiteral("weld_param_match"), QStringLiteral("set_weld_param_match_config")},
            };
            // The controller replaces the sets named; an empty list would be refused for
            // nothing.
            if (!record.isEmpty())
                send(commands.value(key), record);
        }
        result.restored = failures.isEmpty();
        result.message = failures.isEmpty() ? tr("Restored.") : failures.join(QLatin1Char('\n'));
        results.append(result);
    }
    return results;
}
