// SPDX-License-Identifier: MIT
// The event notifications chosen at the end of an identification: two bits, as far as the iPod
// supports them.
#include "identify/identification.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EventChoice : public Identification {
 protected:
  EventChoice() { session_.SetIDPSEnable(0); }
  void IdentifyByLingoes() {
    AcceptLingoes();
    EXPECT_EQ(Identify(), 1);
    EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  }
};

struct Mask {
  std::string name;
  std::string supported;
  std::string chosen;
};

void PrintTo(const Mask& mask, std::ostream* stream) { *stream << mask.name; }

class EventMask : public EventChoice, public ::testing::WithParamInterface<Mask> {};

TEST_P(EventMask, HoldsTheTwoKnownBitsThatAreSupported) {
  Reply("00 4F", "00 51 " + GetParam().supported);
  Reply("00 49 " + GetParam().chosen, "00 02 00 49");
  IdentifyByLingoes();
  EXPECT_THAT(DrainSentOf("00 49"), ElementsAre(Frame("00 49 " + GetParam().chosen)));
}

TEST_P(EventMask, IsTheSameBehindTokens) {
  session_.SetIDPSEnable(1);
  ReplyWithId("00 4F", "00 51 " + GetParam().supported);
  ReplyWithId("00 49 " + GetParam().chosen, "00 02 00 49");
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_THAT(DrainSentOf("00 49"), ElementsAre(Frame("00 49", 8, GetParam().chosen)));
}

INSTANTIATE_TEST_SUITE_P(
    Supported, EventMask,
    ::testing::Values(Mask{"Nothing", "00 00 00 00 00 00 00 00", "00 00 00 00 00 00 00 00"},
                      Mask{"Both", "00 00 00 00 00 00 02 04", "00 00 00 00 00 00 02 04"},
                      Mask{"Everything", "FF FF FF FF FF FF FF FF", "00 00 00 00 00 00 02 04"},
                      Mask{"FirstOnly", "00 00 00 00 00 00 00 04", "00 00 00 00 00 00 00 04"},
                      Mask{"SecondOnly", "00 00 00 00 00 00 02 00", "00 00 00 00 00 00 02 00"},
                      Mask{"AllButBoth", "FF FF FF FF FF FF FD FB", "00 00 00 00 00 00 00 00"},
                      Mask{"BitsInTheOtherByte", "00 00 00 00 00 00 04 02",
                           "00 00 00 00 00 00 00 00"}),
    test::RowName());

TEST_F(EventChoice, NothingIsChosenWhenTheMaskIsNotAnswered) {
  Ignore("00 4F");
  IdentifyByLingoes();
  const std::vector<std::string> sent = DrainSent();
  EXPECT_EQ(test::Last(sent), "FF 55 02 00 4F AF");
  ASSERT_GE(sent.size(), 3U);
  EXPECT_EQ(sent[sent.size() - 3], "FF 55 02 00 4F AF") << "after three attempts";
}

TEST_F(EventChoice, NothingIsChosenWhenTheMaskIsRefused) {
  Reply("00 4F", "00 02 04 4F");
  IdentifyByLingoes();
  EXPECT_THAT(DrainSentOf("00 49"), IsEmpty());
}

TEST_F(EventChoice, RefusedAndUnansweredChoicesDoNotMatter) {
  Reply("00 49 00 00 00 00 00 00 02 04", "00 02 04 49");
  IdentifyByLingoes();
  Ignore("00 49 00 00 00 00 00 00 00 04");
  Answer(Frame("00 4F"), "");
  EXPECT_EQ(Identify(), 1);
}

TEST_F(EventChoice, UnansweredChoiceDoesNotMatterBehindTokens) {
  session_.SetIDPSEnable(1);
  IgnoreWithId("00 49 00 00 00 00 00 00 02 04");
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(DrainSentOf("00 49").size(), 3U);
}

}  // namespace
