// Every resource path the plug-in's sources, forms and style description name is in the bundle.

#include "support/testenvironment.h"

#include "core/styledescription.h"

#include <QImageReader>
#include <QtTest>

namespace {

// path -> first file naming it
QMap<QString, QString> scanSources()
{
    // A resource path opens a string, a url() or an element; "http://" never matches.
    static const QRegularExpression literal(QStringLiteral("[\"'(>](:/[A-Za-z0-9_./-]+)"));
    QMap<QString, QString> found;
    const QString root = QStringLiteral(KEL_PLUGIN_SOURCE_DIR);
    QDirIterator it(root,
        {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.ui"),
            QStringLiteral("*.json")},
        QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(file.readAll());
        auto match = literal.globalMatch(text);
        while (match.hasNext()) {
            const QString resource = match.next().captured(1);
            if (!found.contains(resource))
                found.insert(resource, path.mid(root.size() + 1));
        }
    }
    return found;
}

} // namespace

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { testenv::initPluginResources(); }

    void scanFindsTheKnownUses()
    {
        // Guards the scan itself: a broken pattern would leave pathResolves with no rows.
        const QMap<QString, QString> found = scanSources();
        QVERIFY(found.contains(QStringLiteral(":/png/meanlist/LaserWeldIO.png")));
        QVERIFY(found.contains(QStringLiteral(":/png/phybutton/gasPressed.png")));
        QVERIFY(found.contains(QStringLiteral(":/kellaserweld/render/sub_page.json")));
    }

    void pathResolves_data()
    {
        QTest::addColumn<QString>("path");
        const QMap<QString, QString> found = scanSources();
        for (auto it = found.constBegin(); it != found.constEnd(); ++it)
            QTest::addRow("%s in %s", qPrintable(it.key()), qPrintable(it.value())) << it.key();
        // Named by the host or built from parts rather than written out in the plug-in's code.
        QTest::newRow("translation")
            << QStringLiteral(":/kellaserweld/language/kellaserweld_cn.qm");
        QTest::newRow("style image token")
            << kellaser::StyleDescription().token(QStringLiteral("$image$")).mid(4).chopped(1);
    }

    void pathResolves()
    {
        QFETCH(QString, path);
        QFile file(path);
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
        QVERIFY(file.size() > 0);
        if (path.endsWith(QLatin1String(".png"))) {
            QImageReader reader(path);
            QVERIFY2(!reader.read().isNull(), qPrintable(reader.errorString()));
        }
    }
};

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
