// SPDX-License-Identifier: MIT
// Moves bytes between a pseudo-terminal and a simulated iPod, on a thread of its own.

#include "pty_server.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <mutex>
#include <thread>

#include "paced_line.h"
#include "terminal.h"

namespace ipodsim {
namespace {

// While nobody has the device open, the kernel cannot tell us when somebody does.
constexpr Microseconds kLookAgainAfter = 5 * kMillisecond;
// A serial driver hands over what has gathered in its chip, not every byte by itself. The last byte
// that is on the way is always on time.
constexpr std::size_t kBytesAtATime = 8;
// The kernel's buffer is full: how long until it is worth trying again.
constexpr Microseconds kWriteAgainAfter = 2 * kMillisecond;

}  // namespace

class PtyServer::Impl {
 public:
  Impl(Settings settings, std::string link, std::uint32_t baud)
      : link_(std::move(link)),
        ipod_(std::move(settings)),
        from_accessory_(baud),
        to_accessory_(baud),
        wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  ~Impl() {
    Stop();
    if (wake_ >= 0) close(wake_);
  }

  void set_tap(Tap tap) { tap_ = std::move(tap); }

  bool Start() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (thread_.joinable()) return true;
    error_ = wake_ < 0 ? "cannot make an event" : Appear();
    if (!error_.empty()) return false;
    stopping_ = false;
    thread_ = std::thread([this] { Serve(); });
    return true;
  }

  std::vector<Mistake> Stop() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      stopping_ = true;
    }
    Wake();
    if (thread_.joinable()) thread_.join();
    const std::lock_guard<std::mutex> lock(mutex_);
    if (terminal_.is_open()) {
      // What the accessory wrote last still counts.
      TakeBytes();
      const Microseconds end = std::max(Now(), from_accessory_.LastArrival());
      Deliver(end);
      if (!terminal_.Connected()) ipod_.LoseAccessory(end);
      ipod_.Finish(end);
      Vanish();
    }
    return ipod_.mistakes();
  }

  template <typename Action>
  auto With(Action action) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return action(ipod_);
  }

  void Wake() {
    const std::uint64_t one = 1;
    if (wake_ >= 0) static_cast<void>(!write(wake_, &one, sizeof one));
  }

  std::string Error() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return error_;
  }

  std::string DevicePath() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return link_.empty() || !terminal_.is_open() ? terminal_.path() : link_;
  }

  Microseconds Now() const {
    const auto since = std::chrono::steady_clock::now() - begin_;
    return std::chrono::duration_cast<std::chrono::microseconds>(since).count();
  }

 private:
  void Serve() {
    while (true) {
      Microseconds wait = 0;
      int master = -1;
      {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (stopping_) return;
        FollowUnplug();
        FollowReplug();
        wait = Exchange();
        // A terminal that nobody has open is always "ready"; it is looked at again later instead.
        if (connected_) master = terminal_.master();
      }
      Wait(master, wait);
    }
  }

  // Moves bytes both ways and says how long there is nothing to do, -1 for until something comes.
  Microseconds Exchange() {
    const bool was_connected = connected_;
    if (terminal_.is_open()) {
      connected_ = terminal_.Connected();
      TakeBytes();
    }
    const Microseconds now = Now();
    if (terminal_.is_open()) {
      Deliver(now);
      if (was_connected && !connected_) ipod_.LoseAccessory(now);
      FollowUnplug();
    }
    to_accessory_.Send(ipod_.Transmit(now), now);
    const Bytes bytes = to_accessory_.Receive(now);
    pending_.insert(pending_.end(), bytes.begin(), bytes.end());
    if (!connected_) pending_.clear();
    WriteBytes();

    Microseconds wait = -1;
    const auto limit = [&](Microseconds most) { wait = wait < 0 ? most : std::min(wait, most); };
    for (const auto next : {ipod_.NextEvent(), from_accessory_.ArrivalOf(kBytesAtATime),
                            to_accessory_.ArrivalOf(kBytesAtATime)}) {
      if (next) limit(std::max<Microseconds>(*next - Now(), 0));
    }
    if (!connected_ && terminal_.is_open()) limit(kLookAgainAfter);
    if (!pending_.empty()) limit(kWriteAgainAfter);
    return wait;
  }

  // What the accessory has written moves on the line from here on.
  void TakeBytes() {
    const Bytes bytes = terminal_.Read();
    if (tap_ && !bytes.empty()) tap_(LineEnd::kAccessory, bytes);
    from_accessory_.Send(bytes, Now());
  }

  void WriteBytes() {
    if (!terminal_.is_open() || pending_.empty()) return;
    Bytes written = pending_;
    terminal_.Write(&pending_);
    written.resize(written.size() - pending_.size());
    if (tap_ && !written.empty()) tap_(LineEnd::kIpod, written);
  }

  // The iPod hears what has arrived by now, each byte at its own time: where this thread was kept
  // waiting, there is no gap in a frame.
  void Deliver(Microseconds now) {
    for (auto arrival = from_accessory_.NextArrival(); HasCome(arrival, now);
         arrival = from_accessory_.NextArrival()) {
      heard_at_ = std::max(heard_at_, *arrival);
      const Bytes bytes = from_accessory_.Receive(heard_at_);
      ipod_.Receive(bytes.data(), bytes.size(), heard_at_);
    }
    heard_at_ = now;
  }

  void FollowUnplug() {
    if (terminal_.is_open() && !ipod_.plugged()) Vanish();
  }

  void FollowReplug() {
    if (terminal_.is_open()) return;
    // Lets a replug that is due happen.
    ipod_.Transmit(Now());
    if (ipod_.plugged()) error_ = Appear();
  }

  std::string Appear() {
    const std::string reason = terminal_.Open();
    if (!reason.empty() || link_.empty()) return reason;
    const std::string problem = PlaceLink(link_, terminal_.path());
    if (!problem.empty()) terminal_.Close();
    return problem;
  }

  void Vanish() {
    if (!link_.empty()) RemoveLink(link_, terminal_.path());
    terminal_.Close();
    connected_ = false;
    pending_.clear();
    from_accessory_.Cut();
    to_accessory_.Cut();
  }

  void Wait(int master, Microseconds wait) const {
    pollfd states[2] = {{wake_, POLLIN, 0}, {master, POLLIN, 0}};
    const timespec time{static_cast<std::time_t>(wait / kSecond),
                        static_cast<long>(wait % kSecond * 1000)};
    ppoll(states, 2, wait < 0 ? nullptr : &time, nullptr);
    std::uint64_t ignored = 0;
    static_cast<void>(!read(wake_, &ignored, sizeof ignored));
  }

  const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  const std::string link_;
  Tap tap_;
  std::mutex mutex_;
  SimulatedIpod ipod_;
  PacedLine from_accessory_;
  PacedLine to_accessory_;
  Terminal terminal_;
  Bytes pending_;
  Microseconds heard_at_ = 0;
  bool connected_ = false;
  bool stopping_ = false;
  std::string error_;
  int wake_;
  std::thread thread_;
};

