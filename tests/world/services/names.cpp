// SPDX-License-Identifier: MIT
// Counts what is created.
#include "world/services/names.h"

namespace ipodcomm::virtual_platform {

std::string Names::Next(const std::string& kind) { return kind + std::to_string(++last_[kind]); }

std::string Names::Of(HANDLE handle) const {
  if (handle == nullptr) return "null";
  if (handle == INVALID_HANDLE_VALUE) return "invalid";
  const auto found = handles_.find(handle);
  if (found == handles_.end()) return "unknown";
  return found->second.open ? found->second.name : found->second.name + " (closed)";
}

std::vector<std::string> Names::open() const {
  std::vector<std::string> names;
  for (const auto& [handle, named] : handles_) {
    if (named.open) names.push_back(named.name);
  }
  return names;
}

void Names::NameRoutine(THREAD_START_ROUTINE* routine, const std::string& name) {
  routines_[routine] = name;
}

void Names::NameThreads(const std::vector<std::string>& names) {
  thread_names_.assign(names.begin(), names.end());
}

std::string Names::ForThread(THREAD_START_ROUTINE* routine, int number) {
  std::string name = "thread" + std::to_string(number);
  if (const auto found = routines_.find(routine); found != routines_.end()) {
    const int count = ++routine_threads_[found->second];
    name = count == 1 ? found->second : found->second + " " + std::to_string(count);
  } else if (!thread_names_.empty()) {
    name = thread_names_.front();
    thread_names_.pop_front();
  }
  return name;
}

}  // namespace ipodcomm::virtual_platform
