// The Chinese translation: complete, current with the sources, and working from the resources.

#include "support/testenvironment.h"

#include "page/laserweldpage.h"

#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

struct TsEntry
{
    QString context;
    QString source;
    QString comment;
    QString translation;
    QString type; // "unfinished", "vanished", "obsolete" or empty when done

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

QString committedTs()
{
    return QStringLiteral(KEL_PLUGIN_SOURCE_DIR "/resources/kellaserweld_cn.ts");
}

} // namespace

class TestTranslation : public QObject
{
    Q_OBJECT

private:
    QList<TsEntry> m_committed;
    QList<TsEntry> m_scanned;
    QString m_scanError;

private slots:
    void initTestCase();
    void committedEntriesAreTranslated_data();
    void committedEntriesAreTranslated();
    void everySourceTextHasAnEntry_data();
    void everySourceTextHasAnEntry();
    void noEntryOutlivesItsSource();
    void bundledTranslationShowsPagesInChinese();
};

void TestTranslation::initTestCase()
{
    QString error;
    m_committed = readTs(committedTs(), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QVERIFY(!m_committed.isEmpty());

    // The same scan as the kel_update_translations target, into a scratch file.
    QTemporaryDir scratch;
    QVERIFY(scratch.isValid());
    const QString fresh = scratch.filePath(QStringLiteral("fresh.ts"));
    QProcess lupdate;
    lupdate.setProcessChannelMode(QProcess::MergedChannels);
    lupdate.start(QStringLiteral(KEL_LUPDATE),
        {QStringLiteral("-no-obsolete"), QStringLiteral("-locations"), QStringLiteral("none"),
            QStringLiteral(KEL_PLUGIN_SOURCE_DIR), QStringLiteral("-ts"), fresh});
    QVERIFY2(lupdate.waitForFinished(120000), "lupdate did not finish");
    QVERIFY2(lupdate.exitStatus() == QProcess::NormalExit && lupdate.exitCode() == 0,
        lupdate.readAll().constData());
    m_scanned = readTs(fresh, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QVERIFY(!m_scanned.isEmpty());
}

void TestTranslation::committedEntriesAreTranslated_data()
{
    QTest::addColumn<QString>("context");
    QSet<QString> seen;
    for (const TsEntry &entry : qAsConst(m_committed)) {
        if (!seen.contains(entry.context)) {
            seen.insert(entry.context);
            QTest::newRow(qPrintable(entry.context)) << entry.context;
        }
    }
}

void TestTranslation::committedEntriesAreTranslated()
{
    QFETCH(QString, context);
    QStringList faults;
    for (const TsEntry &entry : qAsConst(m_committed)) {
        if (entry.context != context)
            continue;
        if (!entry.type.isEmpty())
            faults.append(QStringLiteral("%1 \"%2\"").arg(entry.type, entry.source));
        else if (entry.translation.trimmed().isEmpty())
            faults.append(QStringLiteral("empty \"%1\"").arg(entry.source));
        else if (placeholders(entry.translation) != placeholders(entry.source))
            faults.append(QStringLiteral("place markers differ \"%1\"").arg(entry.source));
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("; "))));
}

void TestTranslation::everySourceTextHasAnEntry_data()
{
    QTest::addColumn<QString>("context");
    QSet<QString> seen;
    for (const TsEntry &entry : qAsConst(m_scanned)) {
        if (!seen.contains(entry.context)) {
            seen.insert(entry.context);
            QTest::newRow(qPrintable(entry.context)) << entry.context;
        }
    }
}

void TestTranslation::everySourceTextHasAnEntry()
{
    QFETCH(QString, context);
    QSet<QString> committed;
    for (const TsEntry &entry : qAsConst(m_committed))
        committed.insert(entry.key());
    QStringList missing;
    for (const TsEntry &entry : qAsConst(m_scanned)) {
        if (entry.context == context && !committed.contains(entry.key()))
            missing.append(QLatin1Char('"') + entry.source + QLatin1Char('"'));
    }
    QVERIFY2(missing.isEmpty(),
        qPrintable(QStringLiteral("run the kel_update_translations target and translate: ")
            + missing.join(QStringLiteral(", "))));
}

void TestTranslation::noEntryOutlivesItsSource()
{
    QSet<QString> scanned;
    for (const TsEntry &entry : qAsConst(m_scanned))
        scanned.insert(entry.key());
    QStringList stale;
    for (const TsEntry &entry : qAsConst(m_committed)) {
        if (!scanned.contains(entry.key()))
            stale.append(entry.context + QStringLiteral(" \"") + entry.source + QLatin1Char('"'));
    }
    QVERIFY2(stale.isEmpty(), qPrintable(stale.join(QStringLiteral(", "))));
}

void TestTranslation::bundledTranslationShowsPagesInChinese()
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

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
