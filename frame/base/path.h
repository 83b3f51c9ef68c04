#pragma once

#include <frame/base/export.h>
#include <frame/base/geometry.h>

#include <QVector>

// An outline in document units: points with the role that each plays. A value type.
class FRAME_EXPORT CCA_Path
{
public:
    enum PointKind {
        MoveTo,
        LineTo,
        BezierTo, // three in a row: two control points and the end point
    };
    struct PathPoint
    {
        CCA_GPoint point;
        PointKind kind = MoveTo;
        bool closesFigure = false;
    };

    // Appends as it is: figures are not completed or checked.
    void AppendPoint(const CCA_GPoint& point, PointKind kind, bool closesFigure = false);
    void AppendRect(const CCA_GRect& rect); // a closed figure, clockwise from the upper left
    int GetPointCount() const { return points.size(); }
    // The point at the position; a default point when the position is out of range.
    PathPoint GetPoint(int position) const { return points.value(position); }
    void Transform(const CCA_Matrix& matrix); // in place

private:
    QVector<PathPoint> points;
};
