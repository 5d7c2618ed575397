// SPDX-License-Identifier: MIT
// The session beside the screen. Its thread docks the iPod, and docks it again when it comes back;
// it carries out wishes, one after the other, reads what the screen looks at, and keeps a snapshot
// of what the iPod does. The screen never waits for the iPod.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "ipod/dock_line.h"
#include "options.h"
#include "screen/snapshot.h"
#include "screen/wish.h"

namespace ipodctl::screen {

class SessionThread {
 public:
  /// @param recording of the workout that can be started
  SessionThread(const Options& options, const DockLine& dock,
                std::shared_ptr<const Recording> recording);
  /// Leaves.
  ~SessionThread();
  SessionThread(const SessionThread&) = delete;
  SessionThread& operator=(const SessionThread&) = delete;

  // For any thread.

  /// What is wished while no iPod is docked is forgotten, and so is what comes when many wishes are
  /// waiting.
  void Ask(Wish wish);
  /// Names what to read of the library; the newest counts.
  void LookAt(View view);
  std::shared_ptr<const Snapshot> Look() const;

  /// Saves a workout that goes on, lets go of the iPod, and waits until that is done: where no
  /// workout goes on, 100 ms. Commands of the whole program are interrupted by it.
  void Leave();

 private:
  void Run();
  void Serve(DockedIpod& ipod);
  std::optional<Wish> Next(DockedIpod& ipod);
  std::optional<Wish> TakeWish();
  void CarryOut(const Wish& wish, DockedIpod& ipod);
  void NoteUndocked(const std::string& trouble);
  void AwaitWish();
  void Show();

  const Options& options_;
  const DockLine& dock_;
  std::shared_ptr<const Recording> recording_;
  std::atomic<bool> leaving_ = false;
  Snapshot snapshot_;  // the thread's own, on which it works

  mutable std::mutex mutex_;
  std::condition_variable asked_;
  std::deque<Wish> wishes_;
  View view_;
  std::shared_ptr<const Snapshot> shown_;

  std::thread thread_;  // last: it uses the others
};

}  // namespace ipodctl::screen
