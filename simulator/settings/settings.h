// SPDX-License-Identifier: MIT
// What a simulated iPod is made with.

#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "ipod_faults.h"
#include "profile.h"
#include "simulator/base/clock.h"
#include "simulator/media/library.h"
#include "workout_settings.h"

namespace ipodsim {

/// The switches are habits in which real iPods differ; each default is the commonest. Most have a
/// name in habits.h.
struct Settings {
  Profile profile = Profile::kNano;
  std::uint64_t seed = 1;
  Library library = Library::Default();
  Faults faults;
  SportsSettings sports;
  StorageSettings storage;

  // ---- Identification

  /// StartIDPS must carry a transaction identifier already; without one it is met with silence.
  bool start_idps_needs_identifier = false;
  /// A device without token identification ignores StartIDPS instead of refusing it (status 4).
  bool refuses_start_idps_silently = false;
  /// IdentifyDeviceLingoes leaves transaction identifiers on.
  bool keeps_identifiers = false;

  // ---- Commands

  /// Entering the remote user interface is first acknowledged as pending (status 6 and a time),
  /// then for good.
  bool remote_ui_is_pending_first = true;
  /// SelectDBRecord is refused; the accessory has to fall back on SelectSortDBRecord.
  bool refuses_select_record = false;
  /// A selected track is acknowledged, but the player stays paused where it is.
  bool stays_paused = false;
  /// GetTrackArtworkTimes under the number that it has in the Display Remote lingo is refused.
  bool refuses_misnumbered_artwork_times = false;
  /// Commands, by lingo and number, that are refused and not carried out, and with which status.
  std::map<std::pair<std::uint8_t, std::uint16_t>, AckStatus> refused;
  /// Every frame goes out in the large form.
  bool large_frames_only = false;

  // ---- Questions to the accessory

  /// The accessory is asked about itself once it has identified.
  bool asks_accessory = true;
  /// So is one that began with the oldest identification. Such a console hears a question only
  /// while it waits for a frame of another lingo than the Extended Interface; at any other time the
  /// question spoils its exchange.
  bool asks_oldest_accessories = false;
  /// It asks about the Sports and the Storage lingo again when the accessory asks for its own
  /// capabilities there, before it answers: version and capabilities, and capabilities. A console
  /// that counts its answers into its identifiers then no longer knows the one it waits for.
  bool asks_during_session = false;

  // ---- Times

  /// Answers come after 8 ms (median), 15 ms (95 %), 240 ms at the longest, drawn from the seed, or
  /// always after this time.
  std::optional<Microseconds> fixed_latency;
  Microseconds record_period = 1500;                  // between streamed database records
  Microseconds position_period = 500 * kMillisecond;  // between position notifications
  Microseconds pending_time = 200 * kMillisecond;     // from a pending answer to the final one
  Microseconds answer_timeout = 3 * kSecond;          // for the accessory to answer a request

  // ---- What it says it is

  /// Instead of the profile's and the library's. Accessories tell iPods apart by the upper half of
  /// the model id: some sort by name where it is 0x0010 and take 0x0014 and 0x0017 for iPods that
  /// take workouts.
  std::optional<std::uint32_t> model_id;
  std::string model_number;
  std::string name;
};

}  // namespace ipodsim
