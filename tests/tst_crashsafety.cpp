#include "controller/controllersimulator.h"

#include <QtTest>

namespace {

// The one generation every set in the file carries, or an explanation of why there is none.
int fileGeneration(const QString &path, QString *why)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *why = QStringLiteral("data file missing");
        return -1;
    }
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !doc.isObject()) {
        *why = QStringLiteral("not a JSON object: ") + error.errorString();
        return -1;
    }
    const QJsonObject root = doc.object();
    for (const char *key : {"weld_io_config", "weld_setting_config", "weld_curve_config",
             "weld_param_match", "laser_weld_data", "points"}) {
        if (!root.contains(QLatin1String(key))) {
            *why = QStringLiteral("missing ") + key;
            return -1;
        }
    }
    const QJsonObject sets = root.value(QStringLiteral("weld_param_config")).toObject();
    int generation = -1;
    for (int n = 1; n <= 30; ++n) {
        const QJsonObject set = sets.value(QStringLiteral("LsData%1").arg(n)).toObject();
        const int g = set.value(QStringLiteral("generation")).toInt(-1);
        const QString filler = set.value(QStringLiteral("filler")).toString();
        if (g < 0 || filler.size() != 100 + (g * 37) % 900) {
            *why = QStringLiteral("LsData%1 incomplete").arg(n);
            return -1;
        }
        if (generation >= 0 && g != generation) {
            *why = QStringLiteral("sets of generations %1 and %2 mixed").arg(generation).arg(g);
            return -1;
        }
        generation = g;
    }
    return generation;
}

} // namespace

class TestCrashSafety : public QObject
{
    Q_OBJECT

private slots:
    void killedWriterLeavesOldOrNewFile_data()
    {
        QTest::addColumn<int>("minDelayUs");
        QTest::addColumn<int>("maxDelayUs");
        QTest::addColumn<int>("kills");

        // One write of the whole file takes about a millisecond; the bands put the kill before
        // the first write, inside single writes, and after runs of writes.
        QTest::newRow("right after start") << 0 << 200 << 8;
        QTest::newRow("within the first writes") << 200 << 3000 << 16;
        QTest::newRow("after many writes") << 3000 << 40000 << 12;
    }

    void killedWriterLeavesOldOrNewFile()
    {
        QFETCH(int, minDelayUs);
        QFETCH(int, maxDelayUs);
        QFETCH(int, kills);

        const QString childPath = QCoreApplication::applicationDirPath() + "/kel_savechild";
        QVERIFY2(QFile::exists(childPath), qPrintable(childPath));
        QTemporaryDir dataDir;
        QVERIFY(dataDir.isValid());
        const QString dataFile = QDir(dataDir.path()).filePath("kelcontroller.json");
        // A fixed seed per row keeps a failure repeatable.
        QRandomGenerator random(quint32(minDelayUs * 7919 + maxDelayUs));

        int lastAccepted = 0;
        for (int kill = 0; kill < kills; ++kill) {
            QProcess child;
            child.setProcessChannelMode(QProcess::SeparateChannels);
            child.start(childPath, {dataDir.path()});
            QVERIFY2(child.waitForStarted(), qPrintable(child.errorString()));
            QVERIFY(child.waitForReadyRead(20000));
            const QString start = QString::fromLatin1(child.readLine()).trimmed();
            // The restarted controller reads back what was on disk, without a repair.
            QCOMPARE(start, QStringLiteral("start %1").arg(kill == 0 ? 0 : lastAccepted));

            const int delay = minDelayUs + int(random.bounded(quint32(maxDelayUs - minDelayUs)));
            QThread::usleep(ulong(delay));
            // QProcess::kill sends SIGKILL: no handler, no flush, no clean-up.
            child.kill();
            QVERIFY(child.waitForFinished(20000));
            QCOMPARE(child.exitStatus(), QProcess::CrashExit);

            const QStringList lines = QString::fromLatin1(child.readAllStandardOutput())
                                          .split('\n', Qt::SkipEmptyParts);
            const int reported = lines.isEmpty() ? lastAccepted : lines.constLast().toInt();
            const QByteArray stderrText = child.readAllStandardError();
            QVERIFY2(stderrText.isEmpty(), stderrText.constData());

            QString why;
            const int generation = fileGeneration(dataFile, &why);
            if (generation < 0 && reported == 0 && !QFile::exists(dataFile))
                continue; // killed before the first write: no file yet is the old state
            QVERIFY2(generation >= 0,
                qPrintable(
                    QStringLiteral("kill %1 after %2 us: %3").arg(kill).arg(delay).arg(why)));
            // Either the last write the child saw accepted, or the one it was inside of.
            QVERIFY2(generation == reported || generation == reported + 1,
                qPrintable(QStringLiteral("file holds %1, child reported %2")
                               .arg(generation)
                               .arg(reported)));
            lastAccepted = generation;
        }

        // The history was appended to by every save: whole lines, one per accepted change, at
        // most the last one cut off by the kill and dropped at the next start.
        QFile history(QDir(dataDir.path()).filePath("kelhistory.json"));
        // (None yet when every kill came before a history line was begun.)
        history.open(QIODevice::ReadOnly);
        const QList<QByteArray> lines = history.readAll().split('\n');
        for (int i = 0; i + 1 < lines.size(); ++i)
            QVERIFY2(QJsonDocument::fromJson(lines.at(i)).isObject(), lines.at(i).left(80));

        const QStringList corrupt = QDir(dataDir.path()).entryList({"*.corrupt-*"}, QDir::Files);
        QVERIFY2(corrupt.isEmpty(), qPrintable(corrupt.join(' ')));
        {
            // The last kill may have cut the history's last line: dropped and told once.
            kelcontroller::ControllerSimulator reopened(dataDir.path());
            const QString told = reopened.lastError();
            QVERIFY2(told.isEmpty()
                    || (told.startsWith("The change history: ")
                        && told.contains("whose writing was interrupted")
                        && !told.contains("is damaged")),
                qPrintable(told));
        }
        kelcontroller::ControllerSimulator again(dataDir.path());
        QVERIFY2(again.lastError().isEmpty(), qPrintable(again.lastError()));
    }
};

QTEST_GUILESS_MAIN(TestCrashSafety)
#include "tst_crashsafety.moc"
