// SPDX-License-Identifier: MIT
// Keeps and filters the calls.
#include "world/services/recorder.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ipodcomm::virtual_platform {
namespace {

template <class Keep>
Calls Filter(const std::vector<Call>& calls, Keep keep) {
  std::vector<Call> kept;
  std::copy_if(calls.begin(), calls.end(), std::back_inserter(kept), keep);
  return Calls(std::move(kept));
}

template <class Render>
std::vector<std::string> Rendered(const std::vector<Call>& calls, Render render) {
  std::vector<std::string> lines;
  std::transform(calls.begin(), calls.end(), std::back_inserter(lines), render);
  return lines;
}

}  // namespace

Calls Calls::Of(const std::string& thread) const {
  return Filter(calls_, [&](const Call& call) { return call.thread == thread; });
}

Calls Calls::To(const std::set<std::string>& services) const {
  for (const std::string& service : services) ServiceNamed(service);
  return Filter(calls_, [&](const Call& call) { return services.count(call.service) != 0; });
}

std::vector<std::string> Calls::text() const {
  return Rendered(calls_, [](const Call& call) { return call.text; });
}

std::vector<std::string> Calls::text_with_results() const {
  return Rendered(calls_, [](const Call& call) {
    return call.result.empty() ? call.text : call.text + " = " + call.result;
  });
}

std::vector<std::string> Calls::text_with_times() const {
  return Rendered(calls_,
                  [](const Call& call) { return std::to_string(call.start_us) + " " + call.text; });
}

void Recorder::Start(const std::vector<std::string>& services) {
  recorded_.clear();
  for (const std::string& service : services) recorded_.insert(ServiceNamed(service));
  if (!services.empty()) return;
  for (std::size_t i = 0; i < kServiceCount; ++i) recorded_.insert(static_cast<ServiceId>(i));
}

std::size_t Recorder::Begin(Call call) {
  calls_.push_back(std::move(call));
  return drained_ + calls_.size() - 1;
}

void Recorder::Finish(std::size_t number, std::string result, std::int64_t now_us) {
  if (number < drained_) return;
  Call& call = calls_[number - drained_];
  call.result = std::move(result);
  call.end_us = now_us;
  call.finished = true;
}

Calls Recorder::Drain() {
  drained_ += calls_.size();
  return Calls(std::exchange(calls_, {}));
}

}  // namespace ipodcomm::virtual_platform
