#include "screenshotter.h"

#include "pendantwindow.h"
#include "programeditor.h"
#include "skeletonform.h"

#include "controller/controllersimulator.h"
#include "controller/programrunner.h"
#include "kelplugin/rlcatalog.h"
#include "kelplugin/rlcontentbase.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

#include <memory>

namespace {

QString fileSafe(QString name)
{
    static const QRegularExpression unsafe(QStringLiteral("[^A-Za-z0-9_.-]+"));
    name.replace(unsafe, QStringLiteral("_"));
    return name;
}

QWidget *findScrollAncestor(QWidget *widget, QWidget *stop)
{
    for (QWidget *w = widget->parentWidget(); w && w != stop; w = w->parentWidget()) {
        if (qobject_cast<QScrollArea *>(w))
            return w;
    }
    return nullptr;
}

// Object names, or class names, keep the file names the same in every language.
QString pageName(const QWidget *page, const QToolButton *button)
{
    if (!page)
        return button->text();
    if (!page->objectName().isEmpty())
        return page->objectName();
    return QString::fromLatin1(page->metaObject()->className());
}

void settle()
{
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

} // namespace

Screenshotter::Screenshotter(
    PendantWindow *window, const QString &folder, kelcontroller::ControllerSimulator *controller)
    : m_window(window), m_controller(controller), m_folder(folder)
{ }

QStringList Screenshotter::run()
{
    if (!m_folder.mkpath(QStringLiteral("."))) {
        m_errors.append(QStringLiteral("cannot create %1").arg(m_folder.path()));
        return m_written;
    }
    m_window->show();
    settle();
    save(m_window, QStringLiteral("kelpendant"));

    QTabWidget *tabs = m_window->centreTabs();
    for (int i = 0; i < tabs->count(); ++i) {
        QWidget *page = tabs->widget(i);
        tabs->setCurrentIndex(i);
        settle();
        const QString prefix
            = fileSafe(page->objectName().isEmpty() ? tabs->tabText(i) : page->objectName());
        if (auto *editor = qobject_cast<ProgramEditor *>(page))
            fillProgram(editor);
        // A page with a navigation column is shot page by page instead.
        if (!shootPluginPages(page, prefix)) {
            save(page, prefix);
            shootTabs(page, page, prefix);
        }
        if (m_controller)
            openRestorePreview(page);
        shootDialogs(page, prefix);
        if (m_controller)
            restoreFromPreview(page);
    }
    shootInstructionEditors();
    if (m_controller) {
        shootFitQuality();
        shootFieldChecks();
        shootWeldRun();
    }
    return m_written;
}

void Screenshotter::shootFitQuality()
{
    const QString plugin = QStringLiteral("kellaserweld");
    const QString io = QStringLiteral("weld_io_config");
    const QString curves = QStringLiteral("weld_curve_config");
    const QJsonObject ioBefore = m_controller->record(io);
    const QJsonObject curvesBefore = m_controller->record(curves);
    const auto send = [this, &plugin](const QString &command, const QJsonObject &value) {
        m_controller->commandCustomData(nullptr, plugin, {{command, value}});
    };
    // The power curve is live only with its output switched on; its last node is typed 10 %
    // above the line through the other four, where the fitted line leans towards it most.
    QJsonObject liveIo = ioBefore;
    liveIo.insert(QStringLiteral("power_enabled"), true);
    send(QStringLiteral("set_weld_io_config"), liveIo);
    send(QStringLiteral("set_weld_curve_power_config"),
        {{QStringLiteral("laser_power_node"), 5},
            {QStringLiteral("power_nodes_data"),
                QJsonArray {QJsonArray {0.0, 0.0}, QJsonArray {2.5, 1500.0},
                    QJsonArray {5.0, 3000.0}, QJsonArray {7.5, 4500.0},
                    QJsonArray {10.0, 6600.0}}}});

    QTabWidget *tabs = m_window->centreTabs();
    for (int i = 0; i < tabs->count(); ++i) {
        QWidget *centre = tabs->widget(i);
        for (QToolButton *button : centre->findChildren<QToolButton *>()) {
            if (!button->isCheckable())
                continue;
            tabs->setCurrentIndex(i);
            button->click();
            settle();
            QWidget *page
                = centre->findChild<QWidget *>(QStringLiteral("CharacteristicsCurvePage"));
            auto *compute = page
                ? page->findChild<QPushButton *>(QStringLiteral("pushButton_compute"))
                : nullptr;
            if (!compute || !compute->isVisible())
                continue;
            compute->click();
            settle();
            save(centre, QStringLiteral("fitquality-CharacteristicsCurvePage"));
            i = tabs->count();
            break;
        }
    }
    send(QStringLiteral("set_weld_curve_power_config"),
        {{QStringLiteral("laser_power_node"),
             curvesBefore.value(QStringLiteral("laser_power_node"))},
            {QStringLiteral("power_nodes_data"),
                curvesBefore.value(QStringLiteral("power_nodes_data"))}});
    send(QStringLiteral("set_weld_io_config"), ioBefore);
}

void Screenshotter::shootFieldChecks()
{
    const auto type = [](QWidget *field, const QString &text, int key) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QApplication::sendEvent(field, &press);
        QApplication::sendEvent(field, &release);
    };
    const auto typeNumber = [&type](QAbstractSpinBox *field, const QString &number) {
        field->selectAll();
        for (const QChar digit : number)
            type(field, digit, Qt::Key_0 + digit.digitValue());
        type(field, QString(), Qt::Key_Return);
    };
    QTabWidget *tabs = m_window->centreTabs();
    for (int i = 0; i < tabs->count(); ++i) {
        QWidget *centre = tabs->widget(i);
        auto *field
            = centre->findChild<QAbstractSpinBox *>(QStringLiteral("spinBox_manual_gas_time"));
        QList<QToolButton *> pages;
        for (QToolButton *button : centre->findChildren<QToolButton *>()) {
            if (button->isCheckable())
                pages.append(button);
        }
        if (!field || pages.size() < 2)
            continue;
        tabs->setCurrentIndex(i);
        pages.first()->click();
        settle();
        field->setFocus();
        // Below the gas purge time's minimum of 1000 ms: refused at the field.
        typeNumber(field, QStringLiteral("999"));
        settle();
        save(centre, QStringLiteral("field-refused-WeldSettingPage"));

        // A change, then another page: the question comes; the shot's edit is discarded.
        typeNumber(field, QStringLiteral("6000"));
        QTimer::singleShot(0, m_window, [this] {
            QWidget *box = QApplication::activeModalWidget();
            if (!box) {
                m_errors.append(QStringLiteral("no question about unsaved changes"));
                return;
            }
            settle();
            QImage shot = m_window->grab().toImage();
            QPainter painter(&shot);
            const QPixmap question = box->grab();
            const QRect frame(QPoint((shot.width() - question.width()) / 2,
                                  (shot.height() - question.height()) / 2),
                question.size());
            painter.drawPixmap(frame.topLeft(), question);
            // The window manager's frame, which the offscreen platform does not draw.
            painter.setPen(QPen(Qt::darkGray, 2));
            painter.drawRect(frame.adjusted(-1, -1, 0, 0));
            painter.end();
            saveImage(shot, QStringLiteral("question-unsaved-changes"));
            if (auto *discard = box->findChild<QPushButton *>(QStringLiteral("unsavedDiscard")))
                discard->click();
        });
        pages.at(1)->click();
        settle();
        return;
    }
}

