#include "laserweldpage.h"

#include "buttonmonitorpage.h"
#include "characteristicscurvepage.h"
#include "configbackup.h"
#include "configrestore.h"
#include "editedform.h"
#include "lasertrackingpage.h"
#include "pagesave.h"
#include "recordstate.h"
#include "restoredialog.h"
#include "weldiopage.h"
#include "weldparameterpage.h"
#include "weldsettingpage.h"

#include "core/logline.h"
#include "widget/pagebanner.h"
#include "widget/stylesheet.h"
#include "widget/switchbutton.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QPainter>
#include <QSaveFile>
#include <QTabWidget>
#include <QToolButton>

namespace {

const char *const kPageIndex = "pageIndex";

QIcon navigationIcon(const QString &path)
{
    // The checked button is dark red; its icon turns white there, like its caption.
    QIcon icon(path);
    QPixmap white(path);
    if (!white.isNull()) {
        QPainter painter(&white);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(white.rect(), Qt::white);
        painter.end();
        icon.addPixmap(white, QIcon::Normal, QIcon::On);
    }
    return icon;
}

const QString &scrollBarStyle()
{
    static const QString style = QStringLiteral(
        "QScrollBar:vertical, QScrollBar:horizontal {background:#f5f5f5;"
        "border:1px solid #c8c8c8;border-radius:6px;margin:0px;min-width:30px;min-height:8px;}"
        "QScrollBar::handle:vertical, QScrollBar::handle:horizontal {background:#c8c8c8;"
        "border-radius:10px;min-width:30px;min-height:8px;}"
        "QScrollBar::handle:vertical:hover, QScrollBar::handle:horizontal:hover "
        "{background:#b0b0b0;}"
        "QScrollBar::add-line, QScrollBar::sub-line {border:none;background:none;width:0px;"
        "height:0px;}");
    return style;
}

} // namespace

LaserWeldPage::LaserWeldPage(QWidget *parent) : QWidget(parent)
{
    kellaser::logInfo() << "LaserWeldPage::LaserWeldPage" << 15;
    m_ui.setupUi(this);

    auto *navigation = qobject_cast<QBoxLayout *>(m_ui.wgtNav->layout());
    if (!navigation)
        return;
    navigation->setAlignment(Qt::AlignTop);
    navigation->setSpacing(0);
    navigation->setContentsMargins(0, 0, 0, 0);

    // The form's placeholder pages go, so that page indices are those of the navigation.
    while (QWidget *placeholder = m_ui.stackedWidget->widget(0)) {
        m_ui.stackedWidget->removeWidget(placeholder);
        delete placeholder;
    }

    // The sheets go on before the pages exist and the pages are built inside the stacked widget,
    // so each page takes the inherited style while it is built; a sheet set afterwards, or a
    // move into the stack, would push the style through every widget of every page again. For
    // the same reason the scroll bars get render()'s sheet now, and render() finds it in place.
    kellaser::applyStyleSheet(m_ui.scrollArea, scrollBarStyle());
    m_ui.wgtContent->setStyleSheet(QStringLiteral("QWidget{background-color:white;}"));
    m_ui.wgtTitle->setStyleSheet(QStringLiteral("QWidget{background-color:white;}"));
    m_ui.lblTitle->setStyleSheet(
        QStringLiteral("QLabel#lblTitle{font:bold 16px;min-height:30px;}"));

    m_settingPage = new WeldSettingPage(m_ui.stackedWidget);
    addNavigation(QStringLiteral(":/png/meanlist/LaserWeldDeviceSetting.png"),
        tr("Parmeter Setting"), tr("Weld Setup"), m_settingPage);
    m_ioPage = new WeldioPage(m_settingPage, m_ui.stackedWidget);
    addNavigation(QStringLiteral(":/png/meanlist/LaserWeldIO.png"), tr("Soldering I/O"),
        tr("Weld I/O"), m_ioPage);
    m_curvePage = new CharacteristicsCurvePage(m_settingPage, m_ui.stackedWidget);
    addNavigation(QStringLiteral(":/png/meanlist/LaserWeldCharacteristicCurve.png"),
        tr("Characteristic curves"), tr("Char. Curve"), m_curvePage);
    m_parameterPage = new WeldParameterPage(m_settingPage, m_ui.stackedWidget);
    addNavigation(QStringLiteral(":/png/meanlist/LaserWeldProcessSetting.png"),
        tr("Welding Parameters"), tr("Weld Data"), m_parameterPage);
    m_trackingPage = new LaserTrackingPage(m_ui.stackedWidget);
    addNavigation(QStringLiteral(":/png/meanlist/LaserWeldWeaveFunction.png"), tr("Laser Tracking"),
        tr("Laser Tracking"), m_trackingPage);

    connect(
        m_settingPage->mainSwitch(), &SwitchButton::onChanged, this, &LaserWeldPage::setPageStatus);

    // Outside the pages, which may be disabled as a whole, so that it can always be read.
    m_banner = new PageBanner(this);
    m_ui.verticalLayout_2->insertWidget(1, m_banner);
    connect(
        m_settingPage->mainSwitch(), &SwitchButton::onChanged, this, &LaserWeldPage::updateBanner);
    connect(
        m_ui.stackedWidget, &QStackedWidget::currentChanged, this, &LaserWeldPage::updateBanner);
    for (QWidget *page : {static_cast<QWidget *>(m_settingPage), static_cast<QWidget *>(m_ioPage),
             static_cast<QWidget *>(m_curvePage), static_cast<QWidget *>(m_parameterPage)}) {
        connect(
            recordState(page), &kellaser::RecordState::changed, this, &LaserWeldPage::updateBanner);
    }
    // A controller reached again may hold other values than those on screen.
    connect(&kelplugin::kelPluginInterface(), &kelplugin::InterfaceManager::sigNetworkConnect, this,
        [this] { readShownPage(true); });
    // Watching a weld changes nothing, so the monitor stays at hand while the pages are locked.
    connect(m_ui.pushButton_monitor, &QPushButton::clicked, this, &LaserWeldPage::openMonitor);
    connect(m_ui.pushButton_backup, &QPushButton::clicked, this, [this] {
        const QString name
            = QStringLiteral("kellaserweld-%1.json")
                  .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss")));
        const QString path = QFileDialog::getSaveFileName(
            this, tr("Back up the configuration"), name, tr("Backups (*.json)"));
        if (!path.isEmpty())
            backupTo(path);
    });
    connect(m_ui.pushButton_restore, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getOpenFileName(
            this, tr("Restore the configuration"), QString(), tr("Backups (*.json)"));
        if (!path.isEmpty())
            openRestore(path);
    });
}

