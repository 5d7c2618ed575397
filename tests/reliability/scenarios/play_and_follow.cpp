// SPDX-License-Identifier: MIT
// A track is played and followed by notifications, told about, and paused.
#include <cwchar>

#include "scenario.h"

namespace reliability {
namespace {

void PlayAndFollow(Stage& stage) {
  stage.DockIdentified();
  stage.session().Command_EnterRemoteUIMode();
  stage.Expect(stage.session().SetNotification(0x0000000F) == 1, "notifications are chosen");
  stage.Expect(stage.session().SelectTop(ipod::IPOD_CATEGORY_TRACK, nullptr, 0) == 1, "the tracks");
  stage.Expect(stage.session().Command_SelectDBRecord(ipod::IPOD_CATEGORY_TRACK, 1) == 1,
               "a track is played");
  stage.world().Advance(2 * kSecond);
  tagIPOD_PLAY_STATUS status = {};
  stage.session().GetPlayStatus(&status);
  stage.Expect(status.position >= 1 && status.position <= 4, "its position is followed");
  unsigned long index = 99;
  wchar_t title[32] = {};
  stage.Expect(stage.session().GetPlayInfo(&index, nullptr, title, 32, nullptr, 0, nullptr, 0) == 1,
               "what plays is told");
  stage.Expect(index == 1 && std::wcscmp(title, L"Track 1") == 0, "it is the track chosen");
  stage.Expect(stage.session().Command_PlayControl(ipod::IPOD_PLAYCONTROL_PLAYPAUSE) == 1,
               "it is paused");
  unsigned char state = 99;
  unsigned long length = 0;
  unsigned long position = 0;
  stage.Expect(stage.session().Command_GetPlayStatus(&state, &length, &position) == 1 &&
                   state == ipod::IPOD_PLAYERSTATE_PAUSED && length == 180'000,
               "the iPod says so");
}

}  // namespace

const Scenario kPlayAndFollow = {"play-and-follow", "a track is played, followed and paused",
                                 SmallIpod, PlayAndFollow};

}  // namespace reliability
