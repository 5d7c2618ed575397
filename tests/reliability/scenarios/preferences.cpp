// SPDX-License-Identifier: MIT
// Settings are read, changed, and read back: preferences, shuffle and repeat.
#include "scenario.h"

namespace reliability {
namespace {

void Prefer(Stage& stage) {
  stage.DockIdentified();
  constexpr unsigned char kClass = ipod::IPOD_PREFERENCE_VIDEOSIGNALFORMAT;
  tagIPOD_VERSION version = {};
  stage.Expect(
      stage.session().Command_RequestLingoProtocolVersion(0, &version) == 1 && version.major == 1,
      "the General lingo's version");
  unsigned char setting = 99;
  stage.Expect(stage.session().Command_GetPreference(kClass, &setting) == 1 && setting <= 1,
               "a preference is read");
  const auto other = static_cast<unsigned char>(setting == 0 ? 1 : 0);
  stage.Expect(stage.session().Command_SetPreference(kClass, other) == 1, "it is set");
  stage.Expect(stage.session().Command_GetPreference(kClass, &setting) == 1 && setting == other,
               "it is read back");
  stage.Expect(stage.ipod().preference(kClass) == other, "the iPod has it");
  stage.session().Command_EnterRemoteUIMode();
  stage.Expect(stage.session().Command_SetShuffle(1, 0) == 1, "shuffle is set");
  unsigned long shuffle = 99;
  stage.Expect(stage.session().Command_GetShuffle(&shuffle) == 1 && shuffle == 1,
               "shuffle is read back");
  stage.Expect(stage.session().Command_SetRepeat(2, 1) == 1, "repeat is set");
}

}  // namespace

const Scenario kPreferences = {"preferences", "settings are read, changed and read back", SmallIpod,
                               Prefer};

}  // namespace reliability
