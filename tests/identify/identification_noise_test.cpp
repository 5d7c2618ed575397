// SPDX-License-Identifier: MIT
// Identification against iPods that answer anything at all: it always ends, its result and outcome
// agree, and the next iPod is identified as if nothing had been. Answers are drawn at random.
#include <gtest/gtest.h>

#include <array>

#include "identify/identification.h"
#include "support/properties.h"

namespace {

#if IPODCOMM_HAS_RAPIDCHECK

using ipodcomm::virtual_platform::ScriptedDevice;
using ipodcomm::virtual_platform::World;
using test::Bytes;
using test::Frame;

constexpr std::array<const char*, 9> kRequestsWithoutIds = {"00 38",
                                                            test::kIdentifyGeneralOnly,
                                                            test::kIdentifyLingoes,
                                                            test::kIdentifyLingoesWithSports,
                                                            "00 0F 00",
                                                            "00 0F 03",
                                                            "00 0F 04",
                                                            "00 0F 09",
                                                            "00 0F 0C"};

// Behind the announcement, without a host version and a model number.
const std::string kTokens = [] {
  std::string tokens = test::Tokens("");
  for (const char* version : {"04 02 05 00", "05 02 05 00"}) {
    tokens.replace(tokens.find(version) + 3, 5, "00 00");
  }
  return tokens;
}();

// A docked session in a world of its own, since a property is tried many times in one test.
class Dock {
 public:
  Dock() {
    world_.line().Plug(ipod_);
    test::ChooseConduct(session_.emplace());
    world_.Advance(2 * test::kSecond);
    session_->Open();
    session_->SetIDPSEnable(1);
  }
  ~Dock() {
    session_.reset();
    world_.line().Unplug();
  }

  void Answer(const std::string& request, const Bytes& reply) {
    ipod_.Answer(test::Hex(request), reply);
  }
  // @return whether the iPod was identified, and a consistent outcome.
  bool Identify() {
    tagIPOD_IDENTIFY_RESULT result = IPOD_IDENTIFY_RESULT_NONE;
    const int identified = session_->Command_IdentifyDeviceLingos(0, &result, nullptr, nullptr);
    const bool by_something =
        result == IPOD_IDENTIFY_RESULT_IDPS || result == IPOD_IDENTIFY_RESULT_LINGOS;
    RC_ASSERT((identified != 0) == by_something);
    test::DrainTraceLog();
    return identified != 0;
  }
  // Another iPod is docked, which is plain and sound.
  void DockSoundIpod() {
    world_.line().Unplug();
    world_.line().Plug(sound_);
    session_->Close();
    world_.Advance(2 * test::kSecond);
    RC_ASSERT(session_->Open() == 0);
    CIpodCommPeer::TransactionIdMode(*session_) = 0;
    session_->SetIDPSEnable(0);
    const auto reply = [this](const char* request, const char* answer) {
      sound_.Answer(test::Hex(Frame(request)), test::Hex(Frame(answer)));
    };
    reply(test::kIdentifyGeneralOnly, test::kIdentified);
    reply(test::kIdentifyLingoes, test::kIdentified);
    reply("00 0F 00", "00 10 00 01 02");
    reply("00 0F 03", "00 10 03 01 01");
    reply("00 0F 04", "00 10 04 01 08");
    reply("00 0F 09", "00 10 09 01 00");
    reply("00 0F 0C", "00 10 0C 01 00");
    reply("00 4F", "00 51 00 00 00 00 00 00 00 00");
    reply("00 49 00 00 00 00 00 00 00 00", "00 02 00 49");
  }

 private:
  World world_;
  ScriptedDevice ipod_;
  ScriptedDevice sound_;
  std::optional<CIpodComm> session_;
};

// More identifiers than an identification steps through with all its retries.
constexpr std::uint16_t kIds = 20;

// Scripts every request of an identification with the answers in turn.
void AnswerEverything(Dock& dock, const std::vector<Bytes>& answers) {
  std::size_t next = 0;
  const auto answer = [&](const std::string& request) {
    dock.Answer(request, answers[next++ % answers.size()]);
  };
  for (const char* request : kRequestsWithoutIds) answer(Frame(request));
  for (std::uint16_t id = 0; id < kIds; ++id) {
    answer(Frame("00 11", id, ""));
    for (const char* lingo : {"00", "09", "04"}) answer(Frame("00 4B", id, lingo));
    for (const char* announcement : {test::kAnnounceWithSports, test::kAnnounceWithoutSports,
                                     test::kAnnounceGeneralThriceWithoutSports}) {
      answer(Frame("00 39", id, announcement));
    }
    answer(Frame("00 39", id, kTokens));
    answer(Frame("00 3B", id, "00"));
    answer(Frame("00 4F", id, ""));
  }
}

RC_GTEST_PROP(IdentificationNoise, RawBytesAreSurvived, ()) {
  Dock dock;
  AnswerEverything(dock, *rc::gen::container<std::vector<Bytes>>(16, rc::gen::arbitrary<Bytes>()));
  dock.Identify();
  dock.DockSoundIpod();
  RC_ASSERT(dock.Identify());
}

// A frame that is in order but may say anything, most often of the General lingo.
rc::Gen<Bytes> AnyFrame() {
  return rc::gen::map(
      rc::gen::tuple(rc::gen::weightedOneOf<std::uint8_t>(
                         {{8, rc::gen::just<std::uint8_t>(0)},
                          {1, rc::gen::element<std::uint8_t>(2, 3, 4, 9, 12, 255)}}),
                     rc::gen::oneOf(rc::gen::element<std::uint8_t>(0x02, 0x03, 0x10, 0x12, 0x27,
                                                                   0x3A, 0x3C, 0x4C, 0x51),
                                    rc::gen::arbitrary<std::uint8_t>()),
                     rc::gen::arbitrary<Bytes>()),
      [](const std::tuple<std::uint8_t, std::uint8_t, Bytes>& drawn) {
        Bytes body = {std::get<0>(drawn), std::get<1>(drawn)};
        const Bytes& data = std::get<2>(drawn);
        body.insert(body.end(), data.begin(), data.end());
        if (body.size() > 255) body.resize(255);
        return test::Hex(Frame(test::ToHex(body)));
      });
}

// The start is taken half of the time, so that tokens are met as often as lingoes.
RC_GTEST_PROP(IdentificationNoise, AnswersThatSayAnythingAreSurvived, ()) {
  Dock dock;
  if (*rc::gen::arbitrary<bool>()) {
    dock.Answer(Frame(test::kStart), test::Hex(Frame(test::kStartTaken)));
  }
  AnswerEverything(dock, *rc::gen::container<std::vector<Bytes>>(16, AnyFrame()));
  dock.Identify();
  dock.DockSoundIpod();
  RC_ASSERT(dock.Identify());
}

#else

TEST(IdentificationNoise, RawBytesAreSurvived) { GTEST_SKIP() << test::kNoRapidcheck; }
TEST(IdentificationNoise, AnswersThatSayAnythingAreSurvived) {
  GTEST_SKIP() << test::kNoRapidcheck;
}

#endif

}  // namespace
