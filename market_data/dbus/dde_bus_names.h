#pragma once
// The names of the live feed on the desktop session bus, shared by the
// program's adapter and the feed server: a server owns one bus name per
// service it serves and exports the server object; every client exports
// the client object, which servers call on the client's unique name.

namespace velorin::dde_bus {

inline constexpr char NamePrefix[] = "com.qdxvelorin.Dde."; // + the service
inline constexpr char ServerPath[] = "/com/qdxvelorin/DdeServer";
inline constexpr char ServerInterface[] = "com.qdxvelorin.DdeServer1";
inline constexpr char ClientPath[] = "/com/qdxvelorin/DdeClient";
inline constexpr char ClientInterface[] = "com.qdxvelorin.DdeClient1";
// + NoService, NoTopic, NoConversation, NoItem or NoData
inline constexpr char ErrorPrefix[] = "com.qdxvelorin.Dde.Error.";

} // namespace velorin::dde_bus
