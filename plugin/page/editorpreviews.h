#pragma once

#include "matchingcurve.h"

#include "widget/previewchart.h"

#include <QCoreApplication>

namespace kellaser {
class WeldProfile;
}

// What the weld data and matching editors' previews show: the lanes with their names, units
// and colours, the phases' names and the marks of what the process or the save would refuse.
class EditorPreviews
{
    Q_DECLARE_TR_FUNCTIONS(EditorPreviews)

public:
    static PreviewChart::Content weldProfile(const kellaser::WeldProfile &profile);

    // nodes in table order; shown tells for power, frequency and duty cycle (columns 1..3)
    // whether their switch is on.
    static PreviewChart::Content matching(
        const QVector<kellaser::MatchingCurve::Node> &nodes, const std::array<bool, 4> &shown);
};
