// SPDX-License-Identifier: MIT
// Proves what befalls whole answers: late, twice, out of order or not at all, by the dice and at a
// command that was chosen; and an iPod that restarts or is gone for good.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kRequestName[] = "FF 55 02 00 07 F7";
constexpr char kName[] = "FF 55 06 00 08 50 6F 64 00 CF";
constexpr char kAskExtendedVersion[] = "FF 55 03 00 0F 04 EA";
constexpr char kExtendedVersion[] = "FF 55 05 00 10 04 01 0E D8";
constexpr char kAskStorageVersion[] = "FF 55 03 00 0F 0C E2";
constexpr char kStorageVersion[] = "FF 55 05 00 10 0C 01 02 DC";
constexpr char kThreeTracks[] = "FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 03 CE";
constexpr char kFirstTrack[] = "FF 55 0E 04 00 1B 00 00 00 00 41 6D 61 7A 6F 6E 00 6D";
constexpr char kSecondTrack[] = "FF 55 0B 04 00 1B 00 00 00 01 42 61 79 00 B9";
constexpr char kThirdTrack[] = "FF 55 0D 04 00 1B 00 00 00 02 44 65 6C 74 61 00 E8";

Settings With(const PlannedFault& planned) {
  Settings settings = QuietSettings();
  settings.faults.Plan(planned);
  return settings;
}

Settings Drawn(Fault fault) {
  Settings settings = QuietSettings();
  settings.faults.Enable(fault);
  settings.faults.one_in = 1;
  return settings;
}

std::string Lines(std::initializer_list<const char*> frames) {
  std::string all;
  for (const char* frame : frames) all += (all.empty() ? "" : " ") + std::string(frame);
  return all;
}

TEST(PlannedFaults, LateAnswerComesSoMuchLaterAndThoseBehindItWait) {
  Settings settings = With({Fault::kLateAnswers, kGeneral, general::kRequestLingoProtocolVersion});
  settings.faults.late_by = 1200 * kMillisecond;
  IpodUnderTest dock(settings);
  dock.Write(kAskExtendedVersion);
  EXPECT_EQ(dock.Read(kSecond), "");
  dock.Write(kAskStorageVersion);
  EXPECT_EQ(dock.Read(209 * kMillisecond), "");
  EXPECT_EQ(dock.Read(kMillisecond), Lines({kExtendedVersion, kStorageVersion}));
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), kExtendedVersion);
}

TEST(PlannedFaults, StrikeAtTheChosenFrameAndNoOther) {
  IpodUnderTest dock(With({Fault::kMissingAnswers, kGeneral, general::kRequestIpodName, 2}));
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRequestName), kName);
  EXPECT_EQ(dock.Exchange(kRequestName), "");
  EXPECT_EQ(dock.Exchange(kRequestName), kName);
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), kExtendedVersion);
}

TEST(PlannedFaults, CanStrikeAtEveryFrameOfACommand) {
  IpodUnderTest dock(With({Fault::kMissingAnswers, kGeneral, general::kRequestIpodName, 0}));
  dock.Identify();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(dock.Exchange(kRequestName), "");
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), kExtendedVersion);
}

// The second of three records, whatever befalls it.
std::string ThreeTracksWith(Fault fault) {
  IpodUnderTest dock(With({fault, kExtended, extended::kRetrieveCategorizedDatabaseRecords, 1, 2}));
  dock.Identify();
  dock.Write(kThreeTracks);
  return dock.Read(100 * kMillisecond);
}

TEST(PlannedFaults, RecordOfAStreamIsDoubled) {
  EXPECT_EQ(ThreeTracksWith(Fault::kDoubledAnswers),
            Lines({kFirstTrack, kSecondTrack, kSecondTrack, kThirdTrack}));
}

TEST(PlannedFaults, RecordOfAStreamIsMissing) {
  EXPECT_EQ(ThreeTracksWith(Fault::kMissingAnswers), Lines({kFirstTrack, kThirdTrack}));
}

TEST(PlannedFaults, RecordOfAStreamComesBehindTheNext) {
  EXPECT_EQ(ThreeTracksWith(Fault::kShuffledAnswers),
            Lines({kFirstTrack, kThirdTrack, kSecondTrack}));
}

