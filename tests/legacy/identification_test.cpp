// SPDX-License-Identifier: MIT
// How the legacy interface identifies itself, and what it learns from the iPod's model.
#include "support/legacy_test.h"
#include "support/packets.h"

namespace {

using test::kMillisecond;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::Not;

constexpr const char* kIdentify = "FF 55 03 00 01 04 F8";
constexpr const char* kRequestModel = "FF 55 02 00 0D F1";
constexpr const char* kFourLingoes = "FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2";
constexpr const char* kFourLingoesPowered = "FF 55 0E 00 13 00 00 00 1D 00 00 00 04 00 00 00 00 BE";
constexpr const char* kSixLingoes = "FF 55 0E 00 13 00 00 12 1D 00 00 00 00 00 00 00 00 B0";
constexpr const char* kSixLingoesPowered = "FF 55 0E 00 13 00 00 12 1D 00 00 00 04 00 00 00 00 AC";

class LegacyIdentification : public LegacyTest {
 protected:
  void SetFlags(int extended_model, int name_sort) {
    ipodPeer::ExtendedModel(legacy_) = extended_model;
    ipodPeer::NameSort(legacy_) = name_sort;
  }
};

struct ModelRow {
  const char* name;
  const char* reply;
  const char* identification;
  int extended_model;
  int name_sort;
};

class ModelOfAnIpod : public LegacyIdentification,
                      public ::testing::WithParamInterface<ModelRow> {};

// The model ID's first bytes, shown as four characters.
INSTANTIATE_TEST_SUITE_P(
    BeginsWith, ModelOfAnIpod,
    ::testing::Values(ModelRow{"0014", "FF 55 06 00 0E 00 14 00 04 D4", kSixLingoes, 1, 0},
                      ModelRow{"0017", "FF 55 06 00 0E 00 17 00 04 D1", kSixLingoes, 1, 0},
                      ModelRow{"0010", "FF 55 06 00 0E 00 10 00 04 D8", kFourLingoes, 0, 1},
                      ModelRow{"0011", "FF 55 06 00 0E 00 11 00 04 D7", kFourLingoes, 0, 0},
                      ModelRow{"000b", "FF 55 06 00 0E 00 0B 00 04 DD", kFourLingoes, 0, 0},
                      ModelRow{"0004", "FF 55 06 00 0E 00 04 00 04 E4", kFourLingoes, 0, 0},
                      ModelRow{"0000", "FF 55 06 00 0E 00 00 00 04 E8", kFourLingoes, 0, 0},
                      ModelRow{"0020", "FF 55 06 00 0E 00 20 00 04 C8", kFourLingoes, 0, 0},
                      ModelRow{"0114", "FF 55 06 00 0E 01 14 00 04 D3", kFourLingoes, 0, 0},
                      ModelRow{"0110", "FF 55 06 00 0E 01 10 00 04 D7", kFourLingoes, 0, 0},
                      ModelRow{"1014", "FF 55 06 00 0E 10 14 00 04 C4", kFourLingoes, 0, 0},
                      ModelRow{"1010", "FF 55 06 00 0E 10 10 00 04 C8", kFourLingoes, 0, 0}),
    test::RowName());

TEST_P(ModelOfAnIpod, DecidesTheLingoesAndTheFlags) {
  Answer(kRequestModel, GetParam().reply);
  EXPECT_EQ(legacy_.command_identifydevicelingos(0), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kIdentify, kRequestModel, GetParam().identification));
  EXPECT_EQ(ipodPeer::ExtendedModel(legacy_), GetParam().extended_model);
  EXPECT_EQ(ipodPeer::NameSort(legacy_), GetParam().name_sort);
}

TEST_P(ModelOfAnIpod, ClearsTheExtendedModelFlagAndNeverTheNameSortFlag) {
  SetFlags(1, 1);
  Answer(kRequestModel, GetParam().reply);
  EXPECT_EQ(legacy_.command_identifydevicelingos(0), 1);
  EXPECT_EQ(ipodPeer::ExtendedModel(legacy_), GetParam().extended_model);
  EXPECT_EQ(ipodPeer::NameSort(legacy_), 1);
}

TEST_F(LegacyIdentification, AsksForPowerWhenTheArgumentIsNotZero) {
  EXPECT_EQ(legacy_.command_identifydevicelingos(1), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kIdentify, kRequestModel, kFourLingoesPowered));
  EXPECT_EQ(legacy_.command_identifydevicelingos(-1), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kIdentify, kRequestModel, kFourLingoesPowered));
  Answer(kRequestModel, "FF 55 06 00 0E 00 14 00 04 D4");
  EXPECT_EQ(legacy_.command_identifydevicelingos(1), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kIdentify, kRequestModel, kSixLingoesPowered));
}

TEST_F(LegacyIdentification, OfASilentIpodCostsOneReplyAndKeepsTheBasicLingoes) {
  SetFlags(1, 1);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(legacy_.command_identifydevicelingos(0), 1); }),
            3 * 5 * kMillisecond + test::kEmptyReadsUs);
  EXPECT_THAT(DrainSent(), ElementsAre(kIdentify, kRequestModel, kFourLingoes));
  EXPECT_EQ(ipodPeer::ExtendedModel(legacy_), 0);
  EXPECT_EQ(ipodPeer::NameSort(legacy_), 1);
}

TEST_F(LegacyIdentification, DoesNotAskForTheModelWhenTheFirstFrameFails) {
  SetFlags(1, 0);
  world_.FailOnce("WriteFile", 2, 31);
  EXPECT_EQ(legacy_.command_identifydevicelingos(0), 1);
  EXPECT_THAT(DrainSentBytes(), "FF FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2");
  EXPECT_EQ(ipodPeer::ExtendedModel(legacy_), 0);
}

TEST_F(LegacyIdentification, FailsWhenTheLastFrameFails) {
  Answer(kRequestModel, "FF 55 06 00 0E 00 14 00 04 D4");
  world_.FailOnce("WriteFile", 6, 31);
  EXPECT_EQ(legacy_.command_identifydevicelingos(0), 0);
  EXPECT_EQ(ipodPeer::ExtendedModel(legacy_), 1);
}

TEST_F(LegacyIdentification, AnswersTheIpodsQuestionsMeanwhile) {
  Answer(kRequestModel, "FF 55 03 00 27 00 D6 FF 55 06 00 0E 00 14 00 04 D4");
  EXPECT_EQ(legacy_.command_identifydevicelingos(0), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kIdentify, kRequestModel, "FF 55 07 00 28 00 00 00 02 F3 DC",
                                       kSixLingoes));
}

TEST_F(LegacyIdentification, LeavesTheRestOfThePayload) {
  NumberPayload();
  legacy_.command_identifydevicelingos(1);
  EXPECT_EQ(Payload(14), "00 00 00 1D 00 00 00 04 00 00 00 00 0C 0D");
}

}  // namespace
