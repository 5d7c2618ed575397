// SPDX-License-Identifier: MIT
// Bytes in time between a port and a device.
#include "world/line/serial_line.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <utility>

#include "world/line/open_port.h"
#include "world/seed.h"
#include "world/threads/race_detector.h"

namespace ipodcomm::virtual_platform {

void SerialLine::Plug(SerialDevice& device) {
  const Unwatched unwatched;
  owned_device_.reset();
  device_ = &device;
}

void SerialLine::PlugOwned(std::unique_ptr<SerialDevice> device) {
  const Unwatched unwatched;
  owned_device_ = std::move(device);
  device_ = owned_device_.get();
}

void SerialLine::Unplug() {
  const Unwatched unwatched;
  device_ = nullptr;
  owned_device_.reset();
  delivery_.Cut();
  to_host_.Cut();
}

void SerialLine::Vanish() {
  const Unwatched unwatched;
  vanished_ = true;
  delivery_.Cut();
  to_host_.Cut();
  to_device_.Cut();
  if (port_ == nullptr) return;
  port_->LineChanged();
  if (tap_ == nullptr) return;
  tap_->Record(capture::Event::kStatus, RecordedTime(clock_), "the line is gone: No such device");
}

void SerialLine::Restore() {
  const Unwatched unwatched;
  vanished_ = false;
}

void SerialLine::SetSpeed(std::uint32_t baud, std::uint32_t bits_per_byte) {
  const Unwatched unwatched;
  to_host_.SetSpeed(baud, bits_per_byte);
  to_device_.SetSpeed(baud, bits_per_byte);
}

void SerialLine::NoteSettings(const DCB& settings) {
  if (tap_ == nullptr) return;
  tap_->Configure(settings.BaudRate, std::to_string(settings.BaudRate) + " baud",
                  RecordedTime(clock_));
}

void SerialLine::NoteByte(capture::Direction direction, std::uint8_t byte) {
  if (tap_ != nullptr) tap_->Record(direction, &byte, 1, RecordedTime(clock_));
}

void SerialLine::SetDelivery(Delivery::Manner manner) {
  const Unwatched unwatched;
  delivery_.Choose(manner);
}

std::int64_t SerialLine::NextEvent() {
  std::int64_t next_us =
      std::min({to_host_.NextArrival(), to_device_.NextArrival(), delivery_.NextEvent()});
  if (device_ != nullptr && !vanished_) {
    next_us = std::min(next_us, device_->NextEvent().value_or(kNever));
  }
  return next_us;
}

void SerialLine::RunUntil(std::int64_t now_us, Scheduler& scheduler) {
  constexpr int kMaxTurns = 1'000'000;
  for (int turn = 0; RunOnce(now_us, scheduler); ++turn) {
    if (turn == kMaxTurns) throw std::logic_error("a serial device never stops wanting to act");
  }
}

bool SerialLine::RunOnce(std::int64_t now_us, Scheduler& scheduler) {
  std::uint8_t byte = 0;
  if (to_device_.NextArrival() <= now_us) {
    const bool arrived = to_device_.PopArrival(&byte);
    if (arrived && device_ != nullptr) device_->Receive(&byte, 1, now_us);
    if (port_ != nullptr) scheduler.WakeAll(*port_);
    return true;
  }
  if (to_host_.NextArrival() <= now_us) {
    const bool arrived = to_host_.PopArrival(&byte);
    if (arrived && port_ != nullptr) port_->ByteArrived(byte);
    return true;
  }
  if (delivery_.NextEvent() <= now_us) {
    for (const std::uint8_t sent : delivery_.PopPiece()) to_host_.Send(sent, now_us);
    return true;
  }
  if (device_ == nullptr || vanished_) return false;
  if (device_->NextEvent().value_or(kNever) > now_us) return false;
  delivery_.Add(device_->Transmit(now_us), now_us);
  return true;
}

namespace {

std::string Normal(const std::string& name) {
  std::string normal;
  for (const char character : name) {
    normal += static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  }
  if (!normal.empty() && normal.back() == ':') normal.pop_back();
  return normal;
}

}  // namespace

SerialLine& SerialLines::Get(const std::string& name) {
  std::unique_ptr<SerialLine>& line = lines_[Normal(name)];
  if (line == nullptr) {
    line = std::make_unique<SerialLine>(clock_, recording_.Tap(name));
    line->to_host().SetSeed(Draw(seed_, Purpose::kNoise, 2 * lines_.size()));
    line->to_device().SetSeed(Draw(seed_, Purpose::kNoise, 2 * lines_.size() + 1));
  }
  return *line;
}

SerialLine* SerialLines::Find(const std::string& name) const {
  const auto found = lines_.find(Normal(name));
  return found != lines_.end() ? found->second.get() : nullptr;
}

std::int64_t SerialLines::NextEvent() {
  std::int64_t next_us = kNever;
  for (const auto& [name, line] : lines_) next_us = std::min(next_us, line->NextEvent());
  return next_us;
}

void SerialLines::RunUntil(std::int64_t now_us) {
  for (const auto& [name, line] : lines_) line->RunUntil(now_us, *scheduler_);
}

}  // namespace ipodcomm::virtual_platform
