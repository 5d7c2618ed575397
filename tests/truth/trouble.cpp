// SPDX-License-Identifier: MIT
// The table of troubles.
#include "trouble.h"

namespace truth {

namespace {

using ipodsim::Fault;
using ipodsim::Settings;

template <Fault fault>
void Enable(Settings& settings) {
  settings.faults.Enable(fault);
}

constexpr bool kOnce = true;
constexpr bool kOften = false;
constexpr bool kCurable = true;
constexpr bool kFatal = false;

}  // namespace

const std::vector<Trouble>& AllTroubles() {
  static const std::vector<Trouble> kAll = {
      {"none"},
      {"late", Meddling::kLate},
      {"held-up", Meddling::kHeldUp},
      {"doubled", Meddling::kDoubled},
      {"repeated", Meddling::kRepeated},
      {"swapped", Meddling::kSwapped},
      {"missing", Meddling::kMissing},
      {"cut", Meddling::kCut},
      {"broken", Meddling::kBroken},
      {"junk", Meddling::kJunk},
      {"dropped-byte", Meddling::kDroppedByte},
      {"doubled-byte", Meddling::kDoubledByte},
      {"flipped-bit", Meddling::kFlippedBit},
      {"notification", Meddling::kNotification},
      {"state-change", Meddling::kStateChange},
      {"lost", Meddling::kLost},
      {"refused", Meddling::kRefused, kOnce, kFatal},
      {"refused-always", Meddling::kRefusedAlways, kOnce, kFatal},
      {"pending", Meddling::kPending},
      {"question", Meddling::kQuestion},
      {"restart", Meddling::kRestart, kOnce, kFatal},
      {"hang-up", Meddling::kHangUp, kOnce, kFatal},
      {"loopback", Meddling::kLoopback, kOnce, kFatal},
      {"slow", Meddling::kSlow, kOften},
      {"often-late", Meddling::kLate, kOften},
      {"often-doubled", Meddling::kDoubled, kOften},
      {"often-repeated", Meddling::kRepeated, kOften},
      {"often-swapped", Meddling::kSwapped, kOften},
      {"often-missing", Meddling::kMissing, kOften},
      {"often-cut", Meddling::kCut, kOften},
      {"often-asked", Meddling::kQuestion, kOften},
      {"often-notified", Meddling::kNotification, kOften},
      {"often-refused", Meddling::kRefused, kOften, kFatal},
      {"often-pending", Meddling::kPending, kOften},
      {"dropped-bytes", Meddling::kDroppedByte, kOften},
      {"doubled-bytes", Meddling::kDoubledByte, kOften},
      {"flipped-bits", Meddling::kFlippedBit, kOften},
      // The simulated iPod's own. Those that damage bytes are the three before: what damages them
      // here knows when the checksum holds all the same.
      {"late-bytes", Meddling::kNone, kOften, kCurable, Enable<Fault::kLateBytes>},
      {"split-bytes", Meddling::kNone, kOften, kCurable, Enable<Fault::kSplitBytes>},
      {"junk-bytes", Meddling::kNone, kOften, kCurable, Enable<Fault::kJunk>},
      {"refused-commands", Meddling::kNone, kOften, kFatal, Enable<Fault::kRefusedCommands>},
      {"pending-acks", Meddling::kNone, kOften, kCurable, Enable<Fault::kPendingAcks>},
      {"short-replies", Meddling::kNone, kOften, kCurable, Enable<Fault::kShortReplies>},
      {"long-replies", Meddling::kNone, kOften, kCurable, Enable<Fault::kLongReplies>},
      {"unasked-requests", Meddling::kNone, kOften, kCurable, Enable<Fault::kUnaskedRequests>},
      {"unplug", Meddling::kNone, kOnce, kFatal, Enable<Fault::kUnplug>},
      // Habits of iPods, with which everything comes right.
      {"wants-identifier", Meddling::kNone, kOnce, kCurable,
       [](Settings& settings) { settings.start_idps_needs_identifier = true; }},
      {"ignores-start", Meddling::kNone, kOnce, kCurable,
       [](Settings& settings) { settings.refuses_start_idps_silently = true; }},
      {"pending-mode", Meddling::kNone, kOnce, kCurable,
       [](Settings& settings) { settings.remote_ui_is_pending_first = true; }},
      {"keeps-identifiers", Meddling::kNone, kOnce, kCurable,
       [](Settings& settings) { settings.keeps_identifiers = true; }},
      {"sorted-only", Meddling::kNone, kOnce, kCurable,
       [](Settings& settings) { settings.refuses_select_record = true; }},
      {"large-frames", Meddling::kNone, kOnce, kCurable,
       [](Settings& settings) { settings.large_frames_only = true; }},
      {"asks-in-session", Meddling::kNone, kOnce, kCurable,
       [](Settings& settings) { settings.asks_during_session = true; }},
  };
  return kAll;
}

const Trouble* TroubleByName(const std::string& name) {
  for (const Trouble& trouble : AllTroubles()) {
    if (name == trouble.name) return &trouble;
  }
  return nullptr;
}

}  // namespace truth
