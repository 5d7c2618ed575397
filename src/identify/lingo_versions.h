// SPDX-License-Identifier: MIT
// Comparing the protocol versions of lingoes.
#pragma once

#include "ipodcomm/IpodTypes.h"

namespace ipodcomm {

inline bool AtLeast(const tagIPOD_VERSION& version, const tagIPOD_VERSION& minimum) {
  return version.major > minimum.major ||
         (version.major == minimum.major && version.minor >= minimum.minor);
}

}  // namespace ipodcomm
