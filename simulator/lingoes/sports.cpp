// SPDX-License-Identifier: MIT
// Serves the Sports lingo.

#include "sports.h"

namespace ipodsim {
namespace {

constexpr std::uint8_t kFlag = 2;
constexpr std::uint8_t kWeight = 3;
constexpr std::uint8_t kValue = 4;

}  // namespace

bool Sports::Handle(const Request& request) {
  if (request.lingo != kSports || TraitsOf(settings_.profile).Lingo(kSports) == nullptr) {
    return false;
  }
  switch (request.command) {
    case sports::kGetIpodCaps:
      ReturnCapabilities(request);
      return true;
    case sports::kGetUserData:
      ReturnUserData(request);
      return true;
    case sports::kSetUserData:
      SetUserData(request);
      return true;
    default:
      return false;
  }
}

// The mask and one byte more, which nobody here needs.
void Sports::ReturnCapabilities(const Request& request) {
  Bytes data;
  Put16(data, settings_.sports.capabilities);
  Put8(data, 0);
  link_->Reply(request, sports::kRetIpodCaps, data);
}

// An accessory is told by the capabilities whether it may ask.
bool Sports::OffersUserData(const Request& request) {
  if ((settings_.sports.capabilities & kUserDataCapability) != 0) return true;
  link_->Report(MistakeKind::kServiceNotOffered, CommandName(request.lingo, request.command) +
                                                     " without the capability for user data");
  link_->Acknowledge(request, AckStatus::kUnknown);
  return false;
}

void Sports::ReturnUserData(const Request& request) {
  if (!OffersUserData(request)) return;
  const std::uint8_t type = request.data[0];
  Bytes data = {type};
  switch (type) {
    case kFlag:
      Put8(data, user_data_.flag);
      break;
    case kWeight:
      Put16(data, user_data_.weight);
      break;
    case kValue:
      Put8(data, user_data_.value);
      break;
    default:
      link_->Refuse(request, MistakeKind::kBadParameter,
                    "user data of type " + std::to_string(type));
      return;
  }
  link_->Reply(request, sports::kRetUserData, data);
}

void Sports::SetUserData(const Request& request) {
  if (!OffersUserData(request)) return;
  const std::uint8_t type = request.data[0];
  if (type != kFlag && type != kWeight && type != kValue) {
    link_->Refuse(request, MistakeKind::kBadParameter, "user data of type " + std::to_string(type));
    return;
  }
  const std::size_t size = type == kWeight ? 3 : 2;
  if (request.data.size() != size) {
    link_->Refuse(request, MistakeKind::kWrongPayloadSize,
                  "SetUserData of type " + std::to_string(type) + " with " +
                      std::to_string(request.data.size()) + " bytes instead of " +
                      std::to_string(size));
    return;
  }
  if (type == kFlag) user_data_.flag = request.data[1];
  if (type == kWeight) user_data_.weight = Get16(request.data, 1);
  if (type == kValue) user_data_.value = request.data[1];
  link_->Acknowledge(request, AckStatus::kOk);
}

}  // namespace ipodsim
