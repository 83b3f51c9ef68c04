#pragma once

#include <frame/base/export.h>
#include <frame/base/geometry.h>
#include <frame/base/strings.h>

#include <QMetaType>

class IG_Page;

// The frame's types of annotations.
enum G_AnnotType {
    AnnotLink = 1,
    AnnotPath = 2,
    AnnotHighlight = 4,
    AnnotStamp = 8,
    AnnotWatermark = 16,
    AnnotOther = 32,
};
// "Link", "Path", "Highlight", "Stamp", "Watermark" or "Other".
FRAME_EXPORT CCA_String AnnotTypeToString(int type);

// One annotation. Lives as long as its document, also after it was deleted: it is then inert (setters do nothing,
// hidden from lists, the same id). Main thread only.
class FRAME_EXPORT IG_Annot
{
public:
    virtual ~IG_Annot();
    virtual IG_Page* GetOwnerPage() = 0; // not owned; lives as long as the document
    virtual int GetId() = 0;             // unique in the document
    virtual bool IsHiddenFromList() = 0; // not to be shown in lists of annotations
    virtual int GetType() = 0;           // a G_AnnotType
    virtual CCA_String GetSubType() = 0;
    virtual CCA_String GetCreator() = 0;
    virtual void SetDate(const CCA_String& date) = 0;
    virtual CCA_String GetDate() = 0;
    // Session state: shown or hidden now; `all` is passed on by the host and unused here. Nothing is saved.
    virtual void SetVisible(bool visible, bool all) = 0;
    // `which` 0: the state stored in the document; 1: the same and the session's.
    virtual bool GetVisible(int which) = 0;
    virtual bool IsLocked() = 0;
    virtual void SetRemark(const CCA_String& remark) = 0;
    virtual CCA_String GetRemark() = 0;
    virtual CCA_GRect GetBoundary() = 0; // page mm
    // Numbers separated by blanks, x y x y, in page mm; empty when the annotation has no points.
    virtual CCA_String GetPointsText() = 0;
};
Q_DECLARE_METATYPE(IG_Annot*)
