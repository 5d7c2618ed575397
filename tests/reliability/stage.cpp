// SPDX-License-Identifier: MIT
#include "stage.h"

#include <cwchar>
#include <utility>

#include "scenario.h"
#include "world/seed.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::Draw;
using ipodcomm::virtual_platform::Purpose;
using ipodcomm::virtual_platform::WorldOptions;

constexpr std::uint32_t kMinuteMs = 60'000;
constexpr std::uint32_t kScenarioMs = 8'000;

// Anywhere; one of four runs begins less than a minute before the wrap, and most of those so little
// that the count wraps in the middle of the scenario.
std::uint32_t DrawTickCount(std::uint64_t seed) {
  const std::uint64_t number = Draw(seed, Purpose::kTickCount, 1);
  const auto any = static_cast<std::uint32_t>(number >> 32);
  if (number % 4 != 0) return any;
  const std::uint32_t before_ms = number % 16 == 0 ? kMinuteMs : kScenarioMs;
  return static_cast<std::uint32_t>(0) - 1 - any % (before_ms - 1);
}

struct NamedConduct {
  const char* name;
  tagIPOD_CONDUCT conduct;
};

const NamedConduct& DrawConduct(std::uint64_t seed) {
  static constexpr NamedConduct kConducts[] = {
      {"field", IPOD_CONDUCT_FIELD}, {"robust", IPOD_CONDUCT_ROBUST}, {"fast", IPOD_CONDUCT_FAST}};
  return kConducts[Draw(seed, Purpose::kConduct, 0) % std::size(kConducts)];
}

WorldOptions QuietWorld(std::uint64_t seed, std::unique_ptr<Schedule> schedule,
                        std::uint32_t tick) {
  WorldOptions options;
  options.seed = seed;
  options.schedule = std::move(schedule);
  options.tick_count_ms = tick;
  options.quiet = true;
  return options;
}

ipodsim::Settings Seeded(ipodsim::Settings settings, std::uint64_t seed) {
  settings.seed = seed;
  return settings;
}

}  // namespace

Stage::Stage(const ipodsim::Settings& settings, StageOptions options)
    : seed_(options.seed),
      sound_(options.sound),
      pauses_(options.pauses),
      calls_left_(options.calls_before_end),
      limited_(options.calls_before_end != 0),
      tick_start_(DrawTickCount(options.seed)),
      ipod_(Seeded(settings, options.seed)),
      cable_(ipod_),
      world_(QuietWorld(options.seed, std::move(options.schedule), tick_start_)) {
  world_.NameRoutine(CIpodSerial::PortReadThread, "read");
  world_.NameRoutine(CIpodComm::ReadPacketThread, "routing");
  world_.NameRoutine(CIpodComm::NotificationThread, "notification");
  // The host's executable, whose version the accessory announces.
  world_.SetFileVersion(L"qz104.exe", L"2,5,0,17");
  world_.line().Plug(cable_);
}

Stage::~Stage() {
  if (legacy_ != nullptr) legacy_->closeport();
  legacy_.reset();
  session_.reset();
  world_.line().Unplug();
}

void Stage::CountCall() {
  if (!limited_) return;
  if (calls_left_ == 0) throw Enough();
  --calls_left_;
}

CIpodComm& Stage::session() {
  CountCall();
  ExpectOneAttempt();
  return *session_;
}

// A lost signal costs a time-out and an attempt more, and no result tells.
void Stage::ExpectOneAttempt() {
  if (session_ == nullptr) return;
  tagIPOD_EXCHANGE last = {};
  session_->GetLastExchange(&last);
  Expect(last.result != IPOD_EXCHANGE_ANSWERED || last.attempts == 1,
         "what is answered was asked once");
}

::ipod& Stage::legacy() {
  CountCall();
  return *legacy_;
}

void Stage::Dock() {
  session_ = Make<CIpodComm>();
  // The driver's restart, which the construction began, is over by then.
  world_.Advance(1500 * kMillisecond);
  Expect(session().SetConduct(&DrawConduct(seed_).conduct) == 1, "the conduct is taken");
  Expect(session().Open() == 0, "the session opens");
}

void Stage::DockIdentified() {
  Dock();
  session().SetIDPSEnable(1);
  tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
  const int identified = session().Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr);
  Expect(identified != 0 && how == IPOD_IDENTIFY_RESULT_IDPS, "identified by tokens");
  // What the iPod asks now is answered before the first command.
  world_.Advance(kSecond);
}

bool Stage::tells_answers_apart() const { return DrawConduct(seed_).conduct.robust != 0; }

void Stage::DockLegacy() {
  legacy_ = Make<::ipod>();
  Expect(legacy().openport() == 1, "the legacy port opens");
}

void Stage::Expect(bool holds, const char* what) {
  if (sound_) Demand(holds, what);
}

void Stage::Demand(bool holds, std::string_view what) {
  if (holds) return;
  const EnoughMemory enough;
  if (wrong_.empty()) wrong_ = std::string("under the conduct ") + DrawConduct(seed_).name;
  wrong_ += "; not so: ";
  wrong_ += what;
}

bool Stage::Works() {
  // An earlier answer may still be late for two seconds under a robust conduct. The legacy
  // interface does not ask again by itself, and a late answer spoils its exchange.
  constexpr std::int64_t kMostUs = 4 * kSecond;
  const std::int64_t began_us = world_.now_us();
  const bool told = legacy_ != nullptr ? LegacyTellsName() || LegacyTellsName() : TellsName();
  return told && world_.now_us() - began_us < kMostUs;
}

bool Stage::TellsName() {
  wchar_t name[256] = {};
  return session_->Command_RequestIpodName(name, 256) == 1 && std::wcscmp(name, kIpodName) == 0;
}

bool Stage::LegacyTellsName() {
  wchar_t name[256] = {};
  return legacy_->getipodname(name) == 1 && std::wcscmp(name, kIpodName) == 0;
}

std::string Stage::GivenBackTwice() {
  std::string twice;
  if (copied_) return twice;
  for (const std::string& name : world_.given_back_twice()) twice += " " + name + ";";
  return twice.empty() ? "" : "given back twice:" + twice;
}

void Stage::DestroyQuickly() {
  const std::int64_t began_us = world_.now_us();
  if (legacy_ != nullptr) legacy_->closeport();
  legacy_.reset();
  session_.reset();
  const std::int64_t most_us = pauses_ ? kSecond : 100 * kMillisecond;
  Demand(world_.now_us() - began_us < most_us, "destroyed in time");
}

bool Stage::wrapped() const {
  const auto passed_ms = static_cast<std::uint64_t>(world_.now_us() / kMillisecond);
  return tick_start_ + passed_ms > 0xFFFFFFFFU;
}

bool Stage::began_before_wrap() const { return tick_start_ > 0xFFFFFFFFU - kMinuteMs; }

}  // namespace reliability
