// SPDX-License-Identifier: MIT
// The world of the Linux platform: the port is a pseudo-terminal, its far end the other side.
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "world.h"

namespace ipodcomm::test {

struct World::Implementation {
  int far_end = -1;
  std::filesystem::path folder;
  std::filesystem::path previous_folder;
};

World::World() : implementation_(std::make_unique<Implementation>()) {
  implementation_->far_end = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  grantpt(implementation_->far_end);
  unlockpt(implementation_->far_end);
  termios line;
  tcgetattr(implementation_->far_end, &line);
  cfmakeraw(&line);  // the far end is a device, not a user: no echo before the port is opened
  tcsetattr(implementation_->far_end, TCSANOW, &line);
  setenv("IPODCOMM_COM2", ptsname(implementation_->far_end), 1);
  // A working directory of its own, for files.
  std::string pattern = std::filesystem::temp_directory_path() / "ipodcomm-test-XXXXXX";
  implementation_->folder = mkdtemp(pattern.data());
  implementation_->previous_folder = std::filesystem::current_path();
  std::filesystem::current_path(implementation_->folder);
}

World::~World() {
  Unplug();
  std::filesystem::current_path(implementation_->previous_folder);
  std::filesystem::remove_all(implementation_->folder);
}

Traits World::traits() const {
  Traits traits;
  traits.has_port = true;
  traits.checks_open_arguments = true;
  traits.opens_a_port_once = true;
  traits.keeps_stop_bits = true;
  traits.checks_line_settings = true;
  traits.waits_for_events = true;
  traits.closing_ends_reads = true;
  traits.fails_reads_of_vanished_lines = true;
  traits.retires_handles = true;
  traits.ends_threads_at_safe_points = true;
  traits.tolerates_lock_misuse = true;
  traits.checks_heap_blocks = true;
  traits.checks_device_handles = true;
  traits.terminates_cut_conversions = true;
  return traits;
}

void World::Send(const Bytes& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t count = write(implementation_->far_end, bytes.data() + sent, bytes.size() - sent);
    if (count <= 0) return;
    sent += static_cast<std::size_t>(count);
  }
}

Bytes World::Receive(std::size_t count) {
  Bytes received;
  while (received.size() < count) {
    pollfd watched = {implementation_->far_end, POLLIN, 0};
    if (poll(&watched, 1, 10000) <= 0) break;
    std::uint8_t buffer[4096];
    const ssize_t more = read(implementation_->far_end, buffer, sizeof buffer);
    if (more <= 0) break;
    received.insert(received.end(), buffer, buffer + more);
  }
  return received;
}

void World::Unplug() {
  if (implementation_->far_end >= 0) close(implementation_->far_end);
  implementation_->far_end = -1;
}

void World::PlaceFile(const wchar_t* name, const Bytes& contents) {
  std::FILE* file = std::fopen(std::filesystem::path(name).c_str(), "wb");
  std::fwrite(contents.data(), 1, contents.size(), file);
  std::fclose(file);
}

}  // namespace ipodcomm::test
