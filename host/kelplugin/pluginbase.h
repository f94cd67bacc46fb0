#pragma once

#include "kelplugin_global.h"

#include <QObject>

namespace kelplugin {

// Base of every pendant plug-in. The host calls init, afterInit and render once, in that
// order, then idle from its timer, and detach before destroying the object.
class KELPLUGIN_EXPORT PluginBase : public QObject
{
    Q_OBJECT
public:
    explicit PluginBase(QObject *parent = nullptr);
    ~PluginBase() override;

    void setDefaultGlobalSheet(bool useGlobalSheet);
    bool defaultGlobalSheet() const { return m_defaultGlobalSheet; }
    void setPluginLabel(const QString &label);
    QString pluginLabel() const { return m_pluginLabel; }

public slots:
    virtual void init();
    virtual void afterInit();
    virtual void render();
    virtual void idle();
    virtual void detach();

private:
    bool m_defaultGlobalSheet = true;
    QString m_pluginLabel;
};

// Each plug-in library exports this; the host reads it to recognise a plug-in library.
Q_DECL_EXPORT int api();

} // namespace kelplugin
