// SPDX-License-Identifier: MIT
// Records an open terminal, for those who ask for it with IPODCOMM_CAPTURE=FILE.
#pragma once

#include <memory>
#include <string>

#include "platform/capture/port_recorder.h"

namespace ipodcomm::platform {

/// Null when nothing is to be recorded, or nothing can be, which standard error then says.
/// @param line borrowed
std::unique_ptr<PortRecorder> RecorderOfEnvironment(const std::string& device, int line);

}  // namespace ipodcomm::platform
