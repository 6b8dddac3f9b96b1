#pragma once
// The live-feed connection dialog ("SOURCE") of the desktop.

class QWidget;

namespace velorin {

// Runs the dialog over `parent`: 0 to go ahead, 1 for nothing to do.
int ExecSourceDialog(QWidget* parent);
// Makes Connection > Connect... and "Data Source ..." use it.
void InstallSourceDialog();

} // namespace velorin
