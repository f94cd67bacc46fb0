#include "widget/switchbutton.h"

#include <QImage>
#include <QtTest>

class TestSwitchButton : public QObject
{
    Q_OBJECT

private slots:
    void geometry_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("on");
        QTest::addColumn<QRect>("track");
        QTest::addColumn<int>("radius");
        QTest::addColumn<QRect>("knob");

        QTest::newRow("50x25 off")
            << QSize(50, 25) << false << QRect(10, 7, 29, 11) << 5 << QRect(3, 3, 21, 21);
        QTest::newRow("50x25 on") << QSize(50, 25) << true << QRect(10, 7, 29, 11) << 5
                                  << QRect(26, 3, 21, 21);
        // 40 * 0.46 = 18.4: the track height is truncated, not rounded.
        QTest::newRow("100x40 on truncates")
            << QSize(100, 40) << true << QRect(18, 11, 64, 18) << 9 << QRect(61, 3, 36, 36);
        // Odd track height: the top edge is (50 - 23) / 2 truncated.
        QTest::newRow("odd track height keeps integer halves")
            << QSize(60, 50) << false << QRect(23, 13, 14, 23) << 11 << QRect(3, 3, 46, 46);
    }

    void geometry()
    {
        QFETCH(QSize, size);
        QFETCH(bool, on);
        QFETCH(QRect, track);
        QFETCH(int, radius);
        QFETCH(QRect, knob);

        const SwitchButton::Geometry g = SwitchButton::geometry(size, on);
        QCOMPARE(g.track, track);
        QCOMPARE(g.trackRadius, radius);
        QCOMPARE(g.knob, knob);
    }

    void paintsItsState()
    {
        // Off: a grey track, the knob left; on: a blue track, the knob right.
        for (bool on : {false, true}) {
            SwitchButton button;
            button.setOn(on, false);
            QImage image(button.size(), QImage::Format_ARGB32);
            image.fill(Qt::transparent);
            button.render(&image);
            QCOMPARE(image.pixelColor(on ? 15 : 34, 12),
                on ? QColor(83, 150, 238) : QColor(189, 193, 198));
            QCOMPARE(image.pixelColor(on ? 36 : 13, 13),
                on ? QColor(26, 115, 232) : QColor(221, 221, 221));
        }
    }

    void setOnEmitsOnlyOnChange_data()
    {
        QTest::addColumn<bool>("value");
        QTest::addColumn<bool>("emitSignal");
        QTest::addColumn<int>("emitted");

        QTest::newRow("same value") << false << true << 0;
        QTest::newRow("new value") << true << true << 1;
        QTest::newRow("new value, quietly") << true << false << 0;
    }

    void setOnEmitsOnlyOnChange()
    {
        QFETCH(bool, value);
        QFETCH(bool, emitSignal);
        QFETCH(int, emitted);

        SwitchButton button;
        QSignalSpy changed(&button, &SwitchButton::onChanged);
        button.setOn(value, emitSignal);
        QCOMPARE(changed.count(), emitted);
        QCOMPARE(button.isOn(), value);

        // The property writes through the signalling setter.
        button.setProperty("on", !value);
        QCOMPARE(changed.count(), emitted + 1);
    }

    void click_data()
    {
        QTest::addColumn<bool>("autoToggle");
        QTest::addColumn<QPoint>("release");
        QTest::addColumn<int>("mouseButton");
        QTest::addColumn<int>("raw");
        QTest::addColumn<int>("changed");
        QTest::addColumn<int>("clicked");
        QTest::addColumn<bool>("finalState");

        QTest::newRow("click toggles")
            << true << QPoint(25, 12) << int(Qt::LeftButton) << 1 << 1 << 1 << true;
        QTest::newRow("auto toggle off only asks")
            << false << QPoint(25, 12) << int(Qt::LeftButton) << 1 << 0 << 1 << false;
        QTest::newRow("release outside does nothing")
            << true << QPoint(70, 12) << int(Qt::LeftButton) << 0 << 0 << 0 << false;
        QTest::newRow("right button does nothing")
            << true << QPoint(25, 12) << int(Qt::RightButton) << 0 << 0 << 0 << false;
    }

    void click()
    {
        QFETCH(bool, autoToggle);
        QFETCH(QPoint, release);
        QFETCH(int, mouseButton);
        QFETCH(int, raw);
        QFETCH(int, changed);
        QFETCH(int, clicked);
        QFETCH(bool, finalState);

        SwitchButton button;
        button.setAutoToggle(autoToggle);
        QSignalSpy rawSpy(&button, &SwitchButton::clickedRaw);
        QSignalSpy changedSpy(&button, &SwitchButton::onChanged);
        QSignalSpy clickedSpy(&button, &QPushButton::clicked);

        QTest::mousePress(&button, Qt::MouseButton(mouseButton), {}, QPoint(25, 12));
        QTest::mouseRelease(&button, Qt::MouseButton(mouseButton), {}, release);

        QCOMPARE(rawSpy.count(), raw);
        QCOMPARE(changedSpy.count(), changed);
        QCOMPARE(clickedSpy.count(), clicked);
        QCOMPARE(button.isOn(), finalState);
        // The raw signal carries the state the click asks for.
        if (raw)
            QCOMPARE(rawSpy.first().first().toBool(), true);
    }
};

QTEST_MAIN(TestSwitchButton)
#include "tst_switchbutton.moc"
