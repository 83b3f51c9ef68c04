#include "ig_annot.h"

IG_Annot::~IG_Annot() = default;

CCA_String AnnotTypeToString(int type)
{
    switch (type) {
    case AnnotLink:
        return "Link";
    case AnnotPath:
        return "Path";
    case AnnotHighlight:
        return "Highlight";
    case AnnotStamp:
        return "Stamp";
    case AnnotWatermark:
        return "Watermark";
    default:
        return "Other";
    }
}
