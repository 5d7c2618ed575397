// SPDX-License-Identifier: MIT
// What no honest iPod sends, over the line: random bytes, random frames, huge lengths, broken
// checksums and noise. The session works afterwards.
#include <string>

#include "support/packets.h"
#include "support/properties.h"
#include "support/session_test.h"

namespace {

using test::Bytes;
using test::kMillisecond;
using test::kSecond;
using test::ScriptedDevice;
using test::World;

// A docked session that answers when it is asked for the iPod's name, or not.
struct Dock {
  explicit Dock(std::uint64_t seed) : world({seed}) {
    world.line().Plug(ipod);
    ipod.Answer(test::Hex("FF 55 02 00 07 F7"), test::Hex("FF 55 04 00 08 41 00 B3"));
    world.Advance(2 * kSecond);
    EXPECT_EQ(session.Open(), 0);
    world.Advance(20 * kMillisecond);
  }
  ~Dock() { world.line().Unplug(); }

  bool Works() {
    wchar_t name[8] = {};
    return session.Command_RequestIpodName(name, 8) == 1 && std::wstring(name) == L"A";
  }

  ScriptedDevice ipod;
  World world;
  test::ChosenSession session;
};

#if IPODCOMM_HAS_RAPIDCHECK

RC_GTEST_PROP(HostileLine, RandomBytesAreSurvived, ()) {
  const auto bytes = *rc::gen::container<Bytes>(
      rc::gen::weightedOneOf<std::uint8_t>({{2, rc::gen::arbitrary<std::uint8_t>()},
                                            {1, rc::gen::just(std::uint8_t{0xFF})},
                                            {1, rc::gen::just(std::uint8_t{0x55})},
                                            {1, rc::gen::inRange<std::uint8_t>(0, 13)}}));
  Dock dock(1);
  dock.ipod.Send(bytes);
  dock.world.Advance(static_cast<std::int64_t>(bytes.size()) * 3 * kMillisecond);
  // A frame may have begun; what completes or breaks it ends before 1,023 bytes.
  dock.ipod.Send(Bytes(1100, 0x00));
  dock.world.Advance(1100 * 3 * kMillisecond);
  dock.session.Open();
  RC_ASSERT(dock.Works());
}

// Frames of random content, valid on the line, so that they reach routing and notifications.
RC_GTEST_PROP(HostileLine, RandomFramesAreSurvived, ()) {
  const auto body =
      *rc::gen::suchThat(rc::gen::container<Bytes>(rc::gen::oneOf(
                             rc::gen::arbitrary<std::uint8_t>(),
                             rc::gen::element<std::uint8_t>(0x00, 0x04, 0x09, 0x0C, 0x27, 0x03))),
                         [](const Bytes& bytes) { return !bytes.empty() && bytes.size() < 256; });
  Dock dock(2);
  CIpodCommPeer::TransactionIdMode(dock.session) = *rc::gen::inRange(0, 2);
  Bytes frame = {0xFF, 0x55, static_cast<std::uint8_t>(body.size())};
  unsigned sum = static_cast<unsigned>(body.size());
  for (const std::uint8_t byte : body) sum += byte;
  frame.insert(frame.end(), body.begin(), body.end());
  frame.push_back(static_cast<std::uint8_t>(0x100 - sum % 0x100));
  for (int i = 0; i < 3; ++i) dock.ipod.Send(frame);
  dock.world.Advance(static_cast<std::int64_t>(frame.size()) * 10 * kMillisecond + kSecond);
  CIpodCommPeer::TransactionIdMode(dock.session) = 0;
  RC_ASSERT(dock.session.Open() == 0);
  RC_ASSERT(dock.Works());
}

#else

TEST(HostileLine, RandomBytesAreSurvived) { GTEST_SKIP() << test::kNoRapidcheck; }
TEST(HostileLine, RandomFramesAreSurvived) { GTEST_SKIP() << test::kNoRapidcheck; }

#endif

TEST(HostileLine, HugeLargeFramesAreDroppedAndTheNextAnswerIsFound) {
  for (const char* header : {"FF 55 00 FF FF 00 08", "FF 55 00 04 00 00 08", "FF 55 00 00 00"}) {
    Dock dock(3);
    Bytes frame = test::Hex(header);
    frame.resize(1023, 0x20);
    dock.ipod.Send(frame);
    dock.world.Advance(4 * kSecond);
    EXPECT_TRUE(dock.Works()) << header;
  }
}

TEST(HostileLine, BrokenChecksumsAreDroppedAndTheNextAnswerIsFound) {
  for (int checksum = 0; checksum < 256; checksum += 5) {
    if (checksum == 0xB4) continue;
    Dock dock(4);
    Bytes frame = test::Hex("FF 55 03 00 08 41 00");
    frame.back() = static_cast<std::uint8_t>(checksum);
    dock.ipod.Send(frame);
    dock.world.Advance(100 * kMillisecond);
    EXPECT_EQ(dock.session.PeekNextReadPacket(), 0xFFFF) << checksum;
    EXPECT_TRUE(dock.Works()) << checksum;
  }
}

TEST(HostileLine, NoiseCostsCommandsAtMostTheirTime) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    Dock dock(seed);
    dock.world.line().to_host().SetNoise(50'000);
    dock.world.line().to_device().SetNoise(50'000);
    for (int i = 0; i < 5; ++i) {
      const std::int64_t start_us = dock.world.now_us();
      dock.Works();
      // Broken frames may start the wait over, once per attempt.
      EXPECT_LT(dock.world.now_us() - start_us, 10 * kSecond);
    }
    dock.world.line().to_host().Clear();
    dock.world.line().to_device().Clear();
    dock.world.Advance(100 * kMillisecond);
    EXPECT_EQ(dock.session.Open(), 0);
    EXPECT_TRUE(dock.Works()) << seed;
  }
}

}  // namespace
