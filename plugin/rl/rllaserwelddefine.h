#pragma once

#include <QObject>

namespace kelplugin {
class RLManager;
}

// Registers the laser welding instructions with the pendant's program editor, once, at
// construction. Still being built.
class RlLaserWeldDefine : public QObject
{
    Q_OBJECT
public:
    explicit RlLaserWeldDefine(QObject *parent = nullptr);
    ~RlLaserWeldDefine() override;

private:
    kelplugin::RLManager *m_manager;
};
