#include "core/logline.h"
#include "support/testenvironment.h"

#include <QtTest>

class TestLogLine : public QObject
{
    Q_OBJECT

private slots:
    void init() { testenv::resetLogFile(); }

    void lineBytesPerLevel_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("colour");
        QTest::newRow("info") << int(kellaser::LogLevel::Info) << "I" << QString("36");
        QTest::newRow("warning") << int(kellaser::LogLevel::Warning) << "W" << QString("33");
        QTest::newRow("error") << int(kellaser::LogLevel::Error) << "E" << QString("31");
        QTest::newRow("status") << int(kellaser::LogLevel::Status) << "S" << QString("35");
        QTest::newRow("debug") << int(kellaser::LogLevel::Debug) << "D" << QString("32");
    }

    void lineBytesPerLevel()
    {
        QFETCH(int, level);
        QFETCH(QString, tag);
        QFETCH(QString, colour);

        // Early in a second the milliseconds show whether they keep their leading zeros.
        QTRY_VERIFY(QTime::currentTime().msec() < 90);
        const QDateTime before = QDateTime::currentDateTime();
        kellaser::LogLine(kellaser::LogLevel(level)) << "kelLaserWeld::init()";

        const QStringList lines = testenv::logLines();
        QCOMPARE(lines.size(), 1);
        const QRegularExpression form(QStringLiteral("^\\x1b\\[%1m\\[%2\\|(\\d\\d/\\d\\d "
                                                     "\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d)\\] "
                                                     "kelLaserWeld::init\\(\\)\\x1b\\[0m$")
                                          .arg(colour, tag));
        const QRegularExpressionMatch match = form.match(lines.first());
        QVERIFY2(match.hasMatch(), qPrintable(lines.first()));
        // The stamp is local time, month first, to the millisecond.
        const QString expectedPrefix = before.toString(QStringLiteral("MM/dd hh:mm"));
        const QString after = QDateTime::currentDateTime().toString(QStringLiteral("MM/dd hh:mm"));
        QVERIFY(
            match.captured(1).startsWith(expectedPrefix) || match.captured(1).startsWith(after));
    }

    void piecesAreSeparatedByOneBlank()
    {
        const QString command = QStringLiteral("set_weld_manual_gas");
        kellaser::logError() << "Phybtn:: open gas failed. " << command << " Result:" << 3;
        const QStringList lines = testenv::logLines();
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().endsWith(QStringLiteral(
                     "] Phybtn:: open gas failed.  set_weld_manual_gas  Result: 3\x1b[0m")),
            qPrintable(lines.first()));
    }

    void unwritableLogFolderStillReachesConsole()
    {
        // A file where the log folder should be makes the log file impossible to open.
        kelplugin::QFLog::closeAll();
        QDir().mkpath(QStringLiteral("blocked"));
        const QString old = QDir::currentPath();
        QVERIFY(QDir::setCurrent(QStringLiteral("blocked")));
        QFile blocker(QStringLiteral("log"));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();

        QString console;
        static QString *sink = nullptr;
        sink = &console;
        const QtMessageHandler previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &msg) { sink->append(msg); });
        kellaser::logInfo() << "still visible";
        qInstallMessageHandler(previous);
        kelplugin::QFLog::closeAll();
        QFile::remove(QStringLiteral("log"));
        QDir::setCurrent(old);

        QVERIFY2(console.contains(QStringLiteral("still visible")), qPrintable(console));
    }

    void consoleFollowsTheLoggingRules()
    {
        static QStringList console;
        console.clear();
        const QtMessageHandler previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &msg) { console.append(msg); });
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
        kellaser::logInfo() << "file only" << 7 << QStringLiteral("piece");
        QLoggingCategory::setFilterRules(QString());
        kellaser::logInfo() << "both";
        qInstallMessageHandler(previous);

        QCOMPARE(console.size(), 1);
        QVERIFY(console.first().contains(QLatin1String("both")));
        // A switched-off console must not cost the file its line.
        const QStringList lines = testenv::logLines();
        QCOMPARE(lines.size(), 2);
        QVERIFY2(lines.first().endsWith(QStringLiteral("] file only 7 piece\x1b[0m")),
            qPrintable(lines.first()));
    }
};

QTEST_GUILESS_MAIN(TestLogLine)
#include "tst_logline.moc"
