// SPDX-License-Identifier: MIT
// A connection to the far end's program: bytes in both directions, and its end is the line's.
#include "far_end_windows.h"
// The order matters: this header needs what the one above defines for the system's own.
#include <winsock2.h>

#include <cstdlib>
#include <stdexcept>

namespace ipodcomm::test {

FarEnd::FarEnd(const char* port) {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
  connection_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<u_short>(std::atoi(port)));
  const bool connected =
      connect(connection_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  // Its first byte says that the line is there.
  if (!connected || Receive(1).size() != 1) throw std::runtime_error("the far end is not there");
}

FarEnd::~FarEnd() {
  HangUp();
  closesocket(connection_);
  WSACleanup();
}

void FarEnd::Send(const Bytes& bytes) {
  send(connection_, reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()), 0);
}

Bytes FarEnd::Receive(std::size_t count) {
  Bytes received;
  while (received.size() < count && Readable()) {
    char buffer[4096];
    const int more = recv(connection_, buffer, sizeof buffer, 0);
    if (more <= 0) break;
    received.insert(received.end(), buffer, buffer + more);
  }
  return received;
}

void FarEnd::HangUp() {
  shutdown(connection_, SD_SEND);
  char ignored[4096];
  while (recv(connection_, ignored, sizeof ignored, 0) > 0) {
  }
}

bool FarEnd::Readable() const {
  fd_set watched;
  FD_ZERO(&watched);
  FD_SET(connection_, &watched);
  timeval limit = {10, 0};
  return select(0, &watched, nullptr, nullptr, &limit) > 0;
}

}  // namespace ipodcomm::test
