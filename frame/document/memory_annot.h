#pragma once

#include "memory_document.h"

#include <atomic>

// An annotation in memory. Removing it only makes it inert; the same object can be revived.
class MemoryAnnot : public IG_Annot
{
public:
    // The page and the document's flag of change outlive the annotation.
    MemoryAnnot(IG_Page* page, const MemoryDocument::AnnotRecord& record, std::atomic<bool>* isDocumentModified);
    IG_Page* GetOwnerPage() override { return page; }
    int GetId() override { return record.id; }
    bool IsHiddenFromList() override { return isRemoved || record.hiddenFromList; }
    int GetType() override { return record.type; }
    CCA_String GetSubType() override { return record.subType; }
    CCA_String GetCreator() override { return record.creator; }
    void SetDate(const CCA_String& date) override { Change(&record.date, date); }
    CCA_String GetDate() override { return record.date; }
    void SetVisible(bool visible, bool all) override;
    bool GetVisible(int which) override;
    bool IsLocked() override { return record.locked; }
    void SetRemark(const CCA_String& remark) override { Change(&record.remark, remark); }
    CCA_String GetRemark() override { return record.remark; }
    CCA_GRect GetBoundary() override { return record.boundary; }
    CCA_String GetPointsText() override { return record.points; }

    bool IsRemoved() const { return isRemoved; }
    void SetRemoved(bool removed) { isRemoved = removed; }
    // Seen by the renderer, from any thread.
    bool IsPainted() const { return !isRemoved && record.visible && isVisibleNow; }

private:
    void Change(CCA_String* field, const CCA_String& text);

    IG_Page* page; // not owned
    MemoryDocument::AnnotRecord record;
    std::atomic<bool>* isDocumentModified; // not owned
    std::atomic<bool> isVisibleNow{true};
    std::atomic<bool> isRemoved{false};
};
