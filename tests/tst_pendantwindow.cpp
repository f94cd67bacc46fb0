#include "keypanel.h"
#include "messagelist.h"
#include "pendantwindow.h"

#include "controller/controllersimulator.h"
#include "kelplugin/hostfunctions.h"

#include <QCloseEvent>
#include <QLabel>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

namespace {

// A centre page that may keep the window open, as a plug-in page with unsaved changes does.
class ClosingPage : public QWidget
{
public:
    bool mayClose = false;
    int asked = 0;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        ++asked;
        event->setAccepted(mayClose);
    }
};

} // namespace

class TestPendantWindow : public QObject
{
    Q_OBJECT

private slots:
    void keysCallBackOnPressAndRelease()
    {
        QTemporaryDir data;
        kelcontroller::ControllerSimulator controller(data.path());
        PendantWindow window(&controller);
        QList<bool> calls;
        kelplugin::PhysicalButton key {QStringLiteral("Wiring"), QString(), QString(),
            [&calls](bool pressed) { calls.append(pressed); }};
        kelplugin::CreatePhyButtonList(
            QStringLiteral("p"), QStringLiteral("list"), {key}, {}, {QString()});
        kelplugin::ChangePhyButtonStatus(QStringLiteral("p"), QStringLiteral("list"), true);
        window.show();

        auto *button = window.findChild<QToolButton *>(QStringLiteral("key_Wiring"));
        QVERIFY(button);
        QTest::mousePress(button, Qt::LeftButton);
        QCOMPARE(calls, QList<bool> {true});
        QTest::mouseRelease(button, Qt::LeftButton);
        QCOMPARE(calls, (QList<bool> {true, false}));
    }

    void keysFollowTheActivatedList_data()
    {
        QTest::addColumn<QString>("activatedList");
        QTest::addColumn<bool>("active");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("own list activated") << "list" << true << true;
        QTest::newRow("own list deactivated") << "list" << false << false;
        QTest::newRow("unknown list ignored") << "other" << true << false;
    }

    void keysFollowTheActivatedList()
    {
        QFETCH(QString, activatedList);
        QFETCH(bool, active);
        QFETCH(bool, enabled);

        QTemporaryDir data;
        kelcontroller::ControllerSimulator controller(data.path());
        PendantWindow window(&controller);
        kelplugin::CreatePhyButtonList(QStringLiteral("p"), QStringLiteral("list"), {}, {}, {});
        kelplugin::ChangePhyButtonStatus(QStringLiteral("p"), activatedList, active);
        QCOMPARE(window.firstKeys()->isEnabled(), enabled);
        QCOMPARE(window.secondKeys()->isEnabled(), enabled);
    }

    void messagesShowNewestFirstWithLevel_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("levelText");
        QTest::newRow("success") << 0 << "Info";
        QTest::newRow("refusal") << 1 << "Warning";
        QTest::newRow("failure") << 2 << "Error";
    }

    void messagesShowNewestFirstWithLevel()
    {
        QFETCH(int, level);
        QFETCH(QString, levelText);

        QTemporaryDir data;
        kelcontroller::ControllerSimulator controller(data.path());
        PendantWindow window(&controller);
        kelplugin::ThrowLog(
            QStringLiteral("kellaserweld"), kelplugin::THROW_LOG_INFO, QStringLiteral("older"));
        kelplugin::ThrowLog(QStringLiteral("kellaserweld"), kelplugin::enThrowLogLevel(level),
            QStringLiteral("newest"));

        QTreeWidgetItem *top = window.messageList()->topLevelItem(0);
        QVERIFY(top);
        QCOMPARE(top->text(3), QStringLiteral("newest"));
        QCOMPARE(top->text(1), levelText);
        QCOMPARE(top->text(2), QStringLiteral("kellaserweld"));
        QCOMPARE(window.messageList()->topLevelItem(1)->text(3), QStringLiteral("older"));
        // Levels are told apart by colour as well as by word.
        QVERIFY(top->foreground(3).color()
                != window.messageList()->topLevelItem(1)->foreground(3).color()
            || level == 0);
    }

    void statusWidgetsAreOrderedBySlot()
    {
        QTemporaryDir data;
        kelcontroller::ControllerSimulator controller(data.path());
        PendantWindow window(&controller);
        auto *second = new QLabel(QStringLiteral("second"));
        auto *first = new QLabel(QStringLiteral("first"));
        kelplugin::CreateStatusBar(QStringLiteral("a"), second, 2);
        kelplugin::CreateStatusBar(QStringLiteral("b"), first, 1);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(first->parentWidget());
        QVERIFY(first->mapTo(&window, QPoint()).x() < second->mapTo(&window, QPoint()).x());
    }

    // Pages enable themselves from the level when shown: a new level shows the page again,
    // after the cell has it.
    void newUserLevelShowsTheVisiblePageAgain()
    {
        struct Page : QWidget
        {
            kelcontroller::ControllerSimulator *controller = nullptr;
            QList<int> levelsAtShow;
            void showEvent(QShowEvent *) override
            {
                levelsAtShow.append(controller->getUserOperateLevel());
            }
        };
        QTemporaryDir data;
        kelcontroller::ControllerSimulator controller(data.path());
        controller.setUserLevel(3);
        PendantWindow window(&controller);
        auto *page = new Page;
        page->controller = &controller;
        kelplugin::CreateCenterWidget(QStringLiteral("p"), page);
        window.show();
        QCOMPARE(page->levelsAtShow, QList<int> {3});

        auto *level = window.findChild<QSpinBox *>(QStringLiteral("userLevel"));
        QVERIFY(level);
        level->setValue(2);
        QCOMPARE(page->levelsAtShow, (QList<int> {3, 2}));
        QVERIFY(page->isVisible());

        // A page not on screen reads the level at its own next show.
        auto *other = new QLabel(QStringLiteral("other"));
        window.addPendantPage(other, QStringLiteral("other"));
        window.centreTabs()->setCurrentWidget(other);
        level->setValue(1);
        QCOMPARE(page->levelsAtShow, (QList<int> {3, 2}));
    }

    void centrePagesMayKeepTheWindowOpen_data()
    {
        QTest::addColumn<bool>("mayClose");
        QTest::newRow("page refuses: window stays") << false;
        QTest::newRow("page agrees: window closes") << true;
    }

    void centrePagesMayKeepTheWindowOpen()
    {
        QFETCH(bool, mayClose);

        QTemporaryDir data;
        kelcontroller::ControllerSimulator controller(data.path());
        PendantWindow window(&controller);
        auto *page = new ClosingPage;
        page->mayClose = mayClose;
        kelplugin::CreateCenterWidget(QStringLiteral("p"), page);
        // The page asked need not be the tab in front.
        window.addPendantPage(new QWidget, QStringLiteral("Program"));
        window.centreTabs()->setCurrentIndex(1);
        window.show();

        QCOMPARE(window.close(), mayClose);
        QCOMPARE(page->asked, 1);
        QCOMPARE(window.isVisible(), !mayClose);
    }
};

QTEST_MAIN(TestPendantWindow)
#include "tst_pendantwindow.moc"
