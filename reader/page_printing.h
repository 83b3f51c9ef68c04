#pragma once

#include "background_job.h"

#include <QSizeF>
#include <QString>
#include <QVector>

class IG_Document;
class IG_PageRenderer;
class QPrinter;

// How large pages come out.
enum class PrintSize {
    FitPaper,   // as large as the paper's printable area allows
    ActualSize, // in the middle of the paper, cut off where they are larger
    OwnSheet    // each on a sheet of its own size, for printing to a file
};

// What is to be printed, beside what the printer itself knows.
struct PrintOrder
{
    QVector<int> pages;      // in the order in which they come out
    QVector<QSizeF> sizesMm; // of these pages; empty when the renderer tells them
    PrintSize size = PrintSize::FitPaper;
    bool withAnnotations = true;
};

// The pages in the order in which they come out: the printer's range, its order, and copies that it does not make by
// itself.
QVector<int> PagesToPrint(const QPrinter& printer, int pageCount, int currentPage);

// The order for a printer that was set up. Main thread.
PrintOrder OrderFor(const QPrinter& printer, IG_Document& document, int currentPage);

// Why the document must not be printed in so many copies, for the user; empty when it may be.
QString PrintRefusal(IG_Document& document, int copies);

// Prints, on whichever thread it is called: pages as they are seen, at the printer's resolution, turning the paper to
// each page's orientation. A file appears under its name when it is complete, not before; a printer may print the pages
// that were ready when the rest was given up. The printer must be used by nobody else meanwhile.
JobOutcome PrintPages(QPrinter& printer, IG_PageRenderer& renderer, const PrintOrder& order, const JobControl& control);