void Screenshotter::shootWeldRun()
{
    // The factory cell welds a corner: matched power follows the speed down and up again.
    const QStringList program {
        QStringLiteral("LsMoveL(p10, v100, fine, tool0, wobj0);"),
        QStringLiteral("LaserOn(\"LsData1\");"),
        QStringLiteral("LsParaMatch(\"PowerData1\");"),
        QStringLiteral("LsMoveL(p20, v30, z10, tool0, wobj0);"),
        QStringLiteral("LsMoveL(p30, v30, fine, tool0, wobj0);"),
        QStringLiteral("LaserOff;"),
    };
    // The panels refresh on timers of their own; give them a moment of real time.
    const auto pause = [](int ms) {
        QElapsedTimer wait;
        wait.start();
        while (wait.elapsed() < ms)
            QApplication::processEvents(QEventLoop::AllEvents, 20);
    };
    QTabWidget *tabs = m_window->centreTabs();
    ProgramEditor *editor = nullptr;
    QPushButton *monitorButton = nullptr;
    for (int i = 0; i < tabs->count(); ++i) {
        if (!editor)
            editor = qobject_cast<ProgramEditor *>(tabs->widget(i));
        if (!monitorButton)
            monitorButton
                = tabs->widget(i)->findChild<QPushButton *>(QStringLiteral("pushButton_monitor"));
    }
    if (!editor || !monitorButton)
        return;

    m_controller->setUserLevel(3);
    m_controller->setRobotPowered(false);
    m_controller->commandCustomData(nullptr, QStringLiteral("kellaserweld"),
        QStringLiteral("set_weld_enable"), QStringLiteral("TRUE"));
    m_controller->setRobotPowered(true);
    kelcontroller::ProgramRunner *runner = m_controller->runner();
    runner->setRealTime(false);

    tabs->setCurrentWidget(editor);
    editor->setLines(program);
    settle();
    if (!runner->run(program, QStringLiteral("corner.prg"))) {
        m_errors.append(QStringLiteral("the weld run was refused"));
        return;
    }
    // On the seam's second leg, for the editor's run line.
    runner->advance(6000);
    pause(150);
    save(m_window, QStringLiteral("weldrun-program"));

    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->widget(i)->isAncestorOf(monitorButton))
            tabs->setCurrentIndex(i);
    }
    settle();
    monitorButton->click();
    // The dialog polls on a timer; a little real time per simulated second lets it see every
    // sample while the run goes on much faster than real time.
    for (int second = 0;
         second < 12 && runner->state() != kelcontroller::ProgramRunner::State::Idle; ++second) {
        runner->advance(1000);
        pause(150);
    }
    auto *monitor = m_window->findChild<QDialog *>(QStringLiteral("ButtonMonitorPage"));
    if (monitor && monitor->isVisible()) {
        save(monitor, QStringLiteral("weldrun-monitor"));
        monitor->close();
    }
    runner->stop();
    settle();
}

