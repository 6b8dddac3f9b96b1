#include "chart_model/region.h"

#include <algorithm>

namespace velorin {
namespace {
long liveRegions = 0;
}

RegionHandle CreateEllipticRegion(int left, int top, int right, int bottom) {
    auto* r = new Region{};
    r->shape = Region::Shape::Ellipse;
    r->box = {std::min(left, right), std::min(top, bottom), std::max(left, right),
              std::max(top, bottom)};
    ++liveRegions;
    return r;
}

RegionHandle CreatePolygonRegion(const PixelPoint* points, int count) {
    auto* r = new Region{};
    r->shape = Region::Shape::Polygon;
    count = std::clamp(count, 0, Region::MaxPoints);
    r->pointCount = count;
    if (count > 0) {
        r->box = {points[0].x, points[0].y, points[0].x + 1, points[0].y + 1};
        for (int i = 0; i < count; ++i) {
            r->points[i] = points[i];
            r->box.left = std::min(r->box.left, points[i].x);
            r->box.top = std::min(r->box.top, points[i].y);
            r->box.right = std::max(r->box.right, points[i].x + 1);
            r->box.bottom = std::max(r->box.bottom, points[i].y + 1);
        }
    }
    ++liveRegions;
    return r;
}

void DeleteRegion(RegionHandle region) {
    if (!region) return;
    delete region;
    --liveRegions;
}

bool PointInRegion(const Region* r, int x, int y) {
    if (!r) return false;
    const PixelRect& b = r->box;
    if (x < b.left || x >= b.right || y < b.top || y >= b.bottom) return false;
    if (r->shape == Region::Shape::Ellipse) {
        // Test the pixel centre against the ellipse inscribed in the box.
        const double cx = (b.left + b.right) / 2.0, cy = (b.top + b.bottom) / 2.0;
        const double rx = (b.right - b.left) / 2.0, ry = (b.bottom - b.top) / 2.0;
        if (rx <= 0 || ry <= 0) return false;
        const double dx = (x + 0.5 - cx) / rx, dy = (y + 0.5 - cy) / ry;
        return dx * dx + dy * dy <= 1.0;
    }
    // Non-zero winding number at the pixel centre.
    const double px = x + 0.5, py = y + 0.5;
    int winding = 0;
    for (int i = 0; i < r->pointCount; ++i) {
        const PixelPoint a = r->points[i];
        const PixelPoint c = r->points[(i + 1) % r->pointCount];
        const double cross = (c.x - a.x) * (py - a.y) - (px - a.x) * (c.y - a.y);
        if (a.y <= py) {
            if (c.y > py && cross > 0) ++winding;
        } else if (c.y <= py && cross < 0) {
            --winding;
        }
    }
    return winding != 0;
}

long LiveRegionCount() { return liveRegions; }

} // namespace velorin
