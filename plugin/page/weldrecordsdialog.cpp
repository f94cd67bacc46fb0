#include "weldrecordsdialog.h"

#include "core/logline.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QDateTime>
#include <QFileDialog>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QSaveFile>
#include <QTableWidgetItem>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

const QString kPluginKey = QStringLiteral("kellaserweld");
const QString kRecordsKey = QStringLiteral("weld_records");

// A sample's keys and the CSV columns they go to, with their units.
const struct
{
    const char *key;
    const char *column;
} kSampleColumns[] {
    {"power", "power_W"},
    {"frequency", "frequency_Hz"},
    {"duty_cycle", "duty_cycle_pct"},
    {"wire_speed", "wire_speed_mm_s"},
    {"weld_speed", "weld_speed_mm_s"},
};

double numberOr0(const QJsonValue &value)
{
    const double number = value.toDouble();
    return value.isDouble() && std::isfinite(number) ? number : 0.0;
}

// Whole numbers as the controller means them; absurd magnitudes are pinned, not overflowed.
qint64 wholeOr0(const QJsonValue &value)
{
    constexpr double kLimit = 1e15;
    return qint64(std::clamp(numberOr0(value), -kLimit, kLimit));
}

int intOr0(const QJsonValue &value)
{
    return int(std::clamp<qint64>(
        wholeOr0(value), std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

QString fixed(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

QString startText(const QJsonValue &start)
{
    const QString text = start.toString();
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    return time.isValid() ? time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")) : text;
}

} // namespace

WeldRecordsDialog::WeldRecordsDialog(QWidget *parent) : QDialog(parent)
{
    m_ui.setupUi(this);
    setWindowFlags(Qt::Dialog | Qt::WindowCloseButtonHint);
    m_ui.tableWidget_welds->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui.tableWidget_welds->horizontalHeader()->setStretchLastSection(true);
    connect(m_ui.pushButton_close, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui.tableWidget_welds, &QTableWidget::itemSelectionChanged, this,
        &WeldRecordsDialog::updateButtons);
    connect(m_ui.pushButton_exportSelected, &QPushButton::clicked, this, [this] {
        const QList<QTableWidgetItem *> selected = m_ui.tableWidget_welds->selectedItems();
        if (selected.isEmpty())
            return;
        const int row = selected.first()->row();
        const int id = m_ui.tableWidget_welds->item(row, Start)->data(Qt::UserRole).toInt();
        exportWelds({id}, QStringLiteral("weld_%1.csv").arg(id));
    });
    connect(m_ui.pushButton_exportAll, &QPushButton::clicked, this,
        [this] { exportWelds(allIds(), QStringLiteral("welds.csv")); });
    showRecords(QJsonValue());
}

WeldRecordsDialog::~WeldRecordsDialog() = default;

WeldRecordsDialog::Totals WeldRecordsDialog::totalsFrom(const QJsonValue &records)
{
    const QJsonObject totals = records.toObject().value(QLatin1String("totals")).toObject();
    Totals result;
    result.welds = intOr0(totals.value(QLatin1String("welds")));
    result.laserOnMs = wholeOr0(totals.value(QLatin1String("laser_on_ms")));
    result.wireUsedMm = numberOr0(totals.value(QLatin1String("wire_used_mm")));
    return result;
}

QString WeldRecordsDialog::totalsText(const Totals &totals)
{
    return tr("Welds: %1    Laser on: %2 s    Wire used: %3 mm")
        .arg(totals.welds)
        .arg(fixed(double(totals.laserOnMs) / 1000.0, 1))
        .arg(fixed(totals.wireUsedMm, 1));
}

QByteArray WeldRecordsDialog::csvHeader()
{
    QByteArray header = "weld_id,t_ms";
    for (const auto &column : kSampleColumns)
        header += QByteArray(",") + column.column;
    return header + '\n';
}

QByteArray WeldRecordsDialog::csvRows(int id, const QJsonValue &record)
{
    QByteArray rows;
    const QJsonArray samples = record.toObject().value(QLatin1String("samples")).toArray();
    for (const QJsonValue &entry : samples) {
        if (!entry.isObject())
            continue;
        const QJsonObject sample = entry.toObject();
        rows += QByteArray::number(id) + ','
            + QByteArray::number(wholeOr0(sample.value(QLatin1String("t"))));
        for (const auto &column : kSampleColumns) {
            rows += ','
                + QByteArray::number(numberOr0(sample.value(QLatin1String(column.key))), 'g', 12);
        }
        rows += '\n';
    }
    return rows;
}

bool WeldRecordsDialog::exportCsv(const QString &path, const QList<int> &ids)
{
    QSaveFile file(path);
    QStringList missing;
    bool written = file.open(QIODevice::WriteOnly) && file.write(csvHeader()) >= 0;
    for (int id : ids) {
        if (!written)
            break;
        const QJsonValue record = kelplugin::kelPluginInterface().getKelServiceData(
            QStringLiteral("weld_record.%1").arg(id));
        if (!record.isObject())
            missing.append(QString::number(id));
        written = file.write(csvRows(id, record)) >= 0;
    }
    // QSaveFile replaces the file only on a complete commit: a failed export leaves what was
    // there before.
    written = written && file.commit();
    if (!written) {
        kelplugin::ThrowLog(kPluginKey, kelplugin::THROW_LOG_ERROR,
            tr("Export failed: %1 could not be written (%2). Nothing was changed.")
                .arg(path, file.errorString()));
        kellaser::logError() << "WeldRecordsDialog::exportCsv failed." << path
                             << file.errorString();
        return false;
    }
    if (!missing.isEmpty()) {
        kelplugin::ThrowLog(kPluginKey, kelplugin::THROW_LOG_WARNING,
            tr("The controller no longer keeps weld %1; the export leaves it out.")
                .arg(missing.join(QStringLiteral(", "))));
    }
    kelplugin::ThrowLog(
        kPluginKey, kelplugin::THROW_LOG_INFO, tr("Welds exported to %1").arg(path));
    return true;
}

void WeldRecordsDialog::reload()
{
    showRecords(kelplugin::kelPluginInterface().getKelServiceData(kRecordsKey));
}

void WeldRecordsDialog::showRecords(const QJsonValue &records)
{
    m_ui.label_weldTotals->setText(totalsText(totalsFrom(records)));
    const QJsonArray welds = records.toObject().value(QLatin1String("welds")).toArray();
    QTableWidget *table = m_ui.tableWidget_welds;
    table->clearContents();
    table->setRowCount(0);
    for (const QJsonValue &entry : welds) {
        // An entry that is not an object has nothing to show and nothing to export.
        if (!entry.isObject())
            continue;
        const QJsonObject weld = entry.toObject();
        const auto text
            = [&weld](const char *key) { return weld.value(QLatin1String(key)).toString(); };
        const auto number
            = [&weld](const char *key) { return numberOr0(weld.value(QLatin1String(key))); };
        QStringList marks;
        if (weld.value(QLatin1String("simulated")).toBool())
            marks.append(tr("simulated"));
        // Only an explicit false means stopped: a record without the flag is not accused.
        if (!weld.value(QLatin1String("completed")).toBool(true))
            marks.append(tr("stopped"));

        const QStringList cells {startText(weld.value(QLatin1String("start"))), text("program"),
            QString::number(wholeOr0(weld.value(QLatin1String("line")))), text("data_set"),
            text("match_set"), fixed(number("duration_ms") / 1000.0, 2),
            fixed(number("length_mm"), 1), fixed(number("laser_on_ms") / 1000.0, 2),
            fixed(number("wire_mm"), 1), marks.join(QStringLiteral(", "))};
        const int row = table->rowCount();
        table->insertRow(row);
        for (int column = 0; column < ColumnCount; ++column) {
            auto *item = new QTableWidgetItem(cells.at(column));
            if (column >= Duration && column <= Wire)
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table->setItem(row, column, item);
        }
        table->item(row, Start)->setData(Qt::UserRole, intOr0(weld.value(QLatin1String("id"))));
    }
    updateButtons();
}

void WeldRecordsDialog::showEvent(QShowEvent *event)
{
    reload();
    QDialog::showEvent(event);
}

QList<int> WeldRecordsDialog::allIds() const
{
    QList<int> ids;
    for (int row = 0; row < m_ui.tableWidget_welds->rowCount(); ++row)
        ids.append(m_ui.tableWidget_welds->item(row, Start)->data(Qt::UserRole).toInt());
    // The list shows the newest first; a file reads best in the order the welds were made.
    std::sort(ids.begin(), ids.end());
    return ids;
}

void WeldRecordsDialog::exportWelds(const QList<int> &ids, const QString &suggestedName)
{
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Export welds"), suggestedName, tr("CSV files (*.csv)"));
    if (!path.isEmpty())
        exportCsv(path, ids);
}

void WeldRecordsDialog::updateButtons()
{
    const bool any = m_ui.tableWidget_welds->rowCount() > 0;
    m_ui.pushButton_exportAll->setEnabled(any);
    m_ui.pushButton_exportSelected->setEnabled(
        any && !m_ui.tableWidget_welds->selectedItems().isEmpty());
}
