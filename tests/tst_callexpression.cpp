#include "rl/callexpression.h"
#include "support/leveltexts.h"
#include "support/straightforwardcallexpression.h"

#include <QtTest>

class TestCallExpression : public QObject
{
    Q_OBJECT

private slots:
    void init() { testenv::resetLogFile(); }

    void splitsCalls_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("parameters");
        QTest::addColumn<QString>("name");

        QTest::newRow("nested Offs") << "LsMoveL(Offs(pA,1,2,3), spd, zn);"
                                     << QStringList {"Offs(pA,1,2,3)", "spd", "zn"} << "LsMoveL";
        QTest::newRow("empty parentheses") << "   LaserOff()   " << QStringList {} << "LaserOff";
        QTest::newRow("missing semicolon")
            << "LsWireFwd(50, 1000)" << QStringList {"50", "1000"} << "LsWireFwd";
        QTest::newRow("quoted parameter keeps its quotes")
            << "LaserOn(\"LsData1\");" << QStringList {"\"LsData1\""} << "LaserOn";
        QTest::newRow("dropped empty piece") << "a(1,,2)" << QStringList {"1", "2"} << "a";
        QTest::newRow("unbalanced closing parenthesis") << "a(x))" << QStringList {"x)"} << "a";
        QTest::newRow("blanks between name and parenthesis")
            << "  LsMoveC  ( p1 , p2 );  " << QStringList {"p1", "p2"} << "LsMoveC";
        QTest::newRow("comma inside quotes splits")
            << "f(\"a,b\")" << QStringList {"\"a", "b\""} << "f";
        QTest::newRow("unbalanced opening parenthesis keeps the rest together")
            << "f(g(1, 2)" << QStringList {"g(1, 2"} << "f";
    }

    void splitsCalls()
    {
        QFETCH(QString, line);
        QFETCH(QString, name);
        QFETCH(QStringList, parameters);

        QString function = QStringLiteral("stale");
        QStringList list {QStringLiteral("stale")};
        QVERIFY(kellaser::util::extractFunctionAndParameters(line, function, list));
        QCOMPARE(function, name);
        QCOMPARE(list, parameters);
    }

    void rejectsNonCalls_data()
    {
        QTest::addColumn<QString>("line");

        QTest::newRow("trailing comment") << "LsWireFwd(50,1000); // feed";
        QTest::newRow("no parentheses") << "LaserOff;";
        QTest::newRow("empty line") << "";
        QTest::newRow("no name") << "(1,2);";
        QTest::newRow("text after the call") << "f(1) g";
        QTest::newRow("line break inside") << "f(1,\n2);";
        QTest::newRow("blank before the semicolon") << "f(1) ;";
    }

    void rejectsNonCalls()
    {
        QFETCH(QString, line);

        QString function = QStringLiteral("stale");
        QStringList list {QStringLiteral("stale")};
        QVERIFY(!kellaser::util::extractFunctionAndParameters(line, function, list));
        QVERIFY(function.isEmpty());
        QVERIFY(list.isEmpty());
    }

    void agreesWithTheExpressionOnRandomLines_data()
    {
        // Plain lines are split by a scan, anything else by the expression; both must give what
        // the expression alone gives. Short lines over a small alphabet hit the boundaries: blanks
        // around the name, a ";" or ")" at the end, several ")" and text after them.
        QTest::addColumn<QString>("alphabet");
        QTest::newRow("printable ASCII and tabs") << QStringLiteral("aZ_9 \t();,\"/.-");
        QTest::newRow("line breaks and other blanks") << QStringLiteral("a_ ();\n\r\v\f");
        QTest::newRow("Unicode letters and blanks") << QStringLiteral("a ();") + QChar(0xE9)
                + QChar(0x00A0) + QChar(0x2028) + QChar(0x0663);
    }

    void agreesWithTheExpressionOnRandomLines()
    {
        QFETCH(QString, alphabet);
        // Six thousand log lines on the console would drown the test's own output.
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
        const auto restore = qScopeGuard([] { QLoggingCategory::setFilterRules(QString()); });
        int calls = 0;
        // Lines that are calls about half of the time: a word, "(", random text, ")".
        QRandomGenerator random(7);
        const auto randomText = [&](int maxLength) {
            QString text;
            const int length = int(random.bounded(maxLength + 1));
            for (int i = 0; i < length; ++i)
                text += alphabet.at(int(random.bounded(alphabet.size())));
            return text;
        };
        for (int i = 0; i < 3000; ++i) {
            static const char *const endings[] = {"", ";", " ;", "; ", ")", "\t", ");"};
            const QString line = random.bounded(2) == 0 ? randomText(12)
                                                        : randomText(1) + QStringLiteral("f")
                    + randomText(1) + QLatin1Char('(') + randomText(6) + QLatin1Char(')')
                    + QLatin1String(endings[random.bounded(int(std::size(endings)))])
                    + (random.bounded(4) == 0 ? randomText(2) : QString());
            QString name;
            QStringList parameters;
            QString expectedName;
            QStringList expectedParameters;
            const bool isCall
                = kellaser::util::extractFunctionAndParameters(line, name, parameters);
            QCOMPARE(isCall, straightforward::extractCall(line, expectedName, expectedParameters));
            QCOMPARE(name, expectedName);
            QCOMPARE(parameters, expectedParameters);
            calls += isCall ? 1 : 0;
        }
        // Both outcomes must be well represented for the comparison to mean anything.
        QVERIFY2(calls > 300 && calls < 2700, qPrintable(QString::number(calls)));
    }

    // The log lines of a parse: the tag and what follows the time stamp.
    void logsEachParse_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("logged");

        const QString name = QStringLiteral("kellaser::util::extractFunctionAndParameters ");
        QTest::newRow("no call") << "LaserOff;"
                                 << QStringList {"E|" + name
                                        + "Parsing failed: Input string does not match function "
                                          "call format. input: LaserOff;"};
        QTest::newRow("empty parentheses")
            << "LaserOff()"
            << QStringList {"E|LASER:: " + name + "Extracted Parameter List: (Empty)",
                   "D|LASER:: " + name + "functionName: LaserOff ,parameterList: ()"};
        QTest::newRow("parameters") << "LsMoveL(p1, v100, fine);"
                                    << QStringList {"D|LASER:: " + name
                                           + "functionName: LsMoveL ,parameterList: (p1, v100, "
                                             "fine)"};
    }

    void logsEachParse()
    {
        QFETCH(QString, line);
        QFETCH(QStringList, logged);
        QString function;
        QStringList list;
        kellaser::util::extractFunctionAndParameters(line, function, list);
        QCOMPARE(testenv::logTexts(), logged);
    }

    void stripEnclosing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QString>("result");

        const struct
        {
            const char *row, *text, *prefix, *suffix, *result;
        } rows[] = {
            {"both present", "Offs(p1)", "Offs(", ")", "p1"},
            {"overlapping prefix and suffix", "\"", "\"", "\"", "\""},
            {"exactly prefix and suffix", "\"\"", "\"", "\"", ""},
        };
        for (const auto &r : rows)
            QTest::newRow(r.row) << r.text << r.prefix << r.suffix << r.result;
    }

    void stripEnclosing()
    {
        QFETCH(QString, text);
        QFETCH(QString, prefix);
        QFETCH(QString, suffix);
        QFETCH(QString, result);
        QCOMPARE(kellaser::util::stripEnclosing(text, prefix, suffix), result);
    }
};

QTEST_GUILESS_MAIN(TestCallExpression)
#include "tst_callexpression.moc"
