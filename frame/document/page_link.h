#pragma once

#include <frame/base/arrays.h>
#include <frame/base/geometry.h>
#include <frame/document/destination.h>

#include <QPainterPath>
#include <QVector>

#include <memory>

// Actions that run one after the other. Shared by copies of what holds them, and never changed once it is shared.
class FRAME_EXPORT G_ActionList
{
public:
    G_ActionList() = default;
    ~G_ActionList();
    void Add(std::unique_ptr<G_Action> action); // not null
    const CCA_ArrayTemplate<G_Action*>& Actions() const { return actions; }

private:
    Q_DISABLE_COPY(G_ActionList)
    CCA_ArrayTemplate<G_Action*> actions; // owned
};

// A part of a page that runs something when it is clicked. A value type; cheap to copy.
struct FRAME_EXPORT G_PageLink
{
    // Whether the point (page mm) lies in the area; one on the edge of a rectangle does.
    bool Contains(const CCA_GPoint& point) const;
    // It has an area and something to run.
    bool IsValid() const { return actions && !actions->Actions().IsEmpty() && !area.isEmpty(); }

    QPainterPath area; // page mm
    std::shared_ptr<const G_ActionList> actions;
    bool isOfAnnotation = false; // so it goes when annotations are not shown
    int templateId = 0;          // of the page's template that it belongs to; 0 for none
};
