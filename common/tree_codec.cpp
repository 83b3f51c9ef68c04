#include "param_keys.h"
#include "public_method.h"

#include <frame/operation/operation.h>

namespace {

// Writes the rows upward from the index and their number.
void AddRows(QModelIndex index, G_OperationParam* params, const QString& keyStart)
{
    int count = 0;
    for (; index.isValid(); index = index.parent())
        params->Add(keyStart + QString::number(count++), index.row());
    params->Add(keyStart + QLatin1String(ParamKey::Count), count);
}

} // namespace

void PublicMethod::AddIndexPath(QModelIndex index, G_Operation* op, const QString& prefix)
{
    AddRows(index, op->Params, prefix);
}

void PublicMethod::AddBatchIndexPath(QModelIndex index, G_Operation* op, int batchNumber, int deleteRow,
                                     const QString& prefix, const QString& infix)
{
    const QString entry = prefix + QString::number(batchNumber);
    AddRows(index, op->Params, entry + infix);
    // Only deletions carry the row on the screen: their interceptor takes it out of the list by hand.
    if (prefix == QLatin1String(ParamKey::Del))
        op->Params->Add(entry + QLatin1String(ParamKey::DeleteCustomRow), deleteRow);
}
