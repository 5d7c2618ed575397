// SPDX-License-Identifier: MIT
// A whole story with the simulated iPod in the dock, under each conduct and however its bytes come:
// as they are sent, byte by byte, split, late, or with junk between the frames. Every one of them
// ends the same: identified, browsed, played and followed, without one protocol mistake.
#include <map>
#include <string>

#include "simulator/simulated_ipod.h"
#include "support/packets.h"
#include "support/session_test.h"
#include "world/line/serial_device.h"

namespace {

using ipodcomm::virtual_platform::SerialDevice;
using test::Bytes;
using test::kMillisecond;
using test::kSecond;
using test::World;
using ::testing::IsEmpty;

// ---- How bytes come

// A piece of what the iPod sends, and how long after the piece before it is sent.
struct Piece {
  Bytes bytes;
  std::int64_t gap_us = 0;
};

struct Delivery {
  const char* name;
  // What becomes of a frame.
  std::vector<Piece> (*deliver)(const Bytes& frame);
};

std::vector<Piece> AsSent(const Bytes& frame) { return {{frame}}; }

std::vector<Piece> ByteByByte(const Bytes& frame) {
  std::vector<Piece> pieces;
  pieces.reserve(frame.size());
  for (const std::uint8_t byte : frame) pieces.push_back({{byte}, 3 * kMillisecond});
  return pieces;
}

// In two, at a place that moves with the frame's content.
std::vector<Piece> Split(const Bytes& frame) {
  const auto place =
      frame.begin() + 1 + static_cast<std::ptrdiff_t>(frame.back() % (frame.size() - 1));
  return {{Bytes(frame.begin(), place)}, {Bytes(place, frame.end()), 40 * kMillisecond}};
}

// Within the second that the default conduct waits; what comes later it takes for something else.
std::vector<Piece> Late(const Bytes& frame) { return {{frame, 200 * kMillisecond}}; }

// Start bytes, zeros and lengths, but no sync byte, which would be a frame's beginning.
std::vector<Piece> BehindJunk(const Bytes& frame) {
  return {{{0x55, 0x00, 0x02, 0xFE}}, {frame, kMillisecond}};
}

std::ostream& operator<<(std::ostream& out, const Delivery& delivery) {
  return out << delivery.name;
}

constexpr Delivery kDeliveries[] = {{"AsSent", AsSent},
                                    {"ByteByByte", ByteByByte},
                                    {"Split", Split},
                                    {"Late", Late},
                                    {"BehindJunk", BehindJunk}};

// The simulated iPod behind a line that delivers so.
class DeliveredIpod : public SerialDevice {
 public:
  DeliveredIpod(const ipodsim::Settings& settings, const Delivery& delivery)
      : ipod_(settings), delivery_(delivery) {}

  const ipodsim::SimulatedIpod& ipod() const { return ipod_; }

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override {
    ipod_.Receive(data, size, now_us);
  }
  std::optional<std::int64_t> NextEvent() override {
    const std::optional<std::int64_t> next = ipod_.NextEvent();
    if (pieces_.empty()) return next;
    const std::int64_t due_us = pieces_.begin()->first;
    return next ? std::min(*next, due_us) : due_us;
  }
  Bytes Transmit(std::int64_t now_us) override {
    const Bytes frame = ipod_.Transmit(now_us);
    if (!frame.empty()) {
      std::int64_t due_us = now_us;
      for (Piece& piece : delivery_.deliver(frame)) {
        due_us = std::max(last_us_, due_us + piece.gap_us);
        last_us_ = due_us;
        pieces_.emplace(due_us, std::move(piece.bytes));
      }
    }
    Bytes due;
    while (!pieces_.empty() && pieces_.begin()->first <= now_us) {
      const Bytes& piece = pieces_.begin()->second;
      due.insert(due.end(), piece.begin(), piece.end());
      pieces_.erase(pieces_.begin());
    }
    return due;
  }

