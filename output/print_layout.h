#pragma once
// The arithmetic of printing a picture of the desk: where on the page it
// goes, and which part of the picture falls in one band of the page. Free
// of any printer.

#include <string>

#include "output/chart_image.h"

namespace velorin {

// The printable page in device pixels and its resolution in pixels per inch.
struct PrintPage {
    int width = 0, height = 0;
    int dpiX = 0, dpiY = 0;
};

inline constexpr int PrintBestFit = 1;
inline constexpr int PrintScaled = 3;

// The page rectangle the picture is stretched onto. Best fit (1): the full
// width, the height keeping the picture's proportions on the printer's own
// pixel shape (it may run past a short page). Scaled (3): the picture's size
// times the scales. Any other mode: the whole page.
ScreenRect PrintRectangle(int printMode, const PrintPage& page, int dibWidth, int dibHeight,
                          int xScale, int yScale);

// One band of the page: `target` is the part of the print rectangle inside
// the band, `source` the part of the picture drawn there, in rows from the
// top of the picture. False when the band misses the print rectangle.
bool BandSource(const ScreenRect& print, const ScreenRect& band, int dibWidth, int dibHeight,
                ScreenRect& target, ScreenRect& source);

// The document name and status title: the title cut to 31 characters.
std::string PrintTitle(const std::string& title);

} // namespace velorin
