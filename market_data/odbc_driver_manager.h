#pragma once
// The ODBC calls of the database feed carried out by the system's ODBC
// driver manager, so that every driver the user has installed serves.

namespace velorin {

// Makes the driver manager the calls in force (see odbc_calls.h).
void InstallOdbcDriverManager();

} // namespace velorin