void Screenshotter::save(QWidget *widget, const QString &name)
{
    saveImage(widget->grab().toImage(), name);
}

void Screenshotter::saveImage(const QImage &picture, const QString &name)
{
    const QString path = m_folder.filePath(fileSafe(name) + QStringLiteral(".png"));
    // Pages are flat colours and text: an indexed palette keeps the files small.
    const QImage image
        = picture.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither | Qt::AvoidDither);
    if (image.save(path, "PNG", 0))
        m_written.append(path);
    else
        m_errors.append(QStringLiteral("cannot write %1").arg(path));
}

bool Screenshotter::shootPluginPages(QWidget *centre, const QString &prefix)
{
    // Pages behind a navigation column are reached the way an operator reaches them.
    const QList<QToolButton *> buttons = centre->findChildren<QToolButton *>();
    auto *stack = centre->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
    if (!stack)
        stack = centre->findChild<QStackedWidget *>();
    int n = 0;
    for (QToolButton *button : buttons) {
        if (!button->isCheckable() || !button->isVisible())
            continue;
        button->click();
        settle();
        QWidget *shown = stack ? stack->currentWidget() : nullptr;
        const QString name
            = QStringLiteral("%1-%2-%3").arg(prefix).arg(++n).arg(pageName(shown, button));
        // A page with tabs is shown tab by tab; its first tab is the page as it opens.
        if (!shown || !shootTabs(centre, shown, name))
            shootView(centre, shown, name);
    }
    return n > 0;
}

