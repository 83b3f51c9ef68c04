#pragma once

#include <frame/base/export.h>

#include <QByteArray>

#include <functional>

// The application's log channel. Lines go to Qt's debug output in the category "tetobaisfla" and to the listener.
// Callable from any thread.
FRAME_EXPORT void FrameLog(const QByteArray& line);
// Called with every line, on the logging thread. One listener at a time; an empty function removes it. Used by tests
// and by the reader's log window.
FRAME_EXPORT void SetFrameLogListener(std::function<void(const QByteArray& line)> listener);
