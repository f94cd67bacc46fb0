#pragma once

#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

class QJsonObject;

// A controller and a pendant for page benchmarks: the shipped records with every weld data set and
// matching set filled, and portsPerType ports of each type, listed in reverse so that the catalogue
// has to sort them.
class PageFixture
{
public:
    explicit PageFixture(int portsPerType);

    // Every set of the family from 1 to count, copied from the first set the record has.
    static QJsonObject filledSets(const QJsonObject &record, const QString &prefix, int count);

    ScriptedController controller;
    RecordingShell shell;
};
