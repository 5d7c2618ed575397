// SPDX-License-Identifier: MIT
// Who runs next. Threads meet a decision whenever one of them calls a service, waits or ends while
// several could go on.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace ipodcomm::virtual_platform {

/// Stands for "nobody" where a decision's running thread just began to wait or ended.
constexpr int kNobody = 0;

/// A strategy. To be repeatable it decides from its arguments and its own parameters alone.
class Schedule {
 public:
  virtual ~Schedule() = default;
  /// Decision number `step` (from 0): one of the threads in `ready`, which holds two or more thread
  /// numbers in ascending order. `running` is the thread that could simply go on, or kNobody.
  virtual int Choose(std::uint64_t step, const std::vector<int>& ready, int running) = 0;
  /// How long the running thread is kept from its processor before service call number `call` (from
  /// 0, over all threads): time passes then though it could run.
  virtual std::int64_t PauseUs(std::uint64_t /*call*/) { return 0; }
};

/// Any ready thread; the running one is interrupted once in `pace` decisions on average (pace 1:
/// at every decision). The usual schedule.
std::unique_ptr<Schedule> RandomSchedule(std::uint64_t seed, unsigned pace);

/// The running thread goes on until it waits; then the ready thread with the lowest number runs.
std::unique_ptr<Schedule> CooperativeSchedule();

/// The earliest in `priorities` that is ready runs, always; those not listed come last, in the
/// order of their numbers.
std::unique_ptr<Schedule> PrioritySchedule(std::vector<int> priorities);

/// The ready thread with the highest priority runs, always; priorities are drawn anew every
/// `period` decisions. Keeps a thread away for long stretches, which RandomSchedule hardly ever
/// does.
std::unique_ptr<Schedule> RandomPrioritySchedule(std::uint64_t seed, unsigned period);

/// Probabilistic concurrency testing: every thread has a random priority of its own and the ready
/// thread with the highest runs, always. At each of `depth` change points, drawn from the first
/// `points` decisions, the thread that would run falls behind all others for good. A mistake that
/// takes `depth` steps in a certain order is met with a probability that does not depend on how
/// many others there are.
std::unique_ptr<Schedule> ChangePointSchedule(std::uint64_t seed, unsigned depth, unsigned points);

/// Another schedule, under which threads lose their processor for up to `most_us` at a time, before
/// one service call in `pace` on average. Without pauses no time passes between a thread's look and
/// its wait, so what comes in between at a time of its own is never met.
std::unique_ptr<Schedule> PausingSchedule(std::unique_ptr<Schedule> schedule, std::uint64_t seed,
                                          unsigned pace, std::int64_t most_us);

/// Repeats decisions as World::decisions() returned them. A decision that does not fit, or lies
/// beyond the recording, is taken as CooperativeSchedule takes it.
std::unique_ptr<Schedule> ReplaySchedule(std::vector<int> decisions);

}  // namespace ipodcomm::virtual_platform
