// SPDX-License-Identifier: MIT
// The services that can fail, each with the codes that platform/services.h documents for it, and
// memory.
#pragma once

#include <vector>

#include "platform/services.h"

namespace reliability {

/// The name under which operator new fails within the library.
constexpr const char* kMemory = "memory";

struct FailingService {
  const char* name;
  std::vector<DWORD> codes;
  /// Gives something back. What such a call was to give back stays open when it fails.
  bool releases = false;
  /// Without it a session has no worker threads, or no way to wake them: only a new one works.
  bool makes_workers = false;
};

const std::vector<FailingService>& FailingServices();

}  // namespace reliability
