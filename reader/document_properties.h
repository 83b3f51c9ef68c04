#pragma once

#include <QList>
#include <QString>

// What a document tells of itself, as texts for people, whatever its format.

enum class PropertyTopic { General, Signatures, Fonts, Problems };

// One line: what it is and what the document says. A line without a name is a sentence of its own.
struct PropertyRow
{
    QString name;
    QString value;
};

using PropertyGroup = QList<PropertyRow>;

// All of one topic: a sentence about it (may be empty), and groups of lines, one a thing (a signature, a problem).
struct PropertySection
{
    QString note;
    QList<PropertyGroup> groups;
};
