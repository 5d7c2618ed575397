// SPDX-License-Identifier: MIT
// The operations of the current interface.
#include <cwchar>
#include <iterator>

#include "fuzz.h"
#include "operations.h"

namespace fuzz {
namespace {

using Session = CIpodComm&;
using Operation = void (*)(Session session);

// Short enough that the iPod's texts are often longer.
class Text {
 public:
  Text() = default;
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { Require(std::wmemchr(chars_, 0, kChars) != nullptr); }

  operator wchar_t*() { return chars_; }
  static constexpr unsigned long kChars = 24;

 private:
  wchar_t chars_[kChars] = {};
};

constexpr unsigned long kChars = Text::kChars;
constexpr unsigned char kTracks = ipod::IPOD_CATEGORY_TRACK;
constexpr unsigned char kAlbums = ipod::IPOD_CATEGORY_ALBUM;

bool GoOn(void* asked) {
  constexpr int kMostSteps = 40;
  return ++*static_cast<int*>(asked) < kMostSteps;
}

void Identify(Session session, int by_tokens) {
  int asked = 0;
  tagIPOD_IDENTIFY_RESULT result = IPOD_IDENTIFY_RESULT_NONE;
  session.SetIDPSEnable(by_tokens);
  session.Command_IdentifyDeviceLingos(1, &result, GoOn, &asked);
  tagIPOD_IDENTIFY_REPORT report = {};
  Require(session.GetIdentifyReport(&report) == 1 && report.result == result);
  Require(report.steps <= tagIPOD_IDENTIFY_REPORT::kMostSteps);
}

void Name(Session session) {
  Text text;
  session.Command_RequestIpodName(text, kChars);
}

void Model(Session session) {
  unsigned long id = 0;
  Text text;
  session.Command_RequestIpodModelNum(&id, text, kChars);
}

void Color(Session session) {
  tagIPOD_COLOR color = IPOD_COLOR_NONE;
  session.GetIPodColor(&color);
}

void LingoVersion(Session session) {
  tagIPOD_VERSION version = {};
  session.Command_RequestLingoProtocolVersion(ipod::IPOD_LINGO_EXTENDED, &version);
  session.Command_RequestLingoProtocolVersion(ipod::IPOD_LINGO_GENERAL, &version);
}

void Preferences(Session session) {
  unsigned char setting = 0;
  session.Command_GetPreference(1, &setting);
  session.Command_SetPreference(1, 1);
}

void Events(Session session) {
  unsigned char mask[8] = {};
  session.Command_GetEventNotification(mask);
  session.Command_SetEventNotification(mask);
}

void RemoteUi(Session session) {
  session.Command_RequestRemoteUIMode();
  session.Command_EnterRemoteUIMode();
}

void MaxPayload(Session session) { session.Command_RequestMaxPayloadSize(); }

void Cancel(Session session) { session.Command_CancelCommand(7); }

void Count(Session session) {
  unsigned long count = 0;
  session.Command_GetNumberCategorizedDBRecords(kTracks, &count);
}

void Records(Session session) {
  session.Command_RetrieveCategorizedDatabaseRecords(0, 3, kTracks);
  unsigned long index = 0;
  for (int i = 0; i < 4; ++i) {
    Text text;
    session.GetNextCategorizedRecord(&index, text, kChars);
  }
}

void Record(Session session) {
  Text text;
  session.Command_RetrieveCategorizedDatabaseRecord(text, kChars, 2, kAlbums);
}

void Selections(Session session) {
  session.Command_ResetDBSelection();
  session.Command_ResetDBSelectionHeirarchy(1);
  session.Command_SelectDBRecord(kTracks, 1);
  session.Command_SelectSortDBRecord(kAlbums, 1, 4);
}

void Browse(Session session) {
  unsigned long count = 0;
  session.SelectTop(kAlbums, &count, 2);
  session.Select(kTracks, &count, 0);
}

void Control(Session session) {
  session.Command_PlayControl(ipod::IPOD_PLAYCONTROL_PLAYPAUSE);
  session.Command_PlayControl(ipod::IPOD_PLAYCONTROL_PLAY);
  session.Command_SimplePlayControl(1);
  session.Command_SimplePlayControl(0);
}

void PlayStatus(Session session) {
  unsigned char state = 0;
  unsigned long length = 0;
  unsigned long position = 0;
  session.Command_GetPlayStatus(&state, &length, &position);
}

void Notifications(Session session) {
  session.SetNotification(IPOD_PLAY_STATUS_BIT_STATE | IPOD_PLAY_STATUS_BIT_TRACK);
  tagIPOD_PLAY_STATUS status = {};
  session.GetPlayStatus(&status);
}

void Playing(Session session) {
  unsigned long index = 0;
  int flag = 0;
  Text title;
  Text artist;
  Text album;
  session.GetPlayInfo(&index, &flag, title, kChars, artist, kChars, album, kChars);
}

void TrackTime(Session session) {
  unsigned long seconds = 0;
  session.Command_RetrieveDBTrackTime(3, &seconds);
}

void Modes(Session session) {
  unsigned long mode = 0;
  session.Command_GetShuffle(&mode);
  session.Command_SetShuffle(1, 0);
  session.Command_SetRepeat(2, 1);
}

void TrackTexts(Session session) {
  unsigned char text[16] = {};
  session.Command_GetIndexedPlayingTrackTitle(1, text, sizeof text);
  session.Command_GetIndexedPlayingTrackArtistName(1, text, sizeof text);
  session.Command_GetIndexedPlayingTrackAlbumName(1, text, sizeof text);
}

void TrackInfo(Session session) {
  unsigned char info[16] = {};
  session.Command_GetIndexedPlayingTrackInfo(0, 1, 0, info, sizeof info);
  session.Command_GetIndexedPlayingTrackInfo(2, 1, 0, info, sizeof info);
}

void StorageCaps(Session session) {
  __int64 space = 0;
  unsigned long file_size = 0;
  unsigned short write_size = 0;
  unsigned char major = 0;
  unsigned char minor = 0;
  session.Command_StorageGetIpodCaps(&space, &file_size, &write_size, &major, &minor);
  session.Command_GetiPodFreeSpace(&space);
  session.Command_ST_RetAccessoryCaps(1, 2);
}

void File(Session session) {
  unsigned char handle = 0;
  unsigned char data[] = "<gymData>";
  session.Command_OpeniPodFeatureFile(1, 0, data, sizeof data - 1, &handle);
  session.Command_WriteiPodFileData(handle, data, sizeof data - 1);
  session.Command_CloseiPodFile(handle);
}

void User(Session session) {
  unsigned short caps = 0;
  unsigned char extra = 0;
  session.Command_SportsGetIpodCaps(&caps, &extra);
  int flag = 0;
  unsigned short weight = 0;
  unsigned char value = 0;
  session.Command_GetUserData(&flag, &weight, &value);
  session.Command_SetUserWeight(700);
}

void Workout(Session session) {
  session.Sports_StartWorkout(L"maker", L"Maker", L"model", L"1", IPOD_EQUIPMENT_TYPE_BIKE, 70.5);
  session.Sports_IntervalWorkout(IPOD_INTERVAL_TYPE_START, 0, 0, 0, IPOD_DISTANCE_TYPE_KM, 300,
                                 IPOD_SPEED_TYPE_PACE, 1, 90, 3);
  session.Sports_FinishWorkout(60, 10, 0.2, IPOD_DISTANCE_TYPE_KM, 300, IPOD_SPEED_TYPE_PACE, 90);
  tagIPOD_WORKOUT_FILE file = {};
  session.GetWorkoutFile(&file);
}

constexpr Operation kOperations[] = {
    Name,
    Model,
    Color,
    LingoVersion,
    Preferences,
    Events,
    RemoteUi,
    MaxPayload,
    Cancel,
    Count,
    Records,
    Record,
    Selections,
    Browse,
    Control,
    PlayStatus,
    Notifications,
    Playing,
    TrackTime,
    Modes,
    TrackTexts,
    TrackInfo,
    StorageCaps,
    File,
    User,
    Workout,
    [](Session session) { Identify(session, 1); },
    [](Session session) { Identify(session, 0); },
};

}  // namespace

void Perform(std::uint8_t number, CIpodComm* session) {
  kOperations[number % std::size(kOperations)](*session);
  tagIPOD_EXCHANGE exchange = {};
  Require(session->GetLastExchange(&exchange) == 1);
  Require(exchange.data_bytes <= sizeof exchange.data);
}

}  // namespace fuzz
