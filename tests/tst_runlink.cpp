#include "localcell.h"
#include "messagelist.h"
#include "programeditor.h"
#include "runlink.h"

#include "controller/controllersimulator.h"
#include "controller/programrunner.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using kelcontroller::ControllerSimulator;
using kelcontroller::ProgramRunner;

// The program editor's buttons against the simulated controller, as an operator uses them.
class TestRunLink : public QObject
{
    Q_OBJECT

private slots:
    void refusedRunMarksTheLineAndMovesNothing_data();
    void refusedRunMarksTheLineAndMovesNothing();
    void runShowsItsLineUntilItEnds();
};

namespace {

const QStringList seam {
    QStringLiteral("LsMoveL(p10, v100, fine, tool0, wobj0);"),
    QStringLiteral("LaserOn(\"LsData1\");"),
    QStringLiteral("LsMoveL(p20, v20, fine, tool0, wobj0);"),
    QStringLiteral("LaserOff;"),
};

struct Pendant
{
    Pendant()
    {
        sim.runner()->setRealTime(false);
        editor.setLines(seam);
    }
    void press(const char *button)
    {
        editor.findChild<QPushButton *>(QLatin1String(button))->click();
    }

    QTemporaryDir dir;
    ControllerSimulator sim {dir.path()};
    ProgramEditor editor;
    MessageList messages;
    LocalCell cell {&sim};
    RunLink link {&editor, &cell, &messages};
};

} // namespace

void TestRunLink::refusedRunMarksTheLineAndMovesNothing_data()
{
    QTest::addColumn<bool>("welding");
    QTest::addColumn<bool>("powered");
    QTest::addColumn<QString>("because");
    QTest::addColumn<int>("line");

    QTest::newRow("robot not powered") << true << false << "powered" << 0;
    QTest::newRow("main switch off") << false << true << "switch" << 1;
}

void TestRunLink::refusedRunMarksTheLineAndMovesNothing()
{
    QFETCH(bool, welding);
    QFETCH(bool, powered);
    QFETCH(QString, because);
    QFETCH(int, line);
    Pendant pendant;
    if (welding)
        pendant.sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
            QStringLiteral("set_weld_enable"), QStringLiteral("TRUE"));
    pendant.sim.setRobotPowered(powered);
    const QVector3D before = pendant.sim.robotPosition();

    pendant.press("pushButton_run");

    QCOMPARE(pendant.editor.runState(), ProgramEditor::RunState::Idle);
    QCOMPARE(pendant.messages.topLevelItemCount(), 1);
    const auto *list
        = pendant.editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"));
    QVERIFY2(list->item(line)->toolTip().contains(because, Qt::CaseInsensitive),
        qPrintable(list->item(line)->toolTip()));
    pendant.sim.runner()->advance(5000);
    QCOMPARE(pendant.sim.robotPosition(), before);
}

void TestRunLink::runShowsItsLineUntilItEnds()
{
    Pendant pendant;
    pendant.sim.commandCustomData(nullptr, QStringLiteral("kellaserweld"),
        QStringLiteral("set_weld_enable"), QStringLiteral("TRUE"));
    pendant.sim.setRobotPowered(true);

    pendant.press("pushButton_run");
    QCOMPARE(pendant.editor.runState(), ProgramEditor::RunState::Running);
    pendant.sim.runner()->advance(3000); // past the first move and the motion delay
    QCOMPARE(pendant.editor.runLine(), 2);
    pendant.press("pushButton_stop");
    QCOMPARE(pendant.editor.runState(), ProgramEditor::RunState::Idle);
    QCOMPARE(pendant.editor.runLine(), -1);

    pendant.press("pushButton_step");
    QCOMPARE(pendant.editor.runState(), ProgramEditor::RunState::Paused);
    QCOMPARE(pendant.editor.runLine(), 0);
    pendant.press("pushButton_run"); // goes on from the step
    pendant.sim.runner()->advance(60000);
    QCOMPARE(pendant.editor.runState(), ProgramEditor::RunState::Idle);
    QCOMPARE(pendant.messages.topLevelItemCount(), 0);
}

QTEST_MAIN(TestRunLink)
#include "tst_runlink.moc"
