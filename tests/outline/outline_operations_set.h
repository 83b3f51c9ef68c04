#pragma once

#include <outline/outline_operations.h>

#include <QList>

// The twelve operations of the outline, registered as long as it lives.
struct OutlineOperations
{
    OutlineOperations()
    {
        for (G_Operation* operation : All())
            operation->RegisterToGlobal();
    }
    QList<G_Operation*> All()
    {
        return {&open,   &addFromOutside, &add,      &addSub,   &batchAdd,  &del,
                &delAll, &rename,         &resetPos, &wordwrap, &expandSub, &expandOrCollapse};
    }
    GP_OutlineOperation open;
    GP_AddOutline addFromOutside;
    GP_OutlineAdd add;
    GP_OutlineAddSub addSub;
    GP_OutlineBatchAdd batchAdd;
    GP_OutlineDel del;
    GP_OutlineDelAll delAll;
    GP_OutlineRename rename;
    GP_OutlineResetPos resetPos;
    GP_OutlineWordwrap wordwrap;
    GP_OutlineExpandSub expandSub;
    GP_OutlineExpandOrCollapse expandOrCollapse;
};
