// SPDX-License-Identifier: MIT
// The iPod's Sports capabilities and the user's data: what goes out for each operation and what is
// made of the answer.
#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kAskCaps = "FF 55 02 09 83 72";
constexpr const char* kAskFlag = "FF 55 03 09 88 02 6A";
constexpr const char* kAskWeight = "FF 55 03 09 88 03 69";
constexpr const char* kAskValue = "FF 55 03 09 88 04 68";
constexpr const char* kSetWeight = "FF 55 05 09 8A 03 02 EE 75";

constexpr const char* kNoCaps = "FF 55 05 09 84 00 00 00 6E";
constexpr const char* kGymOnly = "FF 55 05 09 84 00 01 00 6D";
constexpr const char* kUserDataOnly = "FF 55 05 09 84 00 02 00 6C";

class UserData : public SessionTest {
 protected:
  int Get() { return session_.Command_GetUserData(&flag_, &weight_, &value_); }

  int flag_ = 7;
  unsigned short weight_ = 7;
  unsigned char value_ = 7;
};

TEST_F(UserData, CapabilitiesAreAMaskAndAnExtraByte) {
  Answer(kAskCaps, "FF 55 05 09 84 80 01 00 ED");
  unsigned short caps = 0;
  unsigned char extra = 7;
  EXPECT_EQ(session_.Command_SportsGetIpodCaps(&caps, &extra), 1);
  EXPECT_EQ(caps, 0x8001);
  EXPECT_EQ(extra, 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps));
}

TEST_F(UserData, CapabilitiesAreOptionalOneByOne) {
  Answer(kAskCaps, "FF 55 05 09 84 00 03 05 66");
  unsigned short caps = 0;
  unsigned char extra = 0;
  EXPECT_EQ(session_.Command_SportsGetIpodCaps(&caps, nullptr), 1);
  EXPECT_EQ(caps, 3);
  EXPECT_EQ(session_.Command_SportsGetIpodCaps(nullptr, &extra), 1);
  EXPECT_EQ(extra, 5);
  EXPECT_EQ(session_.Command_SportsGetIpodCaps(nullptr, nullptr), 1);
}

TEST_F(UserData, UnansweredCapabilitiesFailAndTellNothing) {
  unsigned short caps = 7;
  unsigned char extra = 7;
  EXPECT_EQ(session_.Command_SportsGetIpodCaps(&caps, &extra), 0);
  EXPECT_EQ(caps, 7);
  EXPECT_EQ(extra, 7);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskCaps, kAskCaps));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(UserData, IsReadItemByItem) {
  Answer(kAskCaps, kUserDataOnly);
  Answer(kAskFlag, "FF 55 04 09 89 02 02 66");
  Answer(kAskWeight, "FF 55 05 09 89 03 12 34 20");
  Answer(kAskValue, "FF 55 04 09 89 04 AB BB");
  EXPECT_EQ(Get(), 1);
  EXPECT_EQ(flag_, 1);
  EXPECT_EQ(weight_, 0x1234);
  EXPECT_EQ(value_, 0xAB);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskFlag, kAskWeight, kAskValue));
}

TEST_F(UserData, OnlyWhatIsAskedForIsRead) {
  Answer(kAskCaps, kUserDataOnly);
  Answer(kAskFlag, "FF 55 04 09 89 02 02 66");
  Answer(kAskWeight, "FF 55 05 09 89 03 12 34 20");
  Answer(kAskValue, "FF 55 04 09 89 04 AB BB");
  EXPECT_EQ(session_.Command_GetUserData(nullptr, &weight_, nullptr), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskWeight));
  EXPECT_EQ(session_.Command_GetUserData(&flag_, nullptr, nullptr), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskFlag));
  EXPECT_EQ(session_.Command_GetUserData(nullptr, nullptr, &value_), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskValue));
}

TEST_F(UserData, OfNoItemsStillAsksForTheCapabilities) {
  Answer(kAskCaps, kUserDataOnly);
  EXPECT_EQ(session_.Command_GetUserData(nullptr, nullptr, nullptr), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps));
}

struct Flag {
  const char* answer;
  int flag;
};

class UserFlag : public SessionTest, public ::testing::WithParamInterface<Flag> {};

