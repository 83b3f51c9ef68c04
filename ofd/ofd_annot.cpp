#include "ofd_annot.h"

#include <frame/base/converters.h>
#include <frame/document/ig_page.h>
#include <ofd/model/document_store.h>
#include <ofd/package/xml_values.h>

namespace ofd {

namespace {

struct TypeWord
{
    const char* word;
    G_AnnotType type;
};

constexpr TypeWord TypeWords[] = {{"Link", AnnotLink},
                                  {"Path", AnnotPath},
                                  {"Highlight", AnnotHighlight},
                                  {"Stamp", AnnotStamp},
                                  {"Watermark", AnnotWatermark}};

CCA_String Utf8(const QString& text)
{
    return CCA_String(text.toUtf8());
}

} // namespace

OfdAnnot::OfdAnnot(IG_Page* page, bool isPageEditable, DocumentStore& store,
                   std::shared_ptr<const PageAnnotations> list, int position, int id)
    : page(page)
    , isOnLockedPage(!isPageEditable)
    , store(store)
    , list(std::move(list))
    , position(position)
    , id(id)
    , ordinal(Record().ordinal)
    , date(Utf8(Record().date))
    , savedDate(date)
    , remark(Utf8(Record().remark))
    , savedRemark(remark)
{
}

// Place holders without a picture and without a word say nothing to a reader of the list.
bool OfdAnnot::IsHiddenFromList()
{
    return isRemoved || (Record().objects.empty() && remark.IsEmpty());
}

int OfdAnnot::GetType()
{
    const QByteArray word = Record().typeWord.toUtf8();
    for (const TypeWord& known : TypeWords) {
        if (EqualsWord(word.constData(), known.word))
            return known.type;
    }
    return AnnotOther;
}

CCA_String OfdAnnot::GetSubType()
{
    return Utf8(Record().subType.isEmpty() ? Record().typeWord : Record().subType);
}

CCA_String OfdAnnot::GetCreator()
{
    return Utf8(Record().creator);
}

void OfdAnnot::SetDate(const CCA_String& newDate)
{
    if (!isRemoved)
        date = newDate;
}

void OfdAnnot::SetRemark(const CCA_String& newRemark)
{
    if (!isRemoved)
        remark = newRemark;
}

void OfdAnnot::SetVisible(bool visible, bool)
{
    if (isRemoved)
        return;
    isVisibleNow = visible;
    UpdateSession();
}

bool OfdAnnot::GetVisible(int which)
{
    return Record().isVisible && (which == 0 || isVisibleNow);
}

CCA_GRect OfdAnnot::GetBoundary()
{
    return GQ_ToCAGRect(Record().boundary);
}

CCA_String OfdAnnot::GetPointsText()
{
    return Utf8(Record().pointsText);
}

void OfdAnnot::SetRemoved(bool removed)
{
    isRemoved = removed;
    UpdateSession();
}

void OfdAnnot::MarkSaved(int newOrdinal, const QByteArray& oldXml)
{
    ordinal = newOrdinal;
    xml = oldXml;
    if (ordinal < 0)
        return; // its element says what it said
    savedDate = date;
    savedRemark = remark;
}

void OfdAnnot::UpdateSession()
{
    store.KeepPageAnnotations(page->GetIndex(), list);
    store.GetSession().SetAnnotationHidden(page->GetIndex(), position, isRemoved || !isVisibleNow);
}

} // namespace ofd
