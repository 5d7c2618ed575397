// SPDX-License-Identifier: MIT
// The services of version resources, and the memory that they are read into.
#include <cstring>

#include "platform/common/fold_case.h"
#include "platform/common/version_block.h"
#include "world/services/service.h"

using namespace ipodcomm::virtual_platform;

namespace {

VersionFile FindFile(const Service& call, const wchar_t* file) {
  const auto& files = call->version_files;
  const auto found = files.find(ipodcomm::platform::FoldCase(file != nullptr ? file : L""));
  if (found != files.end()) return found->second;
  VersionFile missing;
  missing.code = ERROR_FILE_NOT_FOUND;
  return missing;
}

}  // namespace

DWORD GetFileVersionInfoSizeW(const wchar_t* file, DWORD* handle) {
  Service call(ServiceId::kGetFileVersionInfoSizeW);
  call.Arguments([&] { return Quoted(file); });
  if (handle != nullptr) *handle = 0;
  const DWORD none = 0;
  if (call.ToldToFail()) return none;
  const VersionFile found = FindFile(call, file);
  if (found.code != ERROR_SUCCESS) return call.Fails(found.code, none);
  const DWORD size = found.block.size();
  return call.Returns(size, [&] { return Number(size); });
}

BOOL GetFileVersionInfoW(const wchar_t* file, DWORD /*handle*/, DWORD size, void* data) {
  Service call(ServiceId::kGetFileVersionInfoW);
  call.Arguments([&] { return List({Quoted(file), Number(size)}); });
  if (call.ToldToFail()) return FALSE;
  const VersionFile found = FindFile(call, file);
  if (found.code != ERROR_SUCCESS) return call.Fails(found.code, FALSE);
  if (data == nullptr) return call.Fails(ERROR_INVALID_PARAMETER, FALSE);
  if (size < found.block.size()) return call.Fails(ERROR_INSUFFICIENT_BUFFER, FALSE);
  std::memcpy(data, found.block.data(), found.block.size());
  CallerMemoryWritten(data, found.block.size());
  return call.Succeeds(ERROR_SUCCESS);
}

BOOL VerQueryValueW(const void* block, const wchar_t* sub_block, void** value, UINT* length) {
  Service call(ServiceId::kVerQueryValueW);
  call.Arguments([&] { return Quoted(sub_block); });
  if (call.ToldToFail()) return FALSE;
  ipodcomm::platform::VersionValue found;
  if (sub_block == nullptr || value == nullptr || length == nullptr ||
      !ipodcomm::platform::FindVersionValue(block, sub_block, &found)) {
    return call.Fails(ERROR_RESOURCE_TYPE_NOT_FOUND, FALSE);
  }
  // The signature is older than const; the text is not to be written to.
  *value = const_cast<void*>(found.data);
  *length = found.length;
  return call.Succeeds(ERROR_SUCCESS);
}

void* VirtualAlloc(void* address, std::size_t size, DWORD type, DWORD protection) {
  Service call(ServiceId::kVirtualAlloc);
  call.Arguments([&] { return Number(size); });
  void* const none = nullptr;
  if (call.ToldToFail()) return none;
  if (address != nullptr || size == 0 || type != MEM_COMMIT || protection != PAGE_READWRITE) {
    return call.Fails(ERROR_INVALID_PARAMETER, none);
  }
  void* block = call->pages.Allocate(size, true);
  if (block == nullptr) return call.Fails(ERROR_NOT_ENOUGH_MEMORY, none);
  return call.Returns(block, [&] { return call->pages.NameOf(block); });
}

BOOL VirtualFree(void* address, std::size_t size, DWORD type) {
  Service call(ServiceId::kVirtualFree);
  call.Arguments([&] { return call->pages.NameOf(address); });
  if (call.ToldToFail()) return FALSE;
  // A release is of the whole block and says so with a size of 0.
  const bool done = type == MEM_RELEASE && size == 0 && call->pages.Release(address);
  return call.Succeeds(done ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER);
}
