// SPDX-License-Identifier: MIT
#include "figures/figures.h"

#include <algorithm>
#include <memory>
#include <string>

#include "ipodcomm/CIpodComm.h"
#include "simulator/simulated_ipod.h"
#include "world/line/serial_device.h"
#include "world/world.h"

namespace test {

namespace {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::SerialDevice;
using ipodcomm::virtual_platform::World;

constexpr unsigned char kTracks = 5;

// One and a half stop bits: 10.5 bits a byte at 57600 baud are 21 at twice the speed.
constexpr std::uint32_t kTwiceTheBaud = 115200;
constexpr std::uint32_t kTwiceTheBits = 21;

std::int64_t LineTime(std::size_t bytes) {
  return static_cast<std::int64_t>(bytes * kTwiceTheBits * kSecond / kTwiceTheBaud);
}

// The simulated iPod, and how long the line and it were busy.
class TimedIpod : public SerialDevice {
 public:
  explicit TimedIpod(const ipodsim::Settings& settings) : ipod_(settings) {}

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override {
    bytes_ += size;
    free_us_ = std::max(free_us_, now_us);
    ipod_.Receive(data, size, now_us);
  }
  std::optional<std::int64_t> NextEvent() override { return ipod_.NextEvent(); }
  std::vector<std::uint8_t> Transmit(std::int64_t now_us) override {
    std::vector<std::uint8_t> sent = ipod_.Transmit(now_us);
    if (sent.empty()) return sent;
    bytes_ += sent.size();
    sent_ += static_cast<std::int64_t>(sent.size());
    preparing_us_ += std::max<std::int64_t>(now_us - free_us_, 0);
    free_us_ = std::max(free_us_, now_us) + LineTime(sent.size());
    return sent;
  }

  std::int64_t sent() const { return sent_; }
  std::int64_t busy_us() const { return LineTime(bytes_) + preparing_us_; }

 private:
  ipodsim::SimulatedIpod ipod_;
  std::size_t bytes_ = 0;
  std::int64_t sent_ = 0;
  std::int64_t preparing_us_ = 0;
  std::int64_t free_us_ = 0;  // when the last byte of either side has arrived
};

ipodsim::Settings SettingsOfTracks(unsigned long tracks) {
  ipodsim::Settings settings;
  settings.fixed_latency = 8 * kMillisecond;
  settings.remote_ui_is_pending_first = false;
  settings.asks_accessory = false;  // nothing is on the line but what the host asks for
  if (tracks == 0) return settings;
  settings.library = {};
  settings.library.name = "Pod";
  for (unsigned long i = 0; i < tracks; ++i) {
    ipodsim::Track track;
    const std::string number = std::to_string(i);
    track.title = "Track " + std::string(14 - number.size(), '0') + number;
    track.artist = "Ann";
    track.album = "Rivers";
    track.genre = "Rock";
    track.length_ms = 180'000;
    settings.library.tracks.push_back(track);
  }
  return settings;
}

// A session on that line, in the conduct that is measured.
class Docked {
 public:
  explicit Docked(const tagIPOD_CONDUCT& conduct, unsigned long tracks = 0)
      : ipod_(SettingsOfTracks(tracks)), world_({1}) {
    world_.line().SetSpeed(kTwiceTheBaud, kTwiceTheBits);
    world_.line().Plug(ipod_);
    session_ = std::make_unique<CIpodComm>();
    world_.Advance(2 * kSecond);
    session_->SetConduct(&conduct);
    session_->SetIDPSEnable(1);
    session_->Open();
  }
  Docked(const Docked&) = delete;
  Docked& operator=(const Docked&) = delete;
  ~Docked() {
    session_->Close();
    session_.reset();
    world_.line().Unplug();
  }

  CIpodComm& session() { return *session_; }
  bool Identify() {
    return session_->Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr) != 0;
  }
  // Lets the line fall quiet, for this much longer than a second.
  void Rest(std::int64_t phase_us = 0) { world_.Advance(kSecond + phase_us); }

  template <class Action>
  Figure Measure(Action action) {
    const std::int64_t start_us = world_.now_us();
    const std::int64_t busy_us = ipod_.busy_us();
    const std::int64_t sent = ipod_.sent();
    if (!action()) return {};
    return {world_.now_us() - start_us, ipod_.busy_us() - busy_us, ipod_.sent() - sent};
  }

 private:
  TimedIpod ipod_;
  World world_;
  std::unique_ptr<CIpodComm> session_;
};

}  // namespace

Figure MeasureNames(const tagIPOD_CONDUCT& conduct, unsigned long count) {
  Docked docked(conduct, count);
  CIpodComm& session = docked.session();
  if (!docked.Identify() || session.Command_EnterRemoteUIMode() == 0 ||
      session.SelectTop(kTracks, nullptr, 0) == 0) {
    return {};
  }
  docked.Rest();
  return docked.Measure([&session, count] {
    session.Command_RetrieveCategorizedDatabaseRecords(0, count, kTracks);
    wchar_t name[64] = {};
    unsigned long names = 0;
    while (names < count && session.GetNextCategorizedRecord(name, 64) == 1) ++names;
    return names == count;
  });
}

Figure MeasureExchange(const tagIPOD_CONDUCT& conduct) {
  constexpr int kQuestions = 100;
  constexpr std::int64_t kPhaseUs = 173;
  Docked docked(conduct);
  if (!docked.Identify() || docked.session().Command_EnterRemoteUIMode() == 0) return {};
  Figure slowest;
  for (int i = 0; i < kQuestions; ++i) {
    docked.Rest(i * kPhaseUs);
    const Figure figure =
        docked.Measure([&docked] { return docked.session().Command_GetShuffle(nullptr) == 1; });
    if (figure.taken_us == 0) return {};
    if (figure.taken_us > slowest.taken_us) slowest = figure;
  }
  return slowest;
}

Figure MeasureIdentification(const tagIPOD_CONDUCT& conduct) {
  // It pauses before it begins and before it asks for the options, and at its end waits for the
  // iPod to ask for the mode, which this one does not. The two sync bytes that wake the iPod up are
  // paused for under every conduct.
  constexpr std::int64_t kPausesUs = (100 + 300 + 1000 + 2 * 20) * kMillisecond;
  Docked docked(conduct);
  Figure figure = docked.Measure([&docked] { return docked.Identify(); });
  figure.floor_us += kPausesUs;
  return figure;
}

Figure MeasureWorkout(const tagIPOD_CONDUCT& conduct, int intervals) {
  Docked docked(conduct);
  CIpodComm& session = docked.session();
  if (!docked.Identify()) return {};
  docked.Rest();
  return docked.Measure([&session, intervals] {
    int done = session.Sports_StartWorkout(L"ACME", L"Acme", L"T9", L"1",
                                           IPOD_EQUIPMENT_TYPE_TREADMILL, 70.5);
    for (int second = 0; second < intervals; ++second) {
      done += session.Sports_IntervalWorkout(
          second == 0 ? IPOD_INTERVAL_TYPE_START : IPOD_INTERVAL_TYPE_CONTINUE, second,
          second * 0.125, second * 0.003, IPOD_DISTANCE_TYPE_KM, 330, IPOD_SPEED_TYPE_PACE, 1.5,
          140, 6);
    }
    done += session.Sports_FinishWorkout(intervals, 450, 10.8, IPOD_DISTANCE_TYPE_KM, 330,
                                         IPOD_SPEED_TYPE_PACE, 140);
    return done == intervals + 2;
  });
}

}  // namespace test
