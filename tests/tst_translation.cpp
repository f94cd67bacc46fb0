// The Chinese translation: complete, current with the sources, and working from the resources.

#include "support/testenvironment.h"

#include "page/laserweldpage.h"

#include <QLabel>
#include <QToolButton>
#include <QtTest>

namespace {

struct TsEntry
{
    // type: "unfinished", "vanished", "obsolete" or empty when done
    QString context, source, comment, translation, type;

    QString key() const
    {
        return context + QLatin1Char('\x1f') + source + QLatin1Char('\x1f') + comment;
    }
};

QList<TsEntry> readTs(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot open %1").arg(path);
        return {};
    }
    QList<TsEntry> entries;
    QXmlStreamReader xml(&file);
    QString context;
    TsEntry entry;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        const auto name = xml.name();
        if (name == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (name == QLatin1String("message")) {
            entry = TsEntry {context, {}, {}, {}, {}};
        } else if (name == QLatin1String("source")) {
            entry.source = xml.readElementText();
        } else if (name == QLatin1String("comment")) {
            entry.comment = xml.readElementText();
        } else if (name == QLatin1String("translation")) {
            entry.type = xml.attributes().value(QLatin1String("type")).toString();
            entry.translation = xml.readElementText();
            entries.append(entry);
        }
    }
    if (xml.hasError())
        *error = QStringLiteral("%1: %2").arg(path, xml.errorString());
    return entries;
}

QStringList placeholders(const QString &text)
{
    static const QRegularExpression marker(QStringLiteral("%L?\\d{1,2}"));
    QStringList found;
    auto it = marker.globalMatch(text);
    while (it.hasNext())
        found.append(it.next().captured());
    found.sort();
    return found;
}

// The entries of from whose key is not in in, as "context \"source\"".
QStringList missingFrom(const QList<TsEntry> &in, const QList<TsEntry> &from)
{
    QSet<QString> keys;
    for (const TsEntry &entry : in)
        keys.insert(entry.key());
    QStringList missing;
    for (const TsEntry &entry : from) {
        if (!keys.contains(entry.key()))
            missing.append(entry.context + QStringLiteral(" \"") + entry.source + '"');
    }
    return missing;
}

// Each translation source and the folders its update scans, as the update targets do.
struct TsFile
{
    const char *name;
    QString ts;
    QStringList folders;
};

const QList<TsFile> &tsFiles()
{
    static const QList<TsFile> files {
        {"plug-in", QStringLiteral(KEL_SOURCE_DIR "/plugin/resources/kellaserweld_cn.ts"),
            {QStringLiteral(KEL_SOURCE_DIR "/plugin")}},
        {"pendant", QStringLiteral(KEL_SOURCE_DIR "/host/pendant/kelpendant_cn.ts"),
            {QStringLiteral(KEL_SOURCE_DIR "/host/pendant"),
                QStringLiteral(KEL_SOURCE_DIR "/host/kelplugin")}},
    };
    return files;
}

} // namespace

class TestTranslation : public QObject
{
    Q_OBJECT

private:
    QHash<QString, QList<TsEntry>> m_committed;
    QHash<QString, QList<TsEntry>> m_scanned;

    static void addFileRows()
    {
        QTest::addColumn<QString>("file");
        for (const TsFile &file : tsFiles())
            QTest::newRow(file.name) << QString::fromLatin1(file.name);
    }

private slots:
    void initTestCase()
    {
        QTemporaryDir scratch;
        QVERIFY(scratch.isValid());
        for (const TsFile &file : tsFiles()) {
            QString error;
            const QList<TsEntry> committed = readTs(file.ts, &error);
            QVERIFY2(error.isEmpty(), qPrintable(error));
            QVERIFY(!committed.isEmpty());
            m_committed.insert(QLatin1String(file.name), committed);

            // The same scan as the kel_update_translations target, into a scratch file.
            const QString fresh = scratch.filePath(QLatin1String(file.name) + ".ts");
            QProcess lupdate;
            lupdate.setProcessChannelMode(QProcess::MergedChannels);
            lupdate.start(QStringLiteral(KEL_LUPDATE),
                QStringList {QStringLiteral("-no-obsolete"), QStringLiteral("-locations"),
                    QStringLiteral("none")}
                    + file.folders + QStringList {QStringLiteral("-ts"), fresh});
            QVERIFY2(lupdate.waitForFinished(120000), "lupdate did not finish");
            QVERIFY2(lupdate.exitStatus() == QProcess::NormalExit && lupdate.exitCode() == 0,
                lupdate.readAll().constData());
            const QList<TsEntry> scanned = readTs(fresh, &error);
            QVERIFY2(error.isEmpty(), qPrintable(error));
            QVERIFY(!scanned.isEmpty());
            m_scanned.insert(QLatin1String(file.name), scanned);
        }
    }

    void committedEntriesAreTranslated_data() { addFileRows(); }
    void committedEntriesAreTranslated()
    {
        QFETCH(QString, file);
        QStringList faults;
        for (const TsEntry &entry : m_committed.value(file)) {
            const QString where = entry.context + QStringLiteral(" \"") + entry.source + '"';
            if (!entry.type.isEmpty())
                faults.append(entry.type + ' ' + where);
            else if (entry.translation.trimmed().isEmpty())
                faults.append(QStringLiteral("empty ") + where);
            else if (placeholders(entry.translation) != placeholders(entry.source))
                faults.append(QStringLiteral("place markers differ ") + where);
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
    }

    // Both ways: a new source text needs an entry (run the kel_update_translations target and
    // translate), and an entry whose source is gone must go.
    void entriesMatchTheSources_data() { addFileRows(); }
    void entriesMatchTheSources()
    {
        QFETCH(QString, file);
        QCOMPARE(missingFrom(m_committed.value(file), m_scanned.value(file)), QStringList());
        QCOMPARE(missingFrom(m_scanned.value(file), m_committed.value(file)), QStringList());
    }

    // The pendant's texts come with the pendant, apart from the plug-in's bundle.
    void bundledTranslationShowsThePendantInChinese()
    {
        Q_INIT_RESOURCE(kelpendant_lang);
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(":/kelpendant/language/kelpendant_cn.qm")));
        QCOMPARE(
            translator.translate("ControlPanel", "Robot powered"), QStringLiteral("机器人上电"));
    }

    void bundledTranslationShowsPagesInChinese()
    {
        testenv::initPluginResources();
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(":/kellaserweld/language/kellaserweld_cn.qm")));
        QVERIFY(QCoreApplication::installTranslator(&translator));

        QCOMPARE(QCoreApplication::translate("kelplugin::kelLaserWeld", "Laser Welding"),
            QStringLiteral("激光焊接"));

        // Forms translate through their class context; style selectors must stay untouched.
        LaserWeldPage page;
        const auto buttons = page.findChildren<QToolButton *>();
        QVERIFY(!buttons.isEmpty());
        QCOMPARE(buttons.first()->text(), QStringLiteral("焊接设置"));
        const auto labels = page.findChildren<QLabel *>();
        int titles = 0;
        for (const QLabel *label : labels) {
            const QVariant type = label->property("type");
            if (!type.isValid())
                continue;
            QCOMPARE(type.toString(), QStringLiteral("title"));
            ++titles;
        }
        QVERIFY(titles > 0);
        QCoreApplication::removeTranslator(&translator);
    }
};

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
