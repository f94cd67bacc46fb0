#include "rl/rllaserwelddefine.h"
#include "support/scriptedcontroller.h"

#include "kelplugin/rlcatalog.h"
#include "kelplugin/rlcontentbase.h"

#include <QApplication>
#include <QPointer>
#include <QRegularExpression>
#include <QScopedPointer>
#include <QTest>

static QString patternOf(const QString &name)
{
    const kelplugin::RLInstruction *ins = kelplugin::rlCatalog().instruction(name);
    return ins ? ins->pattern : QString();
}

class TestRlInstructions : public QObject
{
    Q_OBJECT

private slots:
    void init() { kelplugin::rlCatalog().clear(); }

    void registersInOrder()
    {
        RlLaserWeldDefine define;

        QStringList expected {QStringLiteral("createGroups|Laser Weld Ins|LaserWeld")};
        const QStringList names {"LaserOn", "LaserOff", "LsParaSet", "LsWireFwd", "LsWireBwd",
            "LsParaMatch", "LsParaMatchOff", "LsMoveL", "LsMoveC", "LsMoveCF"};
        const QStringList withEditors {"LsMoveL", "LsMoveC", "LsMoveCF", "LsParaSet"};
        for (const QString &name : names) {
            for (const char *op : {"createTypeKey", "createSkeleton", "createInsDescribe",
                     "createPattern", "createInsDefault"}) {
                expected.append(QLatin1String(op) + QLatin1Char('|') + name);
            }
            if (withEditors.contains(name)) {
                expected.append(QStringLiteral("createPropertyWidget|") + name);
                expected.append(QStringLiteral("createInsertWidget|") + name);
            }
            expected.append(QStringLiteral("createTypeToGroup|%1|LaserWeld").arg(name));
        }

        QStringList seen;
        for (const kelplugin::RLCall &call : kelplugin::rlCatalog().calls()) {
            // Only the type key matters for the per-instruction calls, except the group call.
            const bool keepAll = call.operation == QLatin1String("createGroups")
                || call.operation == QLatin1String("createTypeToGroup");
            const QStringList args
                = keepAll ? call.arguments : QStringList(call.arguments.mid(0, 1));
            seen.append((QStringList {call.operation} + args).join(QLatin1Char('|')));
        }
        QCOMPARE(seen, expected);

        // Registering again, as a second afterInit does, completes the entries instead of adding.
        RlLaserWeldDefine again;
        QCOMPARE(kelplugin::rlCatalog().groups().size(), 1);
        QCOMPARE(kelplugin::rlCatalog().instructions().size(), names.size());
    }

