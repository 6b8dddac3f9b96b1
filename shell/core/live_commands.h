#pragma once
// The frame's live-feed commands: Connection > Connect..., the change of a
// chart family's source, Real Time and the fetch frequency.

#include "chart_model/creation.h"
#include "chart_model/desk.h"

namespace velorin {

class Frame;

// Connection > Connect...: the "SOURCE" dialog (skipped while a layout is
// restored), the conversation, its snapshot as a new source and its chart,
// then the advise loop. `shell.lastConnectOk` tells the outcome.
void ConnectLive(Frame& frame, const CreationMode& mode = {});

// "Data Source ...": the charts of the source of `chart` (pair charts
// excepted) move to a newly connected source; their lines are cleared.
void ChangeDataSource(Frame& frame, WindowId window, Chart& chart);

// "&Real Time": the toggle, with every conversation's updates held or
// released.
void ToggleRealTime(Frame& frame);

// "F&etch Frequency...": the "DATAFETCHFREQ" dialog, 1 to 500 minutes.
void FetchFrequencyCommand();
// The dialog's text as minutes: below 2 is 1, above 499 is 500, no number 1.
int FetchFrequencyFromText(const char* text);

} // namespace velorin
