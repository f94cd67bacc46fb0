#include "support/testenvironment.h"

#include <QImage>
#include <QtTest>

namespace {

const char *const kKeys[] = {"switchMode", "feedWire", "gas", "pullWire", "redLight"};

} // namespace

class TestIcons : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { testenv::initPluginResources(); }

    void pressedKeyLooksDifferent_data()
    {
        QTest::addColumn<QString>("key");
        for (const char *key : kKeys)
            QTest::newRow(key) << QString::fromLatin1(key);
    }

    void pressedKeyLooksDifferent()
    {
        QFETCH(QString, key);
        const QImage unpressed(QStringLiteral(":/png/phybutton/%1Unpressed.png").arg(key));
        const QImage pressed(QStringLiteral(":/png/phybutton/%1Pressed.png").arg(key));
        QVERIFY(!pressed.isNull() && !unpressed.isNull());
        QCOMPARE(pressed.size(), unpressed.size());
        // The pressed key has the darker background.
        QVERIFY(qGray(pressed.pixel(4, pressed.height() / 2))
            < qGray(unpressed.pixel(4, unpressed.height() / 2)));
    }
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
