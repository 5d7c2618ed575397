// SPDX-License-Identifier: MIT
// The legacy interface in a virtual world whose iPod says anything, also while nothing is asked.
// After it the iPod behaves, and a getter works again.
//
// The first byte chooses the conduct and whether the iPod speaks first; the second how many
// operations the host asks for, which the next ones name. The iPod's answers follow.
#include <string>

#include "any_ipod.h"
#include "fuzz.h"
#include "operations.h"
#include "quiet_world.h"

namespace {

using ipodcomm::virtual_platform::World;

const tagIPOD_LEGACY_CONDUCT& Conduct(std::uint8_t choice) {
  switch (choice % 8) {
    case 0:
      return IPOD_LEGACY_CONDUCT_FIELD;
    case 1:
      return IPOD_LEGACY_CONDUCT_ROBUST;
    default:
      return IPOD_LEGACY_CONDUCT_FAST;
  }
}

bool WorksAgain(ipod* dock) {
  wchar_t text[250] = {};
  return dock->getipodmodelnum(text) == 1 && text == std::wstring(L"0001|0203");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMostBytes = 300;
  if (size > kMostBytes) return 0;
  fuzz::Input input(data, size);
  const std::uint8_t choice = input.Byte();

  fuzz::AnyIpod device(&input, false);
  World world(fuzz::QuietWorld());
  world.line().Plug(device);
  ipod dock;
  fuzz::Require(dock.SetConduct(&Conduct(choice)) == 1 && dock.openport() == 1);
  const std::vector<std::uint8_t> operations = fuzz::ChooseOperations(&input);
  if ((choice & 0x40) != 0) device.SpeakUp();
  for (const std::uint8_t number : operations) fuzz::Perform(number, &dock);
  // What came and was not read waits for the next operations; only opening discards it.
  world.Advance(ipodcomm::virtual_platform::kSecond);
  fuzz::Require(dock.closeport() == 1 && dock.openport() == 1);
  device.Behave();
  fuzz::Require(WorksAgain(&dock));
  dock.closeport();
  world.line().Unplug();
  return 0;
}
