#pragma once

#include <QByteArray>
#include <QStringList>

// What is wrong with a part that a save writes, by the rules of the format: which children an element has, in which
// order and how often, which attributes it must have, and what identifiers, numbers, dates and truth values look like.
// Knows the document part and the lists of annotations, attachments and custom tags; other parts have no faults. Each
// fault is one line that says where and what.
QStringList StructureFaults(const QByteArray& part);

// Faults of the second part that the first does not have.
QStringList NewFaults(const QByteArray& before, const QByteArray& after);
