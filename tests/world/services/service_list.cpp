// SPDX-License-Identifier: MIT
// Services to names and back.
#include "world/services/service_list.h"

#include <stdexcept>

namespace ipodcomm::virtual_platform {
namespace {

constexpr const char* kNames[] = {
#define IPODCOMM_VIRTUAL_SERVICE(name) #name,
    IPODCOMM_VIRTUAL_SERVICES(IPODCOMM_VIRTUAL_SERVICE)
#undef IPODCOMM_VIRTUAL_SERVICE
};

}  // namespace

const char* ServiceName(ServiceId service) { return kNames[static_cast<std::size_t>(service)]; }

ServiceId ServiceNamed(const std::string& name) {
  for (std::size_t i = 0; i < kServiceCount; ++i) {
    if (name == kNames[i]) return static_cast<ServiceId>(i);
  }
  throw std::invalid_argument("no service is called " + name);
}

}  // namespace ipodcomm::virtual_platform
