// SPDX-License-Identifier: MIT
// Walks from an artist over an album to a track and plays it. Each number opens an entry of the
// list before; without the next one the list is shown.
//
//   browse_and_play [ARTIST [ALBUM [TRACK]]]
#include <ipodcomm/CIpodComm.h>
#include <ipodcomm/ipod.h>

#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "docking.h"

namespace {

constexpr unsigned char kLevels[] = {ipod::IPOD_CATEGORY_ARTIST, ipod::IPOD_CATEGORY_ALBUM,
                                     ipod::IPOD_CATEGORY_TRACK};
constexpr int kTracks = 2;

// Asks for all names at once, which is much faster than one by one. They come in order, and all of
// them are taken before anything else is asked.
std::string List(CIpodComm& session, unsigned char category, unsigned long count) {
  session.Command_RetrieveCategorizedDatabaseRecords(0, count, category);
  for (unsigned long i = 0; i < count; ++i) {
    wchar_t name[256] = L"";
    if (session.GetNextCategorizedRecord(name, 256) == 0) {
      return "The iPod told " + std::to_string(i) + " of " + std::to_string(count) + " names.";
    }
    std::printf("%3lu  %ls\n", i + 1, name);
  }
  return {};
}

// An iPod may accept a selection and not play: the host looks.
std::string AwaitPlaying(CIpodComm& session) {
  constexpr int kLooks = 10;
  for (int look = 0; look < kLooks; ++look) {
    unsigned char state = 0;
    unsigned long length_ms = 0;
    unsigned long position_ms = 0;
    if (session.Command_GetPlayStatus(&state, &length_ms, &position_ms) == 0) {
      return example::WhyNot(session, "tell what it does");
    }
    if (state == ipod::IPOD_PLAYERSTATE_PLAYING) {
      wchar_t title[256] = L"";
      session.GetPlayInfo(nullptr, nullptr, title, 256, nullptr, 0, nullptr, 0);
      std::printf("Playing  %ls\n", title);
      return {};
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  return "The iPod accepted the track but does not play it.";
}

std::string Walk(CIpodComm& session, int depth, char** numbers) {
  unsigned long count = 0;
  if (session.SelectTop(kLevels[0], &count, ipod::IPOD_HIERARCHY_AUDIO) == 0) {
    return example::WhyNot(session, "go to its artists");
  }
  for (int level = 0; level < depth; ++level) {
    const unsigned long number = std::strtoul(numbers[level], nullptr, 10);
    if (number < 1 || number > count) {
      return "There is no entry " + std::string(numbers[level]) + ".";
    }
    // Selecting from a list of tracks plays the track and stays in the list.
    const unsigned char next = kLevels[level < kTracks ? level + 1 : kTracks];
    if (session.Select(next, &count, number - 1) == 0) {
      return example::WhyNot(session, "open the entry");
    }
  }
  return depth > kTracks ? AwaitPlaying(session) : List(session, kLevels[depth], count);
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");  // names are in any script
  const int depth = argc > kTracks + 2 ? kTracks + 1 : argc - 1;
  CIpodComm session;
  std::string failure = example::Dock(session);
  if (failure.empty()) failure = Walk(session, depth, argv + 1);
  session.Close();
  if (failure.empty()) return 0;
  std::fprintf(stderr, "%s\n", failure.c_str());
  return 1;
}
