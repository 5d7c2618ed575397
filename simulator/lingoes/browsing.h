// SPDX-License-Identifier: MIT
// The Extended Interface's commands that walk the database.

#pragma once

#include "simulator/media/database.h"
#include "simulator/player/player.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Browsing {
 public:
  Browsing(Link* link, Player* player, const Settings& settings);

  bool Handle(const Request& request);
  void Forget() { database_.Reset(Hierarchy::kAudio); }

 private:
  void ResetHierarchy(const Request& request);
  void Count(const Request& request);
  void Retrieve(const Request& request);
  void Select(const Request& request);
  void ReturnTrackInfo(const Request& request);
  void PlaySelection(const Request& request);
  void Play(const Request& request, std::uint32_t index);
  bool CheckCategory(const Request& request);
  void RefuseIndex(const Request& request, std::uint32_t index, std::uint32_t count);

  Link* link_;
  Player* player_;
  const Settings& settings_;
  const Traits& traits_;
  Database database_;
};

}  // namespace ipodsim
