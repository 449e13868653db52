#pragma once

#include <QtGlobal>

// Symbols of the host library; the plug-in and the viewer import them.
#if defined(KX_HOST_BUILD)
#define KX_HOST_EXPORT Q_DECL_EXPORT
#else
#define KX_HOST_EXPORT Q_DECL_IMPORT
#endif
