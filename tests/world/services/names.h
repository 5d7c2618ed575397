// SPDX-License-Identifier: MIT
// Names that are the same in every run: port1, event2, thread3.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "platform/services.h"

namespace ipodcomm::virtual_platform {

class Names {
 public:
  /// The next name of a kind, counted from 1.
  std::string Next(const std::string& kind);

  /// A handle keeps its name after it is closed: "port1 (closed)".
  void Opened(HANDLE handle, const std::string& name) { handles_[handle] = {name, true}; }
  void Closed(HANDLE handle) { handles_[handle].open = false; }
  std::string Of(HANDLE handle) const;
  /// The names of the handles that are open.
  std::vector<std::string> open() const;

  /// Names for threads still to be created: by their routine, or in the order of their creation.
  void NameRoutine(THREAD_START_ROUTINE* routine, const std::string& name);
  void NameThreads(const std::vector<std::string>& names);
  /// The name of the thread that is created now, the `number`th.
  std::string ForThread(THREAD_START_ROUTINE* routine, int number);

 private:
  struct Named {
    std::string name;
    bool open = false;
  };

  std::map<std::string, int> last_;
  std::map<HANDLE, Named> handles_;
  std::map<THREAD_START_ROUTINE*, std::string> routines_;
  std::map<std::string, int> routine_threads_;
  std::deque<std::string> thread_names_;
};

}  // namespace ipodcomm::virtual_platform
