// SPDX-License-Identifier: MIT
// Docks, serves, and docks again.
#include "screen/session_thread.h"

#include <utility>

#include "console/clock.h"
#include "console/failure.h"
#include "console/interrupt.h"

namespace ipodctl::screen {

namespace {

constexpr std::chrono::milliseconds kBeforeNextTry(1000);
constexpr std::chrono::milliseconds kTurn(50);
constexpr std::size_t kMostWishes = 8;

}  // namespace

SessionThread::SessionThread(const Options& options, const DockLine& dock,
                             std::shared_ptr<const Recording> recording)
    : options_(options), dock_(dock), recording_(std::move(recording)) {
  NoteUndocked("looking for an iPod on " + dock.device());
  thread_ = std::thread([this] { Run(); });
}

SessionThread::~SessionThread() { Leave(); }

void SessionThread::Ask(Wish wish) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (wishes_.size() < kMostWishes) wishes_.push_back(std::move(wish));
  asked_.notify_one();
}

void SessionThread::LookAt(View view) {
  const std::lock_guard<std::mutex> lock(mutex_);
  view_ = std::move(view);
}

std::shared_ptr<const Snapshot> SessionThread::Look() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return shown_;
}

void SessionThread::Leave() {
  Interrupt();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    leaving_ = true;
  }
  asked_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void SessionThread::Run() {
  while (!leaving_) {
    try {
      DockedIpod ipod(options_, dock_, recording_, &snapshot_);
      snapshot_.docked = true;
      Serve(ipod);
    } catch (const CommandFailure& failure) {
      NoteUndocked(failure.what());
    }
    std::unique_lock<std::mutex> lock(mutex_);
    asked_.wait_for(lock, kBeforeNextTry, [this] { return leaving_.load(); });
  }
}

// However it ends, a workout that goes on is ended with it.
void SessionThread::Serve(DockedIpod& ipod) {
  try {
    while (!leaving_) {
      if (const std::optional<Wish> wish = Next(ipod)) {
        CarryOut(*wish, ipod);
      } else {
        AwaitWish();
      }
    }
  } catch (const SessionLost&) {
    ipod.EndWorkout();
    throw;
  }
  ipod.EndWorkout();
  Show();
}

// What has a time comes first, then what was wished, then what the screen lacks.
std::optional<Wish> SessionThread::Next(DockedIpod& ipod) {
  if (ipod.workout_is_due()) {
    return Wish{"writing the workout", [](DockedIpod& docked) { docked.WriteWorkout(); }};
  }
  if (std::optional<Wish> wish = TakeWish()) return wish;
  if (ipod.player_is_due()) {
    return Wish{"asking what it plays", [](DockedIpod& docked) { docked.LookAtPlayer(); }};
  }
  const std::unique_lock<std::mutex> lock(mutex_);
  if (const auto lacking = ipod.Lacks(view_)) {
    return Wish{"reading " + *lacking, [view = view_](DockedIpod& docked) { docked.Read(view); }};
  }
  return std::nullopt;
}

std::optional<Wish> SessionThread::TakeWish() {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (wishes_.empty()) return std::nullopt;
  Wish wish = std::move(wishes_.front());
  wishes_.pop_front();
  snapshot_.message.clear();
  return wish;
}

void SessionThread::CarryOut(const Wish& wish, DockedIpod& ipod) {
  snapshot_.doing = wish.doing;
  snapshot_.doing_since = SteadyTime();
  Show();
  try {
    wish.carry_out(ipod);
  } catch (const SessionLost&) {
    throw;
  } catch (const CommandFailure& failure) {
    snapshot_.message = failure.what();
  }
  snapshot_.doing.clear();
  Show();
}

void SessionThread::NoteUndocked(const std::string& trouble) {
  const WorkoutSnapshot workout = snapshot_.workout;
  snapshot_ = {};
  snapshot_.trouble = trouble;
  snapshot_.workout = workout;
  Show();
  const std::lock_guard<std::mutex> lock(mutex_);
  wishes_.clear();
}

// No longer than a turn: the clock of a workout goes on, and the screen looks at something else.
void SessionThread::AwaitWish() {
  std::unique_lock<std::mutex> lock(mutex_);
  asked_.wait_for(lock, kTurn, [this] { return leaving_ || !wishes_.empty(); });
}

void SessionThread::Show() {
  auto snapshot = std::make_shared<const Snapshot>(snapshot_);
  const std::lock_guard<std::mutex> lock(mutex_);
  shown_ = std::move(snapshot);
}

}  // namespace ipodctl::screen