TEST_P(UserFlag, IsSetOnTwoOnly) {
  Answer(kAskCaps, kUserDataOnly);
  Answer(kAskFlag, GetParam().answer);
  int flag = 7;
  EXPECT_EQ(session_.Command_GetUserData(&flag, nullptr, nullptr), 1);
  EXPECT_EQ(flag, GetParam().flag);
}

INSTANTIATE_TEST_SUITE_P(Values, UserFlag,
                         ::testing::Values(Flag{"FF 55 04 09 89 02 00 68", 0},
                                           Flag{"FF 55 04 09 89 02 01 67", 0},
                                           Flag{"FF 55 04 09 89 02 02 66", 1},
                                           Flag{"FF 55 04 09 89 02 03 65", 0}));

class WithoutUserData : public UserData, public ::testing::WithParamInterface<const char*> {};

TEST_P(WithoutUserData, NothingElseIsAsked) {
  Answer(kAskCaps, GetParam());
  EXPECT_EQ(Get(), 0);
  EXPECT_EQ(flag_, 7);
  EXPECT_EQ(weight_, 7);
  EXPECT_EQ(value_, 7);
  EXPECT_EQ(session_.Command_GetUserData(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(session_.Command_SetUserWeight(750), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskCaps, kAskCaps));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Masks, WithoutUserData, ::testing::Values(kNoCaps, kGymOnly));

TEST_F(UserData, SilentIpodIsAskedForItsCapabilitiesOnly) {
  EXPECT_EQ(Get(), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskCaps, kAskCaps));
  EXPECT_EQ(session_.Command_SetUserWeight(750), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskCaps, kAskCaps));
}

TEST_F(UserData, FirstFailureEndsItAndLeavesTheRestUntouched) {
  Answer(kAskCaps, kUserDataOnly);
  EXPECT_EQ(Get(), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskFlag, kAskFlag, kAskFlag));
  EXPECT_EQ(flag_, 7);
  Answer(kAskFlag, "FF 55 04 09 89 02 02 66");
  EXPECT_EQ(Get(), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskFlag, kAskWeight, kAskWeight, kAskWeight));
  EXPECT_EQ(flag_, 1);
  EXPECT_EQ(weight_, 7);
  Answer(kAskWeight, "FF 55 05 09 89 03 12 34 20");
  EXPECT_EQ(Get(), 0);
  EXPECT_EQ(weight_, 0x1234);
  EXPECT_EQ(value_, 7);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

// The iPod refuses with a General ACK that names the request, and says nothing more. That counts as
// an answer without data.
TEST_F(UserData, RefusedItemsReadAsZeroAndNotAsTheOneBefore) {
  Answer(kAskCaps, kUserDataOnly);
  Answer(kAskFlag, "FF 55 05 09 89 02 02 07 5E");
  Answer(kAskWeight, "FF 55 04 00 02 04 88 6E");
  Answer(kAskValue, "FF 55 04 00 02 04 88 6E");
  EXPECT_EQ(Get(), 1);
  EXPECT_EQ(flag_, 1);
  EXPECT_EQ(weight_, 0);
  EXPECT_EQ(value_, 0);
}

TEST_F(UserData, WeightIsSetAsItIs) {
  Answer(kAskCaps, kUserDataOnly);
  Answer(kSetWeight, "FF 55 04 09 80 00 8A E9");
  EXPECT_EQ(session_.Command_SetUserWeight(750), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kSetWeight));
}

TEST_F(UserData, WeightIsSetUnderIdentifiers) {
  TurnOnTransactionIds(0x1234);
  Answer("FF 55 04 09 83 12 34 2A", "FF 55 07 09 84 12 34 00 02 00 24");
  Answer("FF 55 07 09 8A 12 35 03 FF FF 1E", "FF 55 06 09 80 12 35 00 8A A0");
  EXPECT_EQ(session_.Command_SetUserWeight(0xFFFF), 1);
}

TEST_F(UserData, RefusedWeightFails) {
  Answer(kAskCaps, kUserDataOnly);
  Answer(kSetWeight, "FF 55 04 09 80 04 8A E5");
  EXPECT_EQ(session_.Command_SetUserWeight(750), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kSetWeight));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(UserData, UnansweredWeightFails) {
  Answer(kAskCaps, kUserDataOnly);
  EXPECT_EQ(session_.Command_SetUserWeight(750), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kSetWeight, kSetWeight, kSetWeight));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

}  // namespace
