// Places and actions in the text form of the in-memory document.
#include "memory_text_form.h"

#include <frame/base/converters.h>

#include <cmath>

bool TextForm::DestWord(const QString& key, const QString& value, G_Dest* dest)
{
    bool isNumber = true;
    if (key == QLatin1String("page")) {
        dest->pageId = value.toInt(&isNumber);
        openDests.append(dest);
        return isNumber && dest->pageId > 0;
    }
    if (key == QLatin1String("index")) {
        dest->pageIndex = value.toInt(&isNumber);
    } else if (key == QLatin1String("zoom")) {
        dest->zoom = value.toFloat(&isNumber);
        isNumber = isNumber && std::isfinite(dest->zoom);
    } else if (key == QLatin1String("mode")) {
        dest->zoomMode = value.toInt(&isNumber);
        isNumber = isNumber && dest->zoomMode >= 0 && dest->zoomMode <= 4;
    } else if (key == QLatin1String("rect")) {
        CCA_GRect rect;
        isNumber = ReadRect(value, &rect);
        dest->left = rect.left;
        dest->top = rect.top;
        dest->right = rect.right;
        dest->bottom = rect.bottom;
    } else {
        return Fail(QStringLiteral("unknown word \"%1\"").arg(key));
    }
    return isNumber;
}

bool TextForm::Link()
{
    G_PageLink link;
    const auto list = std::make_shared<G_ActionList>();
    int annotId = 0;
    if (!ActionWords(list.get(), &link, &annotId))
        return false;
    link.actions = list;
    document->AddLink(document->GetPageCount() - 1, link, annotId);
    return link.IsValid();
}

bool TextForm::Open()
{
    const auto list = std::make_shared<G_ActionList>();
    document->SetOpenActions(list);
    return ActionWords(list.get(), nullptr, nullptr) && !list->Actions().IsEmpty();
}

// The two are null where actions stand alone.
bool TextForm::ActionWords(G_ActionList* list, G_PageLink* link, int* annotId)
{
    while (!words.AtEnd()) {
        QString key, value;
        CCA_GRect rect;
        if (!words.NextPair(&key, &value))
            return false;
        if (link && key == QLatin1String("rect")) {
            if (!ReadRect(value, &rect))
                return false;
            link->area.addRect(GQ_ToQRectF(rect));
        } else if (link && key == QLatin1String("annot")) {
            if (!ReadId(value, annotId))
                return false;
        } else if (!ActionWord(key, value, list)) {
            return false;
        }
    }
    return true;
}

bool TextForm::ActionWord(const QString& key, const QString& value, G_ActionList* list)
{
    const auto& known = list->Actions();
    const bool isBare = key == QLatin1String("sound") || key == QLatin1String("movie");
    if (value.isNull() != isBare)
        return Fail(
            (isBare ? QStringLiteral("\"%1\" takes no value") : QStringLiteral("\"%1\" needs a value")).arg(key));
    if (key == QLatin1String("uri")) {
        auto address = std::make_unique<G_ActionUri>();
        address->uri = GQ_ToCAS(value);
        list->Add(std::move(address));
    } else if (key == QLatin1String("base")) {
        auto* address = known.IsEmpty() ? nullptr : dynamic_cast<G_ActionUri*>(known[known.GetSize() - 1]);
        if (!address)
            return Fail(QStringLiteral("\"base\" needs an address before it"));
        address->base = GQ_ToCAS(value);
    } else if (key == QLatin1String("attachment")) {
        auto shows = std::make_unique<G_ActionAttachment>();
        if (!ReadId(value, &shows->attachmentId))
            return false;
        list->Add(std::move(shows));
    } else if (isBare) {
        list->Add(std::make_unique<G_Action>(key == QLatin1String("sound") ? G_Action::Sound : G_Action::Movie));
    } else if (key == QLatin1String("bookmark")) {
        G_ActionGoto* jump = JumpOf(list, true);
        jump->bookmarkName = GQ_ToCAS(value);
        jump->dest->pageIndex = -1; // it is looked up when it is followed
    } else {
        const bool isPage = key == QLatin1String("page") || key == QLatin1String("index");
        return DestWord(key == QLatin1String("to") ? QStringLiteral("rect") : key, value, JumpOf(list, isPage)->dest);
    }
    return true;
}

// The last action where that is a jump, unless a new one is wanted.
G_ActionGoto* TextForm::JumpOf(G_ActionList* list, bool isNew)
{
    const auto& known = list->Actions();
    auto* last = known.IsEmpty() || isNew ? nullptr : dynamic_cast<G_ActionGoto*>(known[known.GetSize() - 1]);
    if (last)
        return last;
    auto jump = std::make_unique<G_ActionGoto>();
    last = jump.get();
    list->Add(std::move(jump));
    return last;
}
