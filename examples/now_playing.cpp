// SPDX-License-Identifier: MIT
// A now-playing screen: a line for everything that changes, until the iPod is taken out.
//
//   now_playing [SECONDS]
#include <ipodcomm/CIpodComm.h>
#include <ipodcomm/ipod.h>

#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "docking.h"

namespace {

constexpr unsigned long kEvents = IPOD_PLAY_STATUS_BIT_BASIC | IPOD_PLAY_STATUS_BIT_STATE |
                                  IPOD_PLAY_STATUS_BIT_TRACK | IPOD_PLAY_STATUS_BIT_SECONDS;
constexpr std::chrono::milliseconds kLook(100);
constexpr int kQuietLooks = 20;  // then the iPod is asked whether it is still there

struct NowPlaying {
  unsigned char state = ipod::IPOD_PLAYERSTATE_STOPPED;
  unsigned long length_ms = 0;
  unsigned long position_ms = 0;
  wchar_t title[256] = L"";
  wchar_t artist[256] = L"";
  wchar_t album[256] = L"";
};

// Asks for everything. A text that cannot be read stays as it was: here that is empty, not the text
// of the track before.
bool Read(CIpodComm& session, NowPlaying* now) {
  *now = NowPlaying();
  if (session.Command_GetPlayStatus(&now->state, &now->length_ms, &now->position_ms) == 0) {
    return false;
  }
  if (now->state == ipod::IPOD_PLAYERSTATE_STOPPED) return true;
  return session.GetPlayInfo(nullptr, nullptr, now->title, 256, now->artist, 256, now->album,
                             256) != 0;
}

void Show(const NowPlaying& now) {
  const char* const states[] = {"Stopped", "Playing", "Paused"};
  const unsigned long position_s = now.position_ms / 1000;
  const unsigned long length_s = now.length_ms / 1000;
  std::printf("%-8s %ls - %ls - %ls  %lu:%02lu of %lu:%02lu\n",
              now.state < 3 ? states[now.state] : "Winding", now.title, now.artist, now.album,
              position_s / 60, position_s % 60, length_s / 60, length_s % 60);
  std::fflush(stdout);
}

// The iPod tells of changes by itself. What it did before is read once, and again when the track or
// the state has changed.
bool Follow(CIpodComm& session, std::chrono::steady_clock::time_point end) {
  NowPlaying now;
  tagIPOD_PLAY_STATUS last = {};
  if (session.SetNotification(kEvents) == 0 || !Read(session, &now)) return false;
  session.GetPlayStatus(&last);
  Show(now);
  for (int quiet = 0; std::chrono::steady_clock::now() < end;) {
    std::this_thread::sleep_for(kLook);
    tagIPOD_PLAY_STATUS status = {};
    session.GetPlayStatus(&status);
    const bool told = status.tick != last.tick;
    const bool moved = status.state != last.state || status.track_index != last.track_index;
    quiet = told ? 0 : quiet + 1;
    if (moved || quiet == kQuietLooks) {
      quiet = 0;
      if (!Read(session, &now)) return false;
      Show(now);
    } else if (status.position != last.position) {
      now.position_ms = status.position * 1000UL;
      Show(now);
    }
    last = status;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");  // titles are in any script
  const std::chrono::seconds duration(argc > 1 ? std::atoi(argv[1]) : 24 * 3600);
  CIpodComm session;
  std::string failure = example::Dock(session);
  if (failure.empty() && !Follow(session, std::chrono::steady_clock::now() + duration)) {
    failure = example::WhyNot(session, "tell what it plays");
  }
  session.Close();
  std::fprintf(stderr, "%s", failure.empty() ? "" : (failure + "\n").c_str());
  return failure.empty() ? 0 : 1;
}
