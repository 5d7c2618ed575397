// SPDX-License-Identifier: MIT
// A port's settings as the terminal driver wants them.
#include "platform/posix/line_settings.h"

#include <optional>

namespace ipodcomm::platform {
namespace {

constexpr int kOddParity = 1;
constexpr int kEvenParity = 2;
constexpr std::uint32_t kRtsHandshake = 2;

struct Speed {
  std::uint32_t baud;
  speed_t code;
};

constexpr Speed kSpeeds[] = {
    {300, B300},       {600, B600},       {1200, B1200},     {2400, B2400},   {4800, B4800},
    {9600, B9600},     {19200, B19200},   {38400, B38400},   {57600, B57600}, {115200, B115200},
    {230400, B230400}, {460800, B460800}, {921600, B921600},
};

std::optional<speed_t> SpeedCode(std::uint32_t baud) {
  for (const Speed& speed : kSpeeds) {
    if (speed.baud == baud) return speed.code;
  }
  return std::nullopt;
}

std::optional<tcflag_t> DataBits(std::uint8_t bits) {
  switch (bits) {
    case 5:
      return CS5;
    case 6:
      return CS6;
    case 7:
      return CS7;
    case 8:
      return CS8;
    default:
      return std::nullopt;
  }
}

std::optional<tcflag_t> ParityBits(std::uint8_t parity) {
  switch (parity) {
    case NOPARITY:
      return 0;
    case kOddParity:
      return PARENB | PARODD;
    case kEvenParity:
      return PARENB;
    default:
      return std::nullopt;
  }
}

// A UART has no one and a half stop bits with 8 data bits; two are the nearest, and a receiver that
// waits for one and a half is content with them.
std::optional<tcflag_t> StopBits(std::uint8_t code) {
  switch (code) {
    case ONESTOPBIT:
      return 0;
    case ONE5STOPBITS:
    case TWOSTOPBITS:
      return CSTOPB;
    default:
      return std::nullopt;
  }
}

}  // namespace

DCB DefaultSettings() {
  DCB settings = {};
  settings.DCBlength = sizeof settings;
  settings.BaudRate = 9600;
  settings.fBinary = 1;
  settings.ByteSize = 8;
  return settings;
}

bool ApplySettings(const DCB& settings, termios* line) {
  const auto speed = SpeedCode(settings.BaudRate);
  const auto data = DataBits(settings.ByteSize);
  const auto parity = ParityBits(settings.Parity);
  const auto stop = StopBits(settings.StopBits);
  if (settings.DCBlength != sizeof settings || settings.fBinary == 0) return false;
  if (!speed || !data || !parity || !stop) return false;
  cfmakeraw(line);
  line->c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | PARODD | CSTOPB | CRTSCTS);
  line->c_cflag |= *data | *parity | *stop | CLOCAL | CREAD;
  if (settings.fOutxCtsFlow != 0 || settings.fRtsControl == kRtsHandshake) {
    line->c_cflag |= CRTSCTS;
  }
  line->c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
  if (settings.fOutX != 0) line->c_iflag |= IXON;
  if (settings.fInX != 0) line->c_iflag |= IXOFF;
  // A read is only ever tried when bytes wait; 1 makes an empty one distinct from a lost line.
  line->c_cc[VMIN] = 1;
  line->c_cc[VTIME] = 0;
  cfsetispeed(line, *speed);
  cfsetospeed(line, *speed);
  return true;
}

}  // namespace ipodcomm::platform
