#pragma once

#include <frame/base/export.h>

#include <QTransform>

// A point in document units (millimetres in page space, origin at the top left, y down).
struct CCA_GPoint
{
    float x = 0;
    float y = 0;
};

// A rectangle in document units (millimetres in page space). A value type.
struct CCA_GRect
{
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;

    CCA_GRect() = default;
    CCA_GRect(float left, float top, float right, float bottom)
        : left(left)
        , top(top)
        , right(right)
        , bottom(bottom)
    {
    }

    void SetRect(float newLeft, float newTop, float newRight, float newBottom)
    {
        *this = CCA_GRect(newLeft, newTop, newRight, newBottom);
    }
    float Width() const { return right - left; }
    float Height() const { return bottom - top; }
    // True when the rectangle encloses no area.
    bool IsEmpty() const { return right <= left || bottom <= top; }
    // The borders belong to it.
    bool Contains(const CCA_GPoint& point) const
    {
        return point.x >= left && point.x <= right && point.y >= top && point.y <= bottom;
    }
    friend bool operator==(const CCA_GRect& a, const CCA_GRect& b)
    {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }
    friend bool operator!=(const CCA_GRect& a, const CCA_GRect& b) { return !(a == b); }
};

// A point in scene units (device-independent pixels of the view's scene at the present zoom).
struct CCA_Point
{
    int x = 0;
    int y = 0;
};

// A rectangle in scene units; right and bottom are one past the last pixel.
struct CCA_Rect
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
};

// An affine transform: x' = a x + c y + e, y' = b x + d y + f (the document format's own order of the six numbers).
class FRAME_EXPORT CCA_Matrix
{
public:
    CCA_Matrix() = default;
    CCA_Matrix(double a, double b, double c, double d, double e, double f)
        : a(a)
        , b(b)
        , c(c)
        , d(d)
        , e(e)
        , f(f)
    {
    }
    explicit CCA_Matrix(const QTransform& transform); // its affine part

    // Moves by (dx, dy) in the target space, after what the matrix did so far.
    void Translate(double dx, double dy);
    // Applies `other` after this one.
    void Concat(const CCA_Matrix& other);
    CCA_GPoint TransformPoint(const CCA_GPoint& point) const;
    QTransform ToQTransform() const { return QTransform(a, b, c, d, e, f); }

    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double e = 0;
    double f = 0;
};
