// SPDX-License-Identifier: MIT
// The world's lines, faults, record and the rest of its platform.
#include <cstring>

#include "platform/common/fold_case.h"
#include "platform/common/pe_file.h"
#include "platform/common/version_block.h"
#include "world/services/version_resource.h"
#include "world/threads/race_detector.h"
#include "world/world.h"
#include "world/world_state.h"

namespace ipodcomm::virtual_platform {

SerialLine& World::line(const std::string& port) {
  const Unwatched unwatched;
  return state_->lines.Get(port);
}

void World::FailOnce(const std::string& service, unsigned nth, DWORD code,
                     const std::string& thread) {
  const Unwatched unwatched;
  state_->faults.Add({ServiceNamed(service), nth, code, false, thread});
}

void World::FailFrom(const std::string& service, unsigned nth, DWORD code,
                     const std::string& thread) {
  const Unwatched unwatched;
  state_->faults.Add({ServiceNamed(service), nth, code, true, thread});
}

void World::ClearFaults() {
  const Unwatched unwatched;
  state_->faults.Clear();
}

unsigned World::call_count(const std::string& service) const {
  const Unwatched unwatched;
  return state_->faults.calls(ServiceNamed(service));
}

void World::Record(const std::vector<std::string>& services) {
  const Unwatched unwatched;
  state_->recorder.Start(services);
}

void World::StopRecording() {
  const Unwatched unwatched;
  state_->recorder.Stop();
}

Calls World::calls() const {
  const Unwatched unwatched;
  return state_->recorder.calls();
}

Calls World::DrainCalls() {
  const Unwatched unwatched;
  return state_->recorder.Drain();
}

std::vector<std::string> World::DrainRecord() { return DrainCalls().text(); }

void World::SetRegistryValue(const std::wstring& key, const std::wstring& name,
                             std::uint32_t value) {
  const Unwatched unwatched;
  HKEY opened = nullptr;
  bool created = false;
  state_->registry.CreateKey(HKEY_LOCAL_MACHINE, key.c_str(), &opened, &created);
  BYTE data[sizeof value];
  std::memcpy(data, &value, sizeof value);
  state_->registry.SetValue(opened, name.c_str(), REG_DWORD, data, sizeof data);
  state_->registry.CloseKey(opened);
}

std::optional<std::uint32_t> World::RegistryValue(const std::wstring& key,
                                                  const std::wstring& name) {
  const Unwatched unwatched;
  HKEY opened = nullptr;
  bool created = false;
  state_->registry.CreateKey(HKEY_LOCAL_MACHINE, key.c_str(), &opened, &created);
  std::uint32_t value = 0;
  BYTE data[sizeof value];
  DWORD size = sizeof data;
  DWORD type = 0;
  const LSTATUS status = state_->registry.QueryValue(opened, name.c_str(), &type, data, &size);
  state_->registry.CloseKey(opened);
  if (status != ERROR_SUCCESS || type != REG_DWORD) return std::nullopt;
  std::memcpy(&value, data, sizeof value);
  return value;
}

std::vector<DriverInstance> World::drivers() const {
  const Unwatched unwatched;
  return state_->devices.instances();
}

HANDLE World::ActivateDriver(const std::string& driver, DWORD client_info) {
  const Unwatched unwatched;
  return state_->devices.Activate(driver, client_info, state_->clock.now_us());
}

void World::SetFileVersion(const std::wstring& file, const std::wstring& file_version) {
  const Unwatched unwatched;
  const std::wstring name = platform::FoldCase(file);
  if (file_version.empty()) {
    state_->version_files.erase(name);
  } else {
    const auto block = platform::MakeVersionBlock(MakeVersionResource(file_version));
    state_->version_files[name] = {ERROR_SUCCESS, block};
  }
}

void World::PlaceFile(const std::wstring& file, const std::vector<std::uint8_t>& contents) {
  const Unwatched unwatched;
  const auto read = [&](std::uint64_t offset, void* buffer, std::size_t size) {
    if (offset > contents.size() || size > contents.size() - offset) return false;
    if (size > 0) std::memcpy(buffer, contents.data() + offset, size);
    return true;
  };
  std::vector<std::uint8_t> resource;
  VersionFile placed;
  placed.code = platform::ReadVersionResource(read, &resource);
  if (placed.code == ERROR_SUCCESS) placed.block = platform::MakeVersionBlock(resource);
  if (placed.code == ERROR_SUCCESS && placed.block.empty()) {
    placed.code = ERROR_RESOURCE_DATA_NOT_FOUND;
  }
  state_->version_files[platform::FoldCase(file)] = placed;
}

std::vector<std::string> World::debug_output() const {
  const Unwatched unwatched;
  return state_->debug_output;
}

std::vector<std::string> World::leftovers() const {
  const Unwatched unwatched;
  std::vector<std::string> names = state_->names.open();
  for (const auto& more : {state_->sections.names(), state_->heap.names(), state_->pages.names()}) {
    names.insert(names.end(), more.begin(), more.end());
  }
  return names;
}

std::vector<std::string> World::given_back_twice() const {
  const Unwatched unwatched;
  return state_->given_back_twice;
}

}  // namespace ipodcomm::virtual_platform
