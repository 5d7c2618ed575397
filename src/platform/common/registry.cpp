// SPDX-License-Identifier: MIT
// The registry's services over the registry in memory.
#include <new>

#include "platform/common/registry_store.h"
#include "platform/services.h"

using ipodcomm::platform::Registry;

namespace {

// These services return their code and set none.
template <class Work>
LSTATUS CodeWithoutMemory(Work work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
  }
}

}  // namespace

LSTATUS RegCreateKeyExW(HKEY key, const wchar_t* sub_key, DWORD /*reserved*/,
                        wchar_t* /*key_class*/, DWORD /*options*/, DWORD /*access*/,
                        const SECURITY_ATTRIBUTES* /*security*/, HKEY* result, DWORD* disposition) {
  bool created = false;
  const LSTATUS status =
      CodeWithoutMemory([&] { return Registry().CreateKey(key, sub_key, result, &created); });
  if (status == ERROR_SUCCESS && disposition != nullptr) {
    *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
  }
  return status;
}

LSTATUS RegQueryValueExW(HKEY key, const wchar_t* name, DWORD* /*reserved*/, DWORD* type,
                         BYTE* data, DWORD* size) {
  return CodeWithoutMemory([&] { return Registry().QueryValue(key, name, type, data, size); });
}

LSTATUS RegSetValueExW(HKEY key, const wchar_t* name, DWORD /*reserved*/, DWORD type,
                       const BYTE* data, DWORD size) {
  return CodeWithoutMemory([&] { return Registry().SetValue(key, name, type, data, size); });
}

LSTATUS RegCloseKey(HKEY key) { return Registry().CloseKey(key); }
