// SPDX-License-Identifier: MIT
// What goes wrong in a run: one trouble, struck once at a place or again and again.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "simulator/settings/settings.h"

namespace truth {

/// What the dock does to the frames that pass it.
enum class Meddling {
  kNone,
  // To a frame from the iPod.
  kLate,          // it comes a second and more later; what follows is not held up
  kHeldUp,        // it and all that follows come later
  kDoubled,       // it comes twice
  kRepeated,      // it comes once more behind the next request
  kSwapped,       // the one after it comes first
  kMissing,       // it does not come
  kCut,           // its last bytes are missing, inside a good frame
  kBroken,        // its last bytes do not come
  kJunk,          // bytes that are no frame come before it
  kDroppedByte,   // one of its bytes is lost
  kDoubledByte,   // one of its bytes comes twice
  kFlippedBit,    // one of its bits is wrong
  kNotification,  // the iPod tells that its player changed, before it
  kStateChange,   // the iPod tells that it has woken, before it
  // To a frame from the accessory.
  kLost,           // it does not arrive
  kRefused,        // it is refused and not carried out
  kRefusedAlways,  // so is every other of its command
  kPending,        // it is acknowledged as pending before its answer
  kQuestion,       // the iPod asks something in between
  kInterrupt,      // the user presses Ctrl-C as it passes
  // To the iPod.
  kRestart,   // it is away for a second and a half and has forgotten the accessory
  kHangUp,    // it says nothing any more
  kLoopback,  // what the accessory sends comes back, and there is no iPod
  kSlow,      // every answer comes 300 ms later
};

struct Trouble {
  std::string name;
  Meddling meddling = Meddling::kNone;
  /// At one place, or else at one frame in eight.
  bool once = true;
  /// Whether a robust accessory can come to the right result all the same.
  bool curable = true;
  /// Sets the simulated iPod's own switches; empty where there is nothing to set.
  std::function<void(ipodsim::Settings& settings)> set = nullptr;
};

const std::vector<Trouble>& AllTroubles();
/// Null when there is none of this name.
const Trouble* TroubleByName(const std::string& name);

}  // namespace truth
