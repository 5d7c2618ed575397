// SPDX-License-Identifier: MIT
#include "dock.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "simulator/pty/pty_server.h"

namespace terminal {
namespace {

using std::chrono::milliseconds;

void Pause(milliseconds duration) { std::this_thread::sleep_for(duration); }

template <typename Value>
bool Give(int socket, const Value& value) {
  return write(socket, &value, sizeof value) == static_cast<ssize_t>(sizeof value);
}

template <typename Value>
bool Take(int socket, Value* value) {
  return recv(socket, value, sizeof *value, MSG_WAITALL) == static_cast<ssize_t>(sizeof *value);
}

constexpr char kDone = 'd';

}  // namespace

// What runs in the iPod's process.
class Dock::Far {
 public:
  Far(const ipodsim::Settings& settings, const std::string& link, std::uint32_t baud)
      : link_(link), server_(settings, link, baud) {
    server_.set_tap([this](ipodsim::LineEnd sender, const std::vector<std::uint8_t>& bytes) {
      const bool accessory = sender == ipodsim::LineEnd::kAccessory;
      (accessory ? account_.bytes_from_accessory : account_.bytes_to_accessory) += bytes.size();
    });
    server_.set_trace([this](const ipodsim::TraceLine& line) {
      if (line.direction != ipodsim::TraceLine::Direction::kFromAccessory) return;
      if (line.text.find("ContextButtonStatus") != std::string::npos) ++account_.buttons;
    });
  }

  [[noreturn]] void Serve(int orders) {
    if (!server_.Start()) {
      std::fprintf(stderr, "%s\n", server_.error().c_str());
      std::_Exit(1);
    }
    Order order = Order::kReplug;
    while (Give(orders, kDone) && Take(orders, &order)) {
      if (order == Order::kReport) {
        Give(orders, Counted());
      } else {
        MoveCable(order);
      }
    }
    server_.Stop();
    std::_Exit(0);
  }

 private:
  void MoveCable(Order order) {
    if (order == Order::kUnplugSoon) Pause(milliseconds(3));
    const bool plugged = order == Order::kReplug;
    plugged ? server_.Replug() : server_.Unplug();
    // The server's own thread makes the terminal and takes it away.
    while ((access(link_.c_str(), F_OK) == 0) != plugged) Pause(milliseconds(1));
  }

  // The server, which counts on a thread of its own, holds still meanwhile.
  Account Counted() {
    Account counted;
    server_.Inspect([&](const ipodsim::SimulatedIpod& ipod) {
      for (; judged_ < ipod.mistakes().size(); ++judged_) Judge(ipod.mistakes()[judged_]);
      account_.files = ipod.feature_files().Names().size();
      account_.open_files = ipod.open_feature_files().size();
      counted = account_;
    });
    return counted;
  }

  void Judge(const ipodsim::Mistake& mistake) {
    if (mistake.kind == ipodsim::MistakeKind::kCommandDuringStream ||
        mistake.kind == ipodsim::MistakeKind::kCommandBeforeAnswer) {
      ++account_.asked_again;
      return;
    }
    ++account_.mistakes;
    std::fprintf(stderr, "mistake: %s\n", mistake.detail.c_str());
  }

  const std::string link_;
  ipodsim::PtyServer server_;
  Account account_;
  std::size_t judged_ = 0;
};

Dock::Dock(const ipodsim::Settings& settings, const std::string& link, std::uint32_t baud) {
  int ends[2] = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) std::abort();
  process_ = fork();
  if (process_ < 0) std::abort();
  if (process_ == 0) {
    close(ends[0]);
    Far(settings, link, baud).Serve(ends[1]);
  }
  close(ends[1]);
  orders_ = ends[0];
  AwaitDone();
}

Dock::~Dock() {
  close(orders_);
  waitpid(process_, nullptr, 0);
}

void Dock::Unplug() {
  Tell(Order::kUnplug);
  AwaitDone();
}

void Dock::BeginUnplug() { Tell(Order::kUnplugSoon); }
void Dock::AwaitUnplug() { AwaitDone(); }

void Dock::Replug() {
  Tell(Order::kReplug);
  AwaitDone();
}

Account Dock::Report() {
  Tell(Order::kReport);
  Account account;
  if (!Take(orders_, &account)) std::abort();
  AwaitDone();
  return account;
}

void Dock::Tell(Order order) {
  if (!Give(orders_, order)) std::abort();
}

void Dock::AwaitDone() {
  char done = 0;
  if (!Take(orders_, &done)) std::abort();
}

}  // namespace terminal
