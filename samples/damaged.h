#pragma once

#include <QByteArray>

#include <vector>

namespace samples {

// A file that cannot be opened as a document, or one that is made to hurt the reader that opens it.
struct Damage
{
    const char* name;
    const char* shows;
    const char* mustDo; // begins with "refuse" or "open"
    QByteArray (*make)();
};

std::vector<Damage> Damages();

} // namespace samples
