// SPDX-License-Identifier: MIT
// The kinds of iPod that can be put into the dock, and what tells them apart on the wire.

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace ipodsim {

enum class Profile {
  kNano,      // token identification, Sports and Storage
  kClassic,   // no token identification
  kOld,       // lingo versions from before what an accessory needs
  kNoSports,  // token identification, neither Sports nor Storage
  kSilent,    // takes everything, says nothing
  kStrict,    // token identification, and transaction identifiers from the first frame on
  kEcho,      // no iPod at all: the line is wired back to itself
};

struct Version {
  std::uint8_t major = 0;
  std::uint8_t minor = 0;
};

struct LingoSupport {
  std::uint8_t lingo;
  Version version;
  std::uint8_t options;  // last byte of the lingo's option bits
};

/// The facts of one kind of iPod.
struct Traits {
  Profile profile = Profile::kNano;
  const char* name = "";
  const char* description = "";
  bool identifies_by_tokens = false;     // StartIDPS and what follows it
  bool knows_options = false;            // GetiPodOptionsForLingo
  bool knows_wide_notification = false;  // SetPlayStatusChangeNotification with a 32-bit mask
  bool knows_ui_mode = false;            // the newer SetUIMode
  bool wants_identifiers = false;        // from the first frame on
  bool answers = true;
  bool echoes = false;  // every byte comes back
  std::uint32_t model_id = 0;
  const char* model_number = "";
  const char* serial_number = "";
  std::array<std::uint8_t, 3> software = {};
  std::vector<LingoSupport> lingoes;

  const LingoSupport* Lingo(std::uint8_t lingo) const;
};

const Traits& TraitsOf(Profile profile);
const std::vector<Traits>& AllProfiles();
std::optional<Profile> ProfileByName(std::string_view name);

}  // namespace ipodsim
