// SPDX-License-Identifier: MIT
// ipod: what the accessory tells the iPod about itself, unasked and on request.
#include "ipodcomm/ipod.h"
#include "legacy/payload.h"

using ipodcomm::Number16;
using ipodcomm::Number32;

namespace {

constexpr std::uint32_t kLingoes = 0x0000001D;  // General, both remotes, Extended Interface
constexpr std::uint32_t kLingoesOfExtendedModels = kLingoes | 0x00001200;  // and Sports, Storage
constexpr std::uint32_t kDeviceId = 0;

constexpr std::uint32_t kKnownInformation = ipod::IPOD_ACCESSORYINFOTYPE_MASK_CAPABILITIES |
                                            ipod::IPOD_ACCESSORYINFOTYPE_MASK_NAME |
                                            ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYFIRMWARE |
                                            ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYHARDWARE |
                                            ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYMFG |
                                            ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYMODELNUM |
                                            ipod::IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYMAXPAYLOAD;
constexpr std::uint16_t kMaxPayload = 224;

}  // namespace

int ipod::command_identify() {
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_IDENTIFY, {IPOD_LINGO_EXTENDED});
}

int ipod::command_identifydevicelingos(int option) {
  const bool identified = command_identify() != 0;
  extended_model_ = 0;
  if (identified) NoteModel();
  const std::uint32_t lingoes = extended_model_ != 0 ? kLingoesOfExtendedModels : kLingoes;
  const std::uint32_t options = option != 0 ? IPOD_POWER_SOMEHIGH : IPOD_POWER_LOW;
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_IDENTIFYDEVICELINGOS,
                   {Number32(lingoes), Number32(options), Number32(kDeviceId)});
}

// The name-sort flag is never cleared again: hosts in the field keep the order in which records are
// selected when another iPod is docked.
void ipod::NoteModel() {
  wchar_t model[25] = {};
  if (getipodmodelnum(model) == 0) return;
  if (model[0] != L'0' || model[1] != L'0' || model[2] != L'1') return;
  if (model[3] == L'4' || model[3] == L'7') extended_model_ = 1;
  if (model[3] == L'0') name_sort_ = 1;
}

int ipod::command_returnaccessoryinfo(unsigned char type) {
  const auto answer = [this](std::initializer_list<ipodcomm::PayloadField> payload) {
    return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_RETURNACCESSORYINFO, payload);
  };
  switch (type) {
    case IPOD_ACCESSORYINFOTYPE_CAPABILITIES:
      return answer({type, Number32(kKnownInformation)});
    case IPOD_ACCESSORYINFOTYPE_NAME:
    case IPOD_ACCESSORYINFOTYPE_ACCESSORYMFG:
    case IPOD_ACCESSORYINFOTYPE_ACCESSORYMODELNUM:
      return answer({type, 'Z', 'E', 'P', 'R', 'A', 'N', 0});
    case IPOD_ACCESSORYINFOTYPE_ACCESSORYFIRMWARE:
    case IPOD_ACCESSORYINFOTYPE_ACCESSORYHARDWARE:
      return answer({type, 1, 0, 0});
    case IPOD_ACCESSORYINFOTYPE_ACCESSORYMAXPAYLOAD:
      return answer({type, Number16(kMaxPayload)});
    default:
      return answer({type});
  }
}

int ipod::command_sportsreturndeviceversion() {
  return SendSmall(IPOD_LINGO_SPORTS, IPOD_COMMAND_SPORTS_RETURNDEVICEVERSION, {1, 0});
}

int ipod::command_sportsreturndevicecaps() {
  return SendSmall(IPOD_LINGO_SPORTS, IPOD_COMMAND_SPORTS_RETURNDEVICECAPS, {2, 0, 0});
}
