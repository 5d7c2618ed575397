// SPDX-License-Identifier: MIT
// A host with a user interface: its thread draws and takes keys, and never waits for the iPod.
// Keys are s (start the first track), p (play or pause), n (next), q (quit).
#include <chrono>
#include <clocale>
#include <cstdio>
#include <thread>

#include "queue.h"
#include "session_worker.h"

using example::Picture;

namespace {

constexpr std::chrono::milliseconds kFrame(50);

void Draw(const Picture& picture) {
  const char* const states[] = {"Stopped", "Playing", "Paused"};
  if (!picture.message.empty()) {
    std::printf("%s\n", picture.message.c_str());
  } else {
    std::printf("%s  %ls\n", picture.state < 3 ? states[picture.state] : "Winding",
                picture.title.c_str());
  }
  std::fflush(stdout);
}

bool Same(const Picture& a, const Picture& b) {
  return a.message == b.message && a.state == b.state && a.title == b.title;
}

void StartFirstTrack(CIpodComm& session) {
  unsigned long count = 0;
  const unsigned char tracks = ipod::IPOD_CATEGORY_TRACK;
  if (session.SelectTop(tracks, &count, ipod::IPOD_HIERARCHY_AUDIO) != 0 && count != 0) {
    session.Select(tracks, &count, 0);
  }
}

void PlayOrPause(CIpodComm& session) {
  session.Command_PlayControl(ipod::IPOD_PLAYCONTROL_PLAYPAUSE);
}

void SkipToNext(CIpodComm& session) { session.Command_PlayControl(ipod::IPOD_PLAYCONTROL_NEXT); }

void TakeKey(char key, example::SessionWorker* worker) {
  if (key == 's') worker->Ask(StartFirstTrack);
  if (key == 'p') worker->Ask(PlayOrPause);
  if (key == 'n') worker->Ask(SkipToNext);
}

// Stands in for what a toolkit does: keys become events of the interface's thread.
void ReadKeys(example::Queue<char>* keys) {
  int key = 0;
  while (key != 'q' && (key = std::getchar()) != EOF) keys->Push(static_cast<char>(key));
  keys->Push('q');
}

}  // namespace

int main() {
  std::setlocale(LC_ALL, "");  // titles are in any script
  example::Queue<char> keys;
  std::thread keyboard(ReadKeys, &keys);
  example::SessionWorker worker;
  Picture shown = worker.Look();
  Draw(shown);
  for (char key = 0; key != 'q'; key = keys.Pop(kFrame).value_or(0)) {
    TakeKey(key, &worker);
    if (const Picture now = worker.Look(); !Same(now, shown)) Draw(shown = now);
  }
  keyboard.join();
}
