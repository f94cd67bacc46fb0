#include "rllaserwelddefine.h"

#include "rl/rlparasetinsertwidget.h"
#include "rl/wmovecfinsertwidget.h"
#include "rl/wmovecinsertwidget.h"
#include "rl/wmovelinsertwidget.h"

#include "kelplugin/rlmanager.h"

namespace {

const QString kGroupKey = QStringLiteral("LaserWeld");

// "\"Prefix1\"/\"Prefix2\"/.../\"PrefixN\"": the items of a combo box field.
QString quotedItems(const QString &prefix, int count)
{
    QStringList items;
    for (int i = 1; i <= count; ++i)
        items.append(QStringLiteral("\"%1%2\"").arg(prefix).arg(i));
    return items.join(QLatin1Char('/'));
}

// One combo box field choosing a quoted data set name: "LaserOn($Sched:#cmb#...#true$);".
QString dataSetSkeleton(
    const QString &name, const QString &caption, const QString &prefix, int count)
{
    return QStringLiteral("%1($%2#cmb#%3#true$);").arg(name, caption, quotedItems(prefix, count));
}

QString wireSkeleton(const QString &name, const QString &speedCaption, const QString &timeCaption)
{
    return QStringLiteral("%1($%2#spn#1,100#true$, $%3#spn#1,10000#true$);")
        .arg(name, speedCaption, timeCaption);
}

QString nameOnlyPattern(const QString &name)
{
    return QStringLiteral("^\\s*%1\\s*(?://.*)?$").arg(name);
}

// The lowercase "%l" is no place marker: it stays in the pattern as written, so the pattern
// accepts exactly that text between the quotes.
QString dataSetPattern(const QString &name)
{
    return QStringLiteral("^\\s*%1\\(\\s*\\\"(%l)\\\"\\s*\\);\\s*(?://.*)?$").arg(name);
}

QString wirePattern(const QString &name)
{
    const QString number = QStringLiteral("\\s*(?:-?\\d+)\\s*");
    return QStringLiteral("^\\s*%1\\((%2),(%3)\\);\\s*(?://.*)?$").arg(name, number, number);
}

template<typename Editor> kelplugin::RLWidgetFactory editorFactory(const QString &name)
{
    return [name]() -> kelplugin::RLContentBase * { return new Editor(name); };
}

} // namespace

RlLaserWeldDefine::RlLaserWeldDefine(QObject *parent)
    : QObject(parent), m_manager(new kelplugin::RLManager(this))
{
    m_manager->createGroups(tr("Laser Weld Ins"), kGroupKey);

    const QString sched = tr("Sched:");
    registerInstruction(QStringLiteral("LaserOn"),
        dataSetSkeleton(QStringLiteral("LaserOn"), sched, QStringLiteral("LsData"), 30),
        tr("LaserOn Perform a weld start"), dataSetPattern(QStringLiteral("LaserOn")),
        QStringLiteral("LaserOn(\"LsData1\");"));
    registerInstruction(QStringLiteral("LaserOff"), QStringLiteral("LaserOff();"),
        tr("Perform LaserOff welding shutdown"), nameOnlyPattern(QStringLiteral("LaserOff")),
        QStringLiteral("LaserOff;"));
    registerInstruction(QStringLiteral("LsParaSet"), QStringLiteral("LsParaSet;"),
        tr("Perform LsParaSet switching welding parameters during welding"),
        nameOnlyPattern(QStringLiteral("LsParaSet")), QStringLiteral("LsParaSet(\"LsData1\");"));
    registerInstruction(QStringLiteral("LsWireFwd"),
        wireSkeleton(QStringLiteral("LsWireFwd"), tr("Wire feed speed [1-100](mm/s):"),
            tr("Wire feed time [1-10000](ms):")),
        tr("Feed the wire forward at the specified speed for the specified duration."),
        wirePattern(QStringLiteral("LsWireFwd")), QStringLiteral("LsWireFwd(50,1000);"));
    registerInstruction(QStringLiteral("LsWireBwd"),
        wireSkeleton(QStringLiteral("LsWireBwd"), tr("Wire feed back speed [1-100](mm/s):"),
            tr("Wire feed back time [1-10000](ms):")),
        tr("Retract the wire backward at the specified speed for the specified duration."),
        wirePattern(QStringLiteral("LsWireBwd")), QStringLiteral("LsWireBwd(50,1000);"));
    registerInstruction(QStringLiteral("LsParaMatch"),
        dataSetSkeleton(QStringLiteral("LsParaMatch"), sched, QStringLiteral("PowerData"), 10),
        tr("Parameter matching function enabled."), dataSetPattern(QStringLiteral("LsParaMatch")),
        QStringLiteral("LsParaMatch(\"PowerData1\");"));
    registerInstruction(QStringLiteral("LsParaMatchOff"), QStringLiteral("LsParaMatchOff();"),
        tr("Parameter matching function is turned off."),
        nameOnlyPattern(QStringLiteral("LsParaMatchOff")), QStringLiteral("LsParaMatchOff;"));
    for (const QString &name :
        {QStringLiteral("LsMoveL"), QStringLiteral("LsMoveC"), QStringLiteral("LsMoveCF")}) {
        registerInstruction(name, name + QLatin1Char(';'), tr("Laser welding motion instruction"),
            nameOnlyPattern(name), name + QLatin1Char(';'));
    }
}

RlLaserWeldDefine::~RlLaserWeldDefine() = default;

void RlLaserWeldDefine::registerInstruction(const QString &name, const QString &skeleton,
    const QString &description, const QString &pattern, const QString &defaultText)
{
    m_manager->createTypeKey(name);
    m_manager->createSkeleton(name, skeleton);
    m_manager->createInsDescribe(name, description);
    m_manager->createPattern(name, pattern);
    m_manager->createInsDefault(name, defaultText);

    kelplugin::RLWidgetFactory factory;
    if (name == QLatin1String("LsMoveL"))
        factory = editorFactory<kelplugin::WMoveLInsertWidget>(name);
    else if (name == QLatin1String("LsMoveC"))
        factory = editorFactory<kelplugin::WMoveCInsertWidget>(name);
    else if (name == QLatin1String("LsMoveCF"))
        factory = editorFactory<kelplugin::WMoveCFInsertWidget>(name);
    else if (name == QLatin1String("LsParaSet"))
        factory = editorFactory<kelplugin::RLParaSetInsertWidget>(name);
    if (factory) {
        m_manager->createPropertyWidget(name, factory);
        m_manager->createInsertWidget(name, factory);
    }

    m_manager->createTypeToGroup(name, kGroupKey);
}
