// SPDX-License-Identifier: MIT
// The calls on the seam, written down.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "world/services/service_list.h"

namespace ipodcomm::virtual_platform {

/// One call. Arguments and result are rendered as text, the same in every run:
///
///   CreateFileW("COM2:")                  port1
///   WriteFile(port1, FF 55 02 00 13 EB)   6
///   ReadFile(port1, 1)                    55           the bytes read; "nothing" for an empty read
///   EnterCriticalSection(section3)                     no result
///   SetCommMask(port1 (closed), 3)        failed 6     with the code
struct Call {
  std::string thread;
  std::string service;
  std::string text;
  std::string result;
  std::int64_t start_us = 0;
  std::int64_t end_us = 0;
  bool finished = false;
};

/// Calls in the order in which they began. Filters return what they leave.
class Calls {
 public:
  Calls() = default;
  explicit Calls(std::vector<Call> calls) : calls_(std::move(calls)) {}

  Calls Of(const std::string& thread) const;
  Calls To(const std::set<std::string>& services) const;

  // By value from a temporary, so that a loop over `world.DrainCalls().all()` is safe.
  const std::vector<Call>& all() const& { return calls_; }
  std::vector<Call> all() && { return std::move(calls_); }
  /// "Sleep(20)"
  std::vector<std::string> text() const;
  /// "ReadFile(port1, 1) = 55"
  std::vector<std::string> text_with_results() const;
  /// "20000 Sleep(20)", with the time of the call's start in microseconds
  std::vector<std::string> text_with_times() const;

 private:
  std::vector<Call> calls_;
};

class Recorder {
 public:
  /// Begins to record the given services, all when none is given.
  void Start(const std::vector<std::string>& services);
  void Stop() { recorded_.clear(); }
  bool Records(ServiceId service) const { return recorded_.count(service) != 0; }

  /// Notes a call that begins; the number by which it can be finished.
  std::size_t Begin(Call call);
  void Finish(std::size_t number, std::string result, std::int64_t now_us);

  Calls calls() const { return Calls(calls_); }
  /// Returns the record and starts an empty one. Calls in progress stay unfinished in what was
  /// returned.
  Calls Drain();

 private:
  std::set<ServiceId> recorded_;
  std::vector<Call> calls_;
  std::size_t drained_ = 0;
};

}  // namespace ipodcomm::virtual_platform
