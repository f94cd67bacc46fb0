#pragma once

#include <QDir>
#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>

class PendantWindow;
class QImage;
class ProgramEditor;
class QWidget;

namespace kelcontroller {
class ControllerSimulator;
}

// Renders the pendant window and every page, dialog and instruction editor the plug-ins
// provide to PNG files, for documentation and for checking the look without a display.
class Screenshotter
{
public:
    // With a controller, the shots end with three scenes: a calibration node typed off its line
    // after Compute, a refused field and the unsaved-changes question (the edit discarded), and
    // a weld run (the program editor during the run and the monitor's trend of it). The records
    // are put back afterwards; the weld stays in the weld log.
    Screenshotter(PendantWindow *window, const QString &folder,
        kelcontroller::ControllerSimulator *controller = nullptr);

    // Returns the files written; problems go to errors().
    QStringList run();
    QStringList errors() const { return m_errors; }

private:
    void save(QWidget *widget, const QString &name);
    void saveImage(const QImage &image, const QString &name);
    // False when the page has no navigation column.
    bool shootPluginPages(QWidget *centre, const QString &prefix);
    // The centre area as the operator sees it and, when the page scrolls, the whole page.
    void shootView(QWidget *centre, QWidget *page, const QString &name);
    // False when the page has no visible tabs.
    bool shootTabs(QWidget *centre, QWidget *page, const QString &prefix);
    void shootDetailedEditor(QWidget *centre, QWidget *page, QWidget *tab, const QString &prefix);
    void fillProgram(ProgramEditor *editor);
    void shootDialogs(QWidget *centre, const QString &prefix);
    void openRestorePreview(QWidget *centre);
    void shootInstructionEditors();
    void shootWeldRun();
    void shootFitQuality();
    // A number typed below its field's minimum, and the question about unsaved changes.
    void shootFieldChecks();
    // Restores two of the preview's three changed records, then the third: the records end as
    // they were before the preview's edits, or errors() says what differs.
    void restoreFromPreview(QWidget *centre);

    PendantWindow *m_window;
    kelcontroller::ControllerSimulator *m_controller;
    QDir m_folder;
    QTemporaryDir m_scratch;
    QStringList m_written;
    QStringList m_errors;
    // The records as the restore preview's backup holds them.
    QJsonObject m_backedUp;
};
