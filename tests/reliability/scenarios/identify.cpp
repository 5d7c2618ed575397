// SPDX-License-Identifier: MIT
// Each way in which an identification ends: by tokens, by lingoes where the iPod knows no tokens or
// none are asked for, and refused.
#include "scenario.h"

namespace reliability {
namespace {

template <ipodsim::Profile kProfile>
ipodsim::Settings SmallOne() {
  ipodsim::Settings settings = SmallIpod();
  settings.profile = kProfile;
  return settings;
}

void Identify(Stage& stage, int by_tokens, bool accepted, tagIPOD_IDENTIFY_RESULT expected) {
  stage.Dock();
  stage.session().SetIDPSEnable(by_tokens);
  tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
  const int identified = stage.session().Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr);
  stage.Expect((identified != 0) == accepted, "identification says whether it was accepted");
  stage.Expect(how == expected, "identification tells how it ended");
  tagIPOD_IDENTIFY_REPORT report = {};
  stage.Expect(stage.session().GetIdentifyReport(&report) == 1, "the report is told");
  stage.Expect(report.result == expected && report.steps > 0, "the report agrees");
}

void ByTokens(Stage& stage) {
  Identify(stage, 1, true, IPOD_IDENTIFY_RESULT_IDPS);
  stage.Expect(stage.ipod().identified_by_tokens(), "the iPod has taken the tokens");
  stage.Expect(stage.session().SupportsSports() != 0, "Sports are found");
}

void FallBack(Stage& stage) {
  Identify(stage, 1, true, IPOD_IDENTIFY_RESULT_LINGOS);
  stage.Expect(stage.session().GetIDPSEnable() == 0, "tokens are given up");
  stage.Expect(stage.ipod().identified(), "the iPod is identified by lingoes");
}

void Survey(Stage& stage) {
  Identify(stage, 0, true, IPOD_IDENTIFY_RESULT_LINGOS);
  stage.Expect(stage.ipod().identified(), "the iPod is identified by lingoes");
}

void Refused(Stage& stage) { Identify(stage, 0, false, IPOD_IDENTIFY_RESULT_TOOOLD); }

}  // namespace

const Scenario kIdentifyByTokens = {"identify-by-tokens", "a nano takes the tokens",
                                    SmallOne<ipodsim::Profile::kNano>, ByTokens};
const Scenario kIdentifyFallBack = {"identify-fall-back", "a classic knows no tokens",
                                    SmallOne<ipodsim::Profile::kClassic>, FallBack};
const Scenario kIdentifySurvey = {"identify-survey", "lingoes are asked for, and no tokens",
                                  SmallOne<ipodsim::Profile::kClassic>, Survey};
const Scenario kIdentifyRefused = {"identify-refused", "an iPod that is too old",
                                   SmallOne<ipodsim::Profile::kOld>, Refused};

}  // namespace reliability
