// SPDX-License-Identifier: MIT
// A whole session in a virtual world whose iPod says anything. After it the iPod behaves, and a
// command works again.
#include <string>

#include "any_ipod.h"
#include "ipodcomm/CIpodComm.h"

namespace {

void Exercise(CIpodComm& session) {
  wchar_t text[64] = {};
  unsigned long number = 0;
  tagIPOD_VERSION version = {};
  session.Command_RequestIpodName(text, 64);
  session.Command_RequestIpodModelNum(&number, text, 64);
  session.Command_RequestLingoProtocolVersion(4, &version);
  session.Command_RequestMaxPayloadSize();
}

// Within the two seconds in which an earlier answer may still be late, a time-out of one and a retry.
bool WorksAgain(CIpodComm& session, fuzz::World& world) {
  const std::int64_t began_us = world.now_us();
  wchar_t text[64] = {};
  unsigned long model_id = 0;
  return session.Command_RequestIpodModelNum(&model_id, text, 64) == 1 && model_id == 0x00010203 &&
         text == std::wstring(L"MA477") && world.now_us() - began_us < 4 * fuzz::kSecond;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || size > fuzz::Input::kMostBytes) return 0;
  const fuzz::Input input(data, size);
  fuzz::ScriptedDevice ipod;
  fuzz::World world({1});
  world.line().Plug(ipod);
  CIpodComm session;
  session.SetConduct(input.fast ? &IPOD_CONDUCT_FAST : &IPOD_CONDUCT_FIELD);
  fuzz::Require(session.Open() == 0);
  fuzz::SayAnything(&ipod, input);
  Exercise(session);
  // Under the default conduct nothing but bytes ends a frame that has begun.
  if (!input.fast) ipod.Send(fuzz::Bytes(1100, 0x00));
  world.Advance(4 * fuzz::kSecond);
  fuzz::Behave(&ipod);
  fuzz::Require(WorksAgain(session, world));
  world.line().Unplug();
  return 0;
}
