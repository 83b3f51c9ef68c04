#include "path.h"

void CCA_Path::AppendPoint(const CCA_GPoint& point, PointKind kind, bool closesFigure)
{
    PathPoint added;
    added.point = point;
    added.kind = kind;
    added.closesFigure = closesFigure;
    points.append(added);
}

void CCA_Path::AppendRect(const CCA_GRect& rect)
{
    AppendPoint({rect.left, rect.top}, MoveTo);
    AppendPoint({rect.right, rect.top}, LineTo);
    AppendPoint({rect.right, rect.bottom}, LineTo);
    AppendPoint({rect.left, rect.bottom}, LineTo, true);
}

void CCA_Path::Transform(const CCA_Matrix& matrix)
{
    for (PathPoint& item : points)
        item.point = matrix.TransformPoint(item.point);
}
