// SPDX-License-Identifier: MIT
// An iPod in software: bytes in, bytes out, and a clock that is handed in.
//
// It does no I/O, starts no thread and looks at no clock. Whoever owns it gives it the bytes that
// the accessory wrote, asks when it next has something to say, and reads what it says then:
//
//   ipod.Receive(bytes, count, now);
//   if (auto next = ipod.NextEvent()) ... at *next: Write(ipod.Transmit(*next));
//
// Time never runs backwards. The same settings and the same calls give the same bytes.

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/files/feature_files.h"
#include "simulator/player/player.h"
#include "simulator/settings/settings.h"
#include "simulator/wire/mistakes.h"
#include "simulator/wire/trace.h"

namespace ipodsim {

class SimulatedIpod {
 public:
  explicit SimulatedIpod(Settings settings);
  ~SimulatedIpod();
  SimulatedIpod(const SimulatedIpod&) = delete;
  SimulatedIpod& operator=(const SimulatedIpod&) = delete;

  /// What the accessory wrote.
  void Receive(const std::uint8_t* bytes, std::size_t count, Microseconds now);
  /// When Transmit has something to do next, if ever. It may then still return nothing.
  std::optional<Microseconds> NextEvent() const;
  /// The bytes due by now.
  std::vector<std::uint8_t> Transmit(Microseconds now);
  /// Nobody listens any more, though the iPod stays in the dock: what was not answered is not
  /// missed then, and no more is asked before the next identification.
  void LoseAccessory(Microseconds now);
  /// Nothing more will come: a frame that has begun and not ended is a mistake, and so are a
  /// question without an answer and a file that is open.
  void Finish(Microseconds now);

  /// Protocol mistakes of the accessory, in the order in which they were made.
  const std::vector<Mistake>& mistakes() const;
  /// Called with each frame, either way, and each mistake, decoded to one readable line.
  void set_trace(std::function<void(const TraceLine&)> trace);

  /// Out of the dock it hears nothing, says nothing, and forgets the accessory.
  bool plugged() const;
  void Unplug(Microseconds now);
  void Replug(Microseconds now);

  /// State for tests and front ends to look at.
  const Player& player() const;
  bool identified() const;
  bool identified_by_tokens() const;
  std::uint32_t announced_lingoes() const;  // one bit per lingo
  bool identifiers_on() const;
  std::uint8_t preference(std::uint8_t preference_class) const;
  std::uint8_t ui_mode() const;
  std::uint32_t notification_mask() const;
  const std::vector<std::uint8_t>& event_mask() const;
  /// The accessory's picture on the display; empty when there is none.
  const std::vector<std::uint8_t>& display_image() const;
  /// What the accessory answered about itself, by information type; empty when it has not.
  std::vector<std::uint8_t> accessory_information(std::uint8_t type) const;
  /// The files that accessories wrote, and which of them are open.
  const FeatureFiles& feature_files() const;
  std::vector<std::string> open_feature_files() const;
  std::uint64_t free_space() const;  // in bytes
  const UserData& user_data() const;
  const Settings& settings() const;

 private:
  class Device;
  std::unique_ptr<Device> device_;
};

}  // namespace ipodsim
