#pragma once
// The settings file and the layouts as the program uses them: the read at
// start-up, the write when the frame goes, the File commands New, Open,
// Save, Save As and Restore, and bringing the rows of a layout back as
// windows.

#include "chart_model/creation.h"
#include "persistence/settings_file.h"
#include "shell/core/frame_commands.h"

namespace velorin {

// Start-up: reads the settings file `shell.settingsPath` (keeping the copy
// of it as it arrived), takes over its lists, colours and system values,
// and makes the first entry of each of the nine lists the current
// connection selection. Returns LoadSettings' result; without a file the
// program runs on its own start values.
int ReadSettingsAtStart();

// The frame's position and size from "[System]", when the settings file
// gives a rectangle (width and height above 0). The frame opens maximised
// either way; this is where it goes when it is restored.
bool SettingsFrameRectangle(int* x, int* y, int* width, int* height);

// The frame is going: the settings file is written with the open charts,
// the lists, colours and system values. Nothing happens without a
// settings path.
void WriteSettingsAtExit(Frame& frame);

// The lists, colours and system values of `settings` taken over by the
// program (after any read of a settings file or layout).
void ApplySettings();
// The program's lists, colours and system values copied into `settings`
// before a write; lists and texts still empty get the first-run values, so
// that every section of the file reads back.
void CollectSettings();

// Writes the open charts and the settings to `path`; on success the path
// becomes the layout that Save writes to, on failure that is emptied.
int SaveLayoutFile(Frame& frame, const char* path);

// File > New, Open..., Save, Save As... and Restore.
void LayoutCommand(Frame& frame, int commandId);

// The rows of `settings.connections` back as windows: each source
// connected again (or shared with an open one that matches), each chart
// made in its stored place with its stored look, parameters and drawn
// lines. The connection charts made on the way are destroyed at the end.
void RestoreLayout(Frame& frame);

// What chart creation reads from a row of `settings.connections`.
class SettingsRowReader final : public LayoutRowReader {
  public:
    double Resolution(int row) const override;
    void Rectangle(int row, int* x, int* y, int* width, int* height) const override;
    void CopyDrawnObjects(int row, Chart* chart) const override;
    void Parameters(int row, double* param1, double* param2, double* param3) const override;
    int PriceScale(int row) const override;
    void View(int row, ChartView* view) const override;
};

} // namespace velorin
