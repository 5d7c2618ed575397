// SPDX-License-Identifier: MIT
// The iPod's preferences: the version gate, requests, answers and refusals.
#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kGet = "FF 55 03 00 29 03 D1";
constexpr const char* kSet = "FF 55 05 00 2B 03 01 01 CB";
constexpr const char* kSetAck = "FF 55 04 00 02 00 2B CF";

class Preferences : public SessionTest {
 protected:
  Preferences() { SetGeneralVersion(1, 9); }
  void SetGeneralVersion(std::uint8_t major, std::uint8_t minor) {
    CIpodCommPeer::Identity(session_).general = {major, minor};
  }
};

TEST_F(Preferences, SettingIsTheSecondReplyByte) {
  Answer(kGet, "FF 55 04 00 2A 03 01 CE");
  unsigned char setting = 0;
  EXPECT_EQ(session_.Command_GetPreference(3, &setting), 1);
  EXPECT_EQ(setting, 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kGet));
}

TEST_F(Preferences, SettingNeedsNoPlace) {
  Answer(kGet, "FF 55 04 00 2A 03 01 CE");
  EXPECT_EQ(session_.Command_GetPreference(3, nullptr), 1);
}

TEST_F(Preferences, RefusedGetFails) {
  // The ACK names the command sent, so the exchange itself counts as a success after the silence.
  Answer(kGet, "FF 55 04 00 02 04 29 CD");
  unsigned char setting = 7;
  EXPECT_EQ(session_.Command_GetPreference(3, &setting), 0);
  EXPECT_EQ(setting, 7);
  EXPECT_THAT(DrainSent(), ElementsAre(kGet));
}

TEST_F(Preferences, UnansweredGetFails) {
  unsigned char setting = 7;
  EXPECT_EQ(session_.Command_GetPreference(3, &setting), 0);
  EXPECT_EQ(setting, 7);
}

TEST_F(Preferences, SetAsksForTheOldSettingToBeRestored) {
  Answer(kSet, kSetAck);
  EXPECT_EQ(session_.Command_SetPreference(3, 1), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kSet));
}

TEST_F(Preferences, SetFailsOnAnotherStatus) {
  Answer(kSet, "FF 55 04 00 02 02 2B CD");
  EXPECT_EQ(session_.Command_SetPreference(3, 1), 0);
}

TEST_F(Preferences, SetFailsWhenAnotherCommandIsAcknowledged) {
  Answer(kSet, "FF 55 04 00 02 00 29 D1");
  EXPECT_EQ(session_.Command_SetPreference(3, 1), 0);
}

TEST_F(Preferences, SetFailsUnanswered) { EXPECT_EQ(session_.Command_SetPreference(3, 1), 0); }

struct Version {
  std::uint8_t major;
  std::uint8_t minor;
  bool knows_preferences;
};

class PreferenceGate : public Preferences, public ::testing::WithParamInterface<Version> {};

TEST_P(PreferenceGate, AsksFromVersion105On) {
  SetGeneralVersion(GetParam().major, GetParam().minor);
  Answer(kGet, "FF 55 04 00 2A 03 01 CE");
  Answer(kSet, kSetAck);
  const int expected = GetParam().knows_preferences ? 1 : 0;
  EXPECT_EQ(session_.Command_GetPreference(3, nullptr), expected);
  EXPECT_EQ(session_.Command_SetPreference(3, 1), expected);
  if (GetParam().knows_preferences) {
    EXPECT_THAT(DrainSent(), ElementsAre(kGet, kSet));
  } else {
    EXPECT_THAT(DrainSent(), IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(Versions, PreferenceGate,
                         ::testing::Values(Version{0, 0, false}, Version{0, 9, false},
                                           Version{1, 4, false}, Version{1, 5, true},
                                           Version{1, 6, true}, Version{2, 0, true}));

TEST_F(Preferences, AskingForTheVersionOpensTheGate) {
  SetGeneralVersion(0, 0);
  Answer("FF 55 03 00 0F 00 EE", "FF 55 05 00 10 00 01 09 E1");
  Answer(kSet, kSetAck);
  EXPECT_EQ(session_.Command_SetPreference(3, 1), 0);
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(0, nullptr, nullptr), 1);
  EXPECT_EQ(session_.Command_SetPreference(3, 1), 1);
}

}  // namespace