void Screenshotter::shootView(QWidget *centre, QWidget *page, const QString &name)
{
    save(centre, name);
    if (!page)
        return;
    // The centre area shows the top of a long page; the whole page is shot as well.
    auto *scroll = qobject_cast<QScrollArea *>(findScrollAncestor(page, centre));
    if (scroll && page->height() > scroll->viewport()->height())
        save(page, name + QStringLiteral("-full"));
}

bool Screenshotter::shootTabs(QWidget *centre, QWidget *page, const QString &prefix)
{
    bool shot = false;
    const QList<QTabWidget *> tabWidgets = page->findChildren<QTabWidget *>();
    for (QTabWidget *tabs : tabWidgets) {
        if (!tabs->isVisible())
            continue;
        const int current = tabs->currentIndex();
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            settle();
            QWidget *tab = tabs->widget(i);
            const QString name = QStringLiteral("%1-tab%2-%3")
                                     .arg(prefix)
                                     .arg(i + 1)
                                     .arg(tab->objectName().isEmpty() ? QString::number(i + 1)
                                                                      : tab->objectName());
            shootView(centre, page, name);
            shot = true;
            shootDetailedEditor(centre, page, tab, name);
        }
        tabs->setCurrentIndex(current);
        settle();
    }
    return shot;
}

void Screenshotter::shootDetailedEditor(
    QWidget *centre, QWidget *page, QWidget *tab, const QString &prefix)
{
    // A list tab opens the editor of its selected row with "Detailed" and leaves it with
    // "Back". The first two rows are opened as an operator would: the factory records make
    // the second weld data set a filler-wire set, whose editor shows its wire sections.
    auto *detailed = page->findChild<QPushButton *>(QStringLiteral("pushButton_detailed"));
    auto *back = page->findChild<QPushButton *>(QStringLiteral("pushButton_back"));
    auto *table = tab->findChild<QTableWidget *>();
    if (!detailed || !back || !table || !detailed->isVisible())
        return;
    for (int row = 0; row < qMin(2, table->rowCount()); ++row) {
        table->selectRow(row);
        detailed->click();
        settle();
        if (detailed->isVisible())
            return;
        shootView(centre, page,
            prefix + QStringLiteral("-editor")
                + (row == 0 ? QString() : QStringLiteral("-row%1").arg(row + 1)));
        back->click();
        settle();
    }
}

void Screenshotter::shootDialogs(QWidget *centre, const QString &prefix)
{
    const QList<QDialog *> dialogs = centre->findChildren<QDialog *>();
    for (QDialog *dialog : dialogs) {
        dialog->show();
        settle();
        save(dialog, QStringLiteral("%1-dialog-%2").arg(prefix, dialog->objectName()));
        dialog->hide();
    }
}

// A backup taken now, then three harmless edits, so the preview has something to show.
void Screenshotter::openRestorePreview(QWidget *centre)
{
    QList<QWidget *> pages = centre->findChildren<QWidget *>();
    pages.prepend(centre);
    for (QWidget *page : qAsConst(pages)) {
        if (page->metaObject()->indexOfMethod("openRestore(QString)") < 0)
            continue;
        const QString path = m_scratch.filePath(QStringLiteral("backup.json"));
        bool written = false;
        QMetaObject::invokeMethod(
            page, "backupTo", Q_RETURN_ARG(bool, written), Q_ARG(QString, path));
        if (!written) {
            m_errors.append(QStringLiteral("no backup for the restore preview"));
            return;
        }
        for (const QString &key : kelcontroller::ControllerSimulator::recordKeys())
            m_backedUp.insert(key, m_controller->record(key));
        const QString plugin = QStringLiteral("kellaserweld");
        QJsonObject settings = m_controller->record(QStringLiteral("weld_setting_config"));
        settings.insert(QStringLiteral("pre_gas_time"), 450);
        m_controller->commandCustomData(
            nullptr, plugin, {{QStringLiteral("set_weld_setting_config"), settings}});
        QJsonObject set = m_controller->record(QStringLiteral("weld_param_config"))
                              .value(QStringLiteral("LsData3"))
                              .toObject();
        set.insert(QStringLiteral("Tips"), QStringLiteral("trial"));
        m_controller->commandCustomData(nullptr, plugin,
            {{QStringLiteral("set_weld_param_list_config"),
                QJsonObject {{QStringLiteral("LsData3"), set}}}});
        QJsonObject io = m_controller->record(QStringLiteral("weld_io_config"));
        io.insert(QStringLiteral("descent_signal_port"), QStringLiteral("DO12"));
        m_controller->commandCustomData(
            nullptr, plugin, {{QStringLiteral("set_weld_io_config"), io}});
        QMetaObject::invokeMethod(page, "openRestore", Q_ARG(QString, path));
        // The page shows its dialog; the gallery shoots it with the others.
        const auto dialogs = centre->findChildren<QDialog *>();
        for (QDialog *dialog : dialogs)
            dialog->hide();
        return;
    }
}

