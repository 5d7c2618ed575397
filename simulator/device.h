// SPDX-License-Identifier: MIT
// What a simulated iPod is made of: the link, the subjects that serve commands, and who gets which.

#pragma once

#include "simulated_ipod.h"
#include "simulator/lingoes/artwork.h"
#include "simulator/lingoes/browsing.h"
#include "simulator/lingoes/chapters.h"
#include "simulator/lingoes/display.h"
#include "simulator/lingoes/general.h"
#include "simulator/lingoes/identification.h"
#include "simulator/lingoes/order.h"
#include "simulator/lingoes/playback.h"
#include "simulator/lingoes/questions.h"
#include "simulator/lingoes/remotes.h"
#include "simulator/lingoes/sports.h"
#include "simulator/lingoes/storage.h"
#include "simulator/wire/frame.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class SimulatedIpod::Device {
 public:
  explicit Device(Settings given);

  void Advance(Microseconds now);
  std::optional<Microseconds> NextEvent() const;
  /// Nothing more will come.
  void Finish();
  /// Out of the dock, until Replug when no time is given.
  void Unplug(std::optional<Microseconds> until);
  void Replug();
  /// Whether it hears and speaks: in the dock, and not restarting.
  bool awake() const { return plugged && !restarting_; }

  const Settings settings;
  const Traits& traits;
  Link link;
  Player player;
  Questions questions;
  Identification identification;
  General general;
  Order order;
  Browsing browsing;
  Notifications notifications;
  Playback playback;
  Remotes remotes;
  Artwork artwork;
  Chapters chapters;
  Display display;
  Sports sports;
  Storage storage;
  FrameReader reader;
  bool plugged = true;

 private:
  void OnFrame(const Frame& frame);
  bool ParseIdentifier(Request* request);
  bool CheckSize(const Request& request);
  bool IsStoppedByFault(const Request& request);
  bool IsRefused(const Request& request);
  void EndSession();
  void Serve(const Request& request);
  void CountDown();
  void DrawCountdown();
  void Restart(Microseconds until);
  void Forget(const char* why);
  bool IsUnheard(const Request& request) const;

  std::optional<Microseconds> awake_at_;  // plugged in again, or up again
  bool restarting_ = false;
  std::uint32_t frames_left_ = 0;  // until it is pulled, restarts or hangs up
};

}  // namespace ipodsim
