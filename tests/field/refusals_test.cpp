// SPDX-License-Identifier: MIT
// Questions that an iPod refuses: what the refusal costs, and what is told of it.
#include <functional>

#include "field/docked.h"

namespace {

using test::Docked;
using test::kMillisecond;
using test::kSecond;

struct Question {
  const char* name;
  const char* habit;
  std::uint8_t status;
  std::function<int(CIpodComm&)> ask;
};

const std::vector<Question>& Questions() {
  static const std::vector<Question> kAll = {
      {"Version", "few-facts", 4,
       [](CIpodComm& session) {
         return session.Command_RequestLingoProtocolVersion(10, nullptr, nullptr);
       }},
      {"Events", "few-facts", 4,
       [](CIpodComm& session) {
         unsigned char mask[8] = {};
         return session.Command_GetEventNotification(mask);
       }},
      {"MaxPayload", "few-facts", 4,
       [](CIpodComm& session) { return session.Command_RequestMaxPayloadSize(); }},
      {"Preference", "authentication", 7,
       [](CIpodComm& session) { return session.Command_GetPreference(8, nullptr); }},
      {"TrackInfo", "no-track-info", 4,
       [](CIpodComm& session) {
         unsigned char information[8] = {};
         return session.Command_GetIndexedPlayingTrackInfo(0, 0, 0, information, 8);
       }},
      {"Name", "no-name", 4,
       [](CIpodComm& session) {
         wchar_t name[64] = {};
         return session.Command_RequestIpodName(name, 64);
       }},
  };
  return kAll;
}

class Refused : public ::testing::TestWithParam<Question> {
 protected:
  // Identified, with a track loaded and the General lingo's version known.
  static void Prepare(Docked* docked) {
    docked->GoToTracks();
    EXPECT_EQ(docked->session.Select(test::kTracks, 3UL), 1);
    EXPECT_EQ(docked->session.Command_RequestLingoProtocolVersion(0, nullptr, nullptr), 1);
  }
};

// The payload size and the name then count as told, the rest as not told.
TEST_P(Refused, CostsASecondUnderField) {
  Docked docked(test::SixtySongsWith(GetParam().habit), IPOD_CONDUCT_FIELD);
  Prepare(&docked);
  EXPECT_GT(docked.Elapsed([&] { GetParam().ask(docked.session); }), kSecond);
}

TEST_P(Refused, IsToldAtOnceUnderRobust) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    Docked docked(test::SixtySongsWith(GetParam().habit), conduct);
    Prepare(&docked);
    EXPECT_LT(docked.Elapsed([&] { EXPECT_EQ(GetParam().ask(docked.session), 0); }),
              100 * kMillisecond);
    tagIPOD_EXCHANGE exchange = {};
    EXPECT_EQ(docked.session.GetLastExchange(&exchange), 1);
    EXPECT_EQ(exchange.result, IPOD_EXCHANGE_REFUSED);
    EXPECT_EQ(exchange.status, GetParam().status);
    EXPECT_EQ(exchange.attempts, 1U);
  }
}

INSTANTIATE_TEST_SUITE_P(Questions, Refused, ::testing::ValuesIn(Questions()),
                         [](const ::testing::TestParamInfo<Question>& tested) {
                           return std::string(tested.param.name);
                         });

}  // namespace
