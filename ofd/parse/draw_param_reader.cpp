#include "draw_param_reader.h"

#include "object_style.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

namespace ofd {

void DrawParamReader::Add(const XmlPart& part, const pugi::xml_node& element, int id)
{
    resources.drawParams.insert(id, ReadDrawParam(element));
    entryById.insert(id, entries.size());
    entries.append({&part, element, id});
}

void DrawParamReader::ReadColors()
{
    for (int i = 0; i < entries.size(); ++i) {
        if (!entries.at(i).isRead)
            ReadWithNeeds(i);
    }
}

// The draw parameters that are named anywhere inside, and the one that it is relative to.
QVector<DrawParamReader::Need> DrawParamReader::NeedsOf(const pugi::xml_node& element)
{
    struct Walker : pugi::xml_tree_walker
    {
        QVector<Need> needs;
        QSet<int> seen;

        bool for_each(pugi::xml_node& node) override
        {
            const int id = int(IdAttribute(node, "DrawParam"));
            if (id && !seen.contains(id)) {
                seen.insert(id);
                needs.append({id, true});
            }
            return true;
        }
    };
    Walker walker;
    if (FirstElement(element)) {
        pugi::xml_node start = element;
        start.traverse(walker);
    }
    if (const int relative = int(IdAttribute(element, "Relative")))
        walker.needs.append({relative, false});
    return walker.needs;
}

// Depth first, with a stack of its own: chains may be as long as the list.
void DrawParamReader::ReadWithNeeds(int first)
{
    QVector<Step> steps;
    int next = first;
    bool isPainted = false;
    while (true) {
        if (next >= 0) {
            entries[next].isOpen = true;
            steps.append({next, isPainted, NeedsOf(entries.at(next).element)});
        }
        next = NextNeed(steps);
        if (next >= 0) {
            isPainted = steps.last().needs.at(steps.last().next - 1).isPainted;
            continue;
        }
        Entry& done = entries[steps.last().entry];
        Read(done);
        done.isOpen = false;
        done.isRead = true;
        const int depth = done.depth + (steps.last().isPainted ? 1 : 0);
        steps.removeLast();
        if (steps.isEmpty())
            return;
        Entry& outer = entries[steps.last().entry];
        outer.depth = std::max(outer.depth, depth);
    }
}

int DrawParamReader::NextNeed(QVector<Step>& steps)
{
    Step& step = steps.last();
    while (step.next < step.needs.size()) {
        const Need need = step.needs.at(step.next++);
        const int entry = entryById.value(need.id, -1);
        if (entry < 0)
            continue; // one of the document, or none at all
        if (entries.at(entry).isOpen) {
            TellOfCycle(steps, entry, need.isPainted);
            continue;
        }
        if (!entries.at(entry).isRead)
            return entry;
        Entry& own = entries[step.entry];
        own.depth = std::max(own.depth, entries.at(entry).depth + (need.isPainted ? 1 : 0));
    }
    return -1;
}

// Those that are only relative to each other are told of where they are used.
void DrawParamReader::TellOfCycle(const QVector<Step>& steps, int entry, bool isPainted) const
{
    for (int i = steps.size() - 1; steps.at(i).entry != entry; --i)
        isPainted |= steps.at(i).isPainted;
    if (isPainted)
        ReportProblem(ProblemKind::Cycle,
                      QCoreApplication::translate("OfdDocument", "The draw parameter %1 is painted with itself.")
                          .arg(quint32(entries.at(entry).id)));
}

void DrawParamReader::Read(Entry& entry)
{
    const ProblemScope scope(entry.part->GetName());
    const ProblemPlace place(IdForPlace(entry.element), entry.part->PlaceOf(entry.element));
    if (entry.depth > limits::MaxReferenceDepth) {
        ReportProblem(ProblemKind::Limit,
                      QCoreApplication::translate("OfdDocument", "Patterns are painted with patterns too often."));
        entry.depth = 0; // what is painted with it starts anew
        return;
    }
    ReadDrawParamColors(entry.element, resources, resources.drawParams[entry.id]);
}

} // namespace ofd
