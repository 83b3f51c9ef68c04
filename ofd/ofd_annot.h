#pragma once

#include <frame/document/ig_annot.h>
#include <ofd/model/annotations.h>

#include <QByteArray>

#include <memory>

namespace ofd {

class DocumentStore;

// An annotation of a page: what its file says, and over it what was changed since. Main thread.
class OfdAnnot : public IG_Annot
{
public:
    // `position` is that in the page's list. The page, which is the owner, outlives it. Without a page that can be
    // edited the annotation is locked, whatever it says itself.
    OfdAnnot(IG_Page* page, bool isPageEditable, DocumentStore& store, std::shared_ptr<const PageAnnotations> list,
             int position, int id);

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
    bool IsLocked() override { return isOnLockedPage || Record().isReadOnly; }
    void SetRemark(const CCA_String& remark) override;
    CCA_String GetRemark() override { return remark; }
    CCA_GRect GetBoundary() override;
    CCA_String GetPointsText() override;

    const AnnotationRecord& Record() const { return list->annotations[size_t(position)]; }
    bool IsRemoved() const { return isRemoved; }
    void SetRemoved(bool removed);
    // Differs from what the file holds: in a value, or in whether it is there at all.
    bool IsEdited() const { return isRemoved == IsInFile() || (!isRemoved && (IsDateEdited() || IsRemarkEdited())); }
    bool IsInFile() const { return ordinal >= 0; }
    // Place of its element in its part; negative when it is not in the file.
    int GetOrdinal() const { return ordinal; }
    // Its element as it was when it left the file.
    const QByteArray& GetXml() const { return xml; }
    bool IsDateEdited() const { return date != savedDate; }
    bool IsRemarkEdited() const { return remark != savedRemark; }
    // The file now has it at this place, or, when that is negative, has it no longer; its element was this.
    void MarkSaved(int newOrdinal, const QByteArray& oldXml);

private:
    void UpdateSession();

    IG_Page* page; // not owned
    const bool isOnLockedPage;
    DocumentStore& store; // outlives the page
    const std::shared_ptr<const PageAnnotations> list;
    const int position;
    const int id;
    int ordinal;
    QByteArray xml;
    CCA_String date;
    CCA_String savedDate;
    CCA_String remark;
    CCA_String savedRemark;
    bool isVisibleNow = true;
    bool isRemoved = false;
};

} // namespace ofd
