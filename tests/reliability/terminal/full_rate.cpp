// SPDX-License-Identifier: MIT
// A session on a real pseudo-terminal that has the speed of a line, and both directions of it full:
// lists, the state of the player and workouts by the host, states of the buttons by a second
// thread, and a notification of the position every few milliseconds. Every command has to be
// answered right, every state has to arrive, every track of the player has to be seen, and handles,
// threads and heap stay the same.
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "dock.h"
#include "held.h"
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using terminal::Account;
using terminal::Dock;
using terminal::Held;

constexpr std::uint32_t kBaud = 57600;
constexpr double kBytesPerSecond = kBaud / 10.5;
constexpr unsigned long kTracks = 300;
// The iPod lists tracks by their names, so that all numbers in them have three digits.
constexpr unsigned long kFirstNumber = 100;
constexpr std::int64_t kTrackLengthMs = 2000;
constexpr int kIntervals = 5;

// Notifications of 14 bytes every 5 ms and names of some 35 bytes every 14 ms: together a little
// less than the line takes, as an iPod says no more than that.
ipodsim::Settings BusyIpod() {
  ipodsim::Settings settings;
  settings.library = {};
  settings.library.name = "Pod";
  for (unsigned long number = 0; number < kTracks; ++number) {
    ipodsim::Track track;
    track.title = "A track with number " + std::to_string(kFirstNumber + number);
    track.artist = "Somebody";
    track.length_ms = kTrackLengthMs;
    settings.library.tracks.push_back(track);
  }
  settings.position_period = 5 * ipodsim::kMillisecond;
  settings.record_period = 14 * ipodsim::kMillisecond;
  return settings;
}

// Counts what went right, and keeps the first thing that did not.
class Verdict {
 public:
  void Expect(bool holds, const char* what) {
    ++judged_;
    if (holds) return;
    if (failed_++ == 0) first_ = what;
  }
  void Print() const {
    std::printf("%llu results, %llu wrong%s%s\n", judged_, failed_,
                first_ == nullptr ? "" : ", first: ", first_ == nullptr ? "" : first_);
  }
  bool good() const { return failed_ == 0; }

 private:
  unsigned long long judged_ = 0;
  unsigned long long failed_ = 0;
  const char* first_ = nullptr;
};

// Does the same again and again beside the host's commands, on a thread of its own.
class Beside {
 public:
  Beside(milliseconds period, std::function<void()> turn)
      : thread_([this, period, turn = std::move(turn)] {
          for (auto next = steady_clock::now(); !stopping_; std::this_thread::sleep_until(next)) {
            turn();
            next += period;
          }
        }) {}
  ~Beside() { Stop(); }
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;

  void Stop() {
    stopping_ = true;
    if (thread_.joinable()) thread_.join();
  }

 private:
  std::atomic<bool> stopping_{false};
  std::thread thread_;
};

constexpr milliseconds kPeriod(20);

// Says that no button is held, which the iPod does not answer. What it counts is read once it has
// stopped.
class Buttons {
 public:
  explicit Buttons(CIpodComm& session) : session_(session) {}

  void Stop() { beside_.Stop(); }
  unsigned long long sent() const { return sent_; }
  unsigned long long failed() const { return failed_; }

 private:
  void Send() {
    constexpr int kAtATime = 10;
    const unsigned char none[] = {0x00};
    for (int i = 0; i < kAtATime; ++i) {
      tagIPOD_WRITE_PARAMS write = {0x00, ipod::IPOD_LINGO_SIMPLEREMOTE, none, sizeof none};
      ++(session_.WriteCommand(&write) == IPOD_COMM_OK ? sent_ : failed_);
    }
  }

  CIpodComm& session_;
  unsigned long long sent_ = 0;
  unsigned long long failed_ = 0;
  Beside beside_{kPeriod, [this] { Send(); }};
};

// Looks at what notifications have told, often enough to see each track. What it counts is read
// once it has stopped.
class Follower {
 public:
  explicit Follower(CIpodComm& session) : session_(session) {}

