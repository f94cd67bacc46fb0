#pragma once

#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

// A controller and a pendant for page benchmarks: the records a controller ships with and
// portsPerType ports of each type, listed in reverse so that the catalogue has to sort them.
class PageFixture
{
public:
    explicit PageFixture(int portsPerType);

    ScriptedController controller;
    RecordingShell shell;
};
