#include "store/server/SocketState.h"

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <sys/socket.h>
#endif

#ifdef Q_OS_LINUX
#include <linux/tcp.h>
#include <netinet/in.h>
#endif

#include <cstddef>

namespace socketstate {

// libpq's sockets never wait by themselves.
bool hasUnread(int socket) {
    char byte = 0;
    return ::recv(socket, &byte, 1, MSG_PEEK) >= 0;
}

std::optional<quint64> bytesMoved(int socket) {
#ifdef Q_OS_LINUX
    tcp_info info{};
    socklen_t size = sizeof info;
    constexpr std::size_t needed = offsetof(tcp_info, tcpi_bytes_received) + sizeof info.tcpi_bytes_received;
    if (::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 && size >= needed)
        return info.tcpi_bytes_acked + info.tcpi_bytes_received;
#else
    Q_UNUSED(socket)
#endif
    return std::nullopt;
}

void shut(int socket) {
#ifdef Q_OS_WIN
    ::shutdown(socket, SD_BOTH);
#else
    ::shutdown(socket, SHUT_RDWR);
#endif
}

} // namespace socketstate
