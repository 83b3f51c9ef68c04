// Paints shadings that are made of triangles.
#include "shading_raster.h"

#include <ofd/model/paint.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace ofd {

namespace {

constexpr int SamplesAcross = 4; // in each direction of a pixel that an edge runs through
constexpr int Samples = SamplesAcross * SamplesAcross;

QRgb Premultiplied(const QColor& color)
{
    return qPremultiply(color.rgba());
}

// A value that changes evenly over the picture. It counts from a place where it is nothing, since corners may lie far
// away.
struct Plane
{
    double perX = 0;
    double perY = 0;
    QPointF zero;

    double At(double x, double y) const { return perX * (x - zero.x()) + perY * (y - zero.y()); }
    // How much it differs at most between the middle of a pixel and its corners.
    double Half() const { return (std::abs(perX) + std::abs(perY)) / 2; }
};

// One row of pixels while triangles are laid over each other on it. A pixel that an edge runs through is kept as
// samples, each of which belongs to one triangle alone, so that triangles that touch show no seam.
class MeshRow
{
public:
    explicit MeshRow(int width)
        : places(size_t(width))
    {
    }

    void Begin(const QRgb* pixels)
    {
        line = pixels;
        std::fill(places.begin(), places.end(), -1);
        split.clear();
    }
    void SetWhole(int x) { places[size_t(x)] = -1; }
    std::array<QRgb, Samples>& SamplesOf(int x)
    {
        int& place = places[size_t(x)];
        if (place < 0) {
            place = int(split.size());
            split.emplace_back().fill(line[x]);
        }
        return split[size_t(place)];
    }
    void FinishInto(QRgb* pixels) const
    {
        for (size_t x = 0; x < places.size(); ++x) {
            if (places[x] >= 0)
                pixels[x] = Mean(split[size_t(places[x])]);
        }
    }

private:
    static QRgb Mean(const std::array<QRgb, Samples>& samples)
    {
        int red = 0, green = 0, blue = 0, alpha = 0;
        for (const QRgb sample : samples) {
            red += qRed(sample);
            green += qGreen(sample);
            blue += qBlue(sample);
            alpha += qAlpha(sample);
        }
        const auto mean = [](int sum) { return (sum + Samples / 2) / Samples; };
        return qRgba(mean(red), mean(green), mean(blue), mean(alpha));
    }

    const QRgb* line = nullptr;                   // not owned
    std::vector<int> places;                      // in `split`; -1 for pixels of one colour
    std::vector<std::array<QRgb, Samples>> split; // some of which a later triangle has covered again
};

// One triangle on the picture.
class Triangle
{
public:
    Triangle(const Mesh& mesh, int first, const QTransform& toPixels)
    {
        for (int i = 0; i < 3; ++i) {
            const Mesh::Vertex& vertex = mesh.vertices.at(mesh.corners.at(first + i));
            at[i] = toPixels.map(vertex.at);
            color[i] = Premultiplied(vertex.color);
        }
        area = Twice(at[0], at[1], at[2]);
        for (int i = 0; i < 3; ++i)
            shares[i] = ShareOf(at[(i + 1) % 3], at[(i + 2) % 3]);
    }

    QRect BoxIn(const QRect& image) const
    {
        if (!(std::abs(area) >= 1e-9)) // no number either
            return QRect();
        const QRectF box = QPolygonF({at[0], at[1], at[2]}).boundingRect() & QRectF(image);
        return box.toAlignedRect() & image;
    }

    void PaintRow(QRgb* line, MeshRow& row, const QRect& box, int y) const
    {
        const std::pair<int, int> columns = ColumnsIn(box, y);
        const double half[] = {shares[0].Half(), shares[1].Half(), shares[2].Half()};
        for (int x = columns.first; x <= columns.second; ++x) {
            bool isInside = true;
            bool isOutside = false;
            double share[3];
            for (int i = 0; i < 3; ++i) {
                share[i] = shares[i].At(x + 0.5, y + 0.5);
                isInside = isInside && share[i] - half[i] >= -Slack;
                isOutside = isOutside || share[i] + half[i] < -Slack;
            }
            if (isInside) {
                line[x] = Blend(share);
                row.SetWhole(x);
            } else if (!isOutside) {
                PaintSamples(row.SamplesOf(x), x, y);
            }
        }
    }

private:
    static constexpr double Slack = 1e-6; // so that no gap stays between neighbours

    static double Twice(const QPointF& a, const QPointF& b, const QPointF& c)
    {
        return (b.x() - a.x()) * (c.y() - a.y()) - (c.x() - a.x()) * (b.y() - a.y());
    }

    // The share of the corner opposite to that edge, 0 along it.
    Plane ShareOf(const QPointF& b, const QPointF& c) const
    {
        return {(b.y() - c.y()) / area, (c.x() - b.x()) / area, b};
    }

    // The columns between which the triangle lies as it passes through a row of pixels.
    std::pair<int, int> ColumnsIn(const QRect& box, int y) const
    {
        double left = box.right() + 1;
        double right = box.left();
        const auto include = [&](double x) {
            left = std::min(left, x);
            right = std::max(right, x);
        };
        for (int i = 0; i < 3; ++i) {
            const QPointF& a = at[i];
            const QPointF& b = at[(i + 1) % 3];
            if (a.y() >= y && a.y() <= y + 1)
                include(a.x());
            for (const double edge : {double(y), y + 1.0}) {
                if ((a.y() < edge) != (b.y() < edge))
                    include(a.x() + (b.x() - a.x()) * (edge - a.y()) / (b.y() - a.y()));
            }
        }
        const auto column = [&box](double x) {
            return int(std::floor(std::clamp(x, double(box.left()), double(box.right()))));
        };
        return {column(left - Slack), left > right ? box.left() - 1 : column(right + Slack)};
    }

