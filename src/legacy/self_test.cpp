// SPDX-License-Identifier: MIT
// ipod: the regression self-test of a service screen, a step per call. Each action's text is shown
// before the action, and a step ends at the first action that fails, so the text names it.
#include "ipodcomm/ipod.h"
#include "legacy/reply_text.h"
#include "platform/services.h"
#include "session/keep_going.h"

using ipodcomm::Store;

namespace {

constexpr std::size_t kTextUnits = 256;
constexpr DWORD kPlaybackStartsMs = 2000;

// What a step shows, the host's two texts, and the host's say in how long it waits.
struct Screen {
  wchar_t* title;
  wchar_t* detail;
  ipodcomm::KeepGoing& host;

  void ShowTitle(const char* text) const { ipodcomm::ShowText(title, text); }
  void ShowAction(const char* text) const { ipodcomm::ShowText(detail, text); }
};

// `top_selection` gets the result of entering the video tracks, which does not count for the step.
int SetUpConnection(ipod& docked, const Screen& screen, std::int32_t* top_selection) {
  constexpr int kLowPower = 0;
  screen.ShowTitle("Set Up Connection Test");
  // The spelling is the one that screens show.
  screen.ShowAction("Request Remote UI Mode For Communcation");
  if (docked.command_requestremoteuimode() == 0) return 0;
  screen.ShowAction("Exit Remote UI Mode");
  if (docked.command_exitremoteuimode() == 0) return 0;
  screen.ShowAction("Identify Device Lingos");
  if (docked.command_identifydevicelingos(kLowPower) == 0) return 0;
  screen.ShowAction("Enter Remote UI mode");
  if (docked.command_enterremoteuimode() == 0) return 0;
  unsigned long count = 0;
  *top_selection = docked.selecttop(ipod::IPOD_CATEGORY_TRACK, &count,
                                    ipod::IPOD_RESETDBSELECTIONHIERARCHY_VIDEO);
  return 1;
}

int GetInformation(ipod& docked, const Screen& screen) {
  wchar_t model_name[kTextUnits] = {};
  wchar_t name[kTextUnits] = {};
  wchar_t serial_number[kTextUnits] = {};
  wchar_t software_version[kTextUnits] = {};
  wchar_t model_number[kTextUnits] = {};
  screen.ShowTitle("Get Information Test");
  screen.ShowAction("Getting Model Name");
  if (docked.getipodmodelname(model_name) == 0) return 0;
  screen.ShowAction("Getting Ipod Name");
  if (docked.getipodname(name) == 0) return 0;
  screen.ShowAction("Getting Serial Num");
  if (docked.getipodserailnum(serial_number) == 0) return 0;
  screen.ShowAction("Getting Software Version");
  if (docked.getipodsoftwareversion(software_version, kTextUnits) == 0) return 0;
  screen.ShowAction("Getting Software Version");  // the model number has no text of its own
  if (docked.getipodmodelnum(model_number) == 0) return 0;
  StringCchPrintfW(screen.title, kTextUnits, L"Ipod Information %s %s %s %s %s", name, model_name,
                   model_number, serial_number, software_version);
  return 1;
}

// The texts that one track's part of a step shows.
struct TrackTexts {
  const char* get_record;
  const char* select;
  const char* compare;
};

constexpr TrackTexts kFirstTrack = {"Get Next Catorgized DB Record Index 0 Track", "Select Track 0",
                                    "Compare Playing Track 0 Name to Selected Track Name"};
constexpr TrackTexts kSecondTrack = {"Get Next Catorgized DB Record Index 1 Track",
                                     "Select Track 1",
                                     "Compare Playing Track 1 Name to Selected Track Name"};

// Plays a track of the album entered and finds out whether it is the one that plays.
int PlayTrack(ipod& docked, const Screen& screen, const TrackTexts& texts, unsigned short index) {
  wchar_t name[kTextUnits] = {};
  wchar_t playing[kTextUnits] = {};
  screen.ShowAction(texts.get_record);
  if (docked.getnextcategorizeddbrecord(name, kTextUnits, index) == 0) return 0;
  screen.ShowAction(texts.select);
  unsigned long count = 0;
  if (docked.select(ipod::IPOD_CATEGORY_TRACK, index, &count) == 0) return 0;
  ipodcomm::PauseInSlices(screen.host, kPlaybackStartsMs);
  screen.ShowAction("Get Indexed Playing Track Title");
  if (docked.getindexedplayingtracktitle(playing) == 0) return 0;
  screen.ShowAction(texts.compare);
  return lstrcmpW(playing, name) == 0 ? 1 : 0;
}

int SelectTracks(ipod& docked, const Screen& screen) {
  wchar_t album[kTextUnits] = {};
  unsigned long count = 0;
  screen.ShowTitle("Select Tracks from Album 0 Test");
  screen.ShowAction("Select Top Album Both");
  if (docked.selecttop(ipod::IPOD_CATEGORY_ALBUM, &count,
                       ipod::IPOD_RESETDBSELECTIONHIERARCHY_NONE) == 0 ||
      count == 0) {
    return 0;
  }
  screen.ShowAction("Get Next Catorgized DB Record Index 0 Album");
  if (docked.getnextcategorizeddbrecord(album, kTextUnits, 0) == 0) return 0;
  screen.ShowAction("Select Album Index 0");
  if (docked.select(ipod::IPOD_CATEGORY_TRACK, 0, &count) == 0) return 0;
  screen.ShowAction("Checking count > 0");
  if (count == 0) return 0;
  // Selecting a track counts anew, so the album's count decides about the second one.
  const bool has_second = count > 1;
  const int first = PlayTrack(docked, screen, kFirstTrack, 0);
  if (first == 0 || !has_second) return first;
  return PlayTrack(docked, screen, kSecondTrack, 1);
}

int PlayPauseStop(ipod& docked, const Screen& screen) {
  unsigned char state = 0;
  screen.ShowTitle("Play Pause Stop Test");
  screen.ShowAction("Setting to Play");
  if (docked.getipodplayerstatenum(&state) == 0) return 0;
  if (state != ipod::IPOD_PLAYERSTATE_PLAYING &&
      docked.command_playcontrol(ipod::IPOD_PLAYCONTROL_PLAY) == 0) {
    return 0;
  }
  if (docked.getipodplayerstatenum(&state) == 0) return 0;
  if (state != ipod::IPOD_PLAYERSTATE_PLAYING) return 0;
  // From here on the state must be readable; what it is does not count.
  screen.ShowAction("Setting to Pause");
  if (docked.command_playcontrol(ipod::IPOD_PLAYCONTROL_PLAYPAUSE) == 0) return 0;
  if (docked.getipodplayerstatenum(&state) == 0) return 0;
  screen.ShowAction("Setting to Stop");
  if (docked.command_playcontrol(ipod::IPOD_PLAYCONTROL_STOP) == 0) return 0;
  return docked.getipodplayerstatenum(&state);
}

int EndTest(ipod& docked, const Screen& screen) {
  screen.ShowTitle("End of Regression Test");
  screen.ShowAction("");
  const int sent = docked.command_exitremoteuimode();
  docked.closeport();
  return sent;
}

}  // namespace

int ipod::startregressiontest(wchar_t* detail) {
  self_test_step_ = 0;
  ipodcomm::ShowText(detail, "Regression Test Started, port opened");
  return openport();
}

int ipod::nextregressiontest(wchar_t* title, int* result, wchar_t* detail) {
  ipodcomm::HostText<kTextUnits> title_text(title);
  const Screen screen = {title_text.get(), detail, serial_.keep_going_};
  switch (self_test_step_++) {
    case 0:
      Store(result, SetUpConnection(*this, screen, &top_selection_result_));
      return 1;
    case 1:
      Store(result, GetInformation(*this, screen));
      return 1;
    case 2:
      Store(result, SelectTracks(*this, screen));
      return 1;
    case 3:
      Store(result, PlayPauseStop(*this, screen));
      return 1;
    default:
      Store(result, EndTest(*this, screen));
      return 0;
  }
}
