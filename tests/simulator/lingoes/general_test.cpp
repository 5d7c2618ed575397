// SPDX-License-Identifier: MIT
// Proves the General lingo's answers, byte by byte.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

class GeneralLingo : public testing::Test {
 protected:
  GeneralLingo() { dock.Identify(); }
  ~GeneralLingo() override { EXPECT_EQ(dock.Mistakes(), expected_mistakes); }
  IpodUnderTest dock;
  std::string expected_mistakes;
};

TEST_F(GeneralLingo, TellsWhatItIs) {
  EXPECT_EQ(dock.Exchange("FF 55 02 00 07 F7"), "FF 55 06 00 08 50 6F 64 00 CF");
  EXPECT_EQ(dock.Exchange("FF 55 02 00 09 F5"), "FF 55 05 00 0A 01 00 04 EC");
  EXPECT_EQ(dock.Exchange("FF 55 02 00 0B F3"),
            "FF 55 0E 00 0C 35 55 38 32 35 30 53 49 4D 30 31 00 43");
  EXPECT_EQ(dock.Exchange("FF 55 02 00 0D F1"),
            "FF 55 0E 00 0E 00 14 00 00 4D 42 35 39 38 4C 4C 00 03");
  EXPECT_EQ(dock.Exchange("FF 55 02 00 11 ED"), "FF 55 04 00 12 01 FA EF");
}

TEST_F(GeneralLingo, NameAndModelCanBeChosen) {
  Settings settings = QuietSettings();
  settings.name = "Zoë";
  settings.model_number = "MA002LL";
  IpodUnderTest chosen(settings);
  chosen.Identify();
  EXPECT_EQ(chosen.Exchange("FF 55 02 00 07 F7"), "FF 55 07 00 08 5A 6F C3 AB 00 BA");
  EXPECT_EQ(chosen.Exchange("FF 55 02 00 0D F1"),
            "FF 55 0E 00 0E 00 14 00 00 4D 41 30 30 32 4C 4C 00 18");
}

TEST_F(GeneralLingo, RemoteUiRequestsAreAcknowledged) {
  EXPECT_EQ(dock.Exchange("FF 55 02 00 03 FB"), "FF 55 04 00 02 00 03 F7");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 37 01 C5"), "FF 55 04 00 02 00 37 C3");
  EXPECT_EQ(dock.ipod.ui_mode(), 1);
  EXPECT_EQ(dock.Exchange("FF 55 02 00 06 F8"), "FF 55 04 00 02 00 06 F4");
  EXPECT_EQ(dock.ipod.ui_mode(), 0);
  EXPECT_EQ(dock.Exchange("FF 55 02 00 05 F9"), "FF 55 04 00 02 00 05 F5");
  EXPECT_EQ(dock.ipod.ui_mode(), 1);
}

TEST_F(GeneralLingo, RemoteUiModeOutOfRangeIsAMistake) {
  EXPECT_EQ(dock.Exchange("FF 55 03 00 37 04 C2"), "FF 55 04 00 02 03 37 C0");
  expected_mistakes = "bad parameter";
}

TEST_F(GeneralLingo, OldIpodKnowsOnlyTheOlderRemoteUiCommand) {
  IpodUnderTest old(QuietSettings(Profile::kOld));
  old.Identify();
  EXPECT_EQ(old.Exchange("FF 55 03 00 37 01 C5"), "FF 55 04 00 02 04 37 BF");
  EXPECT_EQ(old.Exchange("FF 55 02 00 05 F9"), "FF 55 04 00 02 00 05 F5");
}

TEST_F(GeneralLingo, RemoteUiRequestCanBePendingFirst) {
  Settings settings = QuietSettings();
  settings.remote_ui_is_pending_first = true;
  settings.pending_time = 300 * kMillisecond;
  IpodUnderTest pending(settings);
  pending.IdentifyOnly();
  EXPECT_EQ(pending.Exchange("FF 55 02 00 05 F9"), "FF 55 08 00 02 06 05 00 00 01 2C BE");
  EXPECT_EQ(pending.Read(290 * kMillisecond), "");
  EXPECT_EQ(pending.Read(), "FF 55 04 00 02 00 05 F5");
}

TEST_F(GeneralLingo, PreferencesAreKept) {
  EXPECT_EQ(dock.Exchange("FF 55 03 00 29 08 CC"), "FF 55 04 00 2A 08 00 CA");
  EXPECT_EQ(dock.Exchange("FF 55 05 00 2B 08 01 01 C6"), "FF 55 04 00 02 00 2B CF");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 29 08 CC"), "FF 55 04 00 2A 08 01 C9");
}

TEST_F(GeneralLingo, UnknownPreferenceIsRefused) {
  EXPECT_EQ(dock.Exchange("FF 55 03 00 29 05 CF"), "FF 55 04 00 02 04 29 CD");
  EXPECT_EQ(dock.Exchange("FF 55 05 00 2B 05 00 01 CA"), "FF 55 04 00 02 04 2B CB");
}

TEST_F(GeneralLingo, PreferenceOutOfRangeIsAMistake) {
  EXPECT_EQ(dock.Exchange("FF 55 05 00 2B 0F 02 01 BE"), "FF 55 04 00 02 03 2B CC");
  EXPECT_EQ(dock.ipod.preference(15), 0);
  expected_mistakes = "bad parameter";
}

TEST_F(GeneralLingo, OldIpodKnowsNoPreferences) {
  IpodUnderTest old(QuietSettings(Profile::kOld));
  old.Identify();
  EXPECT_EQ(old.Exchange("FF 55 03 00 29 08 CC"), "FF 55 04 00 02 04 29 CD");
}

TEST_F(GeneralLingo, EventsOnOfferCanBeSwitchedOn) {
  EXPECT_EQ(dock.Exchange("FF 55 02 00 4F AF"), "FF 55 0A 00 51 00 00 00 00 00 00 02 0C 97");
  EXPECT_EQ(dock.Exchange("FF 55 0A 00 49 00 00 00 00 00 00 02 04 A7"), "FF 55 04 00 02 00 49 B1");
  EXPECT_EQ(ToHex(dock.ipod.event_mask()), "00 00 00 00 00 00 02 04");
}

TEST_F(GeneralLingo, EventsNotOnOfferAreAMistake) {
  EXPECT_EQ(dock.Exchange("FF 55 0A 00 49 00 00 00 00 00 00 00 01 AC"), "FF 55 04 00 02 03 49 AE");
  expected_mistakes = "bad parameter";
}

TEST_F(GeneralLingo, UnknownCommandIsNamed) {
  EXPECT_EQ(dock.Exchange("FF 55 02 00 77 87"), "FF 55 04 00 02 04 77 7F");
  EXPECT_EQ(dock.ipod.mistakes().at(0).detail, "General command 0x77");
  expected_mistakes = "unknown command";
}

TEST_F(GeneralLingo, WrongPayloadSizeIsNamed) {
  EXPECT_EQ(dock.Exchange("FF 55 02 00 0F EF"), "FF 55 04 00 02 03 0F E8");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 07 01 F5"), "FF 55 04 00 02 03 07 F0");
  expected_mistakes = "wrong payload size, wrong payload size";
}

TEST_F(GeneralLingo, UnknownLingoIsNamedAndNotAnswered) {
  EXPECT_EQ(dock.Exchange("FF 55 02 0A 01 F3"), "");
  expected_mistakes = "unknown command";
}

}  // namespace
}  // namespace ipodsim