    void PaintSamples(std::array<QRgb, Samples>& samples, int x, int y) const
    {
        for (int i = 0; i < Samples; ++i) {
            const double across = x + (i % SamplesAcross + 0.5) / SamplesAcross;
            const double down = y + (i / SamplesAcross + 0.5) / SamplesAcross; // NOLINT: whole parts
            const double share[] = {shares[0].At(across, down), shares[1].At(across, down), shares[2].At(across, down)};
            if (share[0] >= -Slack && share[1] >= -Slack && share[2] >= -Slack)
                samples[size_t(i)] = Blend(share);
        }
    }

    QRgb Blend(const double (&share)[3]) const
    {
        const auto mix = [&](int (*part)(QRgb)) {
            const double value = share[0] * part(color[0]) + share[1] * part(color[1]) + share[2] * part(color[2]);
            return std::clamp(int(std::lround(value)), 0, 255);
        };
        return qRgba(mix(qRed), mix(qGreen), mix(qBlue), mix(qAlpha));
    }

    QPointF at[3];
    QRgb color[3] = {};
    Plane shares[3];
    double area = 0; // twice, with its sign
};

// The colour of the nearest corner; of meshes with very many corners some stand for all.
void FillFromCorners(QImage& image, const Mesh& mesh, const QTransform& toPixels,
                     const std::function<bool()>& isCancelled)
{
    constexpr int mostCorners = 128;
    const int stride = (mesh.vertices.size() + mostCorners - 1) / mostCorners;
    QVector<QPointF> places;
    QVector<QRgb> colors;
    for (int i = 0; i < mesh.vertices.size(); i += stride) {
        places.append(toPixels.map(mesh.vertices.at(i).at));
        colors.append(Premultiplied(mesh.vertices.at(i).color));
    }
    for (int y = 0; y < image.height(); ++y) {
        if (isCancelled && isCancelled())
            return;
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y)); // not owned
        for (int x = 0; x < image.width(); ++x) {
            double nearest = 0;
            for (int i = 0; i < places.size(); ++i) {
                const QPointF away = places.at(i) - QPointF(x, y);
                const double distance = QPointF::dotProduct(away, away);
                if (i == 0 || distance < nearest) {
                    nearest = distance;
                    line[x] = colors.at(i);
                }
            }
        }
    }
}

// A triangle with the pixels of its box.
struct PlacedTriangle
{
    Triangle triangle;
    QRect box;
};

// Those that are seen, in the order of the mesh, as many as a picture could need.
std::vector<PlacedTriangle> SeenTriangles(const Mesh& mesh, const QTransform& toPixels, const QRect& image)
{
    constexpr qint64 mostLayers = 64;
    qint64 budget = mostLayers * image.width() * image.height() + mesh.corners.size() * mostLayers;
    std::vector<PlacedTriangle> seen;
    for (int i = 0; i + 2 < mesh.corners.size() && budget > 0; i += 3) {
        const Triangle triangle(mesh, i, toPixels);
        const QRect box = triangle.BoxIn(image);
        budget -= qint64(box.width()) * box.height();
        if (!box.isEmpty())
            seen.push_back({triangle, box});
    }
    return seen;
}

} // namespace

void PaintMesh(QImage& image, const Mesh& mesh, const QTransform& toPixels, const std::function<bool()>& isCancelled)
{
    if (mesh.backColor.isValid())
        image.fill(mesh.backColor);
    else if (mesh.extends)
        FillFromCorners(image, mesh, toPixels, isCancelled);
    const std::vector<PlacedTriangle> triangles = SeenTriangles(mesh, toPixels, image.rect());
    std::vector<int> byTop(triangles.size());
    for (size_t i = 0; i < byTop.size(); ++i)
        byTop[i] = int(i);
    const auto topOf = [&](int i) { return triangles[size_t(i)].box.top(); };
    std::stable_sort(byTop.begin(), byTop.end(), [&](int a, int b) { return topOf(a) < topOf(b); });
    MeshRow row(image.width());
    std::vector<int> active; // that pass through the row, in the order of the mesh
    size_t next = 0;
    for (int y = 0; y < image.height(); ++y) {
        if (isCancelled && isCancelled())
            return;
        const auto isOver = [&](int i) { return triangles[size_t(i)].box.bottom() < y; };
        active.erase(std::remove_if(active.begin(), active.end(), isOver), active.end());
        const auto older = std::ptrdiff_t(active.size());
        for (; next < byTop.size() && topOf(byTop[next]) <= y; ++next)
            active.push_back(byTop[next]);
        std::inplace_merge(active.begin(), active.begin() + older, active.end());
        if (active.empty())
            continue;
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y)); // not owned
        row.Begin(line);
        for (const int i : active)
            triangles[size_t(i)].triangle.PaintRow(line, row, triangles[size_t(i)].box, y);
        row.FinishInto(line);
    }
}

} // namespace ofd
