// The controller's data folder: one owner, byte limits checked before a save is acknowledged,
// the change history and the weld list as appended lines, a start-up repair that survives a
// kill, and storage errors told in words.
#include "controller/changehistory.h"
#include "controller/controllerserver.h"
#include "controller/controllersimulator.h"
#include "controller/factoryrecords.h"
#include "controller/storagelimits.h"
#include "controller/weldrecords.h"
#include "kelplugin/messagestream.h"
#include "kelplugin/networkcontroller.h"

#include <QTcpSocket>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <sys/resource.h>

using kelcontroller::ChangeHistory;
using kelcontroller::ControllerSimulator;
using kelcontroller::FactoryRecords;
using kelcontroller::StorageLimits;
using kelcontroller::WeldRecords;

namespace {

const QString key = QStringLiteral("kellaserweld");
const QString setsCommand = QStringLiteral("set_weld_param_list_config");

QJsonObject entryOf(ControllerSimulator &sim, const QString &command, const QJsonValue &payload)
{
    return sim.commandCustomData(nullptr, key, QJsonObject {{command, payload}})
        .at(0)[key][command]
        .toObject();
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

int compactSize(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).size();
}

// weld_param_config with LsData1 replaced: what the controller stores for {LsData1: set}.
QJsonObject paramWith(const QJsonObject &set)
{
    QJsonObject record = FactoryRecords::paramConfig();
    record.insert(QStringLiteral("LsData1"), set);
    return record;
}

// A set whose record is exactly bytes long as compact JSON.
QJsonObject setMakingRecordOf(int bytes)
{
    const int base = compactSize(paramWith({{"filler", ""}}));
    return {{"filler", QString(bytes - base, QLatin1Char('x'))}};
}

// Arrays in arrays: a few hundred bytes compact, a quadratic amount indented.
QJsonArray nested(int depth)
{
    QJsonArray array {0};
    for (int i = 0; i < depth; ++i)
        array = QJsonArray {array};
    return array;
}

// A set of leaves deep below long keys: small itself, but every leaf's history key spells
// the whole path.
QJsonObject deepLeaves(int leaves, int value)
{
    QJsonObject leaf;
    for (int i = 0; i < leaves; ++i)
        leaf.insert(QStringLiteral("k%1").arg(i), value);
    QJsonObject set = leaf;
    for (int level = 0; level < 7; ++level)
        set = QJsonObject {{QString(30, QLatin1Char('a' + level)), set}};
    return set;
}

ChangeHistory::Entry historyEntry(int n, const QString &value = QString())
{
    return {QDateTime::fromSecsSinceEpoch(n, Qt::UTC), 3, "set_weld_io_config", "weld_io_config",
        ChangeHistory::changes(QJsonObject(), QJsonObject {{"n", n}, {"text", value}}), QString()};
}

QByteArray historyLine(int n)
{
    return QJsonDocument(ChangeHistory::toJson(historyEntry(n))).toJson(QJsonDocument::Compact)
        + '\n';
}

QStringList asideCopies(const QString &dir, const QString &file)
{
    return QDir(dir).entryList({file + QStringLiteral(".corrupt-*")}, QDir::Files);
}

// A pid no process has.
qint64 deadPid()
{
    for (qint64 pid = 4194303; pid > 1; --pid) {
        if (::kill(pid_t(pid), 0) != 0 && errno == ESRCH)
            return pid;
    }
    return -1;
}

// Writes beyond bytes fail with EFBIG, as on a disk that is full: no root, no mount.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = m_old;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }

private:
    rlimit m_old {};
    void (*m_oldHandler)(int) = nullptr;
};

// The protocol by hand, answers awaited on the event loop: the pendant's own calls wait for
// their answer, which a server in this thread cannot give while they wait.
class RawPendant
{
public:
    explicit RawPendant(quint16 port) : m_stream(&m_socket)
    {
        m_socket.connectToHost(QHostAddress::LocalHost, port);
    }
    // The answer's result; ok false when none came or it was a refusal.
    QJsonValue ask(QJsonObject request, bool *ok)
    {
        *ok = false;
        request.insert("id", ++m_id);
        request.insert("level", 3);
        if (!m_socket.waitForConnected(5000) || !m_stream.send(request))
            return {};
        QJsonObject answer;
        bool answered = false;
        // next() takes the message it reports: asked again only until it has one.
        const auto nextAnswer = [&] {
            return answered
                = answered || m_stream.next(&answer) == kelplugin::MessageStream::Status::Message;
        };
        if (!QTest::qWaitFor(nextAnswer, 5000))
            return {};
        *ok = answer["id"].toInt() == m_id && answer["ok"].toBool();
        return answer["result"];
    }

private:
    QTcpSocket m_socket;
    kelplugin::MessageStream m_stream;
    int m_id = 0;
};

