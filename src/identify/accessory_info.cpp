// SPDX-License-Identifier: MIT
// CIpodComm: what the host tells about the accessory, and the answers to the iPod's requests for
// it: `28 type information...` for `27 type`.
#include <string>
#include <utility>
#include <vector>

#include "identify/accessory_identity.h"
#include "identify/file_version.h"
#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "session/exchange.h"

using ipodcomm::LockScope;

namespace {

using Answer = std::vector<unsigned char>;

Answer TextAnswer(unsigned char type, const std::string& text) {
  Answer answer;
  answer.reserve(text.size() + 2);
  answer.push_back(type);
  answer.insert(answer.end(), text.begin(), text.end());
  answer.push_back(0x00);
  return answer;
}

Answer VersionAnswer(unsigned char type, const ipodcomm::HostVersion& version) {
  return {type, version.bytes[0], version.bytes[1], version.bytes[2]};
}

/// The answer for a kind of information, empty for those that are not answered.
Answer AnswerFor(unsigned char type, const ipodcomm::HostVersion& version,
                 const std::string& model) {
  switch (type) {
    case ipodcomm::kInfoCapabilities:  // a mask of the kinds answered
      return {type, 0x00, 0x00, 0x00, 0xF3};
    case ipodcomm::kInfoName:
      return TextAnswer(type, ipodcomm::kAccessoryName);
    case ipodcomm::kInfoFirmware:
    case ipodcomm::kInfoHardware:
      return VersionAnswer(type, version);
    case ipodcomm::kInfoManufacturer:
      return TextAnswer(type, ipodcomm::kAccessoryManufacturer);
    case ipodcomm::kInfoModelNumber:
      return TextAnswer(type, model);
    default:
      return {};
  }
}

}  // namespace

/// Runs on the notification thread. A failed write is not reported.
void CIpodComm::Return_AccessoryInfo(unsigned char* request, unsigned long length) {
  if (length == 0) return;
  const unsigned char type = request[0];
  // Read for every request, of whatever kind.
  const ipodcomm::HostVersion version = ipodcomm::ReadHostVersion();
  const Answer answer = AnswerFor(type, version, Model());
  if (answer.empty()) return;
  tagIPOD_WRITE_PARAMS write = ipodcomm::Command(
      ipodcomm::kGeneralLingo, ipodcomm::general::kRetAccessoryInfo, answer.data(), answer.size());
  WriteCommand(&write);
  if (type == ipodcomm::kInfoModelNumber) EventModify(identification_event_, EVENT_SET);
}

void CIpodComm::SetAccessoryInfo(tagIPOD_ACCESSORY_INFO* info) {
  if (info != nullptr) identity_.accessory = *info;
}

void CIpodComm::SetModel(std::string model) {
  const LockScope lock(transmit_lock_);
  outgoing_.model = std::move(model);
}

std::string CIpodComm::Model() const {
  const LockScope lock(transmit_lock_);
  return outgoing_.model;
}
