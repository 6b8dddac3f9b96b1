#pragma once
// Hit regions of a chart: the round handles of curves and drawn objects and
// the polygons of highlights. A region can be filled, inverted and asked
// whether a point lies inside; it is made at paint time and kept until the
// next paint replaces it.

namespace velorin {

struct PixelPoint {
    int x;
    int y;
};

struct PixelRect {
    int left;
    int top;
    int right;  // exclusive
    int bottom; // exclusive
};

struct Region {
    enum class Shape { Ellipse, Polygon } shape;
    PixelRect box;            // bounding box; for an ellipse the defining rectangle
    int pointCount;           // polygon corners (at most MaxPoints)
    PixelPoint points[10];
    static constexpr int MaxPoints = 10;
};
using RegionHandle = Region*;

// Elliptic region inscribed in the rectangle (left, top) to (right, bottom),
// right and bottom exclusive.
RegionHandle CreateEllipticRegion(int left, int top, int right, int bottom);
// Polygon region, winding fill rule; at most Region::MaxPoints corners are kept.
RegionHandle CreatePolygonRegion(const PixelPoint* points, int count);
void DeleteRegion(RegionHandle region);
// Deletes the region and clears the handle.
inline void DeleteAndClear(RegionHandle& region) {
    DeleteRegion(region);
    region = nullptr;
}
bool PointInRegion(const Region* region, int x, int y);

// Regions alive now: for tests that check nothing leaks.
long LiveRegionCount();

} // namespace velorin