bool LaserWeldPage::backupTo(const QString &path)
{
    const QJsonValue identity
        = kelplugin::kelPluginInterface().getKelServiceData(QStringLiteral("controller_identity"));
    const QJsonObject records = ConfigRestore::currentRecords();
    // A backup with a record left out would restore as if that record were empty.
    const QString missing = ConfigRestore::missing(records);
    if (!missing.isEmpty()) {
        kelplugin::ThrowLog(QStringLiteral("kellaserweld"), kelplugin::THROW_LOG_ERROR,
            tr("Backup failed: %1").arg(missing));
        return false;
    }
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(
            ConfigBackup::write(records, identity.toObject(), QDateTime::currentDateTimeUtc()));
        if (file.commit()) {
            kelplugin::ThrowLog(QStringLiteral("kellaserweld"), kelplugin::THROW_LOG_INFO,
                tr("Configuration backed up to %1").arg(path));
            return true;
        }
    }
    kelplugin::ThrowLog(QStringLiteral("kellaserweld"), kelplugin::THROW_LOG_ERROR,
        tr("Backup failed: %1").arg(file.errorString()));
    return false;
}

void LaserWeldPage::openRestore(const QString &path)
{
    auto *dialog = findChild<RestoreDialog *>(QString(), Qt::FindDirectChildrenOnly);
    if (!dialog) {
        dialog = new RestoreDialog(this);
        // The page shown must not keep values a later Save would write over the restore with.
        connect(dialog, &RestoreDialog::restored, this, [this] { readShownPage(false); });
    }
    dialog->openFile(path);
    dialog->show();
}

LaserWeldPage::~LaserWeldPage() = default;

void LaserWeldPage::openMonitor()
{
    // The plug-in gives this page its one monitor dialog; a page on its own makes one.
    auto *monitor = findChild<ButtonMonitorPage *>(QString(), Qt::FindDirectChildrenOnly);
    if (!monitor)
        monitor = new ButtonMonitorPage(this);
    monitor->openMonitor();
}

void LaserWeldPage::addNavigation(
    const QString &icon, const QString &title, const QString &caption, QWidget *page)
{
    const int index = m_ui.stackedWidget->addWidget(page);
    auto *button = new QToolButton(m_ui.wgtNav);
    button->setText(caption);
    button->setCheckable(true);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setMinimumHeight(42);
    button->setProperty(kPageIndex, index);
    connect(
        button, &QToolButton::clicked, this, [this, button, title] { selectPage(button, title); });
    if (QFile::exists(icon))
        button->setIcon(navigationIcon(icon));
    // As large as the 42 px button leaves room for above its caption.
    button->setIconSize(QSize(20, 20));
    button->setSizePolicy(QSizePolicy::Expanding, button->sizePolicy().verticalPolicy());
    button->setStyleSheet(QStringLiteral(
        "QToolButton {height: 30px;padding: 0px 6px;background-color: rgb(235, 235, 235);"
        "border: none;border-radius: 3px;font: 17px;color: black;}"
        "QToolButton:hover {background: rgb(99, 99, 99);background-color: rgb(135, 161, 174);}"
        "QToolButton:pressed {background: #636363;}"
        "QToolButton:checked {background: #8a0121;color: white;}"));
    m_ui.wgtNav->layout()->addWidget(button);
    if (m_ui.stackedWidget->count() == 1)
        button->click();
}

