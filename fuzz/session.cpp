// SPDX-License-Identifier: MIT
// A whole session in a virtual world whose iPod says anything. After it the iPod behaves, and a
// command works again.
//
// The first byte chooses: a line on which the bytes come as they are, or an iPod that answers each
// request with a good frame of the command that is due and the next bytes as its data.
#include <algorithm>
#include <string>
#include <vector>

#include "fuzz.h"
#include "ipodcomm/CIpodComm.h"
#include "world/line/scripted_device.h"
#include "world/world.h"

namespace {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::ScriptedDevice;
using ipodcomm::virtual_platform::World;
using Bytes = std::vector<std::uint8_t>;

Bytes Frame(const Bytes& content) {
  Bytes frame = {0xFF, 0x55, static_cast<std::uint8_t>(content.size())};
  frame.insert(frame.end(), content.begin(), content.end());
  unsigned sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
  frame.push_back(static_cast<std::uint8_t>(0U - sum));
  return frame;
}

void Exercise(CIpodComm& session) {
  wchar_t text[64] = {};
  unsigned long number = 0;
  tagIPOD_VERSION version = {};
  session.Command_RequestIpodName(text, 64);
  session.Command_RequestIpodModelNum(&number, text, 64);
  session.Command_RequestLingoProtocolVersion(4, &version);
  session.Command_RequestMaxPayloadSize();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || size > 1024) return 0;
  ScriptedDevice ipod;
  World world({1});
  world.line().Plug(ipod);
  CIpodComm session;
  session.SetConduct((data[0] & 1) != 0 ? &IPOD_CONDUCT_FAST : &IPOD_CONDUCT_FIELD);
  fuzz::Require(session.Open() == 0);
  const Bytes said(data + 1, data + size);
  if ((data[0] & 2) != 0) {
    // RequestiPodName is answered under the fuzzer's data, whatever they are.
    Bytes content = {0x00, 0x08};
    content.insert(content.end(), said.begin(), said.begin() + std::min<std::ptrdiff_t>(
                                                    static_cast<std::ptrdiff_t>(said.size()), 250));
    ipod.Answer({0xFF, 0x55, 0x02, 0x00, 0x07, 0xF7}, Frame(content));
  } else {
    ipod.Send(said);
  }
  Exercise(session);
  ipod.Send(Bytes(1100, 0x00));  // ends whatever has begun
  world.Advance(4 * kSecond);
  world.line().Unplug();
  return 0;
}
