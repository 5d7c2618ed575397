// SPDX-License-Identifier: MIT
// A registry in memory: keys under one root, each with named values.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/common/handle_table.h"
#include "platform/services.h"

namespace ipodcomm::platform {

/// Keys and values are found whatever the case of their names. It starts empty and is gone with the
/// process. Members may be called from any thread and return the registry's codes.
class RegistryStore {
 public:
  /// Opens or creates the key `sub_key` ("A\B\C", every level is created) below `parent`, which is
  /// HKEY_LOCAL_MACHINE or an open key. An empty or null `sub_key` opens `parent` once more.
  LSTATUS CreateKey(HKEY parent, const wchar_t* sub_key, HKEY* result, bool* created);
  /// Reads a value. `size` gives the room at `data` and receives the value's size; with a null
  /// `data` only the size is told. 234 when the room is too small.
  LSTATUS QueryValue(HKEY key, const wchar_t* name, DWORD* type, BYTE* data, DWORD* size);
  LSTATUS SetValue(HKEY key, const wchar_t* name, DWORD type, const BYTE* data, DWORD size);
  LSTATUS CloseKey(HKEY key);

 private:
  struct Value {
    DWORD type;
    std::vector<BYTE> data;
  };
  using Values = std::map<std::wstring, Value>;
  struct OpenKey : Object {
    explicit OpenKey(std::wstring key_path) : path(std::move(key_path)) {}
    const std::wstring path;
  };

  bool FindPath(HKEY key, std::wstring* path) const;

  std::mutex lock_;
  std::map<std::wstring, Values> keys_;  // by path, in lower case
  HandleTable open_keys_;
};

/// The process's registry, the one that the Reg services use.
RegistryStore& Registry();

}  // namespace ipodcomm::platform
