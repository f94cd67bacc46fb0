// Unsaved changes are never lost without a word: leaving a page, opening another set and
// closing the window ask Save / Discard / Stay, and each answer does what it says.

#include "page/characteristicscurvepage.h"
#include "page/editedform.h"
#include "page/laserweldpage.h"
#include "page/weldsettingpage.h"
#include "parampagefixture.h"
#include "support/leveltexts.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

#include <QLabel>
#include <QMessageBox>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTableWidget>
#include <QToolButton>
#include <QtTest>

namespace {

const QString kSettingsSave = QStringLiteral("set_weld_setting_config");
const QString kWeldDataSave = QStringLiteral("set_weld_param_list_config");

QList<QToolButton *> navigation(LaserWeldPage &page)
{
    return page.findChild<QWidget *>("wgtNav")->findChildren<QToolButton *>();
}

QSpinBox *laserPower(LaserWeldPage &page)
{
    return page.findChild<WeldSettingPage *>()->findChild<QSpinBox *>("spinBox_laser_power");
}

int currentPage(LaserWeldPage &page)
{
    return page.findChild<QStackedWidget *>("stackedWidget")->currentIndex();
}

// A stored set within every limit, with a weld power of 2500 W.
QJsonObject storedSet()
{
    return QJsonObject {{"laser_power_start", 1000}, {"laser_power_weld", 2500},
        {"laser_power_end", 800}, {"frequency_start", 3000}, {"frequency_weld", 3000},
        {"frequency_end", 3000}, {"welding_speed", 25}};
}

} // namespace

class TestUnsavedChanges : public QObject
{
    Q_OBJECT

private:
    ScriptedController *m_controller = nullptr;
    RecordingShell *m_shell = nullptr;
    // What the question was asked about, and the answer the operator gives.
    QStringList m_asked;
    EditedForm::Choice m_answer = EditedForm::Stay;

private slots:
    void initTestCase() { WeldSettingPage::setSwitchWait(0); }

    void init()
    {
        m_controller = new ScriptedController;
        m_shell = new RecordingShell;
        m_asked.clear();
        m_answer = EditedForm::Stay;
        EditedForm::setChooser([this](QWidget *, const QString &what) {
            m_asked.append(what);
            return m_answer;
        });
        // Without "manual_gas_time" the field clamps to its minimum while loading.
        m_controller->serviceData["weld_setting_config"] = QJsonObject {{"laser_power", 1500}};
    }

    void cleanup()
    {
        EditedForm::setChooser({});
        delete m_shell;
        delete m_controller;
    }

    void leavingAPageAsks_data()
    {
        QTest::addColumn<bool>("edit");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("saveReturn");
        QTest::addColumn<int>("page");
        QTest::addColumn<QStringList>("commands");
        QTest::addColumn<int>("power");

        const QStringList none;
        const QStringList save {kSettingsSave};
        QTest::newRow("loading alone is no change: no question")
            << false << int(EditedForm::Stay) << 0 << 1 << none << 1500;
        QTest::newRow("Stay keeps the page and the edit")
            << true << int(EditedForm::Stay) << 0 << 0 << none << 1234;
        QTest::newRow("Discard goes on and restores what was loaded")
            << true << int(EditedForm::Discard) << 0 << 1 << none << 1500;
        QTest::newRow("Save sends and goes on")
            << true << int(EditedForm::Save) << 0 << 1 << save << 1234;
        QTest::newRow("a failed Save stays with the edit")
            << true << int(EditedForm::Save) << 5 << 0 << save << 1234;
    }

    void leavingAPageAsks()
    {
        QFETCH(bool, edit);
        QFETCH(int, answer);
        QFETCH(int, saveReturn);
        QFETCH(int, page);
        QFETCH(QStringList, commands);
        QFETCH(int, power);

        m_answer = EditedForm::Choice(answer);
        m_controller->repliesByCommand[kSettingsSave]
            = ScriptedController::reply(kSettingsSave, saveReturn);
        LaserWeldPage main;
        main.show();
        if (edit)
            laserPower(main)->setValue(1234);

        QTest::mouseClick(navigation(main).at(1), Qt::LeftButton);

        QCOMPARE(m_asked, edit ? QStringList {"the device settings"} : QStringList());
        QCOMPARE(currentPage(main), page);
        for (int i = 0; i < navigation(main).size(); ++i)
            QCOMPARE(navigation(main).at(i)->isChecked(), i == page);
        QCOMPARE(m_controller->sentCommands(), commands);
        QCOMPARE(laserPower(main)->value(), power);
        if (!commands.isEmpty()) {
            QCOMPARE(
                m_controller->sent.first().value.toObject().value("laser_power").toInt(), 1234);
        }
    }

