// SPDX-License-Identifier: MIT
#include "deviations.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace reliability {
namespace {

using ipodcomm::virtual_platform::kNobody;
using ipodcomm::virtual_platform::Schedule;

int PlainCourse(const std::vector<int>& ready, int running) {
  return running != kNobody ? running : ready.front();
}

class DeviatingSchedule : public Schedule {
 public:
  explicit DeviatingSchedule(const Deviations& deviations) {
    for (const Deviation& deviation : deviations) at_[deviation.step] = deviation.thread;
  }

  int Choose(std::uint64_t step, const std::vector<int>& ready, int running) override {
    const auto found = at_.find(step);
    const bool fits =
        found != at_.end() && std::find(ready.begin(), ready.end(), found->second) != ready.end();
    return fits ? found->second : PlainCourse(ready, running);
  }

 private:
  std::map<std::uint64_t, int> at_;
};

// The first deviations of a run; more are not looked at when it is made shorter.
struct Notebook {
  static constexpr std::size_t kMost = 200'000;
  std::atomic<std::size_t> count;
  Deviation deviations[kMost];
};

Notebook* NewNotebook() {
  void* const memory = mmap(nullptr, sizeof(Notebook), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) std::abort();
  return static_cast<Notebook*>(memory);
}

// Made before main, and so before there is another process.
Notebook* const notebook = NewNotebook();

class NotedSchedule : public Schedule {
 public:
  explicit NotedSchedule(std::unique_ptr<Schedule> schedule) : schedule_(std::move(schedule)) {
    notebook->count = 0;
  }

  int Choose(std::uint64_t step, const std::vector<int>& ready, int running) override {
    const int chosen = schedule_->Choose(step, ready, running);
    if (chosen != PlainCourse(ready, running)) Note({step, chosen});
    return chosen;
  }

 private:
  static void Note(const Deviation& deviation) {
    if (notebook->count == Notebook::kMost) return;
    notebook->deviations[notebook->count++] = deviation;
  }

  const std::unique_ptr<Schedule> schedule_;
};

Deviations Without(const Deviations& all, std::size_t from, std::size_t count) {
  Deviations rest(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(from));
  const std::size_t after = std::min(all.size(), from + count);
  rest.insert(rest.end(), all.begin() + static_cast<std::ptrdiff_t>(after), all.end());
  return rest;
}

}  // namespace

std::string ToText(const Deviations& deviations) {
  if (deviations.empty()) return "none";
  std::string text;
  for (const Deviation& deviation : deviations) {
    if (!text.empty()) text += ',';
    text += std::to_string(deviation.step) + ":" + std::to_string(deviation.thread);
  }
  return text;
}

std::optional<Deviations> DeviationsOf(const std::string& text) {
  Deviations deviations;
  if (text == "none") return deviations;
  const char* rest = text.c_str();
  for (;;) {
    unsigned long long step = 0;
    int thread = 0;
    int used = 0;
    if (std::sscanf(rest, "%llu:%d%n", &step, &thread, &used) != 2) return std::nullopt;
    deviations.push_back({step, thread});
    rest += used;
    if (*rest == '\0') return deviations;
    if (*rest++ != ',') return std::nullopt;
  }
}

std::unique_ptr<Schedule> Deviating(Deviations deviations) {
  return std::make_unique<DeviatingSchedule>(deviations);
}

std::unique_ptr<Schedule> Noted(std::unique_ptr<Schedule> schedule) {
  return std::make_unique<NotedSchedule>(std::move(schedule));
}

Deviations NotedDeviations() {
  return {notebook->deviations, notebook->deviations + notebook->count};
}

Deviations Shortest(Deviations deviations, const std::function<bool(const Deviations&)>& fails) {
  if (fails({})) return {};
  for (std::size_t piece = (deviations.size() + 1) / 2; piece > 0;) {
    bool shorter = false;
    for (std::size_t from = 0; from < deviations.size();) {
      const Deviations rest = Without(deviations, from, piece);
      if (fails(rest)) {
        deviations = rest;
        shorter = true;
      } else {
        from += piece;
      }
    }
    if (piece == 1 && !shorter) break;
    piece = piece == 1 ? 1 : (piece + 1) / 2;
  }
  return deviations;
}

}  // namespace reliability
