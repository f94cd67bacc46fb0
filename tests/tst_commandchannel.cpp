#include "core/commandchannel.h"
#include "support/leveltexts.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"
#include "support/testenvironment.h"

#include <QtTest>

#include <limits>

using kellaser::CommandChannel;

namespace {

const QString kCommand = QStringLiteral("set_weld_manual_gas");

QJsonArray json(const char *text)
{
    return QJsonDocument::fromJson(text).array();
}

} // namespace

Q_DECLARE_METATYPE(CommandChannel::Outcome)

class TestCommandChannel : public QObject
{
    Q_OBJECT

private slots:
    void init() { testenv::resetLogFile(); }

    void searchCheck_data()
    {
        QTest::addColumn<QJsonArray>("reply");
        QTest::addColumn<CommandChannel::Outcome>("outcome");
        QTest::addColumn<int>("code");

        const auto notFound = CommandChannel::Outcome::NotFound;
        const auto success = CommandChannel::Outcome::Success;
        const auto failure = CommandChannel::Outcome::Failure;
        const auto withReturn
            = [](const QJsonValue &value) { return ScriptedController::reply(kCommand, value); };

        QTest::newRow("zero code") << withReturn(0) << success << 0;
        QTest::newRow("matching element not first")
            << json(R"([{"kellaserweld":{"set_weld_feed_wire":{"return":0}}},
                    {"kellaserweld":{"set_weld_manual_gas":{"return":3}}}])")
            << failure << 3;
        QTest::newRow("first matching element decides")
            << json(R"([{"kellaserweld":{"set_weld_manual_gas":{"return":0}}},
                    {"kellaserweld":{"set_weld_manual_gas":{"return":4}}}])")
            << success << 0;
        QTest::newRow("entry without return is passed over")
            << json(R"([{"kellaserweld":{"set_weld_manual_gas":{"code":1}}},
                    {"kellaserweld":{"set_weld_manual_gas":{"return":2}}}])")
            << failure << 2;
        QTest::newRow("empty array") << QJsonArray() << notFound << 0;
        QTest::newRow("return missing")
            << json(R"([{"kellaserweld":{"set_weld_manual_gas":{}}}])") << notFound << 0;
        QTest::newRow("return true is not a number") << withReturn(true) << success << 0;
        QTest::newRow("return string 7 is not a number")
            << withReturn(QStringLiteral("7")) << success << 0;
        QTest::newRow("elements not objects") << json(R"([5, "set_weld_manual_gas", null, [1],
                    {"kellaserweld":{"set_weld_manual_gas":{"return":1}}}])")
                                              << failure << 1;
        QTest::newRow("kellaserweld not an object")
            << json(R"([{"kellaserweld":["set_weld_manual_gas"]}, {"kellaserweld":"x"}])")
            << notFound << 0;
        QTest::newRow("command member not an object")
            << json(R"([{"kellaserweld":{"set_weld_manual_gas":1}}])") << notFound << 0;
        QTest::newRow("another plug-in's key")
            << json(R"([{"other":{"set_weld_manual_gas":{"return":1}}}])") << notFound << 0;
        QTest::newRow("negative code") << withReturn(-3) << failure << -3;
        QTest::newRow("whole double") << withReturn(4.0) << failure << 4;
        // Only whole numbers in int range convert; anything else takes the default 0.
        QTest::newRow("fractional double") << withReturn(2.5) << success << 0;
        QTest::newRow("beyond int") << withReturn(3e9) << success << 0;
    }

    void searchCheck()
    {
        QFETCH(QJsonArray, reply);
        QFETCH(CommandChannel::Outcome, outcome);
        QFETCH(int, code);

        const CommandChannel::Entry entry = CommandChannel::findReturn(reply, kCommand);
        QCOMPARE(entry.outcome, outcome);
        QCOMPARE(entry.code, code);
    }

    void firstElementCheck_data()
    {
        QTest::addColumn<QJsonArray>("reply");
        QTest::addColumn<int>("code");

        const auto withReturn = [](const QJsonValue &value) {
            return ScriptedController::reply(QStringLiteral("set_virtual_welding"), value);
        };
        const int intMax = std::numeric_limits<int>::max();

        QTest::newRow("empty array") << QJsonArray() << 0;
        QTest::newRow("zero") << withReturn(0) << 0;
        QTest::newRow("failure code") << withReturn(2) << 2;
        QTest::newRow("first element not an object")
            << json(R"([5, {"kellaserweld":{"set_virtual_welding":{"return":1}}}])") << 0;
        QTest::newRow("match only in second element") << json(
            R"([{"kellaserweld":{}}, {"kellaserweld":{"set_virtual_welding":{"return":1}}}])")
                                                      << 0;
        QTest::newRow("return true") << withReturn(true) << 1;
        QTest::newRow("return string 7") << withReturn(QStringLiteral("7")) << 7;
        QTest::newRow("return string not numeric") << withReturn(QStringLiteral("busy")) << 0;
        QTest::newRow("return string fractional") << withReturn(QStringLiteral("2.5")) << 0;
        QTest::newRow("return string overflowing")
            << withReturn(QStringLiteral("99999999999")) << 0;
        QTest::newRow("return nested")
            << withReturn(QJsonObject {{QStringLiteral("return"), 1}}) << 0;
        QTest::newRow("kellaserweld not an object") << json(R"([{"kellaserweld":[1]}])") << 0;
        QTest::newRow("fractional truncates") << withReturn(2.9) << 2;
        QTest::newRow("negative fractional truncates toward zero") << withReturn(-2.9) << -2;
        QTest::newRow("huge saturates") << withReturn(1e300) << intMax;
        QTest::newRow("not a number") << withReturn(std::numeric_limits<double>::quiet_NaN()) << 0;
    }

    void firstElementCheck()
    {
        QFETCH(QJsonArray, reply);
        QFETCH(int, code);

        QCOMPARE(
            CommandChannel::firstElementReturn(reply, QStringLiteral("set_virtual_welding")), code);
    }

    void checkReplyReportsOutcome_data()
    {
        QTest::addColumn<QJsonArray>("reply");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("logs");

        QTest::newRow("success") << ScriptedController::reply(kCommand, 0)
                                 << QStringList {QStringLiteral("0|Saved")} << QStringList();
        QTest::newRow("failure")
            << ScriptedController::reply(kCommand, 3) << QStringList {QStringLiteral("2|Broken")}
            << QStringList {QStringLiteral(
                   "E|WeldioPage::checkSaveResult failed.  set_weld_manual_gas  Result: 3")};
        QTest::newRow("empty reply shows nothing")
            << QJsonArray() << QStringList()
            << QStringList {QStringLiteral(
                   "E|WeldioPage::checkSaveResult failed. not found  set_weld_manual_gas  Result")};
        // Passes the search check although the first-element check would call it a failure.
        QTest::newRow("return true") << ScriptedController::reply(kCommand, true)
                                     << QStringList {QStringLiteral("0|Saved")} << QStringList();
    }

    void checkReplyReportsOutcome()
    {
        QFETCH(QJsonArray, reply);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, logs);

        RecordingShell shell;
        CommandChannel::checkReply(reply, kCommand,
            QStringLiteral("WeldioPage::checkSaveResult failed. "), QStringLiteral("Saved"),
            QStringLiteral("Broken"));

        QCOMPARE(testenv::shownMessages(shell), messages);
        for (const RecordingShell::Message &m : qAsConst(shell.messages))
            QCOMPARE(m.pluginKey, QStringLiteral("kellaserweld"));
        QCOMPARE(testenv::logTexts(), logs);
    }
};

QTEST_MAIN(TestCommandChannel)
#include "tst_commandchannel.moc"
