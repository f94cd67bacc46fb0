#include "support/testenvironment.h"

#include <QImage>
#include <QTest>

namespace {

bool hasVisiblePixels(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 0)
                return true;
    return false;
}

const char *const kKeys[] = {"switchMode", "feedWire", "gas", "pullWire", "redLight"};

} // namespace

class TestIcons : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { testenv::initPluginResources(); }

    void iconLoads_data();
    void iconLoads();
    void pressedKeyLooksDifferent_data();
    void pressedKeyLooksDifferent();
};

void TestIcons::iconLoads_data()
{
    QTest::addColumn<QString>("path");
    for (const char *key : kKeys) {
        for (const char *state : {"Unpressed", "Pressed"}) {
            const QString path = QStringLiteral(":/png/phybutton/%1%2.png")
                                     .arg(QLatin1String(key), QLatin1String(state));
            QTest::newRow(qPrintable(path)) << path;
        }
    }
    for (const char *path : {":/png/LaserSwitchReal.png", ":/png/LaserSwitchSimu.png",
             ":/png/meanlist/LaserWeldDeviceSetting.png", ":/png/meanlist/LaserWeldIO.png",
             ":/png/meanlist/LaserWeldCharacteristicCurve.png",
             ":/png/meanlist/LaserWeldProcessSetting.png",
             ":/png/meanlist/LaserWeldWeaveFunction.png",
             ":/kellaserweld/png/arrow/down_arrow_white.png"})
        QTest::newRow(path) << QString::fromLatin1(path);
}

void TestIcons::iconLoads()
{
    QFETCH(QString, path);
    const QImage image(path);
    QVERIFY(!image.isNull());
    QVERIFY(hasVisiblePixels(image));
}

void TestIcons::pressedKeyLooksDifferent_data()
{
    QTest::addColumn<QString>("key");
    for (const char *key : kKeys)
        QTest::newRow(key) << QString::fromLatin1(key);
}

void TestIcons::pressedKeyLooksDifferent()
{
    QFETCH(QString, key);
    const QImage unpressed(QStringLiteral(":/png/phybutton/%1Unpressed.png").arg(key));
    const QImage pressed(QStringLiteral(":/png/phybutton/%1Pressed.png").arg(key));
    QCOMPARE(pressed.size(), unpressed.size());
    // The pressed key has the darker background.
    QVERIFY(qGray(pressed.pixel(4, pressed.height() / 2))
        < qGray(unpressed.pixel(4, unpressed.height() / 2)));
}

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
