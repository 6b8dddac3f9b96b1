#pragma once
// Printing a picture of the desk, and the printer chosen for the run.

#include <string>

#include "output/dib.h"

class QPrinter;
class QWidget;

namespace velorin {

inline constexpr int PrintDone = 0;
inline constexpr int PrintNotLockable = 3;
inline constexpr int PrintNoPrinter = 6;
inline constexpr int PrintStartFailed = 11;
inline constexpr int PrintEndFailed = 17;
inline constexpr int PrintNullWindow = 20;
inline constexpr int PrintNoCapture = 21;

// Prints `dib` on `printer` as one page, placed by `printMode` (best fit,
// scaled, stretch) under `title` cut to 31 characters, with the modeless
// "PRINTING" box up during the job; its Cancel abandons the job.
int PrintDib(const Dib* dib, QPrinter& printer, int printMode, int xScale, int yScale,
             const std::string& title);
// The printer a job goes to: the one chosen in Printer Setup, else the
// system's default one; null when there is none.
QPrinter* JobPrinter();
// Captures `widget` and prints it on `printer` (JobPrinter() when null),
// best fit at scale 1.
int PrintWindow(QWidget* widget, QPrinter* printer, const std::string& title);
// The printer dialog; OK keeps its printer for the later jobs, Cancel
// leaves none chosen, so the next job goes to the default printer.
void PrinterSetup(QWidget* owner);

} // namespace velorin
