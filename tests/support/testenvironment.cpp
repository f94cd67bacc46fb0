#include "testenvironment.h"

#include "kelplugin/qflog.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QStringList>
#include <QTableWidget>

static void initKellaserweldResourcesForTests()
{
    Q_INIT_RESOURCE(kellaserweld);
    Q_INIT_RESOURCE(kellaserweld_lang);
    Q_INIT_RESOURCE(kellaserweld_icons);
}

namespace testenv {

void initPluginResources()
{
    initKellaserweldResourcesForTests();
}

QString logFilePath()
{
    return QDir::current().absoluteFilePath(
        QStringLiteral("log/kelplugin/kellaserweld/kellaserweld"));
}

void resetLogFile()
{
    kelplugin::QFLog::closeAll();
    QFile::remove(logFilePath());
}

QStringList logLines()
{
    QFile file(logFilePath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QImage indicatorImage(const QWidget *indicator)
{
    auto *label = indicator ? indicator->findChild<QLabel *>(QStringLiteral("label")) : nullptr;
    return label ? label->pixmap(Qt::ReturnByValue).toImage() : QImage();
}

QList<QStringList> itemTexts(const QTableWidget *table)
{
    QList<QStringList> rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < table->columnCount(); ++column) {
            const QTableWidgetItem *item = table->item(row, column);
            cells.append(item ? item->text() : QStringLiteral("?"));
        }
        rows.append(cells);
    }
    return rows;
}

QJsonObject patched(QJsonObject base, const QJsonObject &changes)
{
    for (auto it = changes.constBegin(); it != changes.constEnd(); ++it) {
        if (it.value().isNull())
            base.remove(it.key());
        else
            base.insert(it.key(), it.value());
    }
    return base;
}

} // namespace testenv
