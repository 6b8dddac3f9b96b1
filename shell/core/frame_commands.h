#pragma once
// The frame's commands, free of any window system: every id of the menu bar
// and the button bar arrives at FrameCommand. The frame is reached through
// `Frame`, which the Qt frame implements and tests implement headless.

#include <vector>

#include "chart_model/creation.h"
#include "chart_model/desk.h"
#include "output/chart_image.h"
#include "persistence/settings_file.h"
#include "shell/core/menu_def.h"

namespace velorin {

class Frame : public Desk, public MenuModel, public CaptureSource {
  public:
    // The check mark of a menu item.
    virtual void SetChecked(int commandId, bool checked) = 0;
    virtual void Cascade() = 0;
    virtual void ArrangeIcons() = 0;
    // Exit: the frame goes at once, with no question.
    virtual void DestroyFrame() = 0;
    virtual void ShowAbout() = 0;
    // A chart command sent to a chart window, as its own menus send it.
    virtual void SendChartCommand(WindowId window, int commandId) = 0;
    // Help > Contents: the program's help at its index page.
    virtual void ShowHelpContents() = 0;
    // The states of the button bar's buttons, which follow the menu state
    // (ButtonCount of them), or nullptr for a frame without a bar.
    virtual ButtonState* ButtonStates() { return nullptr; }
    // File > Print...: a picture of the desk to the current printer, under
    // `title`; the result stays internal. File > Printer Setup...: the
    // printer dialog, whose choice serves the later jobs.
    virtual int PrintDesk(const char* title) {
        (void)title;
        return 21;
    }
    virtual void PrinterSetup() {}
    // The child windows, bottom of the Z order first, with their places in
    // the desk and whether each is an icon (what a layout stores).
    virtual std::vector<DeskWindow> DeskWindows() { return {}; }
    // Destroys one child window; its chart closes with it.
    virtual void DestroyChild(WindowId window) { (void)window; }
};

void FrameCommand(Frame& frame, int commandId);

// Connection > Datafile... and Database...; a layout being restored passes
// its row and no dialog is shown. `shell.lastConnectOk` tells the outcome.
void ConnectDataFile(Frame& frame, const CreationMode& mode = {});
void ConnectDatabase(Frame& frame, const CreationMode& mode = {});

// The chart a chart command works on, with its window; nullptr (after
// "Please Select Chart" for a companion view) when there is none.
Chart* RequireChart(Frame& frame, WindowId* windowOut);
// The chart limit, with its message when reached (not while restoring).
bool ChartLimitOk();
// The gated menu items and buttons follow whether any chart is open.
void UpdateFrameMenuState(Frame& frame);
// Every child window closed; no charts, every source slot free.
void CloseAllCharts(Frame& frame);
// One tick of a periodic timer, under the wait cursor when it has work.
void FrameTimerTick(int timerId);

} // namespace velorin
