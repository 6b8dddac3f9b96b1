#pragma once
// The "Database Connectivity" dialog of the desktop, and its installation
// together with the system's ODBC driver manager.

class QWidget;

namespace velorin {

// Runs the dialog modally over `parent`: -1 Cancel, 0 OK, 1 "Save All".
// The dialog's object name is "DSNSQL"; each control is named by its id.
int ExecDatabaseDialog(QWidget* parent);

// Connection > Database... from here on runs this dialog and queries
// through the driver manager (when the program was built with it).
void InstallDatabaseConnectivity();

} // namespace velorin