void LaserWeldPage::selectPage(QToolButton *button, const QString &title)
{
    const int index = button->property(kPageIndex).toInt();
    QWidget *current = m_ui.stackedWidget->currentWidget();
    auto *form = dynamic_cast<EditedForm *>(current);
    if (form && m_ui.stackedWidget->widget(index) != current) {
        // The clicked button checked itself; while the question is open the page in front is
        // still the one marked.
        checkNavigation(m_ui.stackedWidget->currentIndex());
        if (!form->mayLeave(this))
            return;
    }
    m_ui.stackedWidget->setCurrentIndex(index);
    m_ui.lblTitle->setText(title);
    checkNavigation(index);
}

void LaserWeldPage::checkNavigation(int pageIndex)
{
    const auto buttons = m_ui.wgtNav->findChildren<QToolButton *>();
    for (QToolButton *button : buttons)
        button->setChecked(button->property(kPageIndex).toInt() == pageIndex);
}

void LaserWeldPage::closeEvent(QCloseEvent *event)
{
    // The page in front first, then the others in navigation order.
    QList<QWidget *> pages {m_ui.stackedWidget->currentWidget()};
    for (int i = 0; i < m_ui.stackedWidget->count(); ++i) {
        if (!pages.contains(m_ui.stackedWidget->widget(i)))
            pages.append(m_ui.stackedWidget->widget(i));
    }
    for (QWidget *page : pages) {
        auto *form = dynamic_cast<EditedForm *>(page);
        if (!form || form->mayLeave(this))
            continue;
        event->ignore();
        // The operator stays with the changes in front.
        const auto buttons = m_ui.wgtNav->findChildren<QToolButton *>();
        for (QToolButton *button : buttons) {
            if (m_ui.stackedWidget->widget(button->property(kPageIndex).toInt()) == page
                && page != m_ui.stackedWidget->currentWidget())
                button->click();
        }
        return;
    }
    event->accept();
}

void LaserWeldPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Backup and restore handle the whole cell's configuration: for those who may change it.
    const bool mayConfigure = kelplugin::kelPluginInterface().getUserOperateLevel() >= 3;
    m_ui.pushButton_backup->setVisible(mayConfigure);
    m_ui.pushButton_restore->setVisible(mayConfigure);
    const auto buttons = m_ui.wgtNav->findChildren<QToolButton *>();
    if (!buttons.isEmpty())
        buttons.first()->click();
    updateBanner();
}

kellaser::RecordState *LaserWeldPage::recordState(QWidget *page) const
{
    if (page && page == m_settingPage)
        return m_settingPage->recordState();
    if (page && page == m_ioPage)
        return m_ioPage->recordState();
    if (page && page == m_curvePage)
        return m_curvePage->recordState();
    if (page && page == m_parameterPage)
        return m_parameterPage->recordState();
    return nullptr;
}

void LaserWeldPage::updateBanner()
{
    if (!m_banner)
        return;
    QWidget *page = m_ui.stackedWidget->currentWidget();
    const kellaser::RecordState *state = recordState(page);
    const bool welding = m_settingPage && m_settingPage->isMainEnabled();
    m_banner->setReason(
        state ? kellaser::PageSave::readOnlyReason(state->allRead(), welding) : QString());
    // Tabs behind an open set editor are not on screen: nothing to switch there.
    QTabWidget *tabs = page ? page->findChild<QTabWidget *>() : nullptr;
    m_banner->followTabs(tabs && tabs->isVisibleTo(page) ? tabs : nullptr);
}

void LaserWeldPage::readShownPage(bool keepEdits)
{
    QWidget *page = m_ui.stackedWidget->currentWidget();
    if (!page || !page->isVisible())
        return;
    kellaser::RecordState *state = recordState(page);
    if (keepEdits && state && state->isEdited()) {
        kelplugin::ThrowLog(QStringLiteral("kellaserweld"), kelplugin::THROW_LOG_WARNING,
            tr("Connected to the controller again. The page keeps your unsaved changes; "
               "Cancel shows the controller's values."));
        return;
    }
    // A restore replaces what was typed: the page is to show what the controller holds now.
    if (!keepEdits && state)
        state->markFilled();
    // Every page reads its records when it is shown.
    page->hide();
    page->show();
    updateBanner();
}

void LaserWeldPage::setPageStatus(bool enable)
{
    if (m_ioPage)
        m_ioPage->setEnabled(!enable);
    if (m_curvePage)
        m_curvePage->setEnabled(!enable);
    if (m_parameterPage)
        m_parameterPage->setEnabled(!enable);
    if (m_settingPage)
        m_settingPage->setEditableArea(!enable);
}

void LaserWeldPage::initRenderStyle()
{
    kellaser::applyStyleSheet(m_ui.scrollArea, scrollBarStyle());
    if (m_settingPage)
        m_settingPage->initStyle();
    if (m_ioPage)
        m_ioPage->initStyle();
    if (m_curvePage)
        m_curvePage->initStyle();
}
