#pragma once

#include <QtGlobal>

#ifdef KXVIEW3D_LIBRARY
#define KXVIEW3D_EXPORT Q_DECL_EXPORT
#else
#define KXVIEW3D_EXPORT Q_DECL_IMPORT
#endif
