// SPDX-License-Identifier: MIT
// The legacy interface in a virtual world whose iPod says anything. After it the iPod behaves, and a
// getter works again.
#include <string>

#include "any_ipod.h"
#include "ipodcomm/ipod.h"

namespace {

void Exercise(ipod& dock) {
  wchar_t text[250] = {};
  unsigned char state = 0;
  unsigned long length = 0;
  unsigned long position = 0;
  dock.getipodname(text);
  dock.getipodmodelnum(text);
  dock.getipodsoftwareversion(text, 250);
  dock.GetIpodPlayerStateNumEx(&state, &length, &position);
  dock.getnextcategorizeddbrecord(text, 20, 3);
  dock.getipodname(text);
}

bool WorksAgain(ipod& dock) {
  wchar_t text[250] = {};
  return dock.getipodmodelnum(text) == 1 && text == std::wstring(L"0001|0203");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || size > fuzz::Input::kMostBytes) return 0;
  const fuzz::Input input(data, size);
  fuzz::ScriptedDevice device;
  fuzz::World world({1});
  world.line().Plug(device);
  ipod dock;
  dock.SetConduct(input.fast ? &IPOD_LEGACY_CONDUCT_FAST : &IPOD_LEGACY_CONDUCT_FIELD);
  fuzz::Require(dock.openport() == 1);
  fuzz::SayAnything(&device, input);
  Exercise(dock);
  world.Advance(4 * fuzz::kSecond);
  // What came and was not read waits for the next operations; only opening discards it.
  fuzz::Require(dock.closeport() == 1 && dock.openport() == 1);
  fuzz::Behave(&device);
  fuzz::Require(WorksAgain(dock));
  dock.closeport();
  world.line().Unplug();
  return 0;
}
