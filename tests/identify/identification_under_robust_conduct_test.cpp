// SPDX-License-Identifier: MIT
// What the robust conduct changes in identification: an iPod that wants an identifier on StartIDPS,
// and a verdict that needs evidence.
#include "identify/identification.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

constexpr const char* kStartFrame = "FF 55 02 00 38 C6";
constexpr const char* kStartWithIdFrame = "FF 55 04 00 38 00 00 C4";
constexpr const char* kStartWithIdTaken = "FF 55 06 00 02 00 00 00 38 C0";

class UnderRobustConduct : public Identification {
 protected:
  UnderRobustConduct() { session_.SetConduct(&IPOD_CONDUCT_ROBUST); }
};

TEST_F(UnderRobustConduct, TokensIdentifyAsByDefault) {
  DockTokenIpod();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_THAT(DrainSent(), Not(Contains(kStartWithIdFrame)));
}

TEST_F(UnderRobustConduct, LingoesIdentifyAsByDefault) {
  DockLingoIpod();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
}

TEST_F(UnderRobustConduct, SilentStartIsTriedOnceMoreWithAnIdentifierEachTime) {
  EXPECT_EQ(Identify(), 0);
  const std::vector<std::string> sent = DrainSent();
  ASSERT_GE(sent.size(), 9U);
  EXPECT_THAT(std::vector<std::string>(sent.begin(), sent.begin() + 9),
              ElementsAre("FF", kStartFrame, kStartWithIdFrame, "FF", kStartFrame,
                          kStartWithIdFrame, "FF", kStartFrame, kStartWithIdFrame));
}

TEST_F(UnderRobustConduct, ARefusedStartIsNotTriedWithAnIdentifier) {
  Reply(test::kStart, test::kStartRefused);
  DockLingoIpod();
  Identify();
  EXPECT_THAT(DrainSent(), Not(Contains(kStartWithIdFrame)));
}

TEST_F(UnderRobustConduct, WhatAnsweredHoldsForTheSession) {
  Answer(kStartWithIdFrame, kStartWithIdTaken);
  Identify();
  session_.SetIDPSEnable(1);
  DrainSent();
  Identify();
  const std::vector<std::string> sent = DrainSent();
  EXPECT_THAT(sent, Contains(kStartWithIdFrame));
  EXPECT_THAT(sent, Not(Contains(kStartFrame)));
}

class AnIpodThatTellsNoVersion : public Identification {
 protected:
  AnIpodThatTellsNoVersion() {
    session_.SetIDPSEnable(0);
    Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  }
};

TEST_F(AnIpodThatTellsNoVersion, IsNotCalledTooOldUnderRobustConduct) {
  session_.SetConduct(&IPOD_CONDUCT_ROBUST);
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_EQ(DrainDebugOutput().back(), "iPod told no version!\r\n");
}

TEST_F(AnIpodThatTellsNoVersion, IsCalledTooOldByDefault) {
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
}

TEST_F(UnderRobustConduct, AnOldIpodIsTooOldOnceItHasToldAVersion) {
  session_.SetIDPSEnable(0);
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  Reply("00 0F 00", "00 10 00 01 01");
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
}

}  // namespace
