#pragma once

#include "ui_laserweldpage.h"

#include <QWidget>

class CharacteristicsCurvePage;
class LaserTrackingPage;
class PageBanner;
class QToolButton;
class WeldParameterPage;
class WeldSettingPage;
class WeldioPage;

namespace kellaser {
class RecordState;
}

// The plug-in's centre page: a navigation column on the left, and the title above the
// configuration page chosen there.
class LaserWeldPage : public QWidget
{
    Q_OBJECT
public:
    explicit LaserWeldPage(QWidget *parent = nullptr);
    ~LaserWeldPage() override;

    // Style sheets that depend on the pendant's look, applied from the plug-in's render step.
    void initRenderStyle();
    // Starts the controller's monitor stream and shows the live values.
    void openMonitor();
    // Writes the five records with the controller's identity to path; false, told to the
    // operator, when it cannot.
    Q_INVOKABLE bool backupTo(const QString &path);
    // Opens the restore preview of a backup file; the dialog stays open to report.
    Q_INVOKABLE void openRestore(const QString &path);

    // The line above the page shown saying why it cannot be changed (empty when it can).
    PageBanner *banner() const { return m_banner; }
    // Reads the page shown again, as a show does. keepEdits keeps a page the operator has
    // edited as it is and tells them so; pages not shown read on their next show anyway.
    void readShownPage(bool keepEdits);

protected:
    void showEvent(QShowEvent *event) override;
    // Asks about unsaved changes on every page before the pendant window closes.
    void closeEvent(QCloseEvent *event) override;

private slots:
    // While welding is on, only the device settings page's main switch stays usable.
    void setPageStatus(bool enable);

private:
    void addNavigation(
        const QString &icon, const QString &title, const QString &caption, QWidget *page);
    void selectPage(QToolButton *button, const QString &title);
    void checkNavigation(int pageIndex);
    kellaser::RecordState *recordState(QWidget *page) const;
    void updateBanner();

    Ui::LaserWeldPage m_ui;
    WeldSettingPage *m_settingPage = nullptr;
    WeldioPage *m_ioPage = nullptr;
    CharacteristicsCurvePage *m_curvePage = nullptr;
    WeldParameterPage *m_parameterPage = nullptr;
    LaserTrackingPage *m_trackingPage = nullptr;
    PageBanner *m_banner = nullptr;
};