    void savedChangesAreNoLongerUnsaved()
    {
        m_answer = EditedForm::Save;
        LaserWeldPage main;
        main.show();
        laserPower(main)->setValue(1234);
        main.findChild<WeldSettingPage *>()->findChild<QPushButton *>("pushButton_save")->click();
        m_controller->clearSent();

        QTest::mouseClick(navigation(main).at(1), Qt::LeftButton);

        QCOMPARE(m_asked, QStringList());
        QCOMPARE(currentPage(main), 1);
        QVERIFY(m_controller->sent.isEmpty());
    }

    void unreadRecordIsNoUnsavedChange()
    {
        m_controller->ports = {{"DO", {"DO1"}}, {"DI", {"DI1"}}};
        m_controller->serviceData["weld_setting_config"] = QJsonObject {{"detection_do", "DO1"}};
        LaserWeldPage main;
        main.show();
        main.hide();
        // Regression: the refilled drop-down no longer showed the loaded port, and leaving asked
        // about changes nobody made.
        m_controller->serviceData.remove("weld_setting_config");
        main.show();

        QTest::mouseClick(navigation(main).at(1), Qt::LeftButton);

        QCOMPARE(m_asked, QStringList());
        QCOMPARE(currentPage(main), 1);
    }

    void curveTabsCountOnTheirOwn()
    {
        const QJsonArray nodes {QJsonArray {1, 10}, QJsonArray {2, 20}};
        m_controller->serviceData["weld_curve_config"] = QJsonObject {{"laser_power_node", 2},
            {"power_nodes_data", nodes}, {"laser_feed_node", 2}, {"feed_nodes_data", nodes}};
        m_controller->serviceData["weld_io_config"] = QJsonObject {{"power_enabled", true},
            {"power_port", "AO1"}, {"wire_speed_enabled", true}, {"wire_speed_port", "AO2"}};
        CharacteristicsCurvePage page(nullptr);
        page.show();
        const auto physical = [&page](const char *table) {
            return qobject_cast<QSpinBox *>(
                page.findChild<QTableWidget *>(table)->cellWidget(1, 2));
        };
        physical("tableWidget_laserpower")->setValue(25);
        physical("tableWidget_feedspeed")->setValue(30);
        page.findChild<QPushButton *>("pushButton_Save_laserpower")->click();
        m_controller->clearSent();

        // Regression: saving one tab counted the other tab's changes as saved too.
        QVERIFY(!page.mayLeave(&page));
        QCOMPARE(m_asked, QStringList {"the characteristic curves (Feeding Speed)"});
        QVERIFY(m_controller->sent.isEmpty());

        m_answer = EditedForm::Save;
        QVERIFY(page.mayLeave(&page));
        QCOMPARE(m_controller->sentCommands(),
            (QStringList {"compute_curve_config", "set_weld_curve_feed_config"}));
        QVERIFY(!page.hasUnsavedChanges());
    }

    void openingAnotherSetAsks_data()
    {
        QTest::addColumn<bool>("edit");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("laserMaximum"); // -1: no device settings
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("stackPage");
        QTest::addColumn<QStringList>("commands");
        QTest::addColumn<QStringList>("messages");

        const int editor = WeldParameterPage::WeldDataEditor;
        const QStringList none;
        QTest::newRow("unchanged set: no question")
            << false << int(EditedForm::Stay) << -1 << "LsData2" << editor << none << none;
        QTest::newRow("Stay returns to the changed set")
            << true << int(EditedForm::Stay) << -1 << "LsData1" << editor << none << none;
        QTest::newRow("Discard opens the other set")
            << true << int(EditedForm::Discard) << -1 << "LsData2" << editor << none << none;
        QTest::newRow("Save saves the changed set, then opens the other")
            << true << int(EditedForm::Save) << -1 << "LsData2" << editor
            << QStringList {kWeldDataSave} << QStringList {"0|Saved successfully"};
        QTest::newRow("Save refused by the laser's maximum stays with the changed set")
            << true << int(EditedForm::Save) << 2221 << "LsData1" << editor << none
            << QStringList {"1|Welding · Laser power (W): 2222 W is above the laser unit's "
                            "maximum power of 2221 W (device settings). Nothing was saved."};
    }

    void openingAnotherSetAsks()
    {
        QFETCH(bool, edit);
        QFETCH(int, answer);
        QFETCH(int, laserMaximum);
        QFETCH(QString, title);
        QFETCH(int, stackPage);
        QFETCH(QStringList, commands);
        QFETCH(QStringList, messages);

        m_answer = EditedForm::Choice(answer);
        ParamPageFixture t;
        t.controller.serviceData.insert(
            "weld_param_config", QJsonObject {{"LsData1", storedSet()}, {"LsData2", storedSet()}});
        if (laserMaximum >= 0)
            t.controller.serviceData.insert(
                "weld_setting_config", QJsonObject {{"laser_power", laserMaximum}});
        t.show();
        t.open(0, 0);
        if (edit)
            t.child<QSpinBox>("spinBox_laser_power_weld")->setValue(2222);
        t.child<QPushButton>("pushButton_back")->click();
        t.shell.clear();

        t.open(0, 1);

        QCOMPARE(m_asked, edit ? QStringList {"LsData1"} : QStringList());
        QCOMPARE(t.child<QLabel>("label_title")->text(), title);
        QCOMPARE(t.stackPage(), stackPage);
        QCOMPARE(t.controller.sentCommands(), commands);
        QCOMPARE(testenv::shownMessages(t.shell), messages);
        if (!commands.isEmpty()) {
            QCOMPARE(t.lastPayload().value("LsData1").toObject().value("laser_power_weld").toInt(),
                2222);
        }
        // The set in the editor shows its own values: the edit where it stayed, else as stored.
        QCOMPARE(t.child<QSpinBox>("spinBox_laser_power_weld")->value(),
            title == QLatin1String("LsData1") ? 2222 : 2500);
    }

