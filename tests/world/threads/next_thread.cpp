// SPDX-License-Identifier: MIT
// The strategies that come with the platform.
#include "world/threads/next_thread.h"

#include <algorithm>
#include <set>
#include <utility>

#include "world/seed.h"

namespace ipodcomm::virtual_platform {
namespace {

bool Contains(const std::vector<int>& threads, int thread) {
  return std::find(threads.begin(), threads.end(), thread) != threads.end();
}

class Random : public Schedule {
 public:
  Random(std::uint64_t seed, unsigned pace) : seed_(seed), pace_(pace) {}

  int Choose(std::uint64_t step, const std::vector<int>& ready, int running) override {
    const std::uint64_t number = Draw(seed_, Purpose::kSchedule, step);
    const bool go_on = running != kNobody && (number >> 32) % pace_ != 0;
    return go_on ? running : ready[static_cast<std::uint32_t>(number) % ready.size()];
  }

 private:
  const std::uint64_t seed_;
  const unsigned pace_;
};

class Cooperative : public Schedule {
 public:
  int Choose(std::uint64_t /*step*/, const std::vector<int>& ready, int running) override {
    return running != kNobody ? running : ready.front();
  }
};

class Priority : public Schedule {
 public:
  explicit Priority(std::vector<int> priorities) : priorities_(std::move(priorities)) {}

  int Choose(std::uint64_t /*step*/, const std::vector<int>& ready, int /*running*/) override {
    for (const int thread : priorities_) {
      if (Contains(ready, thread)) return thread;
    }
    return ready.front();
  }

 private:
  const std::vector<int> priorities_;
};

class RandomPriority : public Schedule {
 public:
  RandomPriority(std::uint64_t seed, unsigned period) : seed_(seed), period_(period) {}

  int Choose(std::uint64_t step, const std::vector<int>& ready, int /*running*/) override {
    const std::uint64_t draw = Draw(seed_, Purpose::kSchedule, step / period_);
    const auto priority = [&](int thread) {
      return Draw(draw, Purpose::kPriority, static_cast<std::uint64_t>(thread));
    };
    return *std::max_element(ready.begin(), ready.end(),
                             [&](int one, int other) { return priority(one) < priority(other); });
  }

 private:
  const std::uint64_t seed_;
  const unsigned period_;
};

class ChangePoint : public Schedule {
 public:
  ChangePoint(std::uint64_t seed, unsigned depth, unsigned points) : seed_(seed) {
    for (unsigned i = 0; i < depth; ++i) {
      changes_.insert(Draw(seed, Purpose::kChangePoint, i) % points);
    }
  }

  int Choose(std::uint64_t step, const std::vector<int>& ready, int /*running*/) override {
    const int chosen = Highest(ready);
    if (changes_.count(step) == 0) return chosen;
    fallen_.push_back(chosen);
    return Highest(ready);
  }

 private:
  int Highest(const std::vector<int>& ready) const {
    return *std::max_element(ready.begin(), ready.end(),
                             [&](int one, int other) { return Priority(one) < Priority(other); });
  }
  // Those that have fallen are behind all others, and behind those that fell before them.
  std::pair<std::ptrdiff_t, std::uint64_t> Priority(int thread) const {
    const auto last = std::find(fallen_.rbegin(), fallen_.rend(), thread);
    if (last != fallen_.rend()) return {last - fallen_.rend(), 0};
    return {0, Draw(seed_, Purpose::kPriority, static_cast<std::uint64_t>(thread))};
  }

  const std::uint64_t seed_;
  std::set<std::uint64_t> changes_;
  std::vector<int> fallen_;  // in the order in which they fell
};

class Pausing : public Schedule {
 public:
  Pausing(std::unique_ptr<Schedule> schedule, std::uint64_t seed, unsigned pace,
          std::int64_t most_us)
      : schedule_(std::move(schedule)), seed_(seed), pace_(pace), most_us_(most_us) {}

  int Choose(std::uint64_t step, const std::vector<int>& ready, int running) override {
    return schedule_->Choose(step, ready, running);
  }
  std::int64_t PauseUs(std::uint64_t call) override {
    const std::uint64_t number = Draw(seed_, Purpose::kPause, call);
    if ((number >> 32) % pace_ != 0) return 0;
    return static_cast<std::int64_t>(static_cast<std::uint32_t>(number)) % most_us_ + 1;
  }

 private:
  const std::unique_ptr<Schedule> schedule_;
  const std::uint64_t seed_;
  const unsigned pace_;
  const std::int64_t most_us_;
};

class Replay : public Schedule {
 public:
  explicit Replay(std::vector<int> decisions) : decisions_(std::move(decisions)) {}

  int Choose(std::uint64_t step, const std::vector<int>& ready, int running) override {
    if (step < decisions_.size()) {
      const int decided = decisions_[static_cast<std::size_t>(step)];
      if (Contains(ready, decided)) return decided;
    }
    return running != kNobody ? running : ready.front();
  }

 private:
  const std::vector<int> decisions_;
};

}  // namespace

std::unique_ptr<Schedule> RandomSchedule(std::uint64_t seed, unsigned pace) {
  return std::make_unique<Random>(seed, std::max(pace, 1U));
}

std::unique_ptr<Schedule> CooperativeSchedule() { return std::make_unique<Cooperative>(); }

std::unique_ptr<Schedule> PrioritySchedule(std::vector<int> priorities) {
  return std::make_unique<Priority>(std::move(priorities));
}

std::unique_ptr<Schedule> RandomPrioritySchedule(std::uint64_t seed, unsigned period) {
  return std::make_unique<RandomPriority>(seed, std::max(period, 1U));
}

std::unique_ptr<Schedule> ChangePointSchedule(std::uint64_t seed, unsigned depth, unsigned points) {
  return std::make_unique<ChangePoint>(seed, depth, std::max(points, 1U));
}

std::unique_ptr<Schedule> PausingSchedule(std::unique_ptr<Schedule> schedule, std::uint64_t seed,
                                          unsigned pace, std::int64_t most_us) {
  return std::make_unique<Pausing>(std::move(schedule), seed, std::max(pace, 1U),
                                   std::max<std::int64_t>(most_us, 1));
}

std::unique_ptr<Schedule> ReplaySchedule(std::vector<int> decisions) {
  return std::make_unique<Replay>(std::move(decisions));
}

}  // namespace ipodcomm::virtual_platform
