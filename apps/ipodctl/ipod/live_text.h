// SPDX-License-Identifier: MIT
// A display text shown as it changes, while the library that writes it is at work.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include "console/watched_memory.h"

namespace ipodctl {

class LiveText {
 public:
  /// @param show called with each new text, in UTF-8, from a thread of its own. A text that stands
  ///   for less than about 20 ms may be missed.
  explicit LiveText(std::function<void(const std::string&)> show);
  ~LiveText();
  LiveText(const LiveText&) = delete;
  LiveText& operator=(const LiveText&) = delete;

  /// Room for the longest text of any operation, empty at first.
  wchar_t* buffer() const { return static_cast<wchar_t*>(memory_.written()); }
  /// The text as it stands. For the thread that writes it.
  std::string text() const;

 private:
  void Watch();
  std::wstring Look() const;

  WatchedMemory memory_;
  std::function<void(const std::string&)> show_;
  std::atomic<bool> ending_{false};
  std::thread watcher_;
};

}  // namespace ipodctl
