#pragma once

#include <frame/document/tree_node.h>
#include <ofd/text/object_places.h>

#include <QHash>
#include <QPointF>

namespace ofd {

// Finds the tag whose object lies under a point: the smallest box wins, then the deepest tag.
class TagHits
{
public:
    // Of the places of one identifier only the one that `placeById` has counts.
    TagHits(int pageId, const QPointF& point, const QVector<ObjectPlace>& places, const QHash<int, int>& placeById);

    void Search(G_TreeNode* root);
    G_TreeNode* GetNode() const { return best; } // not owned; null when nothing was hit
    int GetObjectId() const { return bestObject; }

private:
    void Test(G_TreeNode* node);

    const int pageId;
    QHash<int, double> areas; // of the objects under the point, by id
    G_TreeNode* best = nullptr;
    int bestObject = 0;
    double bestArea = 0;
};

} // namespace ofd
