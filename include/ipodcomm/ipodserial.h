// SPDX-License-Identifier: MIT
// The serial port of the legacy interface: no thread, every call blocks its caller.
#pragma once

#include <cstdint>

#include "ipodcomm/detail/Shared.h"
#include "ipodcomm/platform.h"

/// Opens a port, writes raw bytes and reads one frame at a time, byte by byte, on the caller's
/// thread.
///
/// A copy refers to the same open port; whichever of the two closes it leaves the other with a
/// stale handle, whose use fails. Nothing closes the port by itself: the owner does.
class IPODCOMM_API ipodserial {
 public:
  ipodserial();
  ipodserial(const ipodserial& other);
  ipodserial& operator=(const ipodserial& other);

  int openport(const wchar_t* name, int baud_rate);
  int openport();
  int closeport();
  unsigned long writeport(unsigned char* bytes, int count);
  unsigned long readport(unsigned char* buffer, int size);
  void purgerx();
  void purgetx();
  void Error();

 private:
  friend struct ipodserialPeer;  // the tests' look inside

  bool ConfigureLine();
  bool ConfigureTimeouts();

  ipodcomm::Shared<HANDLE> port_;  // one thread may close what another reads
  DCB port_state_ = {};
  COMMTIMEOUTS port_timeouts_ = {};
  std::int32_t baud_rate_ = 57600;
  std::int32_t data_bits_ = 8;
  std::int32_t stop_bits_ = 1;
  std::int32_t parity_ = 0;
  std::uint32_t timeout_ms_ = 200;
  wchar_t port_name_[26] = {};
};
