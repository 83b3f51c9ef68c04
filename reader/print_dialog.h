#pragma once

#include "page_printing.h"

#include <QPrintDialog>

class QButtonGroup;

// Asks for the printer, the range, the copies, and how large the pages come out.
class PrintDialog : public QPrintDialog
{
    Q_OBJECT
public:
    // The printer gets what the user chose.
    PrintDialog(QPrinter* printer, int pageCount, QWidget* parent);
    PrintSize Size() const;

private:
    QWidget* MakeSizeTab();

    QButtonGroup* sizes; // owned by this
};
