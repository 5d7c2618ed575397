// SPDX-License-Identifier: MIT
// Docks, identifies, and reads names.
#include "field/docked.h"

#include "support/trace_log.h"

namespace test {

namespace {

std::string TrackName(unsigned number) {
  std::string digits = std::to_string(number);
  return "T" + std::string(3 - digits.size(), '0') + digits;
}

std::string Narrow(const wchar_t* text) {
  std::string narrow;
  for (; *text != L'\0'; ++text) narrow += *text < 0x80 ? static_cast<char>(*text) : '?';
  return narrow;
}

}  // namespace

ipodsim::Settings SixtySongs(ipodsim::Profile profile) {
  ipodsim::Settings settings;
  settings.profile = profile;
  settings.fixed_latency = 8 * kMillisecond;
  settings.asks_accessory = false;
  settings.remote_ui_is_pending_first = false;
  settings.library = {};
  settings.library.name = "Sixty";
  for (unsigned i = 0; i < 60; ++i) {
    ipodsim::Track track;
    track.title = TrackName(i);
    track.artist = i % 2 == 0 ? "Even" : "Odd";
    track.album = i % 2 == 0 ? "Even Ones" : "Odd Ones";
    track.genre = "Counting";
    track.length_ms = 200'000;
    settings.library.tracks.push_back(track);
  }
  return settings;
}

ipodsim::Settings SixtySongsWith(const char* habit, ipodsim::Profile profile) {
  ipodsim::Settings settings = SixtySongs(profile);
  EXPECT_TRUE(ipodsim::ApplyHabit(habit, &settings)) << habit;
  return settings;
}

Docked::Docked(const ipodsim::Settings& settings, const tagIPOD_CONDUCT& conduct,
               std::uint64_t seed)
    : ipod(settings), world({seed}) {
  world.line().PlugModel(ipod);
  world.Advance(2 * kSecond);
  EXPECT_EQ(session.SetConduct(&conduct), 1);
  EXPECT_EQ(session.Open(), 0);
}

Docked::~Docked() {
  session.Close();
  world.line().Unplug();
  DrainTraceLog();
}

bool Docked::Identify() {
  session.SetIDPSEnable(1);
  return session.Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr) != 0;
}

void Docked::GoToTracks() {
  EXPECT_TRUE(Identify());
  EXPECT_EQ(session.Command_EnterRemoteUIMode(), 1);
  EXPECT_EQ(session.SelectTop(kTracks, nullptr, 0), 1);
}

std::vector<std::string> Docked::Names(unsigned long start, unsigned long count) {
  std::vector<std::string> names;
  for (auto& row : Rows(start, count)) names.push_back(std::move(row.second));
  return names;
}

std::vector<std::pair<unsigned long, std::string>> Docked::Rows(unsigned long start,
                                                                unsigned long count) {
  session.Command_RetrieveCategorizedDatabaseRecords(start, count, kTracks);
  std::vector<std::pair<unsigned long, std::string>> rows;
  wchar_t name[256] = {};
  for (unsigned long i = 0; i < count; ++i) {
    unsigned long index = 0;
    if (session.GetNextCategorizedRecord(&index, name, 256) == 1) {
      rows.emplace_back(index, Narrow(name));
    }
  }
  return rows;
}

std::vector<std::string> TrackNames(unsigned start, unsigned count) {
  std::vector<std::string> names;
  for (unsigned i = start; i < start + count; ++i) names.push_back(TrackName(i));
  return names;
}

}  // namespace test