WeldRecords::Weld weldOf(int seconds, const QString &program = QStringLiteral("seam"))
{
    WeldRecords::Weld weld;
    weld.start = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    weld.durationMs = 1000;
    weld.program = program;
    weld.line = 2;
    weld.laserOnMs = 900;
    weld.wireMm = 1.5;
    weld.samples = {{0, 1500, 2000, 100, 40, 20}, {50, 1400, 2000, 100, 40, 20}};
    return weld;
}

} // namespace

class TestStorage : public QObject
{
    Q_OBJECT

private slots:
    void secondSimulatorRefusesTheFolder()
    {
        QTemporaryDir dir;
        ControllerSimulator first(dir.path());
        QVERIFY(first.isOwner());
        QJsonObject io = FactoryRecords::ioConfig();
        io.insert("laser_enable_port", "DO12");
        QCOMPARE(entryOf(first, "set_weld_io_config", io)["return"].toInt(), 0);
        const QByteArray stored = readAll(first.dataFilePath());
        {
            ControllerSimulator second(dir.path());
            QSignalSpy problems(&second, &ControllerSimulator::problem);
            QVERIFY(!second.isOwner());
            // It names who holds the folder: program, process and host.
            const QString text = second.lastError();
            QVERIFY2(text.contains(QStringLiteral("in use by tst_storage (process %1 on %2)")
                                       .arg(QCoreApplication::applicationPid())
                                       .arg(QSysInfo::machineHostName())),
                qPrintable(text));
            QTRY_COMPARE(problems.count(), 1);
            QCOMPARE(problems.at(0).at(0).toString(), text);
            // It read nothing of the folder and writes nothing to it.
            QCOMPARE(second.record("weld_io_config"), FactoryRecords::ioConfig());
            io.insert("gas_protect_port", "DO20");
            const QJsonObject refusal = entryOf(second, "set_weld_io_config", io);
            QCOMPARE(refusal["return"].toInt(), int(ControllerSimulator::StoreFailed));
            QVERIFY(refusal["message"].toString().contains("in use by tst_storage"));
        }
        QCOMPARE(readAll(first.dataFilePath()), stored);
        // The refused one leaves the lock of the first in place.
        ControllerSimulator third(dir.path());
        QVERIFY(!third.isOwner());
        QCOMPARE(entryOf(first, "set_virtual_welding", true)["return"].toInt(), 0);
    }

    void lockOfAnotherProcess_data()
    {
        QTest::addColumn<QString>("holder");
        QTest::addColumn<bool>("takenOver");

        QTest::newRow("a controller running") << "running" << false;
        QTest::newRow("a controller killed") << "killed" << true;
        QTest::newRow("a lock naming a dead process") << "dead pid" << true;
    }

    void lockOfAnotherProcess()
    {
        QFETCH(QString, holder);
        QFETCH(bool, takenOver);

        QTemporaryDir dir;
        QProcess child;
        int lastGeneration = 0;
        if (holder == QLatin1String("dead pid")) {
            const qint64 pid = deadPid();
            QVERIFY(pid > 0);
            writeFile(dir.filePath("kelcontroller.lock"),
                QStringLiteral("%1\ntst_storage\n%2\n")
                    .arg(pid)
                    .arg(QSysInfo::machineHostName())
                    .toUtf8());
        } else {
            child.start(QCoreApplication::applicationDirPath() + "/kel_savechild", {dir.path()});
            QVERIFY2(child.waitForStarted(), qPrintable(child.errorString()));
            // Saving already: the folder is its own.
            while (!child.canReadLine() || child.readLine() != "start 0\n")
                QVERIFY(child.waitForReadyRead(20000));
            while (!child.canReadLine())
                QVERIFY(child.waitForReadyRead(20000));
            if (holder == QLatin1String("killed")) {
                child.kill();
                QVERIFY(child.waitForFinished(20000));
                const QList<QByteArray> lines = child.readAllStandardOutput().split('\n');
                for (const QByteArray &line : lines)
                    lastGeneration = std::max(lastGeneration, line.toInt());
            }
        }

        ControllerSimulator sim(dir.path());
        QCOMPARE(sim.isOwner(), takenOver);
        if (holder == QLatin1String("running")) {
            QVERIFY2(
                sim.lastError().contains(
                    QStringLiteral("in use by kel_savechild (process %1").arg(child.processId())),
                qPrintable(sim.lastError()));
            child.kill();
            QVERIFY(child.waitForFinished(20000));
            return;
        }
        QVERIFY2(sim.lastError().isEmpty(), qPrintable(sim.lastError()));
        if (holder == QLatin1String("killed")) {
            const int generation
                = sim.record("weld_param_config").value("LsData1")["generation"].toInt(-1);
            QVERIFY2(generation == lastGeneration || generation == lastGeneration + 1,
                qPrintable(QStringLiteral("%1 after %2").arg(generation).arg(lastGeneration)));
        }
        QCOMPARE(entryOf(sim, "set_virtual_welding", true)["return"].toInt(), 0);
    }

