#pragma once

#include <QJsonObject>
#include <QString>

class QImage;
class QTableWidget;
class QWidget;

namespace testenv {

// Registers the plug-in's resources (icons, style, translation) in a test process that links
// the plug-in's code instead of loading the module.
void initPluginResources();

// Absolute path of the plug-in's log file under the current working folder.
QString logFilePath();
// Empties the plug-in's log file (closing the host's cached handle first).
void resetLogFile();
// The lines of the plug-in's log file.
QStringList logLines();

// The picture of the status indicator's label "label" (null without one).
QImage indicatorImage(const QWidget *indicator);

// The texts of a table's items, row by row; "?" where a cell has no item.
QList<QStringList> itemTexts(const QTableWidget *table);

// base with the changes applied; a null change removes the key.
QJsonObject patched(QJsonObject base, const QJsonObject &changes);

} // namespace testenv
