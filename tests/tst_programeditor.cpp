#include "linevalidator.h"
#include "programeditor.h"
#include "rl/rllaserwelddefine.h"
#include "skeletonform.h"
#include "support/scriptedcontroller.h"

#include "kelplugin/rlcatalog.h"
#include "kelplugin/rlmanager.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

#include <functional>

// What a test does with the instruction dialog once it is open.
using DialogStep = std::function<void(QDialog *)>;
Q_DECLARE_METATYPE(DialogStep)
Q_DECLARE_METATYPE(ProgramEditor::RunState)

static void accept(QDialog *dialog)
{
    dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))
        ->button(QDialogButtonBox::Ok)
        ->click();
}

class TestProgramEditor : public QObject
{
    Q_OBJECT

private slots:
    void init() { kelplugin::rlCatalog().clear(); }

    void skeletonFields_data()
    {
        QTest::addColumn<QString>("skeleton");
        // One "caption|kind|values" entry per field, in order.
        QTest::addColumn<QStringList>("fields");

        QTest::newRow("two spin fields")
            << "LsWireFwd($Speed:#spn#1,100#true$, $Time:#spn#1,10000#true$);"
            << QStringList {"Speed:|spn|1,100", "Time:|spn|1,10000"};
        QTest::newRow("combo items keep their quotes")
            << "LaserOn($Sched:#cmb#\"LsData1\"/\"LsData2\"#true$);"
            << QStringList {"Sched:|cmb|\"LsData1\"/\"LsData2\""};
        QTest::newRow("unclosed field is text") << "f($a#spn#1,2#true);" << QStringList {};
        QTest::newRow("too few pieces is text")
            << "f($cost$, $n:#spn#0,9#true$);" << QStringList {"n:|spn|0,9"};
    }

    void skeletonFields()
    {
        QFETCH(QString, skeleton);
        QFETCH(QStringList, fields);

        QStringList seen;
        for (const SkeletonForm::Piece &piece : SkeletonForm::parse(skeleton)) {
            if (piece.isField)
                seen.append(
                    QStringList {piece.field.caption, piece.field.kind, piece.field.values}.join(
                        '|'));
        }
        QCOMPARE(seen, fields);
    }

    void skeletonFormText_data()
    {
        QTest::addColumn<QString>("skeleton");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("read");
        QTest::addColumn<QString>("text");

        const QString wire
            = QStringLiteral("LsWireFwd($Speed:#spn#1,100#true$, $Time:#spn#1,10000#true$);");
        const QString sched
            = QStringLiteral("LaserOn($Sched:#cmb#\"LsData1\"/\"LsData2\"/\"LsData3\"#true$);");
        QTest::newRow("default text without blanks")
            << wire << "LsWireFwd(50,1000);" << true << "LsWireFwd(50, 1000);";
        QTest::newRow("blanks and a comment")
            << wire << "  LsWireFwd ( 7 ,  20 ) ; // x" << true << "LsWireFwd(7, 20);";
        QTest::newRow("value above the bound is clamped")
            << wire << "LsWireFwd(500,1000);" << true << "LsWireFwd(100, 1000);";
        QTest::newRow("fraction is refused")
            << wire << "LsWireFwd(5.5,1000);" << false << "LsWireFwd(1, 1);";
        QTest::newRow("unknown combo item is refused")
            << sched << "LaserOn(\"LsData9\");" << false << "LaserOn(\"LsData1\");";
        QTest::newRow("unknown kind is free text") << "Wait($s:#txt#-#true$);"
                                                   << "Wait( 2.5 );" << true << "Wait(2.5);";
        // Refusing this line used to take seconds: the match tried every split of the blanks.
        QTest::newRow("long run of blanks is refused")
            << wire << "LsWireFwd(" + QString(200000, QLatin1Char(' ')) + "x" << false
            << "LsWireFwd(1, 1);";
        // A combo box without items wrote an empty value that it then refused to read back.
        QTest::newRow("combo without items reads its own text") << "g($a#cmb#$);"
                                                                << "g();" << true << "g();";
        // Blanks between two words of the literal were dropped from the match, so the form's own
        // text did not read back.
        QTest::newRow("blank between words of the literal")
            << "WaitTime InPos($t:#spn#0,100#true$);"
            << "WaitTime InPos(5);" << true << "WaitTime InPos(5);";
        // A character beyond 16 bits in the literal was escaped half by half: nothing matched.
        QTest::newRow("literal beyond 16 bits")
            << QString::fromUtf8("Note\xF0\x9D\x9D\x9D($t:#spn#0,9#true$);")
            << QString::fromUtf8("Note\xF0\x9D\x9D\x9D(5);") << true
            << QString::fromUtf8("Note\xF0\x9D\x9D\x9D(5);");
        // A next-line character (U+0085) is a blank to QChar but was not one to the pattern.
        QTest::newRow("unicode blank in the literal")
            << QString::fromUtf8(",)\xC2\x85\xC2\x85;") << QString::fromUtf8(",)\xC2\x85\xC2\x85;")
            << true << QString::fromUtf8(",)\xC2\x85\xC2\x85;");
        QTest::newRow("non-numeric bounds") << "f($n:#spn#low,high#true$);"
                                            << "f(-2147483648);" << true << "f(-2147483648);";
    }

