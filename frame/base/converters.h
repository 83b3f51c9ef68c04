#pragma once

#include <frame/base/arrays.h>
#include <frame/base/export.h>
#include <frame/base/geometry.h>
#include <frame/base/path.h>
#include <frame/base/strings.h>

#include <QPainterPath>
#include <QPoint>
#include <QRectF>
#include <QString>

// Between the contract's value types and Qt's. Callable from any thread.

FRAME_EXPORT QString GQ_ToQStringFromUtf8(const CCA_String& text);
FRAME_EXPORT QString GQ_ToQString(const CCA_WString& text);
// To UTF-8, or to the local 8-bit encoding when `utf8` is false.
FRAME_EXPORT CCA_String GQ_ToCAS(const QString& text, bool utf8 = true);
// The same numbers, in whatever unit they are.
FRAME_EXPORT QRectF GQ_ToQRectF(const CCA_GRect& rect);
FRAME_EXPORT CCA_GRect GQ_ToCAGRect(const QRectF& rect);
FRAME_EXPORT QPoint GQ_ToQPoint(const CCA_Point& point);
FRAME_EXPORT QPainterPath GQ_ToQPainterPath(const CCA_Path& path);
// Splits a text of blank-separated numbers into floats, stopping at the first piece that is no number. `length` 0 or
// below means up to the terminating null; a null text gives an empty array.
FRAME_EXPORT CCA_ArrayTemplate<float> OFD_StringToArray(const char* text, int length);
