// SPDX-License-Identifier: MIT
// A text as the legacy interface writes it for a console's display: read when it is complete, or
// watched while it changes.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include "console/system.h"
#include "console/text.h"

namespace ipodctl {

/// Room for the longest text of any operation, empty at first.
class DisplayText {
 public:
  static constexpr int kCapacity = 256;

  wchar_t* buffer() { return buffer_.data(); }
  /// The text as it stands, in UTF-8.
  std::string text() const { return Utf8(buffer_.data()); }

 private:
  std::array<wchar_t, kCapacity + 1> buffer_{};
};

/// The same, shown as it changes while the library that writes it is at work.
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
