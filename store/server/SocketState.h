#pragma once

#include <QtGlobal>

#include <optional>

/// What a connected socket says of itself; Qt asks only those that it has made.
namespace socketstate {

/// Whether something has come that nobody has read yet, the end of the connection included.
bool hasUnread(int socket);
/// How many bytes have come and how many of those that went have arrived, in sum; none where the system does not
/// say (any but Linux, and Unix sockets).
std::optional<quint64> bytesMoved(int socket);
/// Ends the connection in both directions: who waits for it goes on with an error. The socket stays open.
void shut(int socket);

} // namespace socketstate
