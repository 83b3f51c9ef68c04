#pragma once

#include "document_file.h"

// True when the first bytes are those of a zip package (which an OFD document is).
bool IsOfdHead(const QByteArray& head);
// Opens an OFD package; the outcome's error is for the user.
OpenOutcome OpenOfdFile(const QString& path, bool readOnly);
