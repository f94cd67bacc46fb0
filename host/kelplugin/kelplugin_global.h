#pragma once

#include <QtCore/qglobal.h>

#if defined(KELPLUGIN_LIBRARY)
#define KELPLUGIN_EXPORT Q_DECL_EXPORT
#else
#define KELPLUGIN_EXPORT Q_DECL_IMPORT
#endif