void Screenshotter::restoreFromPreview(QWidget *centre)
{
    auto *dialog = centre->findChild<QDialog *>(QStringLiteral("RestoreDialog"));
    auto *tree
        = dialog ? dialog->findChild<QTreeWidget *>(QStringLiteral("treeWidget_changes")) : nullptr;
    auto *restore
        = dialog ? dialog->findChild<QPushButton *>(QStringLiteral("pushButton_restore")) : nullptr;
    if (!tree || !restore)
        return;
    const QString kept = QStringLiteral("weld_setting_config");
    // changed: every record with changes ticked; otherwise only the named one.
    const auto tick = [tree](bool changed, const QString &name) {
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            QTreeWidgetItem *item = tree->topLevelItem(i);
            const bool on
                = changed ? item->childCount() > 0 && item->text(0) != name : item->text(0) == name;
            item->setCheckState(0, on ? Qt::Checked : Qt::Unchecked);
        }
    };
    const QJsonObject edited = m_controller->record(kept);
    // Two of the three changed records: their changes go, the third stays.
    tick(true, kept);
    restore->click();
    if (m_controller->record(kept) != edited)
        m_errors.append(QStringLiteral("restore: an unselected record changed"));
    tick(false, kept);
    restore->click();
    QStringList unrestored;
    for (auto it = m_backedUp.constBegin(); it != m_backedUp.constEnd(); ++it) {
        if (m_controller->record(it.key()) != it.value().toObject())
            unrestored.append(it.key());
    }
    if (!unrestored.isEmpty())
        m_errors.append(QStringLiteral("restore: %1 not as backed up").arg(unrestored.join(", ")));
    dialog->hide();
}

void Screenshotter::fillProgram(ProgramEditor *editor)
{
    // One line of each registered instruction, so the shot shows what a weld program reads like.
    QStringList lines;
    const QList<kelplugin::RLInstruction> instructions = kelplugin::rlCatalog().instructions();
    for (const kelplugin::RLInstruction &instruction : instructions)
        lines.append(instruction.defaultText);
    editor->setLines(lines);
    settle();
}

void Screenshotter::shootInstructionEditors()
{
    const QList<kelplugin::RLInstruction> instructions = kelplugin::rlCatalog().instructions();
    for (const kelplugin::RLInstruction &instruction : instructions) {
        const QString name = QStringLiteral("instruction-%1").arg(instruction.typeKey);
        if (!instruction.insertWidget) {
            // Instructions without an editor of their own get the form built from their skeleton.
            SkeletonForm form(instruction.skeleton);
            if (form.fieldCount() == 0)
                continue;
            form.setText(instruction.defaultText);
            form.adjustSize();
            form.show();
            settle();
            save(&form, name);
            continue;
        }
        std::unique_ptr<kelplugin::RLContentBase> editor(instruction.insertWidget());
        if (!editor)
            continue;
        editor->setInstructionText(instruction.defaultText);
        editor->adjustSize();
        editor->show();
        settle();
        save(editor.get(), name);
    }
}
