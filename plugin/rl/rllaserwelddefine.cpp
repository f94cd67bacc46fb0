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

QString nameOnlyPattern(const QString &name)
{
    return QStringLiteral("^\\s*%1\\s*(?://.*)?$").arg(name);
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
    // The weld data patterns keep their lowercase "%l": it is no place marker, so they are
    // registered as written and accept exactly that text between the quotes.
    registerInstruction(QStringLiteral("LaserOn"),
        QStringLiteral("LaserOn($%1#cmb#%2#true$);")
            .arg(sched, quotedItems(QStringLiteral("LsData"), 30)),
        tr("LaserOn Perform a weld start"),
        QStringLiteral("^\\s*LaserOn\\(\\s*\\\"(%l)\\\"\\s*\\);\\s*(?://.*)?$"),
        QStringLiteral("LaserOn(\"LsData1\");"));
    registerInstruction(QStringLiteral("LaserOff"), QStringLiteral("LaserOff();"),
        tr("Perform LaserOff welding shutdown"), nameOnlyPattern(QStringLiteral("LaserOff")),
        QStringLiteral("LaserOff;"));
    registerInstruction(QStringLiteral("LsParaSet"), QStringLiteral("LsParaSet;"),
        tr("Perform LsParaSet switching welding parameters during welding"),
        nameOnlyPattern(QStringLiteral("LsParaSet")), QStringLiteral("LsParaSet(\"LsData1\");"));
    registerInstruction(QStringLiteral("LsWireFwd"),
        QStringLiteral("LsWireFwd($%1#spn#1,100#true$, $%2#spn#1,10000#true$);")
            .arg(tr("Wire feed speed [1-100](mm/s):"), tr("Wire feed time [1-10000](ms):")),
        tr("Feed the wire forward at the specified speed for the specified duration."),
        wirePattern(QStringLiteral("LsWireFwd")), QStringLiteral("LsWireFwd(50,1000);"));
    registerInstruction(QStringLiteral("LsWireBwd"),
        QStringLiteral("LsWireBwd($%1#spn#1,100#true$, $%2#spn#1,10000#true$);")
            .arg(tr("Wire feed back speed [1-100](mm/s):"),
                tr("Wire feed back time [1-10000](ms):")),
        tr("Retract the wire backward at the specified speed for the specified duration."),
        wirePattern(QStringLiteral("LsWireBwd")), QStringLiteral("LsWireBwd(50,1000);"));
    registerInstruction(QStringLiteral("LsParaMatch"),
        QStringLiteral("LsParaMatch($%1#cmb#%2#true$);")
            .arg(sched, quotedItems(QStringLiteral("PowerData"), 10)),
        tr("Parameter matching function enabled."),
        QStringLiteral("^\\s*LsParaMatch\\(\\s*\\\"(%l)\\\"\\s*\\);\\s*(?://.*)?$"),
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