    void programsRefuseAFolderInUse_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");

        QTest::newRow("kelcontroller")
            << qEnvironmentVariable("KEL_CONTROLLER") << QStringList {"--listen", "127.0.0.1:7799"};
        QTest::newRow("kelpendant with its embedded controller")
            << qEnvironmentVariable("KEL_PENDANT") << QStringList {};
    }

    void programsRefuseAFolderInUse()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        if (program.isEmpty())
            QSKIP("run by ctest, which names the programs");

        QTemporaryDir dir;
        ControllerSimulator sim(dir.path());
        QVERIFY(sim.isOwner());
        QProcess process;
        process.start(program, QStringList {"--data-dir", dir.path()} + arguments);
        QVERIFY(process.waitForFinished(30000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 3);
        const QString err = QString::fromUtf8(process.readAllStandardError());
        QVERIFY2(err.contains(QStringLiteral("in use by tst_storage (process %1")
                                  .arg(QCoreApplication::applicationPid())),
            qPrintable(err));
        // It took nothing: no cell key, no log, no data file of its own.
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList {"kelcontroller.lock"});
    }

    void oversizeSaveIsRefusedAndNothingWritten_data()
    {
        QTest::addColumn<QJsonObject>("before");
        QTest::addColumn<QJsonObject>("sets");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");

        const int limit = int(StorageLimits::maxRecordBytes);
        QTest::newRow("record at the limit")
            << QJsonObject() << QJsonObject {{"LsData1", setMakingRecordOf(limit)}} << 0
            << QString();
        // 262,145 bytes: 262.1 kB.
        QTest::newRow("record one byte over")
            << QJsonObject() << QJsonObject {{"LsData1", setMakingRecordOf(limit + 1)}} << 7
            << "record too large: 262.1 kB, at most 256 KiB (weld_param_config)";
        // Three sets of 1 kB each, indented to about 1 MB each.
        QJsonObject deep;
        for (int n = 1; n <= 3; ++n)
            deep.insert(QStringLiteral("LsData%1").arg(n), QJsonObject {{"deep", nested(500)}});
        QTest::newRow("data file") << QJsonObject() << deep << 7 << "data file too large: ";
        // 5,000 leaves changing from 0 to 1: about 45 kB of record, 1.3 MB of history.
        QTest::newRow("change for the history")
            << QJsonObject {{"LsData1", deepLeaves(5000, 0)}}
            << QJsonObject {{"LsData1", deepLeaves(5000, 1)}} << 7 << "change too large: ";
    }

    void oversizeSaveIsRefusedAndNothingWritten()
    {
        QFETCH(QJsonObject, before);
        QFETCH(QJsonObject, sets);
        QFETCH(int, code);
        QFETCH(QString, message);

        QTemporaryDir dir;
        QJsonObject io = FactoryRecords::ioConfig();
        QHash<QString, QJsonObject> records;
        int historySize = 0;
        {
            ControllerSimulator sim(dir.path());
            for (const QString port : {"DO12", "DO13"}) {
                io.insert("laser_enable_port", port);
                QCOMPARE(entryOf(sim, "set_weld_io_config", io)["return"].toInt(), 0);
            }
            if (!before.isEmpty())
                QCOMPARE(entryOf(sim, setsCommand, before)["return"].toInt(), 0);
            for (const QString &k : ControllerSimulator::recordKeys())
                records.insert(k, sim.record(k));
            historySize = sim.history().entries().size();
            const QByteArray dataFile = readAll(sim.dataFilePath());
            const QByteArray historyFile = readAll(sim.history().filePath());

            QSignalSpy problems(&sim, &ControllerSimulator::problem);
            const QJsonObject entry = entryOf(sim, setsCommand, sets);
            QCOMPARE(entry["return"].toInt(), code);
            if (code == 0) {
                QCOMPARE(sim.record("weld_param_config"), paramWith(sets["LsData1"].toObject()));
                records.insert("weld_param_config", sim.record("weld_param_config"));
                ++historySize;
            } else {
                const QString text = entry["message"].toString();
                QVERIFY2(text.startsWith(message), qPrintable(text));
                QVERIFY2(text.contains(code == 7 && message.startsWith("change")
                                 ? ", at most 1 MiB for the change history"
                                 : ", at most "),
                    qPrintable(text));
                QCOMPARE(problems.count(), 1);
                QCOMPARE(readAll(sim.dataFilePath()), dataFile);
                QCOMPARE(readAll(sim.history().filePath()), historyFile);
                QCOMPARE(sim.record("weld_param_config"), records.value("weld_param_config"));
            }
        }
        // Every record and the whole history are back after a restart.
        ControllerSimulator again(dir.path());
        QVERIFY2(again.lastError().isEmpty(), qPrintable(again.lastError()));
        for (const QString &k : ControllerSimulator::recordKeys())
            QCOMPARE(again.record(k), records.value(k));
        QCOMPARE(again.history().entries().size(), historySize);
    }

    void fileTooLargeFromAnOlderVersionIsRead()
    {
        QTemporaryDir dir;
        // 3 MB in one set: more than a save may write now.
        const QJsonObject big {{"filler", QString(3000000, QLatin1Char('b'))}};
        writeFile(dir.filePath("kelcontroller.json"),
            QJsonDocument(QJsonObject {{"weld_param_config", paramWith(big)}}).toJson());

        ControllerSimulator sim(dir.path());
        QVERIFY(sim.lastError().contains("more than a save may write (2 MiB)"));
        QCOMPARE(sim.record("weld_param_config")["LsData1"], QJsonValue(big));
        QVERIFY(asideCopies(dir.path(), "kelcontroller.json").isEmpty());
        // Growing it further is refused; making it smaller is not.
        QJsonObject bigger {{"filler", QString(3000001, QLatin1Char('b'))}};
        QCOMPARE(entryOf(sim, setsCommand, QJsonObject {{"LsData1", bigger}})["return"].toInt(), 7);
        QCOMPARE(
            entryOf(sim, setsCommand, QJsonObject {{"LsData1", QJsonObject {{"f", 1}}}})["return"]
                .toInt(),
            0);
    }

    void historyReadsWhatItCan_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QList<int>>("entries");
        QTest::addColumn<QString>("problem");
        QTest::addColumn<bool>("keptAside");

        const QByteArray l1 = historyLine(1), l2 = historyLine(2), l3 = historyLine(3);
        const auto whole = [](const QJsonArray &entries) {
            return QJsonDocument(QJsonObject {{"entries", entries}}).toJson();
        };
        const QJsonObject e1 = ChangeHistory::toJson(historyEntry(1));
        const QJsonObject e2 = ChangeHistory::toJson(historyEntry(2));

        QTest::newRow("clean lines") << l1 + l2 + l3 << QList<int> {1, 2, 3} << QString() << false;
        QTest::newRow("last line without its end")
            << l1 + l2 + l3.trimmed() << QList<int> {1, 2, 3} << QString() << false;
        QTest::newRow("torn last line")
            << l1 + l2 + l3.left(40) << QList<int> {1, 2}
            << "ends in an entry whose writing was interrupted (line 3, 40 bytes); it is dropped"
            << false;
        QTest::newRow("garbage in the middle")
            << l1 + "\x01\x02 not json\n" + l3 << QList<int> {1, 3}
            << "line 2 is no entry; 1 entry dropped" << true;
        QTest::newRow("an object that is no entry")
            << l1 + "{\"time\": 5}\n" + l2 + "[]\n" + l3 << QList<int> {1, 2, 3}
            << "line 2 is no entry, line 4 is no entry; 2 entries dropped" << true;
        QTest::newRow("earlier whole-file format")
            << whole({e1, e2}) << QList<int> {1, 2} << QString() << false;
        QTest::newRow("earlier format with a damaged entry")
            << whole({e1, QJsonObject {{"time", 5}}, e2}) << QList<int> {1, 2}
            << "1 of its 3 entries could not be read" << true;
    }

    void historyReadsWhatItCan()
    {
        QFETCH(QByteArray, content);
        QFETCH(QList<int>, entries);
        QFETCH(QString, problem);
        QFETCH(bool, keptAside);

        QTemporaryDir dir;
        const QString path = dir.filePath("kelhistory.json");
        writeFile(path, content);
        const auto numbers = [](const ChangeHistory &history) {
            QList<int> list;
            for (const auto &entry : history.entries())
                list.append(entry.changes.first().after.toInt());
            return list;
        };
        {
            ChangeHistory history(path);
            const QString report = history.load();
            QCOMPARE(numbers(history), entries);
            QVERIFY2(problem.isEmpty() ? report.isEmpty() : report.contains(problem),
                qPrintable(report));
            // A file that lost complete entries is kept as it was; an interrupted last line or
            // the earlier format leave nothing to inspect.
            const QStringList aside = asideCopies(dir.path(), "kelhistory.json");
            QCOMPARE(aside.size(), keptAside ? 1 : 0);
            if (!aside.isEmpty())
                QCOMPARE(readAll(dir.filePath(aside.first())), content);
            QString error;
            QVERIFY(history.add(historyEntry(9), &error));
        }
        // The next entry started on a line of its own.
        ChangeHistory reread(path);
        QCOMPARE(reread.load(), QString());
        QCOMPARE(numbers(reread), entries + QList<int> {9});
        QCOMPARE(readAll(path).count('\n'), entries.size() + 1);
    }

    void historyKeepsTheNewest_data()
    {
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("textBytes");
        QTest::addColumn<int>("added");
        QTest::addColumn<int>("firstKept");

        // 10 kept, 12 (a fifth more) before a trim.
        QTest::newRow("12 of at most 12") << 10 << 0 << 12 << 1;
        QTest::newRow("13: back to the newest 10") << 10 << 0 << 13 << 4;
        // Entries of about 0.92 MB: six fit 6 MiB, the seventh passes it and the newest four
        // (3.7 MB) fit 4 MiB.
        QTest::newRow("6 large ones in 6 MiB") << 10 << 900 * 1024 << 6 << 1;
        QTest::newRow("7 large ones: the newest 4") << 10 << 900 * 1024 << 7 << 4;
    }

    void historyKeepsTheNewest()
    {
        QFETCH(int, limit);
        QFETCH(int, textBytes);
        QFETCH(int, added);
        QFETCH(int, firstKept);

        QTemporaryDir dir;
        const QString path = dir.filePath("kelhistory.json");
        const QString text(textBytes, QLatin1Char('t'));
        {
            ChangeHistory history(path, limit);
            QString error;
            for (int n = 1; n <= added; ++n)
                QVERIFY2(history.add(historyEntry(n, text), &error), qPrintable(error));
            QCOMPARE(history.entries().size(), added - firstKept + 1);
        }
        ChangeHistory reread(path, limit);
        QCOMPARE(reread.load(), QString());
        QCOMPARE(reread.entries().size(), added - firstKept + 1);
        QCOMPARE(reread.entries().first().changes.first().after.toInt(), firstKept);
        QCOMPARE(reread.entries().last().changes.first().after.toInt(), added);
    }

    void repairSurvivesAKillAtEveryStep_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<int>("exitCode");

        QTest::newRow("after the copy aside") << "aside-kept" << 9;
        QTest::newRow("after the replacement") << "replaced" << 9;
        QTest::newRow("not stopped") << "none" << 0;
    }

    void repairSurvivesAKillAtEveryStep()
    {
        QFETCH(QString, step);
        QFETCH(int, exitCode);

        QTemporaryDir dir;
        const QString dataFile = dir.filePath("kelcontroller.json");
        const QByteArray damaged = "{\"weld_io_config\": 5, \"weld_param_config\": {\"LsData9\": "
                                   "{\"Tips\": \"kept\"}}}";
        writeFile(dataFile, damaged);

        QProcess child;
        child.start(
            QCoreApplication::applicationDirPath() + "/kel_repairchild", {dir.path(), step});
        QVERIFY(child.waitForFinished(30000));
        QCOMPARE(child.exitCode(), exitCode);

        // Whatever the step, a complete data file: the damaged one or the repaired one.
        const QByteArray left = readAll(dataFile);
        const QJsonObject repaired = QJsonDocument::fromJson(left).object();
        QVERIFY2(left == damaged || repaired["weld_io_config"].isObject(), left.constData());
        QCOMPARE(asideCopies(dir.path(), "kelcontroller.json").size(), 1);

        ControllerSimulator sim(dir.path());
        QCOMPARE(
            sim.record("weld_param_config").value("LsData9")["Tips"].toString(), QString("kept"));
        QCOMPARE(sim.record("weld_io_config"), FactoryRecords::ioConfig());
        QCOMPARE(QJsonDocument::fromJson(readAll(dataFile))["weld_param_config"]["LsData9"]["Tips"]
                     .toString(),
            QString("kept"));
        // Every copy aside holds the damaged file as it was.
        for (const QString &aside : asideCopies(dir.path(), "kelcontroller.json"))
            QCOMPARE(readAll(dir.filePath(aside)), damaged);
    }

    void storageErrorRefusesTheSaveInWords_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("words");

        QTest::newRow("disk full") << "full"
                                   << "store failed: disk full";
        QTest::newRow("folder removed") << "removed"
                                        << "store failed: folder missing";
    }

    void storageErrorRefusesTheSaveInWords()
    {
        QFETCH(QString, fault);
        QFETCH(QString, words);

        QTemporaryDir dir;
        QJsonObject io = FactoryRecords::ioConfig();
        io.insert("gas_protect_port", "DO20");
        {
            ControllerSimulator sim(dir.path());
            QCOMPARE(entryOf(sim, "set_virtual_welding", true)["return"].toInt(), 0);
            const QByteArray before = readAll(sim.dataFilePath());
            QVERIFY(before.size() > 1024);
            QSignalSpy problems(&sim, &ControllerSimulator::problem);
            QJsonObject entry;
            if (fault == "full") {
                FileSizeLimit full(1024);
                entry = entryOf(sim, "set_weld_io_config", io);
            } else {
                QVERIFY(QDir(dir.path()).removeRecursively());
                entry = entryOf(sim, "set_weld_io_config", io);
                QVERIFY(!QFileInfo::exists(dir.path())); // not made again elsewhere
                QVERIFY(QDir().mkpath(dir.path()));
            }
            QCOMPARE(entry["return"].toInt(), int(ControllerSimulator::StoreFailed));
            const QString text = entry["message"].toString();
            QVERIFY2(text.startsWith(words), qPrintable(text));
            QVERIFY(text.contains(sim.dataFilePath()));
            QCOMPARE(problems.count(), 1);
            QCOMPARE(problems.at(0).at(0).toString(), text);
            QCOMPARE(sim.record("weld_io_config"), FactoryRecords::ioConfig());
            QCOMPARE(readAll(sim.dataFilePath()), fault == "full" ? before : QByteArray());
            QVERIFY(sim.history().entries().isEmpty());
            // The fault gone, the same save goes through, and everything is on disk.
            QCOMPARE(entryOf(sim, "set_weld_io_config", io)["return"].toInt(), 0);
        }
        ControllerSimulator again(dir.path());
        QCOMPARE(again.record("weld_io_config"), io);
        QCOMPARE(
            again.getKelServiceData("laser_weld_data.virtual_welding_status"), QJsonValue(true));
        QCOMPARE(again.history().entries().size(), 1);
    }

    void historyEntriesNotStoredAreReportedAndKept()
    {
        QTemporaryDir dir;
        QJsonObject settings = FactoryRecords::settingConfig();
        const auto save = [&settings](ControllerSimulator &sim, int power) {
            settings.insert("laser_power", power);
            return entryOf(sim, "set_weld_setting_config", settings)["return"].toInt();
        };
        {
            ControllerSimulator sim(dir.path());
            // A history larger than the data file, so that a limit between them stops only it.
            int power = 1000;
            while (QFileInfo(sim.history().filePath()).size()
                < QFileInfo(sim.dataFilePath()).size() + 4096)
                QCOMPARE(save(sim, ++power), 0);
            const int stored = sim.history().entries().size();
            const QByteArray historyFile = readAll(sim.history().filePath());

            QSignalSpy problems(&sim, &ControllerSimulator::problem);
            {
                // Inside the first new line: the part written must be cut back.
                FileSizeLimit full(rlim_t(historyFile.size() + 50));
                for (int i = 0; i < 5; ++i)
                    QCOMPARE(save(sim, ++power), 0); // the record itself is stored
            }
            QCOMPARE(problems.count(), 5);
            const QString last = problems.last().at(0).toString();
            QVERIFY2(last.contains("could not store the change of weld_setting_config"),
                qPrintable(last));
            QVERIFY2(last.contains("(5 entries wait to be stored): disk full"), qPrintable(last));
            QCOMPARE(sim.storageProblems().size(), 5);
            QCOMPARE(sim.history().unstored(), 5);
            QCOMPARE(sim.history().entries().size(), stored + 5);
            QCOMPARE(readAll(sim.history().filePath()), historyFile);
            // Space again: the next change stores the waiting ones with it.
            QCOMPARE(save(sim, ++power), 0);
            QCOMPARE(sim.history().unstored(), 0);
            QCOMPARE(sim.history().entries().size(), stored + 6);
        }
        ControllerSimulator again(dir.path());
        const auto &entries = again.history().entries();
        QCOMPARE(entries.last().changes.first().after.toInt(),
            again.record("weld_setting_config")["laser_power"].toInt());
        for (int i = 1; i < entries.size(); ++i)
            QCOMPARE(entries.at(i).changes.first().after.toInt(),
                entries.at(i - 1).changes.first().after.toInt() + 1);
    }

    void csvKeepsTheNewestLinesThatFit_data()
    {
        QTest::addColumn<QString>("room");
        QTest::addColumn<QStringList>("keys");

        // Three entries of two changes each, "n" and "text": six lines after the header.
        QTest::newRow("all of it") << "all" << QStringList {"n", "text", "n", "text", "n", "text"};
        QTest::newRow("a byte short: the oldest line goes")
            << "all - 1" << QStringList {"text", "n", "text", "n", "text"};
        QTest::newRow("the header only") << "header" << QStringList {};
    }

    void csvKeepsTheNewestLinesThatFit()
    {
        QFETCH(QString, room);
        QFETCH(QStringList, keys);

        QTemporaryDir dir;
        ChangeHistory history(dir.filePath("kelhistory.json"));
        QString error;
        for (int n = 1; n <= 3; ++n)
            QVERIFY(history.add(historyEntry(n), &error));
        const QByteArray all = history.csv();
        const QByteArray header = all.left(all.indexOf('\n') + 1);
        const int maxBytes = room == "all" ? all.size()
            : room == "all - 1"            ? all.size() - 1
                                           : header.size();
        const QByteArray text = history.csv(QString(), maxBytes);
        QVERIFY(text.size() <= maxBytes);
        QVERIFY(all.endsWith(text.mid(header.size())));
        QStringList got;
        for (const QByteArray &line : text.mid(header.size()).split('\n')) {
            if (!line.isEmpty())
                got.append(QString::fromUtf8(line.split(',').at(4)));
        }
        QCOMPARE(got, keys);
    }

    void pendantIsToldAtConnect()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath("kelcontroller.json"), "{\"weld_io_config\": 5}");
        ControllerSimulator sim(dir.path());
        kelcontroller::ControllerServer server(&sim, "cellkey");
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        kelplugin::NetworkController pendant("127.0.0.1", server.port(), "cellkey");
        QSignalSpy problems(&pendant, &kelplugin::NetworkController::problem);
        pendant.connectToController();
        QTRY_COMPARE(problems.count(), 1);
        const QString text = problems.at(0).at(0).toString();
        QVERIFY2(text.startsWith("The controller reports: The controller data file is damaged: "
                                 "weld_io_config is not an object. It was kept as "),
            qPrintable(text));
    }

    void historyAnswerKeepsTheNewest_data()
    {
        QTest::addColumn<QJsonObject>("arguments");
        QTest::addColumn<QList<int>>("powers");

        QTest::newRow("all") << QJsonObject() << QList<int> {1001, 1002, 1003, 1004, 1005};
        QTest::newRow("the last two") << QJsonObject {{"last", 2}} << QList<int> {1004, 1005};
        QTest::newRow("more than there are")
            << QJsonObject {{"last", 9}} << QList<int> {1001, 1002, 1003, 1004, 1005};
    }

    void historyAnswerKeepsTheNewest()
    {
        QFETCH(QJsonObject, arguments);
        QFETCH(QList<int>, powers);

        QTemporaryDir dir;
        ControllerSimulator sim(dir.path());
        QJsonObject settings = FactoryRecords::settingConfig();
        for (int power = 1001; power <= 1005; ++power) {
            settings.insert("laser_power", power);
            QCOMPARE(entryOf(sim, "set_weld_setting_config", settings)["return"].toInt(), 0);
        }
        kelcontroller::ControllerServer server(&sim, "cellkey");
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        RawPendant pendant(server.port());
        bool ok = false;
        pendant.ask({{"op", "hello"}, {"key", "cellkey"}}, &ok);
        QVERIFY(ok);
        QJsonObject request {{"op", "history"}};
        for (auto it = arguments.constBegin(); it != arguments.constEnd(); ++it)
            request.insert(it.key(), it.value());
        const QJsonArray entries = pendant.ask(request, &ok).toArray();
        QVERIFY(ok);
        QList<int> got;
        for (const QJsonValue &entry : entries)
            got.append(entry["changes"][0]["new"].toInt());
        QCOMPARE(got, powers);
    }

    void storageProblemsReachConnectedPendants()
    {
        QTemporaryDir dir;
        ControllerSimulator sim(dir.path());
        QJsonObject settings = FactoryRecords::settingConfig();
        int power = 1000;
        while (QFileInfo(sim.history().filePath()).size()
            < QFileInfo(sim.dataFilePath()).size() + 4096) {
            settings.insert("laser_power", ++power);
            QCOMPARE(entryOf(sim, "set_weld_setting_config", settings)["return"].toInt(), 0);
        }
        kelcontroller::ControllerServer server(&sim, "cellkey");
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        RawPendant pendant(server.port());
        bool ok = false;
        pendant.ask({{"op", "hello"}, {"key", "cellkey"}}, &ok);
        QVERIFY(ok);
        QJsonObject state = pendant.ask({{"op", "cell_state"}}, &ok).toObject();
        QVERIFY(ok);
        QCOMPARE(state["problem_count"].toInt(), 0);
        {
            FileSizeLimit full(rlim_t(QFileInfo(sim.history().filePath()).size() + 50));
            for (int i = 0; i < 2; ++i) {
                settings.insert("laser_power", ++power);
                QCOMPARE(entryOf(sim, "set_weld_setting_config", settings)["return"].toInt(), 0);
            }
        }
        // Numbered: a pendant that saw the first is told the second only.
        state = pendant.ask({{"op", "cell_state"}, {"problems_since", 1}}, &ok).toObject();
        QVERIFY(ok);
        QCOMPARE(state["problem_count"].toInt(), 2);
        const QJsonArray problems = state["problems"].toArray();
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems.at(0).toString().contains("(2 entries wait to be stored): disk full"),
            qPrintable(problems.at(0).toString()));
    }

    void weldListKeepsTheNewestAndItsTotals()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("kelweldrecords.json");
        {
            WeldRecords records(path);
            QCOMPARE(records.load(), QString());
            QString error;
            // 60 lines fit; the 61st trims the file to the newest 50.
            for (int n = 1; n <= 61; ++n)
                QVERIFY2(records.add(weldOf(n), &error), qPrintable(error));
            QCOMPARE(readAll(path).count('\n'), 50);
            // A name longer than a weld may take: stored, without its samples, and told.
            QVERIFY(!records.add(weldOf(62, QString(1100000, QLatin1Char('p'))), &error));
            QVERIFY2(
                error.startsWith("weld 62 too large: 1.1 MB, at most 1 MiB"), qPrintable(error));
        }
        // A weld torn by a kill: dropped and told; the totals are those before it.
        QFile file(path);
        QVERIFY(file.open(QIODevice::Append));
        file.write(R"({"id": 63, "samples": [[0, 1)");
        file.close();

        WeldRecords reread(path);
        QVERIFY(reread.load().contains("ends in an entry whose writing was interrupted (line 52"));
        const QJsonObject list = reread.list();
        QCOMPARE(list["welds"].toArray().size(), 50);
        QCOMPARE(list["welds"][0]["id"].toInt(), 62);
        QCOMPARE(list["welds"][49]["id"].toInt(), 13);
        QCOMPARE(list.value("totals")["welds"].toInt(), 62);
        QCOMPARE(list.value("totals")["laser_on_ms"].toInt(), 62 * 900);
        QCOMPARE(reread.weld(62)["samples"].toArray().size(), 0);
        QCOMPARE(reread.weld(61)["samples"].toArray().size(), 2);
    }

    void weldListOfTheEarlierFormatIsTakenOver()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("kelweldrecords.json");
        writeFile(path, R"({"totals": {"welds": 9, "laser_on_ms": 8100, "wire_used_mm": 13.5},
            "welds": [{"id": 9, "program": "b", "samples": [[0, 1, 2, 3, 4, 5]]},
                      {"id": 8, "program": "a", "samples": []}]})");
        {
            WeldRecords records(path);
            QCOMPARE(records.load(), QString());
            QString error;
            QVERIFY(records.add(weldOf(100), &error));
        }
        WeldRecords reread(path);
        QCOMPARE(reread.load(), QString());
        const QJsonObject list = reread.list();
        QCOMPARE(list["welds"].toArray().size(), 3);
        QCOMPARE(list["welds"][0]["id"].toInt(), 10);
        QCOMPARE(list["welds"][2]["program"].toString(), QString("a"));
        QCOMPARE(list.value("totals")["welds"].toInt(), 10);
        QCOMPARE(list.value("totals")["laser_on_ms"].toInt(), 9000);
        QCOMPARE(reread.weld(9)["samples"][0]["power"].toDouble(), 1.0);
    }
};

QTEST_GUILESS_MAIN(TestStorage)
#include "tst_storage.moc"
