#include "page/portcatalogue.h"
#include "support/straightforwardportorder.h"

#include <QtTest>

namespace {

QString randomName(QRandomGenerator &random, bool withOverlongRuns)
{
    static const QString pieces[]
        = {QStringLiteral("DO"), QStringLiteral("do"), QStringLiteral("GI"), QStringLiteral("A"),
            QStringLiteral("Board"), QStringLiteral("_"), QStringLiteral("."), QStringLiteral(" "),
            QStringLiteral("0"), QStringLiteral("007"), QStringLiteral("2"), QStringLiteral("10"),
            QStringLiteral("2147483647"), QString(QChar(0x0663)), QString(QChar(0xE9))};
    static const QString overlong[] = {QStringLiteral("2147483648"), QStringLiteral("15000000000"),
        QStringLiteral("99999999999"), QStringLiteral("000000000000000000001")};
    QString name;
    const int count = int(random.bounded(5));
    for (int i = 0; i < count; ++i) {
        if (withOverlongRuns && random.bounded(4) == 0)
            name += overlong[random.bounded(int(std::size(overlong)))];
        else
            name += pieces[random.bounded(int(std::size(pieces)))];
    }
    return name;
}

// Sorted is ordered by the written ordering and holds exactly the names.
void verifyOrderedPermutation(const QStringList &names, const QStringList &sorted)
{
    for (int i = 0; i + 1 < sorted.size(); ++i)
        QVERIFY2(!straightforward::portLess(sorted[i + 1], sorted[i]),
            qPrintable(sorted[i] + QStringLiteral(" | ") + sorted[i + 1]));
    QStringList a = sorted;
    QStringList b = names;
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    QCOMPARE(a, b);
}

} // namespace

class TestPortCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void naturalComparison_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("aFirst");
        QTest::addColumn<bool>("bFirst");

        QTest::newRow("numbers compare as numbers") << "DO2"
                                                    << "DO10" << true << false;
        QTest::newRow("fewer tokens first") << "DO10"
                                            << "DO10A" << true << false;
        QTest::newRow("leading zeros are equal") << "AO1"
                                                 << "AO01" << false << false;
        QTest::newRow("separators only separate") << "DO_1"
                                                  << "DO1" << false << false;
        QTest::newRow("upper case before lower case") << "DO9"
                                                      << "do1" << true << false;
        QTest::newRow("no tokens before any token") << "_-."
                                                    << "A" << true << false;
        QTest::newRow("number before letters") << "DO1"
                                               << "DOA" << true << false;
        QTest::newRow("overlong digit run against a number is text") << "DO99999999999"
                                                                     << "DO5" << false << true;
        QTest::newRow("overlong digit runs compare as text") << "DO10000000000"
                                                             << "DO9999999999" << true << false;
        QTest::newRow("non-ASCII letters are dropped")
            << QString("DO\u00e91") << "DO1" << false << false;
    }

    void naturalComparison()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, aFirst);
        QFETCH(bool, bFirst);
        QCOMPARE(PortCatalogue::lessThan(a, b), aFirst);
        QCOMPARE(PortCatalogue::lessThan(b, a), bFirst);
    }

    void sortedOrder_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("empty list") << QStringList() << QStringList();
        QTest::newRow("one name unchanged") << QStringList {"do_X"} << QStringList {"do_X"};
        QTest::newRow("mixed digital outputs") << QStringList {"DO10", "do1", "DO10A", "DO2", "DO1",
            "AO3"} << QStringList {"AO3", "DO1", "DO2", "DO10", "DO10A", "do1"};
        QTest::newRow("letter runs longer than eight letters")
            << QStringList {"EXTERNALB2", "EXTERNALA10", "EXTERNAL", "EXTERNALA9", "EXTERNALa1"}
            << QStringList {"EXTERNAL", "EXTERNALA9", "EXTERNALA10", "EXTERNALB2", "EXTERNALa1"};
    }

    void sortedOrder()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, expected);
        QCOMPARE(PortCatalogue::sorted(names), expected);
    }

    void agreesWithTheWrittenOrderingOnRandomNames_data()
    {
        QTest::addColumn<quint32>("seed");
        QTest::newRow("seed 1") << 1u;
        QTest::newRow("seed 2") << 2u;
    }

    void agreesWithTheWrittenOrderingOnRandomNames()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        QStringList names;
        for (int i = 0; i < 400; ++i)
            names.append(randomName(random, i % 2 == 1));
        for (int i = 0; i + 1 < names.size(); ++i) {
            const QString &a = names[i];
            const QString &b = names[i + 1];
            QVERIFY2(PortCatalogue::lessThan(a, b) == straightforward::portLess(a, b),
                qPrintable(a + QStringLiteral(" | ") + b));
            QVERIFY2(PortCatalogue::lessThan(b, a) == straightforward::portLess(b, a),
                qPrintable(b + QStringLiteral(" | ") + a));
        }

        // Where the ordering is consistent the result is ordered by it.
        QStringList consistent;
        for (int i = 0; i < 2000; ++i)
            consistent.append(randomName(random, false));
        verifyOrderedPermutation(consistent, PortCatalogue::sorted(consistent));
    }

    void largeListsAreInOrder_data()
    {
        // Long lists are sorted on a key of the first four runs, with five letters of each; the
        // pieces make names that differ only beyond that, and names equal up to it. Digit runs end
        // at an underscore so that none outgrows an int, which would take the merging sort.
        QTest::addColumn<int>("count");
        QTest::newRow("just short of the key sort") << 255;
        QTest::newRow("first size sorted on keys") << 256;
        QTest::newRow("a large cell") << 6000;
    }

    void largeListsAreInOrder()
    {
        QFETCH(int, count);
        static const QString pieces[] = {QStringLiteral("DO"), QStringLiteral("Laser"),
            QStringLiteral("LaserA"), QStringLiteral("LaserB"), QStringLiteral("Laserweld"),
            QStringLiteral("z"), QStringLiteral("_"), QStringLiteral("0_"), QStringLiteral("1_"),
            QStringLiteral("2147483647_"), QStringLiteral("65535_"), QStringLiteral("65536_")};
        QRandomGenerator random {quint32(count)};
        QStringList names;
        for (int i = 0; i < count; ++i) {
            QString name;
            const int length = int(random.bounded(9));
            for (int k = 0; k < length; ++k)
                name += pieces[random.bounded(int(std::size(pieces)))];
            names.append(name);
        }
        verifyOrderedPermutation(names, PortCatalogue::sorted(names));
    }

    void inconsistentNamesStillYieldAPermutation()
    {
        // DO20 < DO100 as numbers, DO100 < DO15000000000 and DO15000000000 < DO20 as text: a
        // cycle, which lets an introsort run past the array.
        QStringList names;
        QRandomGenerator random(7);
        for (int i = 0; i < 5000; ++i) {
            switch (random.bounded(4)) {
            case 0:
                names.append(QStringLiteral("DO%1").arg(random.bounded(1000)));
                break;
            case 1:
                names.append(QStringLiteral("DO1%1").arg(
                    random.bounded(1000000000u), 10, 10, QLatin1Char('0')));
                break;
            default:
                names.append(randomName(random, true));
            }
        }
        QStringList sorted = PortCatalogue::sorted(names);
        QCOMPARE(sorted.size(), names.size());
        std::sort(sorted.begin(), sorted.end());
        std::sort(names.begin(), names.end());
        QCOMPARE(sorted, names);
    }
};

QTEST_GUILESS_MAIN(TestPortCatalogue)
#include "tst_portcatalogue.moc"
