#pragma once

#include "page/weldparameterpage.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

#include <QJsonObject>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableWidget>

// The parameter page inside a main page, with the pendant and the controller stood in for.
struct ParamPageFixture
{
    ScriptedController controller;
    RecordingShell shell;
    QWidget mainPage;
    WeldParameterPage *page = new WeldParameterPage(nullptr, &mainPage);

    ParamPageFixture()
    {
        controller.serviceData.insert(QStringLiteral("weld_param_config"), QJsonObject());
        controller.serviceData.insert(QStringLiteral("weld_param_match"), QJsonObject());
    }

    template<typename T> T *child(const char *name) const
    {
        T *found = page->findChild<T *>(QLatin1String(name));
        if (!found)
            qFatal("no child %s", name);
        return found;
    }
    int stackPage() const { return child<QStackedWidget>("stackedWidget")->currentIndex(); }

    // Each call is one more showing of the page.
    void show()
    {
        if (!mainPage.isVisible()) {
            mainPage.show();
            return;
        }
        page->hide();
        page->show();
    }
    // Selects a row of a list tab and presses "Detailed".
    void open(int tab, int row)
    {
        child<QTabWidget>("tabWidget")->setCurrentIndex(tab);
        auto *list
            = child<QTableWidget>(tab == 0 ? "tableWidget_weldData" : "tableWidget_matchList");
        list->selectRow(row);
        child<QPushButton>("pushButton_detailed")->click();
    }
    void save()
    {
        shell.clear();
        controller.clearSent();
        child<QPushButton>("pushButton_save")->click();
    }
    // The texts of a list row after its name column; "-" where a cell has no item.
    static QStringList listRow(QTableWidget *list, int row)
    {
        QStringList texts;
        for (int column = 1; column < list->columnCount(); ++column) {
            const QTableWidgetItem *item = list->item(row, column);
            texts.append(item ? item->text() : QStringLiteral("-"));
        }
        return texts;
    }
    // The payload of the last command sent.
    QJsonObject lastPayload() const
    {
        return controller.sent.isEmpty() ? QJsonObject() : controller.sent.last().value.toObject();
    }
};
