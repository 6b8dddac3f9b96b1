#pragma once
// Saving a picture of the desk as a .bmp file: the capture rectangle cut to
// the screen, and the save with its dialog, its "SAVING" box and its
// messages. The capture itself belongs to the window system behind
// `CaptureSource`.

#include <string>

#include "output/dib.h"

namespace velorin {

// A rectangle in screen pixels; right and bottom lie just past it.
struct ScreenRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool Empty() const { return right <= left || bottom <= top; }
    bool operator==(const ScreenRect&) const = default;
};

// The part of `rect` that a capture copies from a screen of the given size:
// left and top not below 0, right and bottom not past the screen. False,
// with nothing to capture, when `rect` is empty or lies off the screen.
bool CaptureRect(ScreenRect& rect, int screenWidth, int screenHeight);

// What a chart image is taken from: the pixels the desk shows, and the
// modeless "SAVING" box shown while the file is written.
class CaptureSource {
  public:
    virtual ~CaptureSource() = default;
    // The desk's pixels as a DIB; false when nothing could be captured.
    virtual bool CaptureDesk(Dib& out) {
        (void)out;
        return false;
    }
    // The "SAVING" box ("Saving Chart...") on or off; a click on it beeps.
    virtual void ShowSavingBox(bool shown) { (void)shown; }
};

inline constexpr int ChartImageSaved = 0;
inline constexpr int ChartImageNotSaved = -1; // cancelled, or the file failed
inline constexpr int ChartImageNoWindow = 20;
inline constexpr int ChartImageNoCapture = 21;

// Captures `source` and writes it to `path`; an empty `path` asks the user
// first ("Save Velorin Chart As"). The capture comes before the dialog, so
// the dialog is not in the picture. `batch` silences "Unable to save chart"
// and "Could not save bitmap".
int SaveChartImage(CaptureSource* source, const std::string& path, bool batch);

} // namespace velorin
