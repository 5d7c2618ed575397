// SPDX-License-Identifier: MIT
// Two threads of the host: the second makes the calls that may run beside the first's, or is handed
// the session and closes, opens, copies and destroys it.
#include <atomic>
#include <cwchar>
#include <functional>

#include "platform/services.h"
#include "scenario.h"
#include "world/tests/support.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::StartThread;

// Runs a function on a thread of its own while `meanwhile` runs here, and waits for its end, also
// where waiting for a thread fails.
void Beside(Stage& stage, const std::function<void()>& body,
            const std::function<void()>& meanwhile) {
  std::atomic<bool> ended = false;
  const std::function<void()> whole = [&] {
    body();
    ended = true;
  };
  const HANDLE thread = StartThread(whole);
  stage.Expect(thread != nullptr, "the second thread starts");
  meanwhile();
  if (thread == nullptr) return;
  while (!ended) stage.world().Advance(kMillisecond);
  CloseHandle(thread);
}

void TwoThreads(Stage& stage) {
  stage.DockIdentified();
  CIpodComm& shared = stage.session();
  const std::function<void()> second = [&shared] {
    for (int i = 0; i < 10; ++i) {
      const unsigned char released = 0;
      tagIPOD_WRITE_PARAMS release = {ipod::IPOD_COMMAND_CONTEXTBUTTONSTATUS,
                                      ipod::IPOD_LINGO_SIMPLEREMOTE, &released, 1};
      tagIPOD_PLAY_STATUS status = {};
      shared.WriteCommand(&release);
      shared.GetPlayStatus(&status);
      shared.IsOpen();
      shared.SetModel("B" + std::to_string(i));
      Sleep(3);
    }
  };
  Beside(stage, second, [&] {
    for (int i = 0; i < 3; ++i) {
      wchar_t name[32] = {};
      // The second thread still uses the session, so the host does not stop in between.
      const int told = shared.Command_RequestIpodName(name, 32);
      stage.Expect(told == 1 && std::wcscmp(name, kIpodName) == 0, "the name is told meanwhile");
    }
  });
}

void HandedOver(Stage& stage) {
  stage.Dock();
  stage.session();
  const std::function<void()> second = [&stage] {
    std::unique_ptr<CIpodComm>& session = stage.owned_session();
    session->Close();
    Sleep(1500);
    stage.Expect(session->Open() == 0, "another thread opens it again");
    stage.Expect(stage.Works(), "another thread's command is answered");
    session.reset();
    session = Make<CIpodComm>();
    Sleep(1500);
    stage.Expect(session->Open() == 0, "another thread opens a new one");
  };
  Beside(stage, second, [] {});
}

void Copies(Stage& stage) {
  stage.Copied();
  stage.Dock();
  stage.session();
  std::unique_ptr<CIpodComm> copy;
  const std::function<void()> second = [&] {
    copy = Make<CIpodComm>(*stage.owned_session());
    stage.Expect(copy->IsOpen() != 0, "the copy is open");
    wchar_t name[32] = {};
    copy->Command_RequestIpodName(name, 32);
    stage.owned_session().reset();
    tagIPOD_PLAY_STATUS status = {};
    copy->GetPlayStatus(&status);
    copy.reset();
  };
  Beside(stage, second, [] {});
  stage.Dock();
}

// The source has closed, and its read thread restarts the driver, when the copy opens again: it
// does not end that thread, though it was made when the thread was reading.
void CopyOpens(Stage& stage) {
  stage.Copied();
  stage.Dock();
  stage.session();
  // Destroyed before its source where something is thrown, a copy would make that one slow to end:
  // the host makes no call from here on after which the scenario could be over.
  CIpodComm& source = *stage.owned_session();
  auto copy = Make<CIpodComm>(source);
  const std::size_t restarts = stage.world().drivers().size();
  source.Close();
  // Long after the thread's last turn, and any time before its end.
  stage.world().Advance((200 + static_cast<std::int64_t>(stage.world().seed() % 800)) *
                        kMillisecond);
  copy->Open();
  stage.world().Advance(1500 * kMillisecond);
  stage.Expect(stage.world().drivers().size() == restarts + 1, "the driver's restart is completed");
  stage.Expect(copy->Open() == 0, "the copy opens");
  stage.owned_session().reset();
  copy.reset();
  stage.Dock();
}

}  // namespace

const Scenario kTwoThreads = {"two-threads", "what may run beside the host's calls does", SmallIpod,
                              TwoThreads};
const Scenario kHandedOver = {"handed-over", "another thread closes, opens, destroys and makes it",
                              SmallIpod, HandedOver};
const Scenario kCopies = {"copies", "another thread copies and destroys both", SmallIpod, Copies};

const Scenario kCopyOpens = {"copy-opens", "a copy opens while its source's driver restarts",
                             SmallIpod, CopyOpens};

}  // namespace reliability