  void Stop() { beside_.Stop(); }
  unsigned long long seen() const { return seen_; }
  unsigned long long missed() const { return missed_; }

 private:
  void Look() {
    tagIPOD_PLAY_STATUS status = {};
    session_.GetPlayStatus(&status);
    if (status.track_index == last_) return;
    if (last_ != kTracks && status.track_index != (last_ + 1) % kTracks) ++missed_;
    last_ = status.track_index;
    ++seen_;
  }

  CIpodComm& session_;
  unsigned long last_ = kTracks;  // none yet
  unsigned long long seen_ = 0;
  unsigned long long missed_ = 0;
  Beside beside_{kPeriod, [this] { Look(); }};
};

bool Begin(CIpodComm& session) {
  tagIPOD_CONDUCT conduct = IPOD_CONDUCT_FAST;
  session.SetIDPSEnable(1);
  return session.SetConduct(&conduct) == 1 && session.Open() == 0 &&
         session.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr) == 1 &&
         session.Command_EnterRemoteUIMode() == 1 && session.Command_SetRepeat(2, 0) == 1 &&
         session.SelectTop(ipod::IPOD_CATEGORY_TRACK, nullptr, 0) == 1 &&
         session.Command_SelectDBRecord(ipod::IPOD_CATEGORY_TRACK, 0) == 1 &&
         session.SetNotification(0x0000000F) == 1;
}

void ReadList(CIpodComm& session, Verdict& verdict) {
  unsigned long count = 0;
  verdict.Expect(session.SelectTop(ipod::IPOD_CATEGORY_TRACK, &count, 0) == 1 && count == kTracks,
                 "the number of tracks");
  session.Command_RetrieveCategorizedDatabaseRecords(0, kTracks, ipod::IPOD_CATEGORY_TRACK);
  for (unsigned long number = 0; number < kTracks; ++number) {
    unsigned long index = kTracks;
    wchar_t name[40] = {};
    const int read = session.GetNextCategorizedRecord(&index, name, 40);
    const std::wstring expected = L"A track with number " + std::to_wstring(kFirstNumber + number);
    verdict.Expect(read == 1 && index == number && name == expected, "a track's name");
  }
}

void ReadPlayer(CIpodComm& session, Verdict& verdict) {
  unsigned char state = 99;
  unsigned long length = 0;
  unsigned long position = 0;
  verdict.Expect(session.Command_GetPlayStatus(&state, &length, &position) == 1 &&
                     state == ipod::IPOD_PLAYERSTATE_PLAYING && length == kTrackLengthMs &&
                     position <= kTrackLengthMs,
                 "the player's state");
  wchar_t name[32] = {};
  verdict.Expect(session.Command_RequestIpodName(name, 32) == 1 && std::wcscmp(name, L"Pod") == 0,
                 "the iPod's name");
}

void WriteWorkout(CIpodComm& session, Verdict& verdict) {
  verdict.Expect(session.Sports_StartWorkout(L"0042", L"Nord", L"B7", L"123-4",
                                             IPOD_EQUIPMENT_TYPE_BIKE, 72.5) == 1,
                 "a workout's start");
  for (int number = 0; number < kIntervals; ++number) {
    verdict.Expect(session.Sports_IntervalWorkout(
                       number == 0 ? IPOD_INTERVAL_TYPE_START : IPOD_INTERVAL_TYPE_CONTINUE,
                       number * 60, number * 11.0, number * 0.25, IPOD_DISTANCE_TYPE_KM, 240,
                       IPOD_SPEED_TYPE_PACE, 1.5, 118, 4) == 1,
                   "an interval");
  }
  verdict.Expect(session.Sports_FinishWorkout(180, 33, 0.75, IPOD_DISTANCE_TYPE_KM, 240,
                                              IPOD_SPEED_TYPE_PACE, 109) == 1,
                 "a workout's end");
  tagIPOD_WORKOUT_FILE file = {};
  session.GetWorkoutFile(&file);
  verdict.Expect(file.failed_writes == 0, "every write of a workout");
}

