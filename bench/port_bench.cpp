// SPDX-License-Identifier: MIT
// What a port of this platform costs beside the system's own write, with its recording off and on.
#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "figures.h"
#include "platform/services.h"
#include "trips.h"

namespace {

using bench::Clock;
using bench::MillisecondsSince;

constexpr std::size_t kFrameBytes = 8;
constexpr int kFrames = 64;  // what a pseudo-terminal takes without being read
constexpr int kRounds = 400;

// Both ends of a line; nobody listens at the far one until a round is over.
class Line {
 public:
  Line() {
    std::array<char, 128> name = {};
    termios raw = {};
    cfmakeraw(&raw);
    if (::openpty(&far_, &near_, name.data(), &raw, nullptr) == 0) name_ = name.data();
  }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;
  ~Line() {
    ::close(far_);
    ::close(near_);
  }

  int near_end() const { return near_; }
  const std::string& name() const { return name_; }

  void Drain() const {
    std::array<char, kFrames* kFrameBytes> bytes = {};
    for (std::size_t left = bytes.size(); left > 0;) {
      const ssize_t read = ::read(far_, bytes.data(), left);
      if (read <= 0) return;
      left -= static_cast<std::size_t>(read);
    }
  }

 private:
  int far_ = -1;
  int near_ = -1;
  std::string name_;
};

// The median over the rounds, in nanoseconds a frame.
double MeasureWrites(const Line& line, const std::function<void(const void*)>& write) {
  const std::array<unsigned char, kFrameBytes> frame = {0xFF, 0x55, 0x04, 0x04, 0x00, 0x18, 0x05};
  std::vector<double> rounds;
  for (int round = 0; round < kRounds; ++round) {
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < kFrames; ++i) write(frame.data());
    rounds.push_back(MillisecondsSince(start) * 1e6 / kFrames);
    line.Drain();
  }
  return bench::Median(rounds);
}

double MeasurePort(const Line& line) {
  setenv("IPODCOMM_COM2", line.name().c_str(), 1);
  const HANDLE port =
      CreateFileW(L"COM2:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const double taken_ns = MeasureWrites(line, [port](const void* frame) {
    DWORD written = 0;
    WriteFile(port, frame, kFrameBytes, &written, nullptr);
  });
  CloseHandle(port);
  return taken_ns;
}

}  // namespace

void bench::MeasurePort() {
  PrintHeading("Writing a frame of 8 bytes to a pseudo-terminal");
  const Line line;
  if (line.name().empty()) {
    std::fprintf(stderr, "No pseudo-terminal\n");
    return;
  }
  const double floor_ns = MeasureWrites(line, [&line](const void* frame) {
    [[maybe_unused]] const ssize_t ignored = ::write(line.near_end(), frame, kFrameBytes);
  });
  const std::string floor = "floor: " + Number(floor_ns, 0) + " ns, the system's own write";
  PrintFigure("through the port", Number(::MeasurePort(line), 0) + " ns", floor);
  setenv("IPODCOMM_CAPTURE", "/dev/null", 1);
  PrintFigure("  recorded", Number(::MeasurePort(line), 0) + " ns", floor);
  unsetenv("IPODCOMM_CAPTURE");
}
