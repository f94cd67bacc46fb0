#include "editorpreviews.h"

#include "weldprofile.h"

using kellaser::MatchingCurve;
using kellaser::WeldProfile;

namespace {

const QColor kPowerColour(214, 39, 40);
const QColor kWireColour(255, 127, 14);
const QColor kFrequencyColour(31, 119, 180);
const QColor kDutyColour(44, 160, 44);

} // namespace

PreviewChart::Content EditorPreviews::weldProfile(const WeldProfile &profile)
{
    PreviewChart::Content content;
    content.xUnit = QStringLiteral("ms");
    content.xLargest = profile.end;
    content.lanes.append({tr("Laser power"), QStringLiteral("W"), kPowerColour, profile.power, {}});
    const bool wire = !profile.wire.isEmpty();
    if (wire)
        content.lanes.append(
            {tr("Wire speed"), QStringLiteral("mm/s"), kWireColour, profile.wire, {}});

    for (const WeldProfile::Span &span : profile.phases) {
        switch (span.phase) {
        case WeldProfile::Start:
            content.spans.append({-1, span.from, span.to, tr("Start")});
            break;
        case WeldProfile::Weld:
            content.spans.append({-1, span.from, span.to, tr("Weld")});
            break;
        case WeldProfile::End:
            content.spans.append({-1, span.from, span.to, tr("End")});
            break;
        case WeldProfile::WireEnd:
            content.spans.append({-1, span.from, span.to, tr("Wire end")});
            break;
        case WeldProfile::EndFeed:
            content.spans.append({1, span.from, span.to, tr("Feed")});
            break;
        case WeldProfile::Retract:
            content.spans.append({1, span.from, span.to, tr("Retract")});
            break;
        case WeldProfile::Compensation:
            content.spans.append({1, span.from, span.to, tr("Compensation")});
            break;
        }
    }
    content.spans.append({-1, profile.motionStart, profile.motionStart, tr("Motion")});

    for (const WeldProfile::Problem &problem : profile.problems) {
        if (problem.lane == WeldProfile::PowerLane
            || (wire && problem.lane == WeldProfile::WireLane))
            content.marks.append({problem.lane, problem.at});
    }
    return content;
}

PreviewChart::Content EditorPreviews::matching(
    const QVector<MatchingCurve::Node> &nodes, const std::array<bool, 4> &shown)
{
    struct Quantity
    {
        MatchingCurve::Column column;
        const char *name;
        const char *unit;
        QColor colour;
    };
    const Quantity quantities[] = {
        {MatchingCurve::Power, QT_TR_NOOP("Power"), "W", kPowerColour},
        {MatchingCurve::Frequency, QT_TR_NOOP("Frequency"), "Hz", kFrequencyColour},
        {MatchingCurve::Duty, QT_TR_NOOP("Duty cycle"), "%", kDutyColour},
    };
    const MatchingCurve curve(nodes);
    PreviewChart::Content content;
    content.xUnit = QStringLiteral("mm/s");
    // Room beyond the last node shows that the value is held there.
    content.xLargest = std::max(10.0, curve.maxSpeed() * 1.2);
    const MatchingCurve::Refusal refusal = MatchingCurve::firstRefusal(nodes, shown);
    for (const Quantity &quantity : quantities) {
        if (!shown[quantity.column])
            continue;
        PreviewChart::Lane lane {tr(quantity.name), QString::fromLatin1(quantity.unit),
            quantity.colour, curve.course(quantity.column, content.xLargest), {}};
        for (const MatchingCurve::Node &node : nodes)
            lane.dots.append({node[MatchingCurve::Speed], node[quantity.column]});
        if (refusal.node >= 0 && refusal.column == quantity.column) {
            const MatchingCurve::Node &node = nodes.at(refusal.node);
            content.marks.append(
                {content.lanes.size(), {node[MatchingCurve::Speed], node[quantity.column]}});
        }
        content.lanes.append(lane);
    }
    if (refusal.node >= 0 && refusal.column == MatchingCurve::Speed)
        content.marks.append({-1, {nodes.at(refusal.node)[MatchingCurve::Speed], 0}});
    if (content.lanes.isEmpty())
        content.message = tr("Switch on power, frequency or duty cycle matching to see how it "
                             "follows the welding speed.");
    return content;
}
