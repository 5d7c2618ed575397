// SPDX-License-Identifier: MIT
// The simulated iPod's public face.

#include "simulated_ipod.h"

#include "device.h"

namespace ipodsim {

SimulatedIpod::SimulatedIpod(Settings settings)
    : device_(std::make_unique<Device>(std::move(settings))) {}

SimulatedIpod::~SimulatedIpod() = default;

void SimulatedIpod::Receive(const std::uint8_t* bytes, std::size_t count, Microseconds now) {
  device_->Advance(now);
  if (device_->traits.echoes && device_->plugged) device_->link.Echo({bytes, bytes + count});
  for (std::size_t i = 0; i < count && device_->awake(); ++i) device_->reader.Feed(bytes[i], now);
  // What the commands did to the player is told from here on.
  device_->Advance(now);
}

void SimulatedIpod::LoseAccessory(Microseconds now) {
  device_->Advance(now);
  device_->questions.Stop();
}

std::optional<Microseconds> SimulatedIpod::NextEvent() const { return device_->NextEvent(); }

std::vector<std::uint8_t> SimulatedIpod::Transmit(Microseconds now) {
  device_->Advance(now);
  return device_->link.Transmit(now);
}

void SimulatedIpod::Finish(Microseconds now) {
  device_->Advance(now);
  device_->Finish();
}

const std::vector<Mistake>& SimulatedIpod::mistakes() const { return device_->link.mistakes(); }

void SimulatedIpod::set_trace(std::function<void(const TraceLine&)> trace) {
  device_->link.trace = std::move(trace);
}

bool SimulatedIpod::plugged() const { return device_->plugged; }

void SimulatedIpod::Unplug(Microseconds now) {
  device_->Advance(now);
  if (device_->plugged) device_->Unplug(std::nullopt);
}

void SimulatedIpod::Replug(Microseconds now) {
  device_->Advance(now);
  if (!device_->plugged) device_->Replug();
}

const Player& SimulatedIpod::player() const { return device_->player; }
bool SimulatedIpod::identified() const { return device_->identification.identified(); }
bool SimulatedIpod::identified_by_tokens() const { return device_->identification.by_tokens(); }
std::uint32_t SimulatedIpod::announced_lingoes() const {
  return device_->identification.announced();
}
bool SimulatedIpod::identifiers_on() const { return device_->link.identifiers_on(); }
std::uint8_t SimulatedIpod::preference(std::uint8_t preference_class) const {
  return device_->general.preference(preference_class);
}
std::uint8_t SimulatedIpod::ui_mode() const { return device_->general.ui_mode(); }
std::uint32_t SimulatedIpod::notification_mask() const { return device_->notifications.mask(); }
const std::vector<std::uint8_t>& SimulatedIpod::event_mask() const {
  return device_->general.events();
}

const std::vector<std::uint8_t>& SimulatedIpod::display_image() const {
  return device_->display.image();
}

std::vector<std::uint8_t> SimulatedIpod::accessory_information(std::uint8_t type) const {
  const auto& answers = device_->questions.answers();
  const auto found = answers.find(type);
  return found == answers.end() ? std::vector<std::uint8_t>{} : found->second;
}

const FeatureFiles& SimulatedIpod::feature_files() const { return device_->storage.files(); }
std::vector<std::string> SimulatedIpod::open_feature_files() const {
  return device_->storage.open_files();
}
std::uint64_t SimulatedIpod::free_space() const { return device_->storage.free_space(); }
const UserData& SimulatedIpod::user_data() const { return device_->sports.user_data(); }

const Settings& SimulatedIpod::settings() const { return device_->settings; }

}  // namespace ipodsim
