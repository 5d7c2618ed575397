// SPDX-License-Identifier: MIT
// CIpodComm: what the host sets about the accessory, and the answers to the iPod's requests for
// it: `28 type information...` for `27 type`.
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "identify/accessory_identity.h"
#include "identify/file_version.h"
#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "session/exchange.h"
#include "session/heap_array.h"

using ipodcomm::LockScope;

namespace {

// What the answer to a kind of information holds behind its type, texts with their terminators.
// Empty for those that are not answered.
std::string_view InformationOf(unsigned char type, const ipodcomm::HostVersion& version,
                               std::string_view model) {
  static constexpr char kAnsweredTypes[] = {0x00, 0x00, 0x00, '\xF3'};  // as a mask
  switch (type) {
    case ipodcomm::kInfoCapabilities:
      return {kAnsweredTypes, sizeof kAnsweredTypes};
    case ipodcomm::kInfoName:
      return {ipodcomm::kAccessoryName, sizeof ipodcomm::kAccessoryName};
    case ipodcomm::kInfoFirmware:
    case ipodcomm::kInfoHardware:
      return {reinterpret_cast<const char*>(version.bytes), sizeof version.bytes};
    case ipodcomm::kInfoManufacturer:
      return {ipodcomm::kAccessoryManufacturer, sizeof ipodcomm::kAccessoryManufacturer};
    case ipodcomm::kInfoModelNumber:
      return model;
    default:
      return {};
  }
}

}  // namespace

// Runs on the notification thread. An answer that cannot be built or written is not reported.
void CIpodComm::Return_AccessoryInfo(unsigned char* request, unsigned long length) {
  if (length == 0) return;
  const unsigned char type = request[0];
  // Read for every request, of whatever kind.
  const ipodcomm::HostVersion version = ipodcomm::ReadHostVersion();
  const ModelNumber model = Model();
  const std::string_view information =
      InformationOf(type, version, {model.chars, model.length + 1});
  if (information.empty()) return;
  const std::size_t size = 1 + information.size();
  const ipodcomm::HeapArray<unsigned char> payload(size);
  if (payload.data() != nullptr) {
    payload.data()[0] = type;
    std::copy(information.begin(), information.end(), payload.data() + 1);
    tagIPOD_WRITE_PARAMS write = ipodcomm::Command(
        ipodcomm::kGeneralLingo, ipodcomm::general::kRetAccessoryInfo, payload.data(), size);
    WriteCommand(&write);
  }
  if (type == ipodcomm::kInfoModelNumber) EventModify(identification_event_, EVENT_SET);
}

void CIpodComm::SetAccessoryInfo(tagIPOD_ACCESSORY_INFO* info) {
  if (info != nullptr) identity_.accessory = *info;
}

void CIpodComm::SetModel(std::string model) {
  ModelNumber stored = {};
  stored.length = std::min(model.size(), ModelNumber::kMaxChars);
  std::copy_n(model.begin(), stored.length, stored.chars);
  const LockScope lock(transmit_lock_);
  outgoing_.model = stored;
}

CIpodComm::ModelNumber CIpodComm::Model() const {
  const LockScope lock(transmit_lock_);
  return outgoing_.model;
}