 private:
  ipodsim::SimulatedIpod ipod_;
  const Delivery& delivery_;
  std::multimap<std::int64_t, Bytes> pieces_;
  std::int64_t last_us_ = 0;  // when the last piece goes out
};

// ---- The story

struct Conduct {
  const char* name;
  tagIPOD_CONDUCT conduct;
};

std::ostream& operator<<(std::ostream& out, const Conduct& conduct) { return out << conduct.name; }

constexpr Conduct kConducts[] = {
    {"Field", IPOD_CONDUCT_FIELD}, {"Robust", IPOD_CONDUCT_ROBUST}, {"Fast", IPOD_CONDUCT_FAST}};

using Case = std::tuple<Conduct, Delivery, std::uint64_t>;

constexpr std::size_t kTracks = 40;

std::string Title(std::size_t track) {
  return std::string(track < 10 ? "Track 0" : "Track ") + std::to_string(track);
}

ipodsim::Settings SettingsOf(std::uint64_t seed) {
  ipodsim::Settings settings;
  settings.seed = seed;
  settings.remote_ui_is_pending_first = false;  // the default conduct takes that for the answer
  settings.library = {};
  settings.library.name = "Pod";
  for (std::size_t i = 0; i < kTracks; ++i) {
    ipodsim::Track track;
    track.title = Title(i);
    track.artist = "Ann";
    track.album = "Rivers";
    track.genre = "Rock";
    track.length_ms = 180'000;
    settings.library.tracks.push_back(track);
  }
  return settings;
}

class DeliveredStories : public ::testing::TestWithParam<Case> {
 protected:
  static void Identify(CIpodComm& session) {
    tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
    session.SetIDPSEnable(1);
    EXPECT_NE(session.Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr), 0);
    EXPECT_EQ(how, IPOD_IDENTIFY_RESULT_IDPS);
  }
  static void Browse(CIpodComm& session) {
    unsigned long tracks = 0;
    EXPECT_EQ(session.Command_EnterRemoteUIMode(), 1);
    EXPECT_EQ(session.SelectTop(5, &tracks, 0), 1);
    EXPECT_EQ(tracks, kTracks);
    session.Command_RetrieveCategorizedDatabaseRecords(0, 20, 5);
    wchar_t name[64] = {};
    for (std::size_t i = 0; i < 20; ++i) {
      ASSERT_EQ(session.GetNextCategorizedRecord(name, 64), 1);
      const std::string title = Title(i);
      EXPECT_EQ(std::wstring(name), std::wstring(title.begin(), title.end()));
    }
  }
  static void PlayAndFollow(World& world, CIpodComm& session) {
    session.SetNotification(0x0000000F);
    EXPECT_EQ(session.Select(5, 3UL), 1);
    world.Advance(4 * kSecond);
    tagIPOD_PLAY_STATUS status = {};
    session.GetPlayStatus(&status);
    EXPECT_GE(status.position, 2U);
    EXPECT_LE(status.position, 5U);
  }
};

TEST_P(DeliveredStories, EndTheSame) {
  const auto& [conduct, delivery, seed] = GetParam();
  test::DrainTraceLog();
  DeliveredIpod device(SettingsOf(seed), delivery);
  World world({seed});
  world.line().Plug(device);
  {
    CIpodComm session;
    world.Advance(2 * kSecond);
    EXPECT_EQ(session.SetConduct(&conduct.conduct), 1);
    ASSERT_EQ(session.Open(), 0);
    Identify(session);
    Browse(session);
    PlayAndFollow(world, session);
    session.Close();
  }
  world.Advance(2 * kSecond);
  for (const auto& mistake : device.ipod().mistakes()) {
    ADD_FAILURE() << mistake.name << ": " << mistake.detail;
  }
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  world.line().Unplug();
}

INSTANTIATE_TEST_SUITE_P(Under, DeliveredStories,
                         ::testing::Combine(::testing::ValuesIn(kConducts),
                                            ::testing::ValuesIn(kDeliveries),
                                            ::testing::Range<std::uint64_t>(1, 4)),
                         [](const auto& tested) {
                           return std::string(std::get<0>(tested.param).name) +
                                  std::get<1>(tested.param).name +
                                  std::to_string(std::get<2>(tested.param));
                         });

}  // namespace
