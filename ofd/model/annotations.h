#pragma once

#include "content.h"

#include <QHash>
#include <QStringList>

namespace ofd {

// One annotation as its file tells it. Texts are verbatim but for surrounding blanks of the date.
struct AnnotationRecord
{
    QString part;    // that holds it
    int ordinal = 0; // among the annotations of that part
    int id = 0;      // 0 when the file gives none that can be used
    QString typeWord;
    QString subType;
    QString creator;
    QString date;
    QString blankDate; // the same with the blanks around it; empty when there are none
    QString remark;
    bool isVisible = true;
    bool isPrinted = true;
    bool isReadOnly = true;
    QRectF boundary;    // page mm; around the objects when the file gives none
    QPointF origin;     // of the appearance's space, page mm: the corner of the boundary that the file gives
    QString pointsText; // "x y x y", page mm; empty without points
    ObjectList objects; // in the space of the appearance
};

// The annotations of a page in file order. Immutable once read.
struct PageAnnotations
{
    std::vector<AnnotationRecord> annotations;
    std::shared_ptr<const Resources> resources; // never null
    bool isBroken = false;                      // a part that exists, or the list of them, could not be parsed
};

// Page id to the parts that hold its annotations.
using AnnotationIndex = QHash<int, QStringList>;

} // namespace ofd
