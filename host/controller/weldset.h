#pragma once

#include "kelplugin/kelplugin_global.h"

#include <QJsonObject>
#include <QString>

namespace kelcontroller {

// The values of one weld data set (LsDataN) as the controller uses them, clamped to what the
// equipment can do. Times in ms, powers in W, frequencies in Hz, duty cycles in %, wire speeds
// in mm/s.
struct KELPLUGIN_EXPORT WeldSet
{
    // Times above this are a typing error; the controller holds them here, ms.
    static constexpr int maxTime = 60000;

    // Reads set; false, with error naming the first key the run needs that is missing or not
    // a finite number. Negative values read as 0, times are rounded to whole ms and held at
    // maxTime, powers at maxPower, wire speeds at maxWire, duty cycles at 100.
    static bool read(
        const QJsonObject &set, double maxPower, double maxWire, WeldSet *out, QString *error);

    double powerStart = 0.0;
    double frequencyStart = 0.0;
    double dutyStart = 0.0;
    int rampStart = 0;
    int delayStart = 0;
    double powerWeld = 0.0;
    double frequencyWeld = 0.0;
    double dutyWeld = 0.0;
    double powerEnd = 0.0;
    double frequencyEnd = 0.0;
    double dutyEnd = 0.0;
    int rampEnd = 0;
    int delayEnd = 0;
    bool wireStart = false;
    double wireStartSpeed = 0.0;
    int wireStartTime = 0;
    double wireRun = 0.0;
    bool wireEnd = false;
    double wireEndSpeed = 0.0;
    int wireEndTime = 0;
    bool retract = false;
    double retractSpeed = 0.0;
    int retractTime = 0;
    bool fill = false;
    int fillDelay = 0;
    double fillSpeed = 0.0;
    int fillTime = 0;
};

} // namespace kelcontroller
