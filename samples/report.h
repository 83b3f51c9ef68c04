#pragma once

#include "package.h"

namespace samples {

struct ReportSetup
{
    int pages = 1000;
    int entries = 3000; // of the outline
    int bookmarks = 0;
    qint64 padBytes = 0; // size of an attachment that does not compress
};

// A long plain document: pages of fifty lines and an outline in groups of a hundred, for measuring.
Package MakeReport(const ReportSetup& setup);

} // namespace samples
