// SPDX-License-Identifier: MIT
// Where the interface surprises those who have not read the page on its traps, and how a host does
// it right. Plays the iPod's first track, shuffled and repeated as long as the console is docked.
#include <ipodcomm/CIpodComm.h>
#include <ipodcomm/ipod.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>

#include "docking.h"

namespace {

// From here on standard output leads to standard error, for the library and whoever else prints
// there. What the host itself prints goes to the stream that it gets back.
std::FILE* TakeStandardOutput() {
  std::fflush(stdout);
  const int own = ::dup(STDOUT_FILENO);
  ::dup2(STDERR_FILENO, STDOUT_FILENO);
  return own < 0 ? stderr : ::fdopen(own, "w");
}

// This selection prints a line on standard output: "Select iPod track category 5, index 0".
bool PlayAndPrint(CIpodComm& session) { return session.Select(ipod::IPOD_CATEGORY_TRACK, 0) == 1; }

// This one prints nothing. It does without what Select tries on iPods that refuse it.
bool PlayQuietly(CIpodComm& session) {
  return session.Command_SelectDBRecord(ipod::IPOD_CATEGORY_TRACK, 0) == 1;
}

// Both give the user his own setting back when the console is taken out of the dock.
bool BorrowModes(CIpodComm& session) {
  constexpr int kKeep = 0;
  constexpr int kRestore = 1;
  return session.Command_SetShuffle(1, kKeep) == 1 && session.Command_SetRepeat(2, kRestore) == 1;
}

// Three conventions: a code or tagIPOD_COMM_ERROR, of which 0 is success; 1 for success; and the
// reverse of that, which this operation has for itself.
bool Succeed(CIpodComm& session) {
  unsigned char no_events[8] = {};
  const bool opened = session.Open() == 0;
  const bool identified = session.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr) == 1;
  const bool entered = session.Command_EnterRemoteUIMode() == 1;
  const bool released = session.Command_SimplePlayControl(0) == IPOD_COMM_OK;
  const bool told = session.Command_SetEventNotification(no_events) == 0;
  return opened && identified && entered && released && told;
}

// A text that cannot be read stays as it was, and the result does not tell: it is about the index
// alone. So a text is emptied before, each time, and an empty one is what could not be read.
void ShowPlaying(CIpodComm& session, std::FILE* output) {
  wchar_t title[256] = L"";
  wchar_t album[256] = L"";
  if (session.GetPlayInfo(nullptr, nullptr, title, 256, nullptr, 0, album, 256) == 0) return;
  std::fprintf(output, "%ls, from %ls\n", title, *album == L'\0' ? L"an unknown album" : album);
}

}  // namespace

int main() {
  std::setlocale(LC_ALL, "");
  std::FILE* const output = TakeStandardOutput();
  CIpodComm session;
  session.SetConduct(&IPOD_CONDUCT_ROBUST);
  session.SetIDPSEnable(1);
  const bool done = Succeed(session) && session.Command_ResetDBSelection() == 1 &&
                    PlayAndPrint(session) && PlayQuietly(session) && BorrowModes(session);
  if (done) ShowPlaying(session, output);
  session.Close();
  if (!done) std::fputs("The iPod has not done what it was asked for.\n", stderr);
  std::fclose(output);
  return done ? 0 : 1;
}