    void skeletonFormText()
    {
        QFETCH(QString, skeleton);
        QFETCH(QString, line);
        QFETCH(bool, read);
        QFETCH(QString, text);

        SkeletonForm form(skeleton);
        QCOMPARE(form.setText(line), read);
        QCOMPARE(form.text(), text);
    }

    void lineVerdicts_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("verdict");

        const int valid = int(LineValidator::Verdict::Valid);
        const int invalid = int(LineValidator::Verdict::Invalid);
        const int unchecked = int(LineValidator::Verdict::Unchecked);
        QTest::newRow("wire feed") << "LsWireFwd(50,1000);" << valid;
        QTest::newRow("wire feed fraction") << "LsWireFwd(50.5,1000);" << invalid;
        QTest::newRow("wire feed without semicolon") << "LsWireFwd(50,1000)" << invalid;
        // The range of a value is the editor's to check, not the pattern's.
        QTest::newRow("negative wire speed, blanks and a comment")
            << "  LsWireFwd( -5 , 1000 );  // feed" << valid;
        QTest::newRow("bare name") << "  LaserOff // end" << valid;
        QTest::newRow("name-only pattern refuses the default text") << "LaserOff;" << invalid;
        QTest::newRow("weld data pattern wants its literal marker")
            << "LaserOn(\"LsData1\");" << invalid;
        QTest::newRow("literal marker") << "LaserOn(\"%l\");" << valid;
        QTest::newRow("matching set literal marker") << "LsParaMatch(\"%l\");" << valid;
        QTest::newRow("comment line") << "// weld seam 1" << unchecked;
        QTest::newRow("instruction of no plug-in") << "MoveJ p1, v100, fine, tool0;" << unchecked;
    }

    void lineVerdicts()
    {
        QFETCH(QString, line);
        QFETCH(int, verdict);
        RlLaserWeldDefine define;
        LineValidator validator;
        QCOMPARE(int(validator.check(line).verdict), verdict);
    }

    void unusablePatternLeavesLinesUnchecked()
    {
        kelplugin::RLManager manager;
        manager.createTypeKey(QStringLiteral("Broken"));
        manager.createPattern(QStringLiteral("Broken"), QStringLiteral("^Broken((("));
        LineValidator validator;
        const LineValidator::Result result = validator.check(QStringLiteral("Broken;"));
        QCOMPARE(result.verdict, LineValidator::Verdict::Unchecked);
        QVERIFY(!result.message.isEmpty());
    }

    void dialogEdits_data()
    {
        QTest::addColumn<QStringList>("program");
        QTest::addColumn<QString>("insert");  // empty: edit the first line
        QTest::addColumn<DialogStep>("step"); // empty: no dialog may open
        QTest::addColumn<QStringList>("result");

        const auto pick = [](const char *combo, const char *item, const char *shown = nullptr) {
            return DialogStep([=](QDialog *dialog) {
                auto *box = dialog->findChild<QComboBox *>(QLatin1String(combo));
                QVERIFY(box);
                if (shown)
                    QCOMPARE(box->currentText(), QLatin1String(shown));
                box->setCurrentIndex(box->findText(QLatin1String(item)));
                accept(dialog);
            });
        };
        QTest::newRow("instruction without fields goes in directly")
            << QStringList() << "LaserOff" << DialogStep() << QStringList {"LaserOff;"};
        QTest::newRow("skeleton form starts from the default text") << QStringList {
            "LaserOn(\"LsData1\");", "LaserOff;"} << "LsWireFwd" << DialogStep([](QDialog *dialog) {
            auto *speed = dialog->findChild<QSpinBox *>(QStringLiteral("field_0"));
            auto *time = dialog->findChild<QSpinBox *>(QStringLiteral("field_1"));
            QVERIFY(speed && time);
            QCOMPARE(speed->value(), 50);
            QCOMPARE(time->value(), 1000);
            speed->setValue(20);
            accept(dialog);
        }) << QStringList {"LaserOn(\"LsData1\");", "LsWireFwd(20, 1000);", "LaserOff;"};
        QTest::newRow("insert editor") << QStringList() << "LsMoveL" << pick("comboBox_zone", "z10")
                                       << QStringList {"LsMoveL(p10, v100, z10, tool0, wobj0);"};
        QTest::newRow("property editor filled from the line")
            << QStringList {"LsParaSet(\"LsData4\");"} << QString()
            << pick("comboBox_data", "LsData12", "LsData4")
            << QStringList {"LsParaSet(\"LsData12\");"};
        QTest::newRow("cancelled dialog changes nothing") << QStringList {
            "LsWireBwd(10,200);"} << QString() << DialogStep([](QDialog *dialog) {
            dialog->findChild<QSpinBox *>(QStringLiteral("field_1"))->setValue(300);
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel)->click();
        }) << QStringList {"LsWireBwd(10,200);"};
    }

    void dialogEdits()
    {
        QFETCH(QStringList, program);
        QFETCH(QString, insert);
        QFETCH(DialogStep, step);
        QFETCH(QStringList, result);
        ScriptedController controller;
        RlLaserWeldDefine define;
        ProgramEditor editor;
        editor.setLines(program);
        QSignalSpy changed(&editor, &ProgramEditor::programChanged);
        if (!program.isEmpty())
            editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"))->setCurrentRow(0);
        if (!insert.isEmpty())
            editor.selectInstruction(insert);
        const char *button = insert.isEmpty() ? "pushButton_edit" : "pushButton_insert";
        editor.findChild<QPushButton *>(QLatin1String(button))->click();

        auto *dialog = editor.findChild<QDialog *>(QStringLiteral("dialog_instruction"));
        QCOMPARE(dialog != nullptr, bool(step));
        if (step)
            step(dialog);
        QCOMPARE(editor.lines(), result);
        QCOMPARE(changed.isEmpty(), result == program);
    }

    void marksLinesThatMissTheirPattern()
    {
        RlLaserWeldDefine define;
        ProgramEditor editor;
        editor.setLines(
            {QStringLiteral("LsWireFwd(50,1000);"), QStringLiteral("LsWireFwd(50.5,1000);")});
        auto *program = editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"));
        QVERIFY(program->item(0)->toolTip().isEmpty());
        QCOMPARE(program->item(1)->data(ProgramEditor::VerdictRole).toInt(),
            int(LineValidator::Verdict::Invalid));
        QVERIFY(!program->item(1)->icon().isNull());
        QVERIFY(!program->item(1)->toolTip().isEmpty());

        // Typing a fix re-checks the line.
        program->item(1)->setText(QStringLiteral("LsWireFwd(50,1000);"));
        QCOMPARE(program->item(1)->data(ProgramEditor::VerdictRole).toInt(),
            int(LineValidator::Verdict::Valid));
        QVERIFY(program->item(1)->icon().isNull());
    }

    void savesAndOpensPrograms()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("seam.prg"));
        const QStringList program {QStringLiteral("LaserOn(\"LsData2\");"), QString(),
            QStringLiteral("// Schweißnaht 1"), QStringLiteral("LaserOff;")};
        {
            ProgramEditor editor;
            editor.setLines(program);
            QVERIFY(editor.saveFile(path));
        }
        RlLaserWeldDefine define;
        ProgramEditor editor;
        QVERIFY(editor.openFile(path));
        QCOMPARE(editor.lines(), program);
        QCOMPARE(editor.fileName(), path);

        // Files written elsewhere may end lines with CR LF, or hold anything at all: decoding
        // used to stop at the first NUL byte and dropped the rest of the file.
        QByteArray bytes = "LaserOff;\r\nLsWireFwd(1,1);\r\n";
        for (int i = 0; i < 4096; ++i)
            bytes.append(char((i * 7919) % 256));
        bytes.append("\nLsWireFwd(\xff\xfe,");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        QVERIFY(editor.openFile(path));
        QCOMPARE(editor.lines().mid(0, 2),
            (QStringList {QStringLiteral("LaserOff;"), QStringLiteral("LsWireFwd(1,1);")}));
        QVERIFY(editor.lines().last().startsWith(QStringLiteral("LsWireFwd(")));
    }

    void unwritableFileFailsSave()
    {
        QTemporaryDir dir;
        ProgramEditor editor;
        editor.setLines({QStringLiteral("LaserOff;")});
        QVERIFY(!editor.saveFile(dir.filePath(QStringLiteral("missing/folder/seam.prg"))));
        QVERIFY(!editor.findChild<QLabel *>(QStringLiteral("label_status"))->text().isEmpty());
        QVERIFY(editor.fileName().isEmpty());
    }

    void runStateLocksTheProgram_data()
    {
        QTest::addColumn<ProgramEditor::RunState>("state");
        QTest::addColumn<QString>("enabled"); // r(un) s(tep) S(top) e(dit)

        QTest::newRow("idle") << ProgramEditor::RunState::Idle << "rse";
        QTest::newRow("running") << ProgramEditor::RunState::Running << "S";
        QTest::newRow("paused after a step") << ProgramEditor::RunState::Paused << "rsS";
    }

    void runStateLocksTheProgram()
    {
        QFETCH(ProgramEditor::RunState, state);
        QFETCH(QString, enabled);
        ProgramEditor editor;
        editor.setLines({QStringLiteral("LaserOff;"), QStringLiteral("LsParaMatchOff;")});
        editor.setRunState(ProgramEditor::RunState::Running);
        editor.setRunLine(1);
        editor.setRunState(state);

        const auto button = [&editor](const char *name) {
            return editor.findChild<QPushButton *>(QLatin1String(name))->isEnabled();
        };
        QCOMPARE(button("pushButton_run"), enabled.contains(QLatin1Char('r')));
        QCOMPARE(button("pushButton_step"), enabled.contains(QLatin1Char('s')));
        QCOMPARE(button("pushButton_stop"), enabled.contains(QLatin1Char('S')));
        for (const char *name : {"pushButton_edit", "pushButton_delete", "pushButton_insert",
                 "pushButton_insert_default", "pushButton_open"})
            QCOMPARE(button(name), enabled.contains(QLatin1Char('e')));
        QCOMPARE(
            editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"))->editTriggers()
                != QAbstractItemView::NoEditTriggers,
            enabled.contains(QLatin1Char('e')));
        // An ended run shows no line.
        QCOMPARE(editor.runLine(), state == ProgramEditor::RunState::Idle ? -1 : 1);
    }

    void runMarksAreNoEdits()
    {
        ProgramEditor editor;
        editor.setLines({QStringLiteral("LaserOff;"), QStringLiteral("LsParaMatchOff;")});
        auto *list = editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"));
        QSignalSpy changed(&editor, &ProgramEditor::programChanged);

        editor.setRunLine(0);
        editor.setRunLine(1);
        QCOMPARE(list->item(0)->background(), QBrush());
        QVERIFY(list->item(1)->background() != QBrush());
        editor.markRefusedLine(1, QStringLiteral("Line 2: refused."));
        QCOMPARE(list->item(1)->toolTip(), QStringLiteral("Line 2: refused."));
        QVERIFY(!list->item(1)->icon().isNull());
        editor.setRunLine(7); // beyond the program: no line
        QCOMPARE(editor.runLine(), -1);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(editor.lines(), QStringList({"LaserOff;", "LsParaMatchOff;"}));
    }
};

QTEST_MAIN(TestProgramEditor)
#include "tst_programeditor.moc"
