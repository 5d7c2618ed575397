// SPDX-License-Identifier: MIT
// What the simulator's tests share: a dock with a clock, and a small library.

#pragma once

#include <string>
#include <vector>

#include "simulator/simulated_ipod.h"
#include "support/bytes.h"

namespace ipodsim {

using test::Hex;
using test::ToHex;

/// Six songs of three artists, one book of two parts, one episode, one video.
inline Library SmallLibrary() {
  Library library;
  library.name = "Pod";
  library.tracks = {
      {"Delta", "Ann", "Rivers", "Rock", "Cee", "la la", 10000, 2, MediaKind::kMusic},
      {"Amazon", "Ann", "Rivers", "Rock", "", "", 20000, 1, MediaKind::kMusic},
      {"Peak", "Ann", "Hills", "Folk", "Cee", "", 30000, 1, MediaKind::kMusic},
      {"zero", "Bob", "Zed", "Rock", "Dee", "", 40000, 1, MediaKind::kMusic},
      {"Été", "Cléo", "Sud", "Pop", "", "", 50000, 1, MediaKind::kMusic},
      {"Book 1", "Eve", "Novel", "Audiobook", "", "", 60000, 1, MediaKind::kAudiobook},
      {"Book 2", "Eve", "Novel", "Audiobook", "", "", 70000, 2, MediaKind::kAudiobook},
      {"News", "Fay", "Daily", "Podcast", "", "", 80000, 1, MediaKind::kPodcast},
      {"Film", "Gus", "Season", "Fitness", "", "", 90000, 1, MediaKind::kVideo},
      {"Bay", "Bob", "Zed", "Rock", "Dee", "", 5000, 2, MediaKind::kMusic},
  };
  library.playlists = {
      {"Mix", {3, 0, 8}, {}},
      {"Plans", {}, {{"Easy", {1}, {}}, {"Hard", {2, 4}, {}}}},
  };
  return library;
}

/// Answers after exactly 10 ms, at once for good, and asks nothing by itself.
inline Settings QuietSettings(Profile profile = Profile::kNano) {
  Settings settings;
  settings.profile = profile;
  settings.library = SmallLibrary();
  settings.fixed_latency = 10 * kMillisecond;
  settings.asks_accessory = false;
  settings.remote_ui_is_pending_first = false;
  return settings;
}

/// A simulated iPod with the test's hands on the bytes and on the clock.
class IpodUnderTest {
 public:
  explicit IpodUnderTest(Settings settings = QuietSettings()) : ipod(std::move(settings)) {}

  void Write(const std::string& hex) {
    const Bytes bytes = Hex(hex);
    ipod.Receive(bytes.data(), bytes.size(), now);
  }

  /// Lets the time pass and gives what the iPod sent meanwhile.
  std::string Read(Microseconds time = 10 * kMillisecond) {
    now += time;
    return ToHex(ipod.Transmit(now));
  }

  std::string Exchange(const std::string& hex) {
    Write(hex);
    return Read();
  }

  /// Announces General, Simple Remote, Display Remote and Extended Interface, and enters the mode
  /// in which the last of them is served.
  void Identify() {
    IdentifyOnly();
    Exchange("FF 55 02 00 05 F9");
  }
  /// The same without the mode.
  void IdentifyOnly() { Exchange("FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2"); }

  /// General, Display Remote, Sports, Storage and Extended Interface, by tokens. The next
  /// identifier is 3.
  void IdentifyByTokens() {
    Exchange("FF 55 02 00 38 C6");
    Exchange("FF 55 16 00 39 00 00 01 10 00 00 05 00 03 09 0C 04 00 00 00 00 00 00 00 00 7F");
    Exchange(
        "FF 55 31 00 39 00 01 06 0A 00 01 00 00 00 00 00 00 00 05 06 00 02 01 4D 65 00 06 00 02 04 "
        "01 00 00 06 00 02 05 01 00 00 05 00 02 06 4D 00 05 00 02 07 58 00 E9");
    Exchange("FF 55 05 00 3B 00 02 00 BE");
  }

  /// The names of the mistakes so far, comma-separated.
  std::string Mistakes() const {
    std::string names;
    for (const Mistake& mistake : ipod.mistakes()) {
      if (!names.empty()) names += ", ";
      names += mistake.name;
    }
    return names;
  }

  SimulatedIpod ipod;
  Microseconds now = 1000 * kMillisecond;
};

}  // namespace ipodsim
