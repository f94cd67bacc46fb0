#include "rllaserwelddefine.h"

#include "kelplugin/rlmanager.h"

RlLaserWeldDefine::RlLaserWeldDefine(QObject *parent)
    : QObject(parent), m_manager(new kelplugin::RLManager(this))
{ }

RlLaserWeldDefine::~RlLaserWeldDefine() = default;
