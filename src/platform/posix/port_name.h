// SPDX-License-Identifier: MIT
// Which device a port's name stands for.
#pragma once

#include <optional>
#include <string>

namespace ipodcomm::platform {

/// The device of the port `name`, "COM2:" or "COM2" in any case: what the environment variable
/// IPODCOMM_COM2 says, else /dev/ttyS1. Nothing when `name` is not a port's name.
std::optional<std::string> DeviceOfPort(const wchar_t* name);

}  // namespace ipodcomm::platform
