#pragma once

#include <frame/document/ig_annot.h>
#include <ofd/model/annotations.h>

#include <memory>

namespace ofd {

class DocumentStore;

// An annotation of a page: what its file says, and over it what was changed since. Main thread.
class OfdAnnot : public IG_Annot
{
public:
    // `position` is that in the page's list. The page, which is the owner, outlives it.
    OfdAnnot(IG_Page* page, DocumentStore& store, std::shared_ptr<const PageAnnotations> list, int position, int id);

    IG_Page* GetOwnerPage() override { return page; }
    int GetId() override { return id; }
    bool IsHiddenFromList() override;
    int GetType() override;
    CCA_String GetSubType() override;
    CCA_String GetCreator() override;
    void SetDate(const CCA_String& date) override;
    CCA_String GetDate() override { return date; }
    void SetVisible(bool visible, bool all) override;
    bool GetVisible(int which) override;
    bool IsLocked() override { return Record().isReadOnly; }
    void SetRemark(const CCA_String& remark) override;
    CCA_String GetRemark() override { return remark; }
    CCA_GRect GetBoundary() override;
    CCA_String GetPointsText() override;

    const AnnotationRecord& Record() const { return list->annotations[size_t(position)]; }
    bool IsRemoved() const { return isRemoved; }
    void SetRemoved(bool removed);
    // Differs from what the file holds, apart from removal.
    bool IsEdited() const { return date != savedDate || remark != savedRemark; }
    bool IsDateEdited() const { return date != savedDate; }
    bool IsRemarkEdited() const { return remark != savedRemark; }
    // What is in memory is now in the file.
    void MarkSaved();

private:
    void UpdateSession();

    IG_Page* page;        // not owned
    DocumentStore& store; // outlives the page
    const std::shared_ptr<const PageAnnotations> list;
    const int position;
    const int id;
    CCA_String date;
    CCA_String savedDate;
    CCA_String remark;
    CCA_String savedRemark;
    bool isVisibleNow = true;
    bool isRemoved = false;
};

} // namespace ofd
