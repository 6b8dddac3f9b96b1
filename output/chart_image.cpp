#include "output/chart_image.h"

#include <algorithm>

#include "base/user_seam.h"

namespace velorin {

bool CaptureRect(ScreenRect& rect, int screenWidth, int screenHeight) {
    if (rect.Empty()) return false;
    rect.left = std::max(rect.left, 0);
    rect.top = std::max(rect.top, 0);
    rect.right = std::min(rect.right, screenWidth);
    rect.bottom = std::min(rect.bottom, screenHeight);
    return !rect.Empty();
}

int SaveChartImage(CaptureSource* source, const std::string& path, bool batch) {
    if (source == nullptr) return ChartImageNoWindow;
    Dib dib;
    if (!source->CaptureDesk(dib)) return ChartImageNoCapture;

    std::string target = path;
    if (target.empty()) {
        FileDialogRequest request;
        request.title = "Save Velorin Chart As";
        request.filter = "Velorin Bitmap (*.bmp)";
        request.defaultExtension = "*";
        request.save = true;
        const int answer = Seam().AskFile(request, target);
        if (answer == 0) return ChartImageNotSaved;
        if (answer < 0) {
            if (!batch)
                Seam().ShowMessage("Unable to save chart", "QDX-Velorin", MessageIcon::Stop);
            return ChartImageNotSaved;
        }
    }

    source->ShowSavingBox(true);
    const int written = WriteDib(&dib, target);
    if (written != DibWritten && !batch)
        Seam().ShowMessage(target, "Could not save bitmap", MessageIcon::Warning);
    source->ShowSavingBox(false);
    return written == DibWritten ? ChartImageSaved : ChartImageNotSaved;
}

} // namespace velorin
