#include "controller/factoryrecords.h"
#include "page/buttonmonitorpage.h"
#include "page/characteristicscurvepage.h"
#include "page/laserweldpage.h"
#include "page/weldiopage.h"
#include "page/weldsettingpage.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "widget/switchbutton.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QtTest>

namespace {

QList<QToolButton *> navigation(LaserWeldPage &page)
{
    return page.findChild<QWidget *>("wgtNav")->findChildren<QToolButton *>();
}

} // namespace

class TestLaserWeldPage : public QObject
{
    Q_OBJECT

private:
    ScriptedController *m_controller = nullptr;
    RecordingShell *m_shell = nullptr;

private slots:
    void initTestCase() { WeldSettingPage::setSwitchWait(0); }

    void init()
    {
        m_controller = new ScriptedController;
        m_shell = new RecordingShell;
        // Switching welding on sends the settings on screen: they must be the controller's.
        m_controller->serviceData["weld_setting_config"]
            = kelcontroller::FactoryRecords::settingConfig();
    }

    void cleanup()
    {
        delete m_shell;
        delete m_controller;
    }

    void navigationButtonSelectsItsPage()
    {
        const char *pages[][2] = {{"WeldSettingPage", "Parmeter Setting"},
            {"WeldioPage", "Soldering I/O"}, {"CharacteristicsCurvePage", "Characteristic curves"},
            {"WeldParameterPage", "Welding Parameters"}, {"LaserTrackingPage", "Laser Tracking"}};
        LaserWeldPage page;
        page.show();
        const QList<QToolButton *> buttons = navigation(page);
        auto *stack = page.findChild<QStackedWidget *>("stackedWidget");
        QCOMPARE(buttons.size(), 5);
        QCOMPARE(stack->count(), 5);
        for (int i = 0; i < 5; ++i) {
            QTest::mouseClick(buttons[i], Qt::LeftButton);
            QCOMPARE(stack->currentIndex(), i);
            QCOMPARE(stack->currentWidget()->metaObject()->className(), pages[i][0]);
            QCOMPARE(page.findChild<QLabel *>("lblTitle")->text(), QString(pages[i][1]));
            for (QToolButton *other : buttons)
                QCOMPARE(other->isChecked(), other == buttons[i]);
        }
    }

    void everyShowStartsOnTheSettingsPage()
    {
        LaserWeldPage page;
        page.show();
        QTest::mouseClick(navigation(page).at(3), Qt::LeftButton);
        page.hide();
        page.show();
        auto *stack = page.findChild<QStackedWidget *>("stackedWidget");
        QVERIFY(qobject_cast<WeldSettingPage *>(stack->currentWidget()));
        QCOMPARE(page.findChild<QLabel *>("lblTitle")->text(), QStringLiteral("Parmeter Setting"));
        QVERIFY(navigation(page).at(0)->isChecked());
        QVERIFY(!navigation(page).at(3)->isChecked());
    }

    void weldingSwitchLocksTheOtherPages()
    {
        m_controller->repliesByCommand["set_weld_enable"]
            = ScriptedController::reply("set_weld_enable", true);
        LaserWeldPage page;
        page.show();
        auto *io = page.findChild<WeldioPage *>();
        auto *curve = page.findChild<CharacteristicsCurvePage *>();
        auto *settings = page.findChild<WeldSettingPage *>();
        auto *mainSwitch = settings->findChild<SwitchButton *>("pushButton_main_enable");

        QTest::mouseClick(mainSwitch, Qt::LeftButton);
        QVERIFY(settings->isMainEnabled());
        QVERIFY(!io->isEnabledTo(&page));
        QVERIFY(!curve->isEnabledTo(&page));
        QVERIFY(!settings->findChild<QWidget *>("pushButton_save")->isEnabled());

        QTest::mouseClick(mainSwitch, Qt::LeftButton);
        QVERIFY(!settings->isMainEnabled());
        QVERIFY(io->isEnabledTo(&page));
        QVERIFY(curve->isEnabledTo(&page));
        QVERIFY(settings->findChild<QWidget *>("pushButton_save")->isEnabled());
    }

    void monitorOpensWhileWeldingLocksThePages()
    {
        m_controller->repliesByCommand["set_weld_enable"]
            = ScriptedController::reply("set_weld_enable", true);
        LaserWeldPage page;
        auto *monitor = new ButtonMonitorPage(&page);
        page.show();
        auto *settings = page.findChild<WeldSettingPage *>();
        QTest::mouseClick(
            settings->findChild<SwitchButton *>("pushButton_main_enable"), Qt::LeftButton);
        QVERIFY(settings->isMainEnabled());
        m_controller->clearSent();

        // Regression: the monitor button sat on a page that welding locks, out of reach when
        // needed.
        auto *button = page.findChild<QPushButton *>("pushButton_monitor");
        QVERIFY(button->isEnabled() && button->isVisibleTo(&page));
        button->click();

        QCOMPARE(m_controller->sentCommands(), QStringList {"start_laserweld_monitor"});
        QCOMPARE(m_controller->sent.first().sender, monitor);
        QCOMPARE(m_controller->sent.first().value, QJsonValue(true));
        QVERIFY(monitor->isVisible());
        monitor->reject();
    }
};

QTEST_MAIN(TestLaserWeldPage)
#include "tst_laserweldpage.moc"
