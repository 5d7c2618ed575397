// SPDX-License-Identifier: MIT
// Where a scenario plays: a world, the simulated iPod on a cable, and the host's objects.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "cable.h"
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"
#include "simulator/simulated_ipod.h"
#include "world/memory_shortage.h"
#include "world/world.h"

namespace reliability {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::Schedule;
using ipodcomm::virtual_platform::World;

using ipodcomm::virtual_platform::EnoughMemory;

/// An object of the host's. It has memory for it; what the object itself asks for may run out.
template <class T, class... Arguments>
std::unique_ptr<T> Make(Arguments&&... arguments) {
  void* place = nullptr;
  {
    const EnoughMemory enough;
    place = ::operator new(sizeof(T));
  }
  return std::unique_ptr<T>(new (place) T(std::forward<Arguments>(arguments)...));
}

/// Ends a scenario between two calls of the host.
struct Enough {};

struct StageOptions {
  std::uint64_t seed = 1;  ///< of the iPod's times, the tick count and the conduct
  std::unique_ptr<Schedule> schedule;
  /// Whether everything is in order, so that each result has to be right. Else only what holds
  /// whatever fails is judged.
  bool sound = true;
  bool pauses = false;            ///< threads lose their processor, which counts into every time
  unsigned calls_before_end = 0;  ///< of the host; then the scenario ends. 0: as many as it has
};

class Stage {
 public:
  Stage(const ipodsim::Settings& settings, StageOptions options);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  World& world() { return world_; }
  ipodsim::SimulatedIpod& ipod() { return ipod_; }
  Cable& cable() { return cable_; }

  /// A session, docked and open under the conduct that the seed chose.
  void Dock();
  /// The same, identified by tokens.
  void DockIdentified();
  /// Whether the conduct is a robust one.
  bool tells_answers_apart() const;
  /// A legacy interface, with its port open.
  void DockLegacy();
  /// For the host's next call. Throws Enough when it has made as many as it was to make.
  CIpodComm& session();
  ::ipod& legacy();
  /// The host may go on after Enough.
  void EndLimit() { limited_ = false; }
  std::unique_ptr<CIpodComm>& owned_session() { return session_; }
  std::unique_ptr<::ipod>& owned_legacy() { return legacy_; }

  /// What has to hold while everything is in order.
  void Expect(bool holds, const char* what);
  /// What has to hold whatever fails.
  void Demand(bool holds, std::string_view what);
  bool sound() const { return sound_; }
  void SetSound(bool sound) { sound_ = sound; }
  const std::string& wrong() const { return wrong_; }

  /// Whether a command is answered, and rightly, within its time-out and one retry.
  bool Works();
  /// What the session asked last and was answered, it asked once.
  void ExpectOneAttempt();
  /// What was given back twice, or nothing. A copy gives back what its source has, as it always
  /// did: after Copied nothing is judged.
  std::string GivenBackTwice();
  void Copied() { copied_ = true; }
  /// Destroys what the host has, which is quick. Nothing then stays open but the ended read
  /// thread's handle.
  void DestroyQuickly();
  /// The tick count has wrapped since the stage was set.
  bool wrapped() const;
  bool began_before_wrap() const;

 private:
  std::uint64_t seed_;
  bool sound_;
  bool pauses_;
  unsigned calls_left_;
  bool limited_;
  std::uint32_t tick_start_;
  ipodsim::SimulatedIpod ipod_;
  Cable cable_;
  World world_;
  std::unique_ptr<CIpodComm> session_;
  std::unique_ptr<::ipod> legacy_;
  bool copied_ = false;
  std::string wrong_;

  void CountCall();
  bool TellsName();
  bool LegacyTellsName();
};

}  // namespace reliability
