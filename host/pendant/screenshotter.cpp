#include "screenshotter.h"

#include "pendantwindow.h"

#include "kelplugin/rlcatalog.h"
#include "kelplugin/rlcontentbase.h"

#include <QApplication>
#include <QDialog>
#include <QPixmap>
#include <QRegularExpression>
#include <QTabWidget>
#include <QToolButton>

#include <memory>

namespace {

QString fileSafe(QString name)
{
    static const QRegularExpression unsafe(QStringLiteral("[^A-Za-z0-9_.-]+"));
    name.replace(unsafe, QStringLiteral("_"));
    return name;
}

void settle()
{
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

} // namespace

Screenshotter::Screenshotter(PendantWindow *window, const QString &folder)
    : m_window(window), m_folder(folder)
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
        save(m_window, prefix);
        shootPluginPages(page, prefix);
        shootDialogs(page, prefix);
    }
    shootInstructionEditors();
    return m_written;
}

void Screenshotter::save(QWidget *widget, const QString &name)
{
    const QString path = m_folder.filePath(fileSafe(name) + QStringLiteral(".png"));
    if (widget->grab().save(path))
        m_written.append(path);
    else
        m_errors.append(QStringLiteral("cannot write %1").arg(path));
}

void Screenshotter::shootPluginPages(QWidget *centre, const QString &prefix)
{
    // Pages behind a navigation column are reached the way an operator reaches them.
    const QList<QToolButton *> buttons = centre->findChildren<QToolButton *>();
    int n = 0;
    for (QToolButton *button : buttons) {
        if (!button->isCheckable() || !button->isVisible())
            continue;
        button->click();
        settle();
        save(m_window, QStringLiteral("%1-%2-%3").arg(prefix).arg(++n).arg(button->text()));
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

void Screenshotter::shootInstructionEditors()
{
    const QList<kelplugin::RLInstruction> instructions = kelplugin::rlCatalog().instructions();
    for (const kelplugin::RLInstruction &instruction : instructions) {
        if (!instruction.insertWidget)
            continue;
        std::unique_ptr<kelplugin::RLContentBase> editor(instruction.insertWidget());
        if (!editor)
            continue;
        editor->setInstructionText(instruction.defaultText);
        editor->adjustSize();
        editor->show();
        settle();
        save(editor.get(), QStringLiteral("instruction-%1").arg(instruction.typeKey));
    }
}