void Round(CIpodComm& session, Verdict& verdict) {
  ReadList(session, verdict);
  ReadPlayer(session, verdict);
  WriteWorkout(session, verdict);
}

void Print(const char* when, const Held& held) {
  std::printf("%s: %u handles, %u threads, %zu bytes of heap\n", when, held.handles, held.threads,
              held.heap);
  std::fflush(stdout);
}

// How full the line was, and what came through it.
void Print(const Account& account, double seconds) {
  const auto part = [&](std::uint64_t bytes) {
    return 100.0 * static_cast<double>(bytes) / (seconds * kBytesPerSecond);
  };
  std::printf("%.0f s; of the line to the iPod %.0f %% used, of that from it %.0f %%\n", seconds,
              part(account.bytes_from_accessory), part(account.bytes_to_accessory));
}

int Fail(const char* what) {
  std::printf("FAILED: %s\n", what);
  return 1;
}

int Judge(const Verdict& verdict, const Buttons& buttons, const Follower& follower,
          const Account& account, unsigned long dropped) {
  verdict.Print();
  std::printf("%llu states of the buttons sent, %llu not written, %llu arrived\n", buttons.sent(),
              buttons.failed(), static_cast<unsigned long long>(account.buttons));
  std::printf("%llu tracks of the player seen, %llu missed\n", follower.seen(), follower.missed());
  std::printf("%llu workouts, %llu left open; %lu packets dropped, %llu mistakes\n",
              static_cast<unsigned long long>(account.files),
              static_cast<unsigned long long>(account.open_files), dropped,
              static_cast<unsigned long long>(account.mistakes));
  std::printf("asked again %llu times, after a pause of the iPod's\n",
              static_cast<unsigned long long>(account.asked_again));
  if (!verdict.good()) return Fail("a result is wrong");
  if (buttons.failed() != 0 || buttons.sent() != account.buttons) return Fail("a frame was lost");
  if (follower.missed() != 0) return Fail("a notification was lost");
  if (dropped != 0) return Fail("packets were dropped");
  if (account.open_files != 0 || account.mistakes != 0) return Fail("the iPod was told nonsense");
  return 0;
}

int Run(unsigned long seconds, const std::string& link) {
  Dock dock(BusyIpod(), link, kBaud);
  setenv("IPODCOMM_COM2", link.c_str(), 1);
  CIpodComm session;
  if (!Begin(session)) return Fail("the iPod was not identified, or does not play");
  Verdict verdict;
  const auto began = steady_clock::now();
  const Account before = dock.Report();
  Buttons buttons(session);
  Follower follower(session);
  Round(session, verdict);
  const Held first = terminal::HeldNow();
  Print("after the first round", first);
  unsigned long rounds = 1;
  while (steady_clock::now() - began < std::chrono::seconds(seconds)) {
    Round(session, verdict);
    if (++rounds % 100 == 0) Print("still", terminal::HeldNow());
  }
  const Held last = terminal::HeldNow();
  const std::chrono::duration<double> taken = steady_clock::now() - began;
  follower.Stop();
  buttons.Stop();
  std::this_thread::sleep_for(milliseconds(500));  // the last frames are on the way
  Account account = dock.Report();
  account.bytes_from_accessory -= before.bytes_from_accessory;
  account.bytes_to_accessory -= before.bytes_to_accessory;
  Print("in the end", last);
  std::printf("%lu rounds, ", rounds);
  Print(account, taken.count());
  const int status = Judge(verdict, buttons, follower, account, session.GetDroppedPackets());
  if (const char* const grown = terminal::Grown(first, last)) return Fail(grown);
  return status;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3 || std::strcmp(arguments[1], "--seconds") != 0) {
    std::fputs("usage: terminal_full_rate --seconds N\n", stderr);
    return 64;
  }
  char folder[] = "/tmp/terminal-full-rate-XXXXXX";
  if (mkdtemp(folder) == nullptr) return 1;
  const int status =
      Run(std::strtoul(arguments[2], nullptr, 10), std::string(folder) + "/terminal");
  rmdir(folder);
  return status;
}
