// SPDX-License-Identifier: MIT
// The legacy interface: its self-test, a workout, and a port that another thread closes.
#include <atomic>
#include <functional>

#include "platform/services.h"
#include "scenario.h"
#include "world/tests/support.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::StartThread;

ipodsim::Settings WorkoutIpod() {
  ipodsim::Settings settings = SmallIpod();
  settings.model_id = 0x00140000;
  return settings;
}

void SelfTest(Stage& stage) {
  stage.owned_legacy() = Make<ipod>();
  wchar_t title[256] = {};
  wchar_t detail[256] = {};
  stage.Expect(stage.legacy().startregressiontest(detail) == 1, "the self-test starts");
  int steps = 0;
  for (int more = 1; more != 0 && steps < 20; ++steps) {
    int result = 77;
    more = stage.legacy().nextregressiontest(title, &result, detail);
    stage.Expect(result == 1, "a step of the self-test passes");
  }
  stage.Demand(steps <= 5, "the self-test ends after five steps");
  stage.legacy().closeport();
  stage.Expect(stage.legacy().openport() == 1, "the port opens again");
}

void Workout(Stage& stage) {
  stage.DockLegacy();
  wchar_t manufacturer_id[] = L"0042";
  wchar_t model[] = L"B7";
  wchar_t serial_number[] = L"123-4";
  wchar_t gym[] = L"Nord";
  stage.Expect(stage.legacy().command_identifydevicelingos(0) == 1, "identified");
  stage.world().Advance(kSecond);
  stage.Expect(stage.legacy().startworkout(ipod::IPOD_SPORTS_WORKOUTTYPE_BIKE, manufacturer_id, gym,
                                           model, serial_number, gym, gym, 72.5F) == 1,
               "the workout is started");
  stage.Expect(stage.legacy().intervalworkout(1, 0, 0, 0, 0, 0, 0, 0, 71, 0, 3) == 1,
               "an interval is written");
  stage.Expect(stage.legacy().finishworkout(120, 22, 0.5F, 0, 240, 0, 0, 109) == 1,
               "the workout is finished");
  const EnoughMemory enough;
  const auto names = stage.ipod().feature_files().Names();
  stage.Expect(names.size() == 1, "there is one file");
  if (names.size() != 1) return;
  const std::string text = stage.ipod().feature_files().Read(names.front());
  stage.Expect(text.find("<bpm>71</bpm>") != std::string::npos, "it has the interval");
  stage.Expect(text.find("</gymData>") != std::string::npos, "it is complete");
}

void ClosedByAnother(Stage& stage) {
  stage.DockLegacy();
  ipod& shared = stage.legacy();
  stage.Expect(shared.command_identifydevicelingos(0) == 1, "identified");
  std::atomic<bool> closed = false;
  const std::function<void()> second = [&] {
    Sleep(5);
    shared.closeport();
    closed = true;
  };
  const HANDLE thread = StartThread(second);
  wchar_t name[256] = {};
  shared.getipodname(name);
  if (thread != nullptr) {
    while (!closed) stage.world().Advance(kMillisecond);
    CloseHandle(thread);
  }
  stage.legacy().closeport();
  stage.Expect(stage.legacy().openport() == 1, "the port opens again");
}

}  // namespace

const Scenario kLegacySelfTest = {"legacy-self-test", "all steps pass", SmallIpod, SelfTest};
const Scenario kLegacyWorkout = {"legacy-workout", "a workout is written and read back",
                                 WorkoutIpod, Workout};
const Scenario kLegacyClosedByAnother = {"legacy-closed-by-another",
                                         "another thread closes the port during a command",
                                         SmallIpod, ClosedByAnother};

}  // namespace reliability