    void patterns_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("pattern");
        // The weld data patterns keep the host's "(%l)" marker; name-only ones fill the template.
        QTest::newRow("LaserOn") << "LaserOn"
                                 << R"(^\s*LaserOn\(\s*\"(%l)\"\s*\);\s*(?://.*)?$)";
        QTest::newRow("LsParaMatch") << "LsParaMatch"
                                     << R"(^\s*LsParaMatch\(\s*\"(%l)\"\s*\);\s*(?://.*)?$)";
        QTest::newRow("LaserOff") << "LaserOff"
                                  << R"(^\s*LaserOff\s*(?://.*)?$)";
    }

    void patterns()
    {
        QFETCH(QString, name);
        QFETCH(QString, pattern);
        RlLaserWeldDefine define;
        QCOMPARE(patternOf(name), pattern);
    }

    void wirePatternChecksLines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("accepted");

        QTest::newRow("default text") << "LsWireFwd(50,1000);" << true;
        QTest::newRow("blanks around numbers and a comment")
            << "  LsWireFwd( 50 , 1000 );  // feed" << true;
        QTest::newRow("negative number") << "LsWireFwd(-5,1000);" << true;
        QTest::newRow("decimal fraction") << "LsWireFwd(50.5,1000);" << false;
        QTest::newRow("missing semicolon") << "LsWireFwd(50,1000)" << false;
    }

    void wirePatternChecksLines()
    {
        QFETCH(QString, line);
        QFETCH(bool, accepted);
        RlLaserWeldDefine define;
        const QRegularExpression pattern(patternOf(QStringLiteral("LsWireFwd")));
        QVERIFY(pattern.isValid());
        QCOMPARE(pattern.match(line).hasMatch(), accepted);
    }

    void skeletonsAndDefaults_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("skeleton");
        QTest::addColumn<QString>("defaultText");
        QTest::addColumn<QString>("description");

        QStringList data;
        for (int i = 1; i <= 30; ++i)
            data.append(QStringLiteral("\"LsData%1\"").arg(i));
        QStringList power;
        for (int i = 1; i <= 10; ++i)
            power.append(QStringLiteral("\"PowerData%1\"").arg(i));

        QTest::newRow("LaserOn") << "LaserOn"
                                 << "LaserOn($Sched:#cmb#" + data.join('/') + "#true$);"
                                 << "LaserOn(\"LsData1\");"
                                 << "LaserOn Perform a weld start";
        QTest::newRow("LaserOff without field") << "LaserOff"
                                                << "LaserOff();"
                                                << "LaserOff;"
                                                << "Perform LaserOff welding shutdown";
        QTest::newRow("LsWireBwd speed then time")
            << "LsWireBwd"
            << "LsWireBwd($Wire feed back speed [1-100](mm/s):#spn#1,100#true$, $Wire feed back "
               "time "
               "[1-10000](ms):#spn#1,10000#true$);"
            << "LsWireBwd(50,1000);"
            << "Retract the wire backward at the specified speed for the specified duration.";
        QTest::newRow("LsParaMatch") << "LsParaMatch"
                                     << "LsParaMatch($Sched:#cmb#" + power.join('/') + "#true$);"
                                     << "LsParaMatch(\"PowerData1\");"
                                     << "Parameter matching function enabled.";
        QTest::newRow("LsParaSet")
            << "LsParaSet"
            << "LsParaSet;"
            << "LsParaSet(\"LsData1\");"
            << "Perform LsParaSet switching welding parameters during welding";
        QTest::newRow("LsMoveCF") << "LsMoveCF"
                                  << "LsMoveCF;"
                                  << "LsMoveCF;"
                                  << "Laser welding motion instruction";
    }

    void skeletonsAndDefaults()
    {
        QFETCH(QString, name);
        QFETCH(QString, skeleton);
        QFETCH(QString, defaultText);
        QFETCH(QString, description);
        RlLaserWeldDefine define;
        const kelplugin::RLInstruction *ins = kelplugin::rlCatalog().instruction(name);
        QVERIFY(ins);
        QCOMPARE(ins->skeleton, skeleton);
        QCOMPARE(ins->defaultText, defaultText);
        QCOMPARE(ins->description, description);
        QCOMPARE(ins->groupKey, QStringLiteral("LaserWeld"));
    }

    void factoriesMakeFreshEditors_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("className");
        QTest::newRow("LsMoveL") << "LsMoveL"
                                 << "kelplugin::WMoveLInsertWidget";
        QTest::newRow("LsMoveC") << "LsMoveC"
                                 << "kelplugin::WMoveCInsertWidget";
        QTest::newRow("LsMoveCF") << "LsMoveCF"
                                  << "kelplugin::WMoveCFInsertWidget";
        QTest::newRow("LsParaSet") << "LsParaSet"
                                   << "kelplugin::RLParaSetInsertWidget";
    }

    void factoriesMakeFreshEditors()
    {
        QFETCH(QString, name);
        QFETCH(QString, className);
        ScriptedController controller;
        RlLaserWeldDefine define;
        const kelplugin::RLInstruction *ins = kelplugin::rlCatalog().instruction(name);
        QVERIFY(ins && ins->insertWidget && ins->propertyWidget);

        QScopedPointer<kelplugin::RLContentBase> first(ins->insertWidget());
        QScopedPointer<kelplugin::RLContentBase> second(ins->insertWidget());
        QScopedPointer<kelplugin::RLContentBase> property(ins->propertyWidget());
        QVERIFY(first && second && property);
        QVERIFY(first.data() != second.data());
        QCOMPARE(first->metaObject()->className(), className.toLatin1().constData());
        QCOMPARE(property->metaObject()->className(), className.toLatin1().constData());
        QVERIFY(!first->parent());
        QCOMPARE(first->property("instructionName").toString(), name);
    }
};

QTEST_MAIN(TestRlInstructions)
#include "tst_rlinstructions.moc"
