// SPDX-License-Identifier: MIT
// Counts calls against the switches.
#include "world/services/failing_services.h"

#include <stdexcept>

namespace ipodcomm::virtual_platform {
namespace {

// These return nothing that could say so, or are promised to work.
bool CanFail(ServiceId service) {
  switch (service) {
    case ServiceId::kInitializeCriticalSection:
    case ServiceId::kEnterCriticalSection:
    case ServiceId::kLeaveCriticalSection:
    case ServiceId::kDeleteCriticalSection:
    case ServiceId::kSleep:
    case ServiceId::kGetTickCount:
    case ServiceId::klstrcmpW:
    case ServiceId::kNKDbgPrintfW:
      return false;
    default:
      return true;
  }
}

}  // namespace

void Faults::Add(const Fault& fault) {
  if (!CanFail(fault.service)) {
    throw std::invalid_argument(std::string(ServiceName(fault.service)) + " cannot fail");
  }
  switches_.push_back({fault, 0});
}

std::optional<DWORD> Faults::Count(ServiceId service, const std::string& thread) {
  ++calls_[static_cast<std::size_t>(service)];
  std::optional<DWORD> code;
  for (Switch& entry : switches_) {
    const Fault& fault = entry.fault;
    if (fault.service != service || (!fault.thread.empty() && fault.thread != thread)) continue;
    ++entry.seen;
    if (entry.seen == fault.nth || (fault.for_ever && entry.seen > fault.nth)) code = fault.code;
  }
  return code;
}

}  // namespace ipodcomm::virtual_platform
