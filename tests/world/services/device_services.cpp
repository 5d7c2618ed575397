// SPDX-License-Identifier: MIT
// The services of the device manager and of the registry.
#include "platform/common/utf8.h"
#include "world/services/service.h"

using namespace ipodcomm::virtual_platform;

namespace {

std::string KeyName(HKEY key) {
  if (key == HKEY_LOCAL_MACHINE) return "HKEY_LOCAL_MACHINE";
  return key == nullptr ? "null" : "key";
}

LSTATUS Told(Service& call) {
  return call.Returns(static_cast<LSTATUS>(*call.failure()),
                      [&] { return "failed " + Number(*call.failure()); });
}

LSTATUS Result(Service& call, LSTATUS status) {
  return call.Returns(status, [&] { return Number(static_cast<unsigned long>(status)); });
}

std::string Value(DWORD type, const BYTE* data, DWORD size) {
  if (data == nullptr) return "null";
  if (type != REG_DWORD || size != 4) return Hex(data, size);
  const std::uint32_t value = static_cast<std::uint32_t>(data[0]) | (data[1] << 8U) |
                              (data[2] << 16U) | (static_cast<std::uint32_t>(data[3]) << 24U);
  return Number(value);
}

}  // namespace

HANDLE ActivateDevice(const wchar_t* driver, DWORD client_info) {
  Service call(ServiceId::kActivateDevice);
  call.Arguments([&] { return List({Quoted(driver), Number(client_info)}); });
  const HANDLE none = nullptr;
  if (call.ToldToFail()) return none;
  if (driver == nullptr || *driver == 0) return call.Fails(ERROR_INVALID_PARAMETER, none);
  const HANDLE handle = call->devices.Activate(ipodcomm::platform::WideToUtf8(driver), client_info,
                                               call->clock.now_us());
  return call.Returns(handle, [&] { return call->devices.NameOf(handle); });
}

BOOL DeactivateDevice(HANDLE device) {
  Service call(ServiceId::kDeactivateDevice);
  call.Arguments([&] { return call->devices.NameOf(device); });
  if (call.ToldToFail()) return FALSE;
  const bool done = call->devices.Deactivate(device, call->clock.now_us());
  return call.Succeeds(done ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
}

// Its only option keeps the key until the next restart; by default it stays.
LSTATUS RegCreateKeyExW(HKEY key, const wchar_t* sub_key, DWORD reserved, wchar_t* /*key_class*/,
                        DWORD options, DWORD /*access*/, const SECURITY_ATTRIBUTES* /*security*/,
                        HKEY* result, DWORD* disposition) {
  Service call(ServiceId::kRegCreateKeyExW);
  call.Arguments([&] {
    const std::string shown = List({KeyName(key), Quoted(sub_key)});
    return options == 0 ? shown : List({shown, "options " + Number(options)});
  });
  if (call.failure()) return Told(call);
  if (reserved != 0) return Result(call, ERROR_INVALID_PARAMETER);
  bool created = false;
  const LSTATUS status = call->registry.CreateKey(key, sub_key, result, &created);
  if (status == ERROR_SUCCESS && disposition != nullptr) {
    *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
  }
  return Result(call, status);
}

LSTATUS RegQueryValueExW(HKEY key, const wchar_t* name, DWORD* /*reserved*/, DWORD* type,
                         BYTE* data, DWORD* size) {
  Service call(ServiceId::kRegQueryValueExW);
  call.Arguments([&] { return List({KeyName(key), Quoted(name)}); });
  if (call.failure()) return Told(call);
  DWORD value_type = 0;
  const LSTATUS status = call->registry.QueryValue(key, name, &value_type, data, size);
  if (type != nullptr && status == ERROR_SUCCESS) *type = value_type;
  if (status != ERROR_SUCCESS || size == nullptr) return Result(call, status);
  return call.Returns(status, [&] { return Value(value_type, data, *size); });
}

LSTATUS RegSetValueExW(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size) {
  Service call(ServiceId::kRegSetValueExW);
  call.Arguments([&] { return List({KeyName(key), Quoted(name), Value(type, data, size)}); });
  if (call.failure()) return Told(call);
  if (reserved != 0) return Result(call, ERROR_INVALID_PARAMETER);
  return Result(call, call->registry.SetValue(key, name, type, data, size));
}

LSTATUS RegCloseKey(HKEY key) {
  Service call(ServiceId::kRegCloseKey);
  call.Arguments([&] { return KeyName(key); });
  if (call.failure()) return Told(call);
  return Result(call, call->registry.CloseKey(key));
}
