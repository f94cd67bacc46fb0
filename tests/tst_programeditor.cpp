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
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

class TestProgramEditor : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void skeletonFields_data();
    void skeletonFields();
    void skeletonFormText_data();
    void skeletonFormText();
    void lineVerdicts_data();
    void lineVerdicts();
    void unusablePatternLeavesLinesUnchecked();

    void listsTheRegisteredGroup();
    void insertsDefaultTextOfAnInstructionWithoutFields();
    void insertsThroughTheSkeletonForm();
    void insertsThroughTheInsertEditor();
    void editsALineWithItsPropertyEditor();
    void cancelledDialogChangesNothing();
    void marksLinesThatMissTheirPattern();
    void savesAndOpensPrograms();
    void opensAnyBytesWithoutCrashing();
    void unwritableFileFailsSave();

private:
    static QDialog *openDialog(ProgramEditor &editor);
    static void accept(QDialog *dialog);
};

void TestProgramEditor::init()
{
    kelplugin::rlCatalog().clear();
}

QDialog *TestProgramEditor::openDialog(ProgramEditor &editor)
{
    return editor.findChild<QDialog *>(QStringLiteral("dialog_instruction"));
}

void TestProgramEditor::accept(QDialog *dialog)
{
    auto *buttons = dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QVERIFY(buttons);
    buttons->button(QDialogButtonBox::Ok)->click();
}

void TestProgramEditor::skeletonFields_data()
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
    QTest::newRow("no field") << "LaserOff();" << QStringList {};
    QTest::newRow("unclosed field is text") << "f($a#spn#1,2#true);" << QStringList {};
    QTest::newRow("too few parts is text")
        << "f($cost$, $n:#spn#0,9#true$);" << QStringList {"n:|spn|0,9"};
    QTest::newRow("flag is optional") << "f($n:#spn#0,9$);" << QStringList {"n:|spn|0,9"};
}

void TestProgramEditor::skeletonFields()
{
    QFETCH(QString, skeleton);
    QFETCH(QStringList, fields);

    QStringList seen;
    for (const SkeletonForm::Piece &piece : SkeletonForm::parse(skeleton)) {
        if (piece.isField)
            seen.append(
                QStringList {piece.field.caption, piece.field.kind, piece.field.values}.join('|'));
    }
    QCOMPARE(seen, fields);
}

void TestProgramEditor::skeletonFormText_data()
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
    QTest::newRow("other instruction is refused")
        << wire << "LsWireBwd(50,1000);" << false << "LsWireFwd(1, 1);";
    QTest::newRow("combo item") << sched << "LaserOn(\"LsData3\");" << true
                                << "LaserOn(\"LsData3\");";
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
    QTest::newRow("non-numeric bounds") << "f($n:#spn#low,high#true$);"
                                        << "f(-2147483648);" << true << "f(-2147483648);";
}

void TestProgramEditor::skeletonFormText()
{
    QFETCH(QString, skeleton);
    QFETCH(QString, line);
    QFETCH(bool, read);
    QFETCH(QString, text);

    SkeletonForm form(skeleton);
    QCOMPARE(form.setText(line), read);
    QCOMPARE(form.text(), text);
}

void TestProgramEditor::lineVerdicts_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("verdict");

    const int valid = int(LineValidator::Verdict::Valid);
    const int invalid = int(LineValidator::Verdict::Invalid);
    const int unchecked = int(LineValidator::Verdict::Unchecked);
    QTest::newRow("wire feed") << "LsWireFwd(50,1000);" << valid;
    QTest::newRow("wire feed fraction") << "LsWireFwd(50.5,1000);" << invalid;
    QTest::newRow("bare name") << "  LaserOff // end" << valid;
    QTest::newRow("name-only pattern refuses the default text") << "LaserOff;" << invalid;
    QTest::newRow("weld data pattern wants its literal marker")
        << "LaserOn(\"LsData1\");" << invalid;
    QTest::newRow("literal marker") << "LaserOn(\"%l\");" << valid;
    QTest::newRow("comment line") << "// weld seam 1" << unchecked;
    QTest::newRow("blank line") << "   " << unchecked;
    QTest::newRow("instruction of no plug-in") << "MoveJ p1, v100, fine, tool0;" << unchecked;
}