TEST(PlannedFaults, RecordOfAStreamIsLateAndTheRestBehindIt) {
  Settings settings =
      With({Fault::kLateAnswers, kExtended, extended::kRetrieveCategorizedDatabaseRecords, 1, 2});
  settings.faults.late_by = kSecond;
  IpodUnderTest dock(settings);
  dock.Identify();
  dock.Write(kThreeTracks);
  EXPECT_EQ(dock.Read(kSecond), kFirstTrack);
  EXPECT_EQ(dock.Read(100 * kMillisecond), Lines({kSecondTrack, kThirdTrack}));
}

TEST(PlannedFaults, QuestionComesInTheMiddleOfTheChosenExchange) {
  Settings settings =
      With({Fault::kUnaskedRequests, kExtended, extended::kGetNumberCategorizedDbRecords});
  settings.faults.interjection = Interjection::kAsksInformation;
  IpodUnderTest dock(settings);
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRequestName), kName);
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 18 05 DB"),
            "FF 55 03 00 27 00 D6 FF 55 07 04 00 19 00 00 00 06 D6");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 18 05 DB"), "FF 55 07 04 00 19 00 00 00 06 D6");
}

TEST(PlannedFaults, CommandIsRefusedOnceAndNotCarriedOut) {
  IpodUnderTest dock(With({Fault::kRefusedCommands, kGeneral, general::kEnterRemoteUiMode}));
  dock.IdentifyOnly();
  EXPECT_EQ(dock.Exchange("FF 55 02 00 05 F9"), "FF 55 04 00 02 01 05 F4");
  EXPECT_EQ(dock.ipod.ui_mode(), 0);
  EXPECT_EQ(dock.Exchange("FF 55 02 00 05 F9"), "FF 55 04 00 02 00 05 F5");
}

TEST(Faults, DrawnLateAnswerIsUpTo1700MillisecondsLate) {
  IpodUnderTest dock(Drawn(Fault::kLateAnswers));
  dock.Write(kAskExtendedVersion);
  EXPECT_EQ(dock.Read(200 * kMillisecond), "");
  EXPECT_EQ(dock.Read(1510 * kMillisecond), kExtendedVersion);
}

TEST(Faults, DoubledAnswerComesTwice) {
  IpodUnderTest dock(Drawn(Fault::kDoubledAnswers));
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), Lines({kExtendedVersion, kExtendedVersion}));
}

TEST(Faults, ShuffledAnswerWaitsForTheNextThatIsNot) {
  Settings settings = QuietSettings();
  settings.faults.Plan({Fault::kShuffledAnswers, kGeneral, general::kRequestLingoProtocolVersion});
  IpodUnderTest dock(settings);
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), "");
  EXPECT_EQ(dock.Exchange(kAskStorageVersion), Lines({kStorageVersion, kExtendedVersion}));
  EXPECT_EQ(dock.Exchange(kAskStorageVersion), kStorageVersion);
}

TEST(Faults, MissingAnswerDoesNotComeThoughTheCommandIsCarriedOut) {
  IpodUnderTest dock(Drawn(Fault::kMissingAnswers));
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2"), "");
  EXPECT_TRUE(dock.ipod.identified());
}

TEST(Faults, RestartForgetsTheAccessoryAndHearsNothingForAWhile) {
  Settings settings = Drawn(Fault::kRestart);
  settings.faults.unplug_after = 4;
  IpodUnderTest dock(settings);
  dock.Identify();
  dock.Exchange("FF 55 04 04 00 29 0A C5");
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.Exchange(kRequestName), "");
  EXPECT_TRUE(dock.ipod.plugged());
  EXPECT_FALSE(dock.ipod.identified());
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kStopped);
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), "");
  dock.Read(2 * kSecond);
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), kExtendedVersion);
}

TEST(Faults, HungUpIpodNeverComesBack) {
  Settings settings = Drawn(Fault::kHangUp);
  settings.faults.unplug_after = 3;
  IpodUnderTest dock(settings);
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRequestName), "");
  EXPECT_FALSE(dock.ipod.plugged());
  EXPECT_EQ(dock.ipod.NextEvent(), std::nullopt);
  dock.Read(3600 * kSecond);
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), "");
}

TEST(Faults, HangUpCanBePlannedForACommand) {
  IpodUnderTest dock(With({Fault::kHangUp, kGeneral, general::kRequestIpodName}));
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kAskExtendedVersion), kExtendedVersion);
  EXPECT_EQ(dock.Exchange(kRequestName), "");
  EXPECT_FALSE(dock.ipod.plugged());
}

}  // namespace
}  // namespace ipodsim
