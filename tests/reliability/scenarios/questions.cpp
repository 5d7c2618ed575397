// SPDX-License-Identifier: MIT
// The iPod asks about the accessory at any time, in the middle of the host's commands.
#include "scenario.h"

namespace reliability {
namespace {

ipodsim::Settings CuriousIpod() {
  ipodsim::Settings settings = SmallIpod();
  settings.asks_during_session = true;
  settings.faults.Enable(ipodsim::Fault::kUnaskedRequests);
  settings.faults.one_in = 2;
  return settings;
}

void BeAsked(Stage& stage) {
  stage.DockIdentified();
  stage.session().SetModel("B7");
  stage.session().Command_EnterRemoteUIMode();
  // The default conduct believes an answer by its command alone, and takes what the iPod says in
  // between for one.
  const bool sound = stage.sound();
  stage.SetSound(sound && stage.tells_answers_apart());
  unsigned long count = 0;
  stage.Expect(stage.session().SelectTop(ipod::IPOD_CATEGORY_ALBUM, &count, 0) == 1 && count == 2,
               "two albums");
  unsigned short caps = 0;
  stage.Expect(stage.session().Command_SportsGetIpodCaps(&caps, nullptr) == 1 && caps == 3,
               "the iPod's Sports capabilities");
  unsigned short weight = 0;
  stage.Expect(stage.session().Command_GetUserData(nullptr, &weight, nullptr) == 1 && weight == 75,
               "the user's weight");
  wchar_t model[32] = {};
  stage.Expect(
      stage.session().Command_RequestIpodModelNum(nullptr, model, 32) == 1 && model[0] != L'\0',
      "the model number");
  stage.SetSound(sound);
}

}  // namespace

const Scenario kQuestionsAnyTime = {
    "questions-at-any-time", "the iPod asks between and during commands", CuriousIpod, BeAsked};

}  // namespace reliability
