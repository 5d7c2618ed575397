// SPDX-License-Identifier: MIT
// Opens, reads and writes the master side of a pseudo-terminal, and keeps a link to the other side.

#include "terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace ipodsim {
namespace {

// Empty when it is no link.
std::string TargetOf(const std::string& link) {
  std::array<char, 256> found{};
  const ssize_t length = readlink(link.c_str(), found.data(), found.size() - 1);
  return length > 0 ? std::string(found.data(), static_cast<std::size_t>(length)) : std::string();
}

bool Later(const timespec& a, const timespec& b) {
  return a.tv_sec != b.tv_sec ? a.tv_sec > b.tv_sec : a.tv_nsec > b.tv_nsec;
}

// Whether the link leads to the device that it was made for. A killed server leaves its link
// behind, and the number of its terminal is soon given out again: that terminal is then younger
// than the link.
bool InUse(const std::string& link, const struct stat& link_state) {
  struct stat device {};
  return stat(link.c_str(), &device) == 0 && !Later(device.st_ctim, link_state.st_mtim);
}

}  // namespace

std::string Terminal::Open() {
  master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
  if (master_ < 0) return std::string("cannot make a pseudo-terminal: ") + std::strerror(errno);
  std::array<char, 128> name{};
  if (grantpt(master_) != 0 || unlockpt(master_) != 0 ||
      ptsname_r(master_, name.data(), name.size()) != 0) {
    const std::string reason = std::strerror(errno);
    Close();
    return "cannot make a pseudo-terminal: " + reason;
  }
  path_ = name.data();
  // Opened and closed once, the terminal knows from the start that nobody is there.
  const int slave = open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (slave >= 0) close(slave);
  MakeRaw();
  return {};
}

void Terminal::Close() {
  if (master_ >= 0) close(master_);
  master_ = -1;
  path_.clear();
}

Bytes Terminal::Read() {
  Bytes bytes;
  std::array<std::uint8_t, 4096> chunk{};
  while (true) {
    const ssize_t count = read(master_, chunk.data(), chunk.size());
    if (count <= 0) return bytes;
    bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + count);
  }
}

void Terminal::Write(Bytes* bytes) {
  if (bytes->empty()) return;
  // The kernel forgets the settings when the last one closes the other side.
  MakeRaw();
  while (!bytes->empty()) {
    const ssize_t count = write(master_, bytes->data(), bytes->size());
    if (count <= 0) return;
    bytes->erase(bytes->begin(), bytes->begin() + count);
  }
}

bool Terminal::Connected() const {
  pollfd state{master_, POLLIN, 0};
  return poll(&state, 1, 0) >= 0 && (state.revents & POLLHUP) == 0;
}

// On Linux the master's settings are those of the other side. Without this, bytes written before
// the accessory has set up its port would be echoed back to the iPod.
void Terminal::MakeRaw() {
  termios settings{};
  if (tcgetattr(master_, &settings) != 0 || (settings.c_lflag & (ECHO | ICANON)) == 0) return;
  cfmakeraw(&settings);
  tcsetattr(master_, TCSANOW, &settings);
}

std::string PlaceLink(const std::string& link, const std::string& target) {
  struct stat state {};
  if (lstat(link.c_str(), &state) == 0) {
    if (!S_ISLNK(state.st_mode)) return "'" + link + "' exists and is not a link; it is left alone";
    const std::string device = TargetOf(link);
    if (device != target && InUse(link, state)) {
      return "the link '" + link + "' leads to " + device + ", which is in use; it is left alone";
    }
    unlink(link.c_str());
  }
  if (symlink(target.c_str(), link.c_str()) == 0) return {};
  return "cannot make the link '" + link + "': " + std::strerror(errno);
}

void RemoveLink(const std::string& link, const std::string& target) {
  if (TargetOf(link) == target) unlink(link.c_str());
}

}  // namespace ipodsim