void TestProgramEditor::lineVerdicts()
{
    QFETCH(QString, line);
    QFETCH(int, verdict);
    RlLaserWeldDefine define;
    LineValidator validator;
    QCOMPARE(int(validator.check(line).verdict), verdict);
}

void TestProgramEditor::unusablePatternLeavesLinesUnchecked()
{
    kelplugin::RLManager manager;
    manager.createTypeKey(QStringLiteral("Broken"));
    manager.createPattern(QStringLiteral("Broken"), QStringLiteral("^Broken((("));
    LineValidator validator;
    const LineValidator::Result result = validator.check(QStringLiteral("Broken;"));
    QCOMPARE(result.verdict, LineValidator::Verdict::Unchecked);
    QVERIFY(!result.message.isEmpty());
}

void TestProgramEditor::listsTheRegisteredGroup()
{
    RlLaserWeldDefine define;
    ProgramEditor editor;
    auto *groups = editor.findChild<QComboBox *>(QStringLiteral("comboBox_group"));
    auto *instructions = editor.findChild<QListWidget *>(QStringLiteral("listWidget_instructions"));
    QVERIFY(groups && instructions);
    QCOMPARE(groups->currentText(), QStringLiteral("Laser Weld Ins"));
    QCOMPARE(instructions->count(), 10);
    QCOMPARE(instructions->item(0)->text(), QStringLiteral("LaserOn"));
    QCOMPARE(instructions->item(9)->text(), QStringLiteral("LsMoveCF"));
}

void TestProgramEditor::insertsDefaultTextOfAnInstructionWithoutFields()
{
    RlLaserWeldDefine define;
    ProgramEditor editor;
    QSignalSpy changed(&editor, &ProgramEditor::programChanged);
    editor.selectInstruction(QStringLiteral("LaserOff"));
    editor.findChild<QPushButton *>(QStringLiteral("pushButton_insert"))->click();
    QVERIFY(!openDialog(editor));
    QCOMPARE(editor.lines(), QStringList {QStringLiteral("LaserOff;")});
    QCOMPARE(changed.count(), 1);
}

void TestProgramEditor::insertsThroughTheSkeletonForm()
{
    RlLaserWeldDefine define;
    ProgramEditor editor;
    editor.setLines({QStringLiteral("LaserOn(\"LsData1\");"), QStringLiteral("LaserOff;")});
    editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"))->setCurrentRow(0);
    editor.selectInstruction(QStringLiteral("LsWireFwd"));
    editor.findChild<QPushButton *>(QStringLiteral("pushButton_insert"))->click();

    QDialog *dialog = openDialog(editor);
    QVERIFY(dialog);
    auto *speed = dialog->findChild<QSpinBox *>(QStringLiteral("field_0"));
    auto *time = dialog->findChild<QSpinBox *>(QStringLiteral("field_1"));
    QVERIFY(speed && time);
    // The form starts from the registered default text.
    QCOMPARE(speed->value(), 50);
    QCOMPARE(time->value(), 1000);
    QCOMPARE(time->maximum(), 10000);
    speed->setValue(20);
    accept(dialog);

    QCOMPARE(editor.lines(),
        (QStringList {QStringLiteral("LaserOn(\"LsData1\");"),
            QStringLiteral("LsWireFwd(20, 1000);"), QStringLiteral("LaserOff;")}));
}

void TestProgramEditor::insertsThroughTheInsertEditor()
{
    ScriptedController controller;
    RlLaserWeldDefine define;
    ProgramEditor editor;
    editor.selectInstruction(QStringLiteral("LsMoveL"));
    editor.findChild<QPushButton *>(QStringLiteral("pushButton_insert"))->click();

    QDialog *dialog = openDialog(editor);
    QVERIFY(dialog);
    auto *zone = dialog->findChild<QComboBox *>(QStringLiteral("comboBox_zone"));
    QVERIFY(zone);
    zone->setCurrentIndex(zone->findText(QStringLiteral("z10")));
    accept(dialog);

    QCOMPARE(
        editor.lines(), QStringList {QStringLiteral("LsMoveL(p10, v100, z10, tool0, wobj0);")});
}

