#pragma once

#include <QObject>

namespace kelplugin {
class RLManager;
}

// Registers the ten laser welding instructions with the pendant's program editor, once, at
// construction. What is registered lives on in the host's catalogue.
class RlLaserWeldDefine : public QObject
{
    Q_OBJECT
public:
    explicit RlLaserWeldDefine(QObject *parent = nullptr);
    ~RlLaserWeldDefine() override;

private:
    void registerInstruction(const QString &name, const QString &skeleton,
        const QString &description, const QString &pattern, const QString &defaultText);

    kelplugin::RLManager *m_manager;
};
