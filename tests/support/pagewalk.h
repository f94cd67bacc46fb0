#pragma once

#include <QAbstractButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolButton>

// Walks the plug-in's main page the way an operator does: each page of the navigation, each tab
// of a page, and on the lists of sets the editor of the first set.
namespace pagewalk {

struct View
{
    QToolButton *page;
    int tab; // -1: a page without tabs
    bool editor;
};

inline QWidget *currentPage(const QWidget *main)
{
    auto *stack
        = main ? main->findChild<QStackedWidget *>(QStringLiteral("stackedWidget")) : nullptr;
    return stack ? stack->currentWidget() : nullptr;
}

inline QList<View> views(const QWidget *main)
{
    QWidget *nav = main ? main->findChild<QWidget *>(QStringLiteral("wgtNav")) : nullptr;
    const QList<QToolButton *> buttons
        = nav ? nav->findChildren<QToolButton *>() : QList<QToolButton *>();
    QList<View> result;
    for (QToolButton *button : buttons) {
        button->click();
        QWidget *page = currentPage(main);
        auto *tabs = page ? page->findChild<QTabWidget *>() : nullptr;
        const bool hasEditor
            = page && page->findChild<QWidget *>(QStringLiteral("pushButton_detailed"));
        if (!tabs || tabs->count() == 0)
            result.append({button, -1, false});
        for (int tab = 0; tabs && tab < tabs->count(); ++tab) {
            result.append({button, tab, false});
            if (hasEditor && tab < 2)
                result.append({button, tab, true});
        }
    }
    return result;
}

// Shows the view from its page's button on; returns where it is, for messages.
inline QString show(const QWidget *main, const View &view)
{
    view.page->click();
    QWidget *page = currentPage(main);
    QString where = view.page->text();
    if (view.tab < 0 || !page)
        return where;
    // Back to the list first, then the first set, as an operator would open it.
    auto *back = page->findChild<QAbstractButton *>(QStringLiteral("pushButton_back"));
    if (back && back->isVisible())
        back->click();
    auto *tabs = page->findChild<QTabWidget *>();
    tabs->setCurrentIndex(view.tab);
    where += QStringLiteral(" tab ") + tabs->tabText(view.tab);
    if (!view.editor)
        return where;
    const QList<QTableWidget *> tables = tabs->currentWidget()->findChildren<QTableWidget *>();
    if (!tables.isEmpty())
        tables.constFirst()->selectRow(0);
    if (auto *detailed = page->findChild<QAbstractButton *>(QStringLiteral("pushButton_detailed")))
        detailed->click();
    return where + QStringLiteral(" editor");
}

} // namespace pagewalk
