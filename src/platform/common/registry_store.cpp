// SPDX-License-Identifier: MIT
// A registry in memory: keys under one root, each with named values.
#include "platform/common/registry_store.h"

#include <algorithm>

#include "platform/common/fold_case.h"

namespace ipodcomm::platform {
namespace {

std::wstring Folded(const wchar_t* name) { return FoldCase(name != nullptr ? name : L""); }

}  // namespace

LSTATUS RegistryStore::CreateKey(HKEY parent, const wchar_t* sub_key, HKEY* result, bool* created) {
  if (result == nullptr) return ERROR_INVALID_PARAMETER;
  std::wstring path;
  if (!FindPath(parent, &path)) return ERROR_INVALID_HANDLE;
  const std::wstring below = Folded(sub_key);
  if (!below.empty()) path += L"\\" + below;
  const std::lock_guard lock(lock_);
  const HANDLE handle = open_keys_.Add(std::make_shared<OpenKey>(path));
  if (handle == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
  const bool is_new = keys_.find(path) == keys_.end();
  for (std::size_t end = path.find(L'\\', 1); end != std::wstring::npos;
       end = path.find(L'\\', end + 1)) {
    keys_[path.substr(0, end)];
  }
  keys_[path];
  if (created != nullptr) *created = is_new && !path.empty();
  *result = static_cast<HKEY>(handle);
  return ERROR_SUCCESS;
}

LSTATUS RegistryStore::QueryValue(HKEY key, const wchar_t* name, DWORD* type, BYTE* data,
                                  DWORD* size) {
  if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
  std::wstring path;
  if (!FindPath(key, &path)) return ERROR_INVALID_HANDLE;
  const std::lock_guard lock(lock_);
  const Values& values = keys_[path];
  const auto found = values.find(Folded(name));
  if (found == values.end()) return ERROR_FILE_NOT_FOUND;
  const Value& value = found->second;
  if (type != nullptr) *type = value.type;
  if (size == nullptr) return ERROR_SUCCESS;
  const DWORD room = *size;
  *size = value.data.size();
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < value.data.size()) return ERROR_MORE_DATA;
  std::copy(value.data.begin(), value.data.end(), data);
  return ERROR_SUCCESS;
}

LSTATUS RegistryStore::SetValue(HKEY key, const wchar_t* name, DWORD type, const BYTE* data,
                                DWORD size) {
  if (data == nullptr && size != 0) return ERROR_INVALID_PARAMETER;
  std::wstring path;
  if (!FindPath(key, &path)) return ERROR_INVALID_HANDLE;
  const std::lock_guard lock(lock_);
  keys_[path][Folded(name)] = {type, std::vector<BYTE>(data, data + size)};
  return ERROR_SUCCESS;
}

LSTATUS RegistryStore::CloseKey(HKEY key) {
  if (key == HKEY_LOCAL_MACHINE) return ERROR_SUCCESS;
  return open_keys_.Remove(key) != nullptr ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

bool RegistryStore::FindPath(HKEY key, std::wstring* path) const {
  if (key == HKEY_LOCAL_MACHINE) {
    path->clear();
    return true;
  }
  const auto open = open_keys_.FindAs<OpenKey>(key);
  if (open == nullptr) return false;
  *path = open->path;
  return true;
}

RegistryStore& Registry() {
  static auto* const registry = new RegistryStore;
  return *registry;
}

}  // namespace ipodcomm::platform
