// SPDX-License-Identifier: MIT
// A session in a virtual world whose iPod says anything, also while nothing is asked. After it the
// iPod behaves, and a command works again.
//
// The first byte chooses the conduct, whether commands carry identifiers, whether the iPod speaks
// first, and how it recovers; the second how many operations the host asks for,
// which the next ones name. The iPod's answers follow.

#include <string>

#include "any_ipod.h"
#include "fuzz.h"
#include "operations.h"
#include "quiet_world.h"
#include "support/peers.h"

namespace {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::World;

// Mostly one that takes answers as the default or the robust conduct does, at the speed of the
// line, and looks for bytes eight times a second when it is quiet: by default it is five hundred
// times, and each takes time here.
tagIPOD_CONDUCT Conduct(std::uint8_t choice) {
  tagIPOD_CONDUCT seldom = IPOD_CONDUCT_FAST;
  seldom.quiet_read_pause_ms = 125;
  seldom.robust = choice & 1;
  switch (choice % 32) {
    case 0:
      return IPOD_CONDUCT_FIELD;
    case 1:
      return IPOD_CONDUCT_ROBUST;
    case 2:
      return IPOD_CONDUCT_FAST;
    default:
      return seldom;
  }
}

// Unless a conduct is robust nothing but bytes ends a frame that has begun, a lone sync byte takes
// that of the next frame, and what came and was not read is taken for the next answer. A host that
// does not wait for all this opens the port again.
void Recover(bool by_bytes, CIpodComm* session, fuzz::AnyIpod* ipod, World* world) {
  if (!by_bytes) return fuzz::Require(session->Open() == 0);
  ipod->Send(fuzz::AnyIpod::Bytes(1100, 0x00));
  ipod->Send({0xFF, 0x55, 0x04, 0x00, 0x02, 0x00, 0x07, 0xF3});
  world->Advance(3 * kSecond);
  tagSERIAL_PACKET packet = {};
  while (session->GetNextReadPacket(&packet)) {
  }
}

// Within the two seconds in which an earlier answer may still be late, a time-out of one and a
// retry.
bool WorksAgain(CIpodComm* session, const World& world) {
  const std::int64_t began_us = world.now_us();
  wchar_t text[64] = {};
  unsigned long model_id = 0;
  return session->Command_RequestIpodModelNum(&model_id, text, 64) == 1 && model_id == 0x00010203 &&
         text == std::wstring(L"MA477") && world.now_us() - began_us < 4 * kSecond;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMostBytes = 300;
  if (size > kMostBytes) return 0;
  fuzz::Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const bool identifiers = (choice & 0x20) != 0;
  const bool speaks_first = (choice & 0x40) != 0;
  const bool by_bytes = (choice & 0x80) != 0;

  fuzz::AnyIpod ipod(&input, identifiers);
  World world(fuzz::QuietWorld());
  world.line().Plug(ipod);
  CIpodComm session;
  const tagIPOD_CONDUCT conduct = Conduct(choice);
  fuzz::Require(session.SetConduct(&conduct) == 1 && session.Open() == 0);
  CIpodCommPeer::TransactionIdMode(session) = identifiers ? 1 : 0;
  const std::vector<std::uint8_t> operations = fuzz::ChooseOperations(&input);
  if (speaks_first) ipod.SpeakUp();
  for (const std::uint8_t number : operations) fuzz::Perform(number, &session);
  // A frame that has begun is given up in that time.
  world.Advance(600 * kMillisecond);
  if (conduct.robust == 0) Recover(by_bytes, &session, &ipod, &world);
  CIpodCommPeer::TransactionIdMode(session) = identifiers ? 1 : 0;
  ipod.Behave();
  fuzz::Require(WorksAgain(&session, world));
  world.line().Unplug();
  return 0;
}
