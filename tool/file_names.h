#pragma once

#include <QString>

// The name of a file for an attachment: one piece of a path that stays in its folder, shows what it is, and that every
// system takes. Never empty.
QString AttachmentFileName(const QString& name, const QString& format);
// The name with a number behind its stem: "letter (2).txt".
QString NumberedFileName(const QString& fileName, int number);
