// SPDX-License-Identifier: MIT
// The operations of the legacy interface.
#include <iterator>

#include "operations.h"

namespace fuzz {
namespace {

using Dock = ipod&;
using Operation = void (*)(Dock dock);

constexpr unsigned char kTracks = ipod::IPOD_CATEGORY_TRACK;
constexpr unsigned char kAlbums = ipod::IPOD_CATEGORY_ALBUM;

// Each as long as the getter demands.
template <int (ipod::*getter)(wchar_t*), std::size_t chars>
void Get(Dock dock) {
  wchar_t text[chars] = {};
  (dock.*getter)(text);
}

void SoftwareVersion(Dock dock) {
  wchar_t text[6] = {};
  dock.getipodsoftwareversion(text, 6);
}

void LingoVersion(Dock dock) {
  wchar_t text[ipod::SIZE_IPODLINGOVERSIONGENERAL] = {};
  dock.getipodlingoversion(text, 0);
}

void Preferences(Dock dock) {
  unsigned char setting = 0;
  dock.loadipodpreference(1, &setting);
  dock.setipodpreferencevidooutsetting(1);
  dock.command_enterremoteuimode();
}

void State(Dock dock) {
  unsigned char state = 0;
  unsigned long length = 0;
  unsigned long position = 0;
  dock.GetIpodPlayerStateNumEx(&state, &length, &position);
  dock.getipodtracklength();
  dock.getipodtrackposition();
}

void PauseAndStop(Dock dock) {
  dock.isplaying();
  dock.pausestop();
}

void Video(Dock dock) {
  int flag = 0;
  dock.iscurrentvideo(&flag);
}

void Count(Dock dock) {
  unsigned long count = 0;
  dock.setcategory(kTracks);
  dock.loadipodcategorydbrecordcount(&count);
}

void Browse(Dock dock) {
  unsigned long count = 0;
  dock.selecttop(kAlbums, &count, 1);
  dock.select(kTracks, 1, &count);
}

void Record(Dock dock) {
  wchar_t name[20] = {};
  dock.getnextcategorizeddbrecord(name, 20, 3);
}

void Artwork(Dock dock) {
  unsigned short ids[20] = {};
  unsigned char count = 0;
  unsigned short value = 0;
  unsigned long time = 0;
  dock.getartworkformats(ids, &count);
  dock.getindexedplayingtrackartworkcount(1, &value);
  dock.gettrackartworktimes(1, value, &time);
}

void ArtworkData(Dock dock) { dock.getcurrenttrackartworkdata(1); }

// Of the display that the iPod tells an image may have 65535 rows.
void DisplayLimits(Dock dock) {
  unsigned short width = 0;
  unsigned short height = 0;
  unsigned char format = 0;
  dock.getmonodisplayimagelimits(&width, &height, &format);
}

void Sports(Dock dock) {
  int supported = 0;
  unsigned char extra = 0;
  dock.issports(&supported, &extra);
}

void StartWorkout(Dock dock) {
  wchar_t maker[] = L"maker";
  wchar_t model[] = L"model";
  wchar_t serial[] = L"1";
  wchar_t gym[] = L"gym";
  wchar_t place[] = L"place";
  dock.startworkout(ipod::IPOD_SPORTS_WORKOUTTYPE_BIKE, maker, maker, model, serial, gym, place,
                    70.5F);
  dock.getlasttry();
}

void Workout(Dock dock) {
  dock.intervalworkout(ipod::IPOD_SPORTS_INTERVAL_TYPE_START, 60, 10, 0.2F, 0, 300, 0, 0, 90, 1, 3);
  dock.finishworkout(60, 10, 0.2F, 0, 300, 0, 0, 90);
}

void Extract(Dock dock) {
  wchar_t text[16] = {};
  dock.command_requestipodname();
  dock.extractdatafrompacket(ipod::IPOD_COMMAND_RETURNIPODNAME, text, 16, 5, 0);
  dock.command_getplaystatus();
  dock.ExtractDataFromPacketExtended(ipod::IPOD_COMMAND_RETURNPLAYSTATUS, text, 16, 6, 0);
  unsigned char raw[16] = {};
  dock.command_getplaystatus();
  dock.ExtractDataFromPacketExtendedRaw(ipod::IPOD_COMMAND_RETURNPLAYSTATUS, raw, sizeof raw);
}

constexpr Operation kOperations[] = {
    Get<&ipod::getipodname, 250>,
    Get<&ipod::getipodserailnum, 250>,
    Get<&ipod::getipodmodelname, 250>,
    Get<&ipod::getipodmodelnum, 10>,
    SoftwareVersion,
    LingoVersion,
    Preferences,
    Get<&ipod::getipodpreferencevideooutsetting, ipod::SIZE_IPODPREFERENCES>,
    State,
    Get<&ipod::getipodplayerstate, 30>,
    PauseAndStop,
    Get<&ipod::getindexedplayingtracktitle, 250>,
    Get<&ipod::getipodcurrentplayingtrackchaptername,
        ipod::SIZE_IPODCURRENTPLAYINGTRACKCHAPTERNAME>,
    Video,
    Count,
    Browse,
    Record,
    Artwork,
    ArtworkData,
    DisplayLimits,
    Sports,
    StartWorkout,
    Workout,
    Extract,
};

}  // namespace

void Perform(std::uint8_t number, ipod* dock) {
  kOperations[number % std::size(kOperations)](*dock);
}

}  // namespace fuzz
