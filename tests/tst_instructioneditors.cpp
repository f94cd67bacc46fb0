#include "rl/rlparasetinsertwidget.h"
#include "rl/wmovecfinsertwidget.h"
#include "rl/wmovecinsertwidget.h"
#include "rl/wmovelinsertwidget.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"

#include <QComboBox>
#include <QPushButton>
#include <QtTest>

#include <memory>

static std::unique_ptr<kelplugin::RLContentBase> makeEditor(const QString &name)
{
    if (name == QLatin1String("LsMoveL"))
        return std::make_unique<kelplugin::WMoveLInsertWidget>(name);
    if (name == QLatin1String("LsMoveC"))
        return std::make_unique<kelplugin::WMoveCInsertWidget>(name);
    if (name == QLatin1String("LsMoveCF"))
        return std::make_unique<kelplugin::WMoveCFInsertWidget>(name);
    return std::make_unique<kelplugin::RLParaSetInsertWidget>(name);
}

class TestInstructionEditors : public QObject
{
    Q_OBJECT

private slots:
    void init() { testenv::resetLogFile(); }

    void roundTrip_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("text"); // empty: the line itself

        const struct
        {
            const char *row, *name, *line, *text;
        } rows[] = {
            {"LsMoveL Offs with fractions", "LsMoveL",
                "LsMoveL(Offs(p20,1.5,-2,3), v100, fine, tool0, wobj0);", nullptr},
            {"LsMoveL RelTool with blanks and no semicolon", "LsMoveL",
                "  LsMoveL( RelTool( p10 , 0 , 0 , -5 ) ,v100,fine,tool0,wobj0)",
                "LsMoveL(RelTool(p10,0,0,-5), v100, fine, tool0, wobj0);"},
            {"LsMoveL names the host does not list are kept", "LsMoveL",
                "LsMoveL(pX, vFast, zBig, gun2, table);", nullptr},
            {"LsMoveL missing trailing parameters take the defaults", "LsMoveL", "LsMoveL(p20);",
                "LsMoveL(p20, v100, fine, tool0, wobj0);"},
            {"LsMoveC via and end point", "LsMoveC",
                "LsMoveC(p10, Offs(p20,0,0,10), v500, z1, tool0, wobj1);", nullptr},
            {"LsMoveCF via and end point", "LsMoveCF",
                "LsMoveCF(RelTool(p20,1,2,3), p10, v100, z10, tool1, wobj0);", nullptr},
            {"LsParaSet last weld data", "LsParaSet", " LsParaSet( \"LsData30\" )",
                "LsParaSet(\"LsData30\");"},
        };
        for (const auto &r : rows)
            QTest::newRow(r.row) << r.name << r.line << (r.text ? r.text : r.line);
    }

    void roundTrip()
    {
        QFETCH(QString, name);
        QFETCH(QString, line);
        QFETCH(QString, text);
        ScriptedController controller;
        const auto editor = makeEditor(name);

        editor->setInstructionText(line);
        QCOMPARE(editor->instructionText(), text);
        // What the editor wrote reads back the same.
        const auto second = makeEditor(name);
        second->setInstructionText(editor->instructionText());
        QCOMPARE(second->instructionText(), text);
    }

    void badLineKeepsTheForm_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("line");

        const struct
        {
            const char *row, *name, *line;
        } rows[] = {
            {"other instruction", "LsMoveL", "LsMoveC(p10, p20, v100, fine, tool0, wobj0);"},
            {"trailing comment", "LsMoveL", "LsMoveL(p20, v500, z10, tool1, wobj1); // weld"},
            {"too many parameters", "LsMoveL", "LsMoveL(p20, v500, z10, tool1, wobj1, extra);"},
            {"symbolic offset", "LsMoveL", "LsMoveL(Offs(p20,dx,0,0), v500);"},
            {"one point for a circle", "LsMoveC", "LsMoveC(p20);"},
            {"control characters", "LsMoveCF", "\x01(\x02\x7f"},
            {"unknown weld data", "LsParaSet", "LsParaSet(\"LsData31\");"},
            {"unquoted weld data", "LsParaSet", "LsParaSet(LsData2);"},
            {"weld data of another instruction", "LsParaSet", "LaserOn(\"LsData2\");"},
        };
        for (const auto &r : rows)
            QTest::newRow(r.row) << QString::fromLatin1(r.name) << QString::fromLatin1(r.line);
    }

    void badLineKeepsTheForm()
    {
        QFETCH(QString, name);
        QFETCH(QString, line);
        ScriptedController controller;
        const auto editor = makeEditor(name);
        const QString before = editor->instructionText();

        editor->setInstructionText(line);
        QCOMPARE(editor->instructionText(), before);
        bool warned = false;
        for (const QString &logged : testenv::logLines())
            warned = warned || logged.startsWith(QStringLiteral("\x1b[33m[W|"));
        QVERIFY(warned);
    }

    void newEditorStartsFromTheHost()
    {
        ScriptedController controller;
        controller.curTool = QStringLiteral("tool1");
        controller.curWobj = QStringLiteral("wobj1");
        QCOMPARE(makeEditor("LsMoveL")->instructionText(),
            QStringLiteral("LsMoveL(p10, v100, fine, tool1, wobj1);"));
        // A host without lists still gives a line.
        for (QStringList *list :
            {&controller.speeds, &controller.zones, &controller.tools, &controller.wobjs})
            list->clear();
        controller.curTool.clear();
        controller.curWobj.clear();
        QCOMPARE(makeEditor("LsMoveC")->instructionText(),
            QStringLiteral("LsMoveC(p10, p10, v100, fine, tool0, wobj0);"));
    }

    void userChoiceAnnouncesTheText()
    {
        ScriptedController controller;
        kelplugin::WMoveLInsertWidget editor(QStringLiteral("LsMoveL"));
        QSignalSpy spy(&editor, &kelplugin::RLContentBase::instructionTextChanged);

        auto *speed = editor.findChild<QComboBox *>(QStringLiteral("comboBox_speed"));
        QVERIFY(speed);
        speed->setCurrentIndex(speed->findText(QStringLiteral("v500")));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(
            spy.at(0).at(0).toString(), QStringLiteral("LsMoveL(p10, v500, fine, tool0, wobj0);"));

        // Filling from a line announces the result once, not once per field.
        spy.clear();
        editor.setInstructionText(
            QStringLiteral("LsMoveL(Offs(p20,1,2,3), v100, z10, tool1, wobj1);"));
        QCOMPARE(spy.count(), 1);
    }

    void addCurrentPositionTeachesTheNextFreePoint()
    {
        ScriptedController controller;
        controller.points = QStringList {QStringLiteral("p1"), QStringLiteral("p3")};
        kelplugin::WMoveCInsertWidget editor(QStringLiteral("LsMoveC"));
        auto *chooser = editor.findChild<QWidget *>(QStringLiteral("widget_to_point"));
        QVERIFY(chooser);
        auto *add = chooser->findChild<QPushButton *>(QStringLiteral("pushButton_add_point"));
        QVERIFY(add);

        add->click();
        QCOMPARE(controller.points.last(), QStringLiteral("p2"));
        QCOMPARE(
            editor.instructionText(), QStringLiteral("LsMoveC(p1, p2, v100, fine, tool0, wobj0);"));
    }

    void addingAPointNeedsLevelThreeAtTheClick_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<bool>("added");
        QTest::newRow("level 2") << 2 << false;
        QTest::newRow("level 3") << 3 << true;
    }

    void addingAPointNeedsLevelThreeAtTheClick()
    {
        QFETCH(int, level);
        QFETCH(bool, added);
        ScriptedController controller;
        RecordingShell shell;
        controller.points = QStringList {QStringLiteral("p1")};
        kelplugin::WMoveLInsertWidget editor(QStringLiteral("LsMoveL"));
        // The editor was opened at level 3; the level counts when the point is taught.
        controller.userLevel = level;

        editor.findChild<QPushButton *>(QStringLiteral("pushButton_add_point"))->click();
        QCOMPARE(controller.points.contains(QStringLiteral("p2")), added);
        QCOMPARE(shell.messageTexts(1),
            added ? QStringList() : QStringList {QStringLiteral("Insufficient user permissions!")});
    }

    void refusedCurrentPositionIsReported()
    {
        struct RefusingController : ScriptedController
        {
            bool addCurrentPoint(const QString &, bool, const QString &, const QString &) override
            {
                return false;
            }
        } controller;
        RecordingShell shell;
        kelplugin::WMoveLInsertWidget editor(QStringLiteral("LsMoveL"));
        const QString before = editor.instructionText();

        editor.findChild<QPushButton *>(QStringLiteral("pushButton_add_point"))->click();
        QCOMPARE(editor.instructionText(), before);
        QCOMPARE(shell.messageTexts(2),
            QStringList {QStringLiteral("Failed to add the current position.")});
    }
};

QTEST_MAIN(TestInstructionEditors)
#include "tst_instructioneditors.moc"
