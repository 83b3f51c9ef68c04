#pragma once

#include <ofd/model/paint.h>

#include <memory>

#include <pugixml.hpp>

namespace ofd {

struct Resources;

// Null for all of them: it says too little to be painted.

// A shading along an axis or between circles.
std::shared_ptr<const Shading> ReadShading(const pugi::xml_node& element, const Resources& resources);
// Triangles by points of which each goes on at an edge of the last triangle or begins a new one.
std::shared_ptr<const Mesh> ReadTriangles(const pugi::xml_node& element, const Resources& resources);
// Rows of points; the four around each field make two triangles.
std::shared_ptr<const Mesh> ReadLattice(const pugi::xml_node& element, const Resources& resources);

} // namespace ofd
