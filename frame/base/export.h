#pragma once

#include <QtGlobal>

// Marks what the frame's shared library offers to the reader and to plugins.
#ifdef FRAME_LIBRARY
#define FRAME_EXPORT Q_DECL_EXPORT
#else
#define FRAME_EXPORT Q_DECL_IMPORT
#endif
