// Loads the built plug-in the way the pendant does, in a process that does not link it.

#include "keypanel.h"
#include "pendantwindow.h"
#include "pluginhost.h"

#include "controller/controllersimulator.h"
#include "kelplugin/pluginbase.h"
#include "kelplugin/pluginregister.h"

#include <QtTest>

class TestPluginLoading : public QObject
{
    Q_OBJECT

private slots:
    void loadsThePluginFromItsFolder()
    {
        QTemporaryDir data;
        kelcontroller::ControllerSimulator controller(data.path());
        kelplugin::setControllerBackend(&controller);
        PendantWindow window(&controller);
        PluginHost host;
        QSignalSpy problems(&host, &PluginHost::problem);

        const auto results = host.loadFolder(qEnvironmentVariable("KEL_PLUGIN_DIR"));
        QCOMPARE(host.loadedKeys(), QStringList {QStringLiteral("kellaserweld")});
        QVERIFY2(problems.isEmpty(), qPrintable(problems.value(0).value(0).toString()));

        host.startAll();
        QCOMPARE(host.plugins().size(), 1);
        QWidget *centre = window.centreWidget(QStringLiteral("kellaserweld"));
        QVERIFY(centre);
        QCOMPARE(centre->metaObject()->className(), "LaserWeldPage");
        QCOMPARE(window.firstKeys()->buttons().size(), 3);
        QCOMPARE(window.secondKeys()->buttons().size(), 2);
        QVERIFY(window.firstKeys()->isEnabled());
        host.shutdown();
        kelplugin::setControllerBackend(nullptr);
    }

    void rejectsLibrariesThatAreNotPlugins_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("expected");
        // A real shared library without the plug-in interface. A copy of the host library used to
        // stand in here, which put a second copy of the host's globals into the process.
        QTest::newRow("library that is no plug-in") << QCoreApplication::applicationDirPath()
                + QStringLiteral("/../lib/libkel_notaplugin.so")
                                                    << QStringLiteral("is not a pendant plug-in");
        QTest::newRow("file that is no library") << QString() << QStringLiteral("cannot be loaded");
    }

    void rejectsLibrariesThatAreNotPlugins()
    {
        QFETCH(QString, source);
        QFETCH(QString, expected);

        QTemporaryDir folder;
        const QString target = folder.filePath(QStringLiteral("libnotaplugin.so"));
        if (source.isEmpty()) {
            QFile garbage(target);
            QVERIFY(garbage.open(QIODevice::WriteOnly));
            garbage.write("this is not an ELF file");
        } else {
            QVERIFY(QFile::copy(source, target));
        }

        PluginHost host;
        QSignalSpy problems(&host, &PluginHost::problem);
        const auto results = host.loadFolder(folder.path());
        QCOMPARE(results.size(), 1);
        QVERIFY(!results.first().loaded);
        QVERIFY(host.loadedKeys().isEmpty());
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems.first().first().toString().contains(expected),
            qPrintable(problems.first().first().toString()));
        host.startAll();
        QVERIFY(host.plugins().isEmpty());
    }

    void missingFolderIsReported()
    {
        PluginHost host;
        QSignalSpy problems(&host, &PluginHost::problem);
        host.loadFolder(QStringLiteral("/nonexistent/plugins"));
        QCOMPARE(problems.size(), 1);
        QVERIFY(problems.first().first().toString().contains(QLatin1String("does not exist")));
    }

    void pendantScreenshotRunWritesPngsAndLogs()
    {
        QTemporaryDir work;
        QProcess pendant;
        pendant.setWorkingDirectory(work.path());
        pendant.start(qEnvironmentVariable("KEL_PENDANT"),
            {QStringLiteral("-platform"), QStringLiteral("offscreen"), QStringLiteral("--data-dir"),
                work.filePath(QStringLiteral("data")), QStringLiteral("--screenshot"),
                work.filePath(QStringLiteral("shots"))});
        QVERIFY(pendant.waitForFinished(120000));
        QCOMPARE(pendant.exitStatus(), QProcess::NormalExit);
        QCOMPARE(pendant.exitCode(), 0);

        const QStringList shots = QDir(work.filePath(QStringLiteral("shots")))
                                      .entryList({QStringLiteral("*.png")}, QDir::Files);
        QVERIFY(shots.contains(QStringLiteral("kelpendant.png")));
        // The gallery reaches every page, tab, editor and dialog, named alike in every language.
        for (const char *expected : {"LaserWeldPage-1-WeldSettingPage.png",
                 "LaserWeldPage-1-WeldSettingPage-full.png", "LaserWeldPage-2-WeldioPage.png",
                 "LaserWeldPage-3-CharacteristicsCurvePage-tab4-dutycycle.png",
                 "LaserWeldPage-4-WeldParameterPage-tab1-tab_weldData-editor.png",
                 "LaserWeldPage-4-WeldParameterPage-tab2-tab_matching-editor.png",
                 "LaserWeldPage-5-LaserTrackingPage.png",
                 "LaserWeldPage-dialog-ButtonMonitorPage.png", "ProgramEditor.png",
                 "instruction-LaserOn.png", "instruction-LsMoveCF.png"})
            QVERIFY2(shots.contains(QLatin1String(expected)), expected);

        QFile log(work.filePath(QStringLiteral("log/kelplugin/kellaserweld/kellaserweld")));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray text = log.readAll();
        QVERIFY(text.contains("[I|"));
        QVERIFY(text.contains("kelLaserWeld::init()"));
        QVERIFY(text.contains("KelPluginDemo::initData()"));
    }
};

QTEST_MAIN(TestPluginLoading)
#include "tst_pluginloading.moc"
