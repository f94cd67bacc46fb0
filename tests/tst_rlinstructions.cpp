#include "rl/rllaserwelddefine.h"
#include "support/scriptedcontroller.h"

#include "kelplugin/rlcatalog.h"
#include "kelplugin/rlcontentbase.h"

#include <QtTest>

class TestRlInstructions : public QObject
{
    Q_OBJECT

private slots:
    void init() { kelplugin::rlCatalog().clear(); }

    void registeringAgainCompletesTheEntries()
    {
        RlLaserWeldDefine define;
        // A second afterInit registers again: its entries complete the first ones.
        RlLaserWeldDefine again;
        QCOMPARE(kelplugin::rlCatalog().groups().size(), 1);
        QCOMPARE(kelplugin::rlCatalog().instructions().size(), 10);
    }

    void skeletonsAndDefaults_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("skeleton");
        QTest::addColumn<QString>("defaultText");

        QStringList data;
        for (int i = 1; i <= 30; ++i)
            data.append(QStringLiteral("\"LsData%1\"").arg(i));
        QStringList power;
        for (int i = 1; i <= 10; ++i)
            power.append(QStringLiteral("\"PowerData%1\"").arg(i));

        QTest::newRow("LaserOn") << "LaserOn"
                                 << "LaserOn($Sched:#cmb#" + data.join('/') + "#true$);"
                                 << "LaserOn(\"LsData1\");";
        QTest::newRow("LsWireBwd speed then time")
            << "LsWireBwd"
            << "LsWireBwd($Wire feed back speed [1-100](mm/s):#spn#1,100#true$, $Wire feed back "
               "time [1-10000](ms):#spn#1,10000#true$);"
            << "LsWireBwd(50,1000);";
        QTest::newRow("LsParaMatch") << "LsParaMatch"
                                     << "LsParaMatch($Sched:#cmb#" + power.join('/') + "#true$);"
                                     << "LsParaMatch(\"PowerData1\");";
    }

    void skeletonsAndDefaults()
    {
        QFETCH(QString, name);
        QFETCH(QString, skeleton);
        QFETCH(QString, defaultText);
        RlLaserWeldDefine define;
        const kelplugin::RLInstruction *ins = kelplugin::rlCatalog().instruction(name);
        QVERIFY(ins);
        QCOMPARE(ins->skeleton, skeleton);
        QCOMPARE(ins->defaultText, defaultText);
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