    void openingAnotherMatchingSetAsks()
    {
        m_answer = EditedForm::Discard;
        ParamPageFixture t;
        const QJsonObject set {{"power_enable", true},
            {"power_data",
                QJsonArray {QJsonArray {10, 500, 1000, 50}, QJsonArray {20, 600, 1000, 50},
                    QJsonArray {30, 700, 1000, 50}, QJsonArray {40, 800, 1000, 50}}}};
        t.controller.serviceData.insert(
            "weld_param_match", QJsonObject {{"PowerData1", set}, {"PowerData2", set}});
        t.show();
        t.open(1, 0);
        auto *table = t.child<QTableWidget>("tableWidget_matching");
        qobject_cast<QSpinBox *>(table->cellWidget(4, 1))->setValue(45);
        t.child<QPushButton>("pushButton_back")->click();

        t.open(1, 1);

        QCOMPARE(m_asked, QStringList {"PowerData1"});
        QCOMPARE(t.child<QLabel>("label_title")->text(), QStringLiteral("PowerData2"));
        QCOMPARE(qobject_cast<QSpinBox *>(table->cellWidget(4, 1))->value(), 40);
        QVERIFY(t.controller.sent.isEmpty());
    }

    void closingTheWindowAsks_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("behind"); // the changed page is not the one in front
        QTest::addColumn<bool>("closed");
        QTest::addColumn<QStringList>("commands");
        QTest::addColumn<int>("page");

        QTest::newRow("Stay keeps the window open")
            << int(EditedForm::Stay) << false << false << QStringList() << 0;
        QTest::newRow("Stay brings the changed page to the front")
            << int(EditedForm::Stay) << true << false << QStringList() << 0;
        QTest::newRow("Discard closes")
            << int(EditedForm::Discard) << false << true << QStringList() << 0;
        QTest::newRow("Save sends, then closes")
            << int(EditedForm::Save) << true << true << QStringList {kSettingsSave} << 2;
    }

    void closingTheWindowAsks()
    {
        QFETCH(int, answer);
        QFETCH(bool, behind);
        QFETCH(bool, closed);
        QFETCH(QStringList, commands);
        QFETCH(int, page);

        m_answer = EditedForm::Choice(answer);
        LaserWeldPage main;
        main.show();
        laserPower(main)->setValue(1234);
        if (behind)
            main.findChild<QStackedWidget *>("stackedWidget")->setCurrentIndex(2);

        QCOMPARE(main.close(), closed);

        QCOMPARE(m_asked, QStringList {"the device settings"});
        QCOMPARE(main.isVisible(), !closed);
        QCOMPARE(m_controller->sentCommands(), commands);
        QCOMPARE(currentPage(main), page);
    }

    void questionOffersSaveDiscardStay_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("choice");

        QTest::newRow("Save") << "unsavedSave" << int(EditedForm::Save);
        QTest::newRow("Discard") << "unsavedDiscard" << int(EditedForm::Discard);
        QTest::newRow("Stay") << "unsavedStay" << int(EditedForm::Stay);
    }

    void questionOffersSaveDiscardStay()
    {
        QFETCH(QString, button);
        QFETCH(int, choice);

        EditedForm::setChooser({});
        QString text;
        QStringList captions;
        QAbstractButton *defaultButton = nullptr;
        QTimer::singleShot(0, this, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(box);
            text = box->text();
            for (QAbstractButton *b : box->buttons())
                captions.append(b->text());
            defaultButton = box->defaultButton();
            box->findChild<QPushButton *>(button)->click();
        });

        QCOMPARE(int(EditedForm::ask(nullptr, QStringLiteral("LsData3"))), choice);
        QCOMPARE(text, QStringLiteral("There are unsaved changes in LsData3."));
        captions.sort();
        QCOMPARE(captions, (QStringList {"Discard", "Save", "Stay"}));
        // A stray Enter loses nothing.
        QCOMPARE(defaultButton->objectName(), QStringLiteral("unsavedStay"));
    }
};

QTEST_MAIN(TestUnsavedChanges)
#include "tst_unsavedchanges.moc"
