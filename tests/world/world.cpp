// SPDX-License-Identifier: MIT
// The world's beginning and end, its clock and its threads.
#include "world/world.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "world/seed.h"
#include "world/threads/race_detector.h"
#include "world/world_state.h"

namespace ipodcomm::virtual_platform {
namespace {

WorldState* current_world = nullptr;

TestHooks& Hooks() {
  static auto* const hooks = new TestHooks;
  return *hooks;
}

// Three of four worlds begin less than a minute before the tick count wraps.
std::uint32_t DrawTickCount(std::uint64_t seed) {
  const std::uint64_t number = Draw(seed, Purpose::kTickCount, 0);
  const auto any = static_cast<std::uint32_t>(number >> 32);
  return number % 4 == 3 ? any : static_cast<std::uint32_t>(0) - any % 60'000;
}

std::unique_ptr<Schedule> DrawSchedule(std::uint64_t seed, std::string* description) {
  constexpr unsigned kPaces[] = {1, 2, 4, 16, 64, 1000};
  const std::uint64_t number = Draw(seed, Purpose::kPace, 0);
  const unsigned pace = kPaces[number % std::size(kPaces)];
  const bool priorities = (number >> 32) % 4 == 0;
  *description = (priorities ? "by priorities, period " : "random, pace ") + std::to_string(pace);
  return priorities ? RandomPrioritySchedule(seed, pace) : RandomSchedule(seed, pace);
}

std::unique_ptr<WorldState> MakeState(WorldOptions options) {
  if (current_world != nullptr) {
    std::fprintf(stderr, "virtual platform: there is a World already\n");
    std::abort();
  }
  const std::uint64_t seed = options.seed ? *options.seed : SeedFromEnvironment();
  const std::uint32_t tick_count_ms =
      options.tick_count_ms ? *options.tick_count_ms : DrawTickCount(seed);
  std::string schedule_text = "given";
  if (options.schedule == nullptr) options.schedule = DrawSchedule(seed, &schedule_text);
  if (!options.quiet) {
    std::fprintf(stderr, "world: seed %" PRIu64 ", tick count from %" PRIu32 ", schedule %s\n",
                 seed, tick_count_ms, schedule_text.c_str());
  }
  auto state = std::make_unique<WorldState>(seed, std::move(options.schedule));
  state->clock.SetTickCount(tick_count_ms);
  state->lines.Get("COM2:");
  return state;
}

void PrintRepeat(std::uint64_t seed) {
  const TestHooks& hooks = Hooks();
  if (!hooks.failed || !hooks.failed()) return;
  const std::string command = hooks.command ? hooks.command() : "<the test>";
  std::fprintf(stderr, "to repeat: IPODCOMM_SEED=%" PRIu64 " %s\n", seed, command.c_str());
}

}  // namespace

WorldState* CurrentWorld() { return current_world; }

void SetTestHooks(TestHooks hooks) { Hooks() = std::move(hooks); }

World::World(WorldOptions options) {
  const Unwatched unwatched;
  state_ = MakeState(std::move(options));
  current_world = state_.get();
}

World::~World() {
  const Unwatched unwatched;
  EndThreads();
  PrintRepeat(state_->seed);
  current_world = nullptr;
  state_.reset();
}

std::uint64_t World::seed() const { return state_->seed; }

std::vector<int> World::decisions() const {
  const Unwatched unwatched;
  return state_->scheduler.decisions();
}

std::int64_t World::now_us() const {
  const Unwatched unwatched;
  return state_->clock.now_us();
}

void World::Advance(std::int64_t duration_us) {
  const Unwatched unwatched;
  state_->scheduler.Block({"Advance", nullptr, state_->clock.now_us() + duration_us, false});
}

void World::Settle() { Advance(0); }

void World::SetTickCount(std::uint32_t tick_count_ms) {
  const Unwatched unwatched;
  state_->clock.SetTickCount(tick_count_ms);
}

void World::NameThreads(const std::vector<std::string>& names) {
  const Unwatched unwatched;
  state_->names.NameThreads(names);
}

void World::NameRoutine(THREAD_START_ROUTINE* routine, const std::string& name) {
  const Unwatched unwatched;
  state_->names.NameRoutine(routine, name);
}

void World::EndThreads() {
  const Unwatched unwatched;
  state_->scheduler.Close();
}

std::vector<std::string> World::live_threads() const {
  const Unwatched unwatched;
  std::vector<std::string> names;
  for (const auto& thread : state_->scheduler.threads()) {
    const bool host = thread.get() == &state_->scheduler.host();
    if (!host && thread->state != ThreadState::kEnded) names.push_back(thread->name);
  }
  return names;
}

std::string World::DescribeThreads() const {
  const Unwatched unwatched;
  return state_->scheduler.Describe();
}

}  // namespace ipodcomm::virtual_platform