PtyServer::PtyServer(Settings settings, std::string link, std::uint32_t baud)
    : impl_(std::make_unique<Impl>(std::move(settings), std::move(link), baud)) {}

PtyServer::~PtyServer() = default;

void PtyServer::set_trace(std::function<void(const TraceLine&)> trace) {
  impl_->With([&](SimulatedIpod& ipod) { ipod.set_trace(std::move(trace)); });
}

void PtyServer::set_tap(Tap tap) { impl_->set_tap(std::move(tap)); }

bool PtyServer::Start() { return impl_->Start(); }
std::vector<Mistake> PtyServer::Stop() { return impl_->Stop(); }
std::string PtyServer::error() const { return impl_->Error(); }
std::string PtyServer::device_path() const { return impl_->DevicePath(); }

std::vector<Mistake> PtyServer::mistakes() const {
  return impl_->With([](const SimulatedIpod& ipod) { return ipod.mistakes(); });
}

void PtyServer::Unplug() {
  impl_->With([this](SimulatedIpod& ipod) { ipod.Unplug(impl_->Now()); });
  impl_->Wake();
}

void PtyServer::Replug() {
  impl_->With([this](SimulatedIpod& ipod) { ipod.Replug(impl_->Now()); });
  impl_->Wake();
}

void PtyServer::Inspect(const std::function<void(const SimulatedIpod&)>& look) const {
  impl_->With([&](const SimulatedIpod& ipod) { look(ipod); });
}

}  // namespace ipodsim
