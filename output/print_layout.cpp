#include "output/print_layout.h"

#include <algorithm>

namespace velorin {

ScreenRect PrintRectangle(int printMode, const PrintPage& page, int dibWidth, int dibHeight,
                          int xScale, int yScale) {
    ScreenRect r;
    if (printMode == PrintBestFit) {
        r.right = page.width;
        const double tall = static_cast<double>(dibHeight) * page.width * page.dpiY;
        const double wide = static_cast<double>(dibWidth) * page.dpiX;
        r.bottom = static_cast<int>(tall / wide);
    } else if (printMode == PrintScaled) {
        r.right = dibWidth * xScale;
        r.bottom = dibHeight * yScale;
    } else {
        r.right = page.width;
        r.bottom = page.height;
    }
    return r;
}

bool BandSource(const ScreenRect& print, const ScreenRect& band, int dibWidth, int dibHeight,
                ScreenRect& target, ScreenRect& source) {
    const double sx = static_cast<double>(print.right - print.left) / dibWidth;
    const double sy = static_cast<double>(print.bottom - print.top) / dibHeight;
    target.left = std::max(print.left, band.left);
    target.top = std::max(print.top, band.top);
    target.right = std::min(print.right, band.right);
    target.bottom = std::min(print.bottom, band.bottom);
    if (target.Empty()) return false;
    source.left = static_cast<int>((target.left - print.left) / sx + 0.5);
    source.top = static_cast<int>((target.top - print.top) / sy + 0.5);
    source.right = static_cast<int>(source.left + (target.right - target.left) / sx + 0.5);
    source.bottom = static_cast<int>(source.top + (target.bottom - target.top) / sy + 0.5);
    return true;
}

std::string PrintTitle(const std::string& title) {
    return title.substr(0, 31);
}

} // namespace velorin