void TestProgramEditor::editsALineWithItsPropertyEditor()
{
    ScriptedController controller;
    RlLaserWeldDefine define;
    ProgramEditor editor;
    editor.setLines({QStringLiteral("LsParaSet(\"LsData4\");")});
    editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"))->setCurrentRow(0);
    editor.findChild<QPushButton *>(QStringLiteral("pushButton_edit"))->click();

    QDialog *dialog = openDialog(editor);
    QVERIFY(dialog);
    auto *data = dialog->findChild<QComboBox *>(QStringLiteral("comboBox_data"));
    QVERIFY(data);
    QCOMPARE(data->currentText(), QStringLiteral("LsData4"));
    data->setCurrentIndex(data->findText(QStringLiteral("LsData12")));
    accept(dialog);

    QCOMPARE(editor.lines(), QStringList {QStringLiteral("LsParaSet(\"LsData12\");")});
}

void TestProgramEditor::cancelledDialogChangesNothing()
{
    RlLaserWeldDefine define;
    ProgramEditor editor;
    editor.setLines({QStringLiteral("LsWireBwd(10,200);")});
    editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"))->setCurrentRow(0);
    editor.findChild<QPushButton *>(QStringLiteral("pushButton_edit"))->click();
    QDialog *dialog = openDialog(editor);
    QVERIFY(dialog);
    QCOMPARE(dialog->findChild<QSpinBox *>(QStringLiteral("field_1"))->value(), 200);
    dialog->findChild<QSpinBox *>(QStringLiteral("field_1"))->setValue(300);
    dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel)->click();
    QCOMPARE(editor.lines(), QStringList {QStringLiteral("LsWireBwd(10,200);")});
}

void TestProgramEditor::marksLinesThatMissTheirPattern()
{
    RlLaserWeldDefine define;
    ProgramEditor editor;
    editor.setLines(
        {QStringLiteral("LsWireFwd(50,1000);"), QStringLiteral("LsWireFwd(50.5,1000);")});
    auto *program = editor.findChild<QListWidget *>(QStringLiteral("listWidget_program"));
    QCOMPARE(program->item(0)->data(ProgramEditor::VerdictRole).toInt(),
        int(LineValidator::Verdict::Valid));
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

void TestProgramEditor::savesAndOpensPrograms()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("seam.prg"));
    const QStringList program {QStringLiteral("LaserOn(\"LsData2\");"), QString(),
        QStringLiteral("// Schweißnaht 1"), QStringLiteral("LaserOff;")};
    {
        ProgramEditor editor;
        editor.setLines(program);
        QVERIFY(editor.saveFile(path));
    }
    ProgramEditor editor;
    QVERIFY(editor.openFile(path));
    QCOMPARE(editor.lines(), program);
    QCOMPARE(editor.fileName(), path);

    // Files written elsewhere may end lines with CR LF.
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("LaserOff;\r\nLsWireFwd(1,1);\r\n");
    file.close();
    QVERIFY(editor.openFile(path));
    QCOMPARE(editor.lines(),
        (QStringList {QStringLiteral("LaserOff;"), QStringLiteral("LsWireFwd(1,1);")}));
}

void TestProgramEditor::opensAnyBytesWithoutCrashing()
{
    RlLaserWeldDefine define;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("noise.prg"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QByteArray noise;
    for (int i = 0; i < 4096; ++i)
        noise.append(char((i * 7919) % 256));
    noise.append("\nLsWireFwd(\xff\xfe,\x00)");
    file.write(noise);
    file.close();

    ProgramEditor editor;
    QVERIFY(editor.openFile(path));
    // Decoding used to stop at the first NUL byte and dropped the rest of the file.
    QVERIFY(editor.lines().size() > 2);
    QVERIFY(editor.lines().last().startsWith(QStringLiteral("LsWireFwd(")));
}

void TestProgramEditor::unwritableFileFailsSave()
{
    QTemporaryDir dir;
    ProgramEditor editor;
    editor.setLines({QStringLiteral("LaserOff;")});
    QVERIFY(!editor.saveFile(dir.filePath(QStringLiteral("missing/folder/seam.prg"))));
    QVERIFY(!editor.findChild<QLabel *>(QStringLiteral("label_status"))->text().isEmpty());
    QVERIFY(editor.fileName().isEmpty());
}

QTEST_MAIN(TestProgramEditor)
#include "tst_programeditor.moc"
