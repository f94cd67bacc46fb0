// The common look kept as data: parsing, token expansion, scoping, and the bundled description.

#include "support/testenvironment.h"

#include "core/styledescription.h"

#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>
#include <QtTest>

using kellaser::StyleDescription;

namespace {

QStringList s_warnings;

void collectWarnings(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtWarningMsg)
        s_warnings.append(text);
}

} // namespace

class TestStyleDescription : public QObject
{
    Q_OBJECT

private slots:
    void rulesBecomeStyleSheet_data();
    void rulesBecomeStyleSheet();
    void scopePicksThePagesRules_data();
    void scopePicksThePagesRules();
    void tokenCanBeReplaced();
    void bundledDescriptionStylesEachPage_data();
    void bundledDescriptionStylesEachPage();
};

void TestStyleDescription::rulesBecomeStyleSheet_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("sheet");

    QTest::newRow("font token") << QByteArray(R"([{"name": "QLabel", "font-family": "$font$"}])")
                                << R"(QLabel{font-family:"Microsoft YaHei UI";})";
    QTest::newRow("border and colour tokens")
        << QByteArray(R"([{"name": "QFrame", "border": "$border$", "background": "$color$"}])")
        << "QFrame{background:#c8c8c8;border:1px solid #c8c8c8;}";
    QTest::newRow("token inside a value")
        << QByteArray(R"([{"name": "QFrame", "border-bottom": "2px solid $color$"}])")
        << "QFrame{border-bottom:2px solid #c8c8c8;}";
    QTest::newRow("unknown token kept")
        << QByteArray(R"([{"name": "QLabel", "width": "$size$$font$"}])")
        << R"(QLabel{width:$size$"Microsoft YaHei UI";})";
    QTest::newRow("lone dollar kept")
        << QByteArray(R"([{"name": "QLabel", "qproperty-text": "10$"}])")
        << "QLabel{qproperty-text:10$;}";
    QTest::newRow("number value") << QByteArray(R"([{"name": "QLabel", "font-weight": 600}])")
                                  << "QLabel{font-weight:600;}";
    QTest::newRow("rules keep their order") << QByteArray(
        R"([{"name": "QLabel", "border": "none"}, {"name": "QFrame", "border": "none"}])")
                                            << "QLabel{border:none;}QFrame{border:none;}";
    QTest::newRow("rule without name skipped")
        << QByteArray(R"([{"border": "none"}, {"name": "", "border": "none"}, {"name": 5}])")
        << QString();
    QTest::newRow("entries that are not rules skipped")
        << QByteArray(R"([42, "QLabel", null, [], {"name": "QLabel", "border": "none"}])")
        << "QLabel{border:none;}";
    QTest::newRow("values that are not text skipped") << QByteArray(
        R"([{"name": "QLabel", "border": {}, "margin": [1], "padding": null, "x": true}])")
                                                      << "QLabel{}";
    QTest::newRow("object instead of list")
        << QByteArray(R"({"name": "QLabel", "border": "none"})") << QString();
    QTest::newRow("broken json") << QByteArray(R"([{"name": "QLabel")") << QString();
}

void TestStyleDescription::rulesBecomeStyleSheet()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, sheet);
    QCOMPARE(StyleDescription::fromJson(json).styleSheet(), sheet);
}

void TestStyleDescription::scopePicksThePagesRules_data()
{
    QTest::addColumn<QString>("scope");
    QTest::addColumn<QString>("sheet");

    QTest::newRow("descendant and state of the page")
        << "WeldioPage"
        << "#WeldioPage QLabel{border:none;}#WeldioPage:disabled{border:none;}";
    QTest::newRow("longer object name is another page") << "WeldioPageX"
                                                        << "#WeldioPageX QLabel{border:none;}";
    QTest::newRow("no scope takes every rule")
        << QString()
        << "#WeldioPage QLabel{border:none;}#WeldioPageX QLabel{border:none;}"
           "QLabel{border:none;}#WeldioPage:disabled{border:none;}";
    QTest::newRow("unknown page") << "WeldSettingPage" << QString();
}

void TestStyleDescription::scopePicksThePagesRules()
{
    QFETCH(QString, scope);
    QFETCH(QString, sheet);
    const StyleDescription description = StyleDescription::fromJson(R"([
        {"name": "#WeldioPage QLabel", "border": "none"},
        {"name": "#WeldioPageX QLabel", "border": "none"},
        {"name": "QLabel", "border": "none"},
        {"name": "#WeldioPage:disabled", "border": "none"}])");
    QCOMPARE(description.styleSheet(scope), sheet);
}

void TestStyleDescription::tokenCanBeReplaced()
{
    StyleDescription description
        = StyleDescription::fromJson(R"([{"name": "QLabel", "font-family": "$font$"}])");
    // A replaced value is not scanned again, so a value naming a token stays literal.
    description.setToken(QStringLiteral("$font$"), QStringLiteral("$color$"));
    QCOMPARE(description.styleSheet(), QStringLiteral("QLabel{font-family:$color$;}"));
}

void TestStyleDescription::bundledDescriptionStylesEachPage_data()
{
    QTest::addColumn<QString>("page");
    QTest::newRow("device settings") << "WeldSettingPage";
    QTest::newRow("I/O mapping") << "WeldioPage";
    QTest::newRow("monitor dialog") << "ButtonMonitorPage";
}

void TestStyleDescription::bundledDescriptionStylesEachPage()
{
    QFETCH(QString, page);
    testenv::initPluginResources();
    const QString sheet = StyleDescription::fromResource().styleSheet(page);
    QVERIFY(!sheet.isEmpty());
    QVERIFY2(!sheet.contains(QLatin1Char('$')), qPrintable(sheet));

    // Qt only reports a sheet it cannot parse when a widget is polished with it.
    QWidget widget;
    widget.setObjectName(page);
    auto *frame = new QFrame(&widget);
    auto *label = new QLabel(QStringLiteral("text"), frame);
    (new QVBoxLayout(frame))->addWidget(label);
    (new QVBoxLayout(&widget))->addWidget(frame);
    s_warnings.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectWarnings);
    widget.setStyleSheet(sheet);
    widget.ensurePolished();
    label->ensurePolished();
    qInstallMessageHandler(previous);
    QVERIFY2(s_warnings.isEmpty(), qPrintable(s_warnings.join(QLatin1Char('\n'))));
    QCOMPARE(label->font().family(), QStringLiteral("Microsoft YaHei UI"));
}

QTEST_MAIN(TestStyleDescription)
#include "tst_styledescription.moc"
