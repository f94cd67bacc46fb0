// kel_repairchild <data dir> <step>: starts a controller simulator on the folder and dies
// (_exit, no clean-up, as a kill would leave it) when its start-up repair reaches <step>
// ("aside-kept" or "replaced"). Exits 0 when the start got through without reaching it.

#include "controller/controllersimulator.h"
#include "controller/recordstore.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {
const char *s_stopAt = nullptr;

void stopHere(const char *step)
{
    if (std::strcmp(step, s_stopAt) == 0)
        ::_exit(9);
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: kel_repairchild <data dir> <step>\n");
        return 2;
    }
    s_stopAt = argv[2];
    kelcontroller::RecordStore::setStepHook(stopHere);
    kelcontroller::ControllerSimulator simulator(QString::fromLocal8Bit(argv[1]));
    return simulator.isOwner() ? 0 : 3;
}
