#pragma once

#include "outline_gestures.h"

#include <frame/document/payloads.h>

#include <QMap>
#include <QTreeWidgetItem>

inline G_OutlineItem* Record(const OutlineTab* tab, const QList<int>& rows)
{
    return static_cast<G_OutlineItem*>(tab->Node(rows)->data);
}

// Of all entries with children, by title: is it expanded?
inline QMap<QString, bool> Expansion(const OutlineTab* tab)
{
    QMap<QString, bool> states;
    for (const char* title : {"A", "A1", "C"}) {
        if (tab->Item(QString(title)))
            states.insert(title, tab->Item(QString(title))->isExpanded());
    }
    return states;
}

inline QMap<QString, bool> AllOf(bool isExpanded)
{
    return {{"A", isExpanded}, {"A1", isExpanded}, {"C", isExpanded}};
}
