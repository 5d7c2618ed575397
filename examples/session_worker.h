// SPDX-License-Identifier: MIT
// The session beside a user interface: its thread docks the iPod, and docks it again when it comes
// back; it carries out wishes, one after the other, and keeps a picture of what the iPod does. The
// interface never waits for the iPod.
#pragma once

#include <ipodcomm/CIpodComm.h>
#include <ipodcomm/ipod.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "docking.h"
#include "queue.h"

namespace example {

/// What a screen shows.
struct Picture {
  std::string message = "Looking for an iPod ...";  // in place of the rest; empty while docked
  unsigned char state = ipod::IPOD_PLAYERSTATE_STOPPED;
  std::wstring title;
};

class SessionWorker {
 public:
  using Wish = std::function<void(CIpodComm& session)>;

  SessionWorker() : thread_([this] { Run(); }) {}
  /// Lets go of an iPod that is being identified within 100 ms, and of a command when it is done.
  ~SessionWorker() {
    leaving_ = true;
    thread_.join();
  }

  /// Any thread. What is wished while no iPod is docked is forgotten.
  void Ask(Wish wish) { wishes_.Push(std::move(wish)); }
  Picture Look() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return picture_;
  }

 private:
  void Run() {
    CIpodComm session;
    while (!leaving_) {
      const std::string failure = Dock(session, KeepGoing, this);
      Show({failure.empty() ? Serve(session) : failure, ipod::IPOD_PLAYERSTATE_STOPPED, {}});
      wishes_.Clear();
      for (int wait = 0; wait < 10 && !leaving_; ++wait) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
      }
    }
  }

  // Returns why it ended.
  std::string Serve(CIpodComm& session) {
    while (!leaving_) {
      Picture now{{}, ipod::IPOD_PLAYERSTATE_STOPPED, {}};
      unsigned long length_ms = 0;
      unsigned long position_ms = 0;
      wchar_t title[256] = L"";
      if (session.Command_GetPlayStatus(&now.state, &length_ms, &position_ms) == 0) {
        return WhyNot(session, "tell what it does");
      }
      if (now.state != ipod::IPOD_PLAYERSTATE_STOPPED &&
          session.GetPlayInfo(nullptr, nullptr, title, 256, nullptr, 0, nullptr, 0) == 0) {
        return WhyNot(session, "tell what it plays");
      }
      now.title = title;
      Show(now);
      if (const auto wish = wishes_.Pop(std::chrono::milliseconds(200))) (*wish)(session);
    }
    return {};
  }

  void Show(const Picture& picture) {
    const std::lock_guard<std::mutex> lock(mutex_);
    picture_ = picture;
  }
  static bool KeepGoing(void* worker) { return !static_cast<SessionWorker*>(worker)->leaving_; }

  std::atomic<bool> leaving_ = false;
  Queue<Wish> wishes_;
  mutable std::mutex mutex_;
  Picture picture_;
  std::thread thread_;  // last: it uses the others
};

}  // namespace example
