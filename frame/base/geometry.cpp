#include "geometry.h"

CCA_Matrix::CCA_Matrix(const QTransform& transform)
    : a(transform.m11())
    , b(transform.m12())
    , c(transform.m21())
    , d(transform.m22())
    , e(transform.dx())
    , f(transform.dy())
{
}

void CCA_Matrix::Translate(double dx, double dy)
{
    e += dx;
    f += dy;
}

void CCA_Matrix::Concat(const CCA_Matrix& other)
{
    *this =
        CCA_Matrix(a * other.a + b * other.c, a * other.b + b * other.d, c * other.a + d * other.c,
                   c * other.b + d * other.d, e * other.a + f * other.c + other.e, e * other.b + f * other.d + other.f);
}

CCA_GPoint CCA_Matrix::TransformPoint(const CCA_GPoint& point) const
{
    CCA_GPoint result;
    result.x = static_cast<float>(a * point.x + c * point.y + e);
    result.y = static_cast<float>(b * point.x + d * point.y + f);
    return result;
}
