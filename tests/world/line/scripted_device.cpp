// SPDX-License-Identifier: MIT
// Sending on time and answering what was asked.
#include "world/line/scripted_device.h"

#include <algorithm>
#include <utility>

#include "world/threads/race_detector.h"

namespace ipodcomm::virtual_platform {
namespace {

bool EndsWith(const ScriptedDevice::Bytes& bytes, const ScriptedDevice::Bytes& end) {
  return bytes.size() >= end.size() && std::equal(end.rbegin(), end.rend(), bytes.rbegin());
}

}  // namespace

void ScriptedDevice::SendAt(std::int64_t time_us, const Bytes& bytes) {
  const Unwatched unwatched;
  outgoing_.emplace(time_us, bytes);
}

void ScriptedDevice::Answer(const Bytes& request, const Bytes& reply, std::int64_t delay_us) {
  const Unwatched unwatched;
  rules_.emplace(request.size(), Rule{request, reply, delay_us});
}

ScriptedDevice::Bytes ScriptedDevice::received() const {
  const Unwatched unwatched;
  Bytes bytes;
  for (const Arrival& arrival : arrivals_) bytes.push_back(arrival.byte);
  return bytes;
}

std::vector<Arrival> ScriptedDevice::arrivals() const {
  const Unwatched unwatched;
  return arrivals_;
}

void ScriptedDevice::ClearReceived() {
  const Unwatched unwatched;
  arrivals_.clear();
}

void ScriptedDevice::Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) {
  for (std::size_t i = 0; i < size; ++i) {
    arrivals_.push_back({now_us, data[i]});
    unanswered_.push_back(data[i]);
    AnswerIfAsked(now_us);
  }
}

void ScriptedDevice::AnswerIfAsked(std::int64_t now_us) {
  for (const auto& [size, rule] : rules_) {
    if (!EndsWith(unanswered_, rule.request)) continue;
    outgoing_.emplace(now_us + rule.delay_us, rule.reply);
    unanswered_.clear();
    return;
  }
}

std::optional<std::int64_t> ScriptedDevice::NextEvent() {
  if (outgoing_.empty()) return std::nullopt;
  return outgoing_.begin()->first;
}

ScriptedDevice::Bytes ScriptedDevice::Transmit(std::int64_t now_us) {
  Bytes bytes;
  while (!outgoing_.empty() && outgoing_.begin()->first <= now_us) {
    const Bytes& next = outgoing_.begin()->second;
    bytes.insert(bytes.end(), next.begin(), next.end());
    outgoing_.erase(outgoing_.begin());
  }
  return bytes;
}

}  // namespace ipodcomm::virtual_platform
