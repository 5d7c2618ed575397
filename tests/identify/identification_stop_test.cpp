// SPDX-License-Identifier: MIT
// The host stops an identification through its callback: at every single question, on each branch.
// Nothing is sent any more, the result is 0 and the outcome "none".
#include "identify/identification.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::IsEmpty;

using Peer = CIpodCommPeer;

struct Stop {
  std::string name;
  int step;
  std::string last_sent;
};

void PrintTo(const Stop& stop, std::ostream* stream) { *stream << stop.name; }

class StoppedIdentification : public Identification, public ::testing::WithParamInterface<Stop> {
 protected:
  void ExpectStopped() {
    stop_at_ = GetParam().step;
    result_ = IPOD_IDENTIFY_RESULT_IDPS;
    std::int64_t stopped_us = 0;
    on_step_ = [&](int step) {
      if (step == stop_at_) stopped_us = world_.now_us();
    };
    EXPECT_EQ(Identify(), 0);
    EXPECT_EQ(world_.now_us(), stopped_us) << "at once";
    EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
    EXPECT_EQ(steps_, stop_at_);
    EXPECT_EQ(Peer::Identity(session_).idps_done, 0);
    EXPECT_EQ(test::Last(DrainSent()), GetParam().last_sent);
    EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  }
};

class StoppedTokens : public StoppedIdentification {};

TEST_P(StoppedTokens, EndAtOnceWithIdentifiersAsTheyAre) {
  DockTokenIpod();
  AcceptLingoes();
  ExpectStopped();
  EXPECT_EQ(Peer::TransactionIdMode(session_), GetParam().step == 1 ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(At, StoppedTokens,
                         ::testing::Values(Stop{"WakeUp", 1, "FF"},
                                           Stop{"TakenStart", 2, "FF 55 02 00 38 C6"},
                                           Stop{"SportsOptions", 3, "FF 55 05 00 4B 00 02 09 A5"},
                                           Stop{"Tokens", 4, Frame("00 39", 5, test::Tokens(""))}),
                         test::RowName());

class StoppedEnd : public StoppedIdentification {};

TEST_P(StoppedEnd, DoesNotFallBack) {
  IgnoreWithId("00 3B 00");
  DockTokenIpod();
  AcceptLingoes();
  ExpectStopped();
  EXPECT_EQ(Peer::TransactionIdMode(session_), 0) << "the tokens have failed all the same";
}

INSTANTIATE_TEST_SUITE_P(At, StoppedEnd,
                         ::testing::Values(Stop{"UnansweredEnd", 5, "FF 55 05 00 3B 00 08 00 B8"}),
                         test::RowName());

class StoppedLingoes : public StoppedIdentification {};

TEST_P(StoppedLingoes, EndAtOnce) {
  DockLingoIpod();
  ExpectStopped();
}

INSTANTIATE_TEST_SUITE_P(
    At, StoppedLingoes,
    ::testing::Values(
        Stop{"WakeUp", 1, "FF"},
        Stop{"FirstAnnouncement", 2, "FF 55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE"},
        Stop{"Survey", 3, "FF 55 03 00 0F 0C E2"},
        Stop{"SecondAnnouncement", 4, "FF 55 0E 00 13 00 00 12 19 00 00 00 00 00 00 00 00 B4"},
        Stop{"Preferences", 5, "FF 55 05 00 2B 00 01 01 CE"}),
    test::RowName());

class StoppedTooOld : public StoppedIdentification {};

TEST_P(StoppedTooOld, IsNotJudged) {
  AnswerVersion("00", "01 01");
  DockLingoIpod();
  ExpectStopped();
}

INSTANTIATE_TEST_SUITE_P(At, StoppedTooOld,
                         ::testing::Values(Stop{"Survey", 3, "FF 55 03 00 0F 0C E2"}),
                         test::RowName());

class Stopping : public Identification {};

TEST_F(Stopping, EndsLaterAttemptsToo) {
  for (stop_at_ = 2; stop_at_ <= 4; ++stop_at_) {
    session_.SetIDPSEnable(1);
    EXPECT_EQ(Identify(), 0);
    EXPECT_EQ(steps_, stop_at_);
    EXPECT_EQ(test::DrainTraceLog().size(), static_cast<std::size_t>(stop_at_ - 1));
    const std::vector<std::string> sent = DrainSent();
    EXPECT_EQ(test::Last(sent), "FF");
    EXPECT_EQ(sent.size(), static_cast<std::size_t>(stop_at_ * 2 - 1));
    EXPECT_EQ(session_.GetIDPSEnable(), stop_at_ == 4 ? 0 : 1);
  }
}

TEST_F(Stopping, AfterAStopTheNextCallIdentifies) {
  DockLingoIpod();
  for (stop_at_ = 1; stop_at_ <= 5; ++stop_at_) {
    session_.SetIDPSEnable(1);
    EXPECT_EQ(Identify(), 0);
  }
  stop_at_ = 0;
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
}

TEST_F(Stopping, CallbackGetsItsContext) {
  struct Calls {
    int count = 0;
  } calls;
  const auto keep_going = [](void* context) {
    ++static_cast<Calls*>(context)->count;
    return false;
  };
  EXPECT_EQ(session_.Command_IdentifyDeviceLingos(0, nullptr, keep_going, &calls), 0);
  EXPECT_EQ(calls.count, 1);
}

}  // namespace
