// SPDX-License-Identifier: MIT
// Answers to nothing, which a session gets while it waits for its own.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "support/packets.h"
#include "support/peers.h"
#include "world/tests/support.h"

namespace test {

/// One comes to the session after each of these pauses, in milliseconds. Lives until the last has
/// come.
class ForeignAnswers {
 public:
  ForeignAnswers(CIpodComm& session, std::vector<DWORD> pauses_ms)
      : session_(session), pauses_ms_(std::move(pauses_ms)) {
    CloseHandle(ipodcomm::virtual_platform::StartThread(send_));
  }

 private:
  CIpodComm& session_;
  std::vector<DWORD> pauses_ms_;
  std::function<void()> send_ = [this] {
    for (const DWORD pause_ms : pauses_ms_) {
      Sleep(pause_ms);
      CIpodCommPeer::Responses(session_).Append(Packet("FF 55 04 04 00 2D 01 CA"));
    }
  };
};

}  // namespace test
