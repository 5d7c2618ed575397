// SPDX-License-Identifier: MIT
// The Extended Interface's commands about the chapters of the current track.

#pragma once

#include "simulator/player/player.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Chapters {
 public:
  Chapters(Link* link, const Player* player) : link_(link), player_(player) {}

  bool Handle(const Request& request);

 private:
  void ReturnPlace(const Request& request);
  void ReturnName(const Request& request);
  std::size_t Count() const;
  std::size_t Current() const;

  Link* link_;
  const Player* player_;
};

}  // namespace ipodsim
