// SPDX-License-Identifier: MIT
// Takes token packets apart and checks them.

#include "tokens.h"

#include <algorithm>

#include "simulator/protocol/accessory_information.h"

namespace ipodsim {
namespace {

std::string Sized(const Token& token, std::size_t expected) {
  if (token.fields.size() == expected) return {};
  return token.Name() + " token with " + std::to_string(token.fields.size()) +
         " bytes instead of " + std::to_string(expected);
}

// From `begin` on: characters and one zero byte at the end.
std::string Texted(const Token& token, std::size_t begin) {
  const Bytes& fields = token.fields;
  if (fields.size() <= begin || fields.back() != 0 ||
      std::count(fields.begin() + static_cast<std::ptrdiff_t>(begin), fields.end(), 0) != 1) {
    return token.Name() + " token without a text that ends in one zero byte";
  }
  return {};
}

std::string InformationProblem(const Token& token) {
  const std::uint8_t type = token.fields.empty() ? 0 : token.fields[0];
  switch (type) {
    case kAccessoryName:
    case kManufacturer:
    case kModelNumber:
    case kSerialNumber:
      return Texted(token, 1);
    case kFirmwareVersion:
    case kHardwareVersion:
      return Sized(token, 4);
    case kMaxPayload:
      return Sized(token, 3);
    case kStatusTypes:
    case kCertification:
      // Four bytes of certification, of which accessories in the field set three.
      return Sized(token, 5);
    default:
      return "information token of unknown type " + std::to_string(type);
  }
}

std::string IdentifyProblem(const Token& token) {
  if (token.fields.empty()) return "identification token without a lingo count";
  // A lingo may be listed more than once: accessories do so when an options request failed.
  return Sized(token, std::size_t{9} + token.fields[0]);
}

}  // namespace

Bytes Token::Selector() const {
  const bool selected = subtype == kInformationToken || subtype == kPreferenceToken ||
                        subtype == kProtocolToken || subtype == kProtocolMetadataToken;
  if (!selected || fields.empty()) return {};
  return {fields[0]};
}

std::string Token::Name() const {
  switch (subtype) {
    case kIdentifyToken:
      return "identification";
    case kCapabilitiesToken:
      return "capabilities";
    case kInformationToken:
      return "information";
    case kPreferenceToken:
      return "preference";
    case kProtocolToken:
      return "protocol";
    case kBundleSeedToken:
      return "bundle seed";
    case kProtocolMetadataToken:
      return "protocol metadata";
    case kSampleRatesToken:
      return "sample rates";
    case kVideoDelayToken:
      return "video delay";
    default:
      return "unknown";
  }
}

std::string LayoutProblem(const Token& token) {
  switch (token.subtype) {
    case kIdentifyToken:
      return IdentifyProblem(token);
    case kCapabilitiesToken:
      return Sized(token, 8);
    case kInformationToken:
      return InformationProblem(token);
    case kPreferenceToken:
      return Sized(token, 3);
    case kProtocolToken:
      return Texted(token, 1);
    case kBundleSeedToken:
      return Sized(token, 11);
    case kProtocolMetadataToken:
      return Sized(token, 2);
    case kSampleRatesToken:
      return token.fields.size() % 4 == 0 ? "" : "sample rates token with half a rate";
    case kVideoDelayToken:
      return Sized(token, 4);
    default:
      return "token of unknown subtype " + std::to_string(token.subtype);
  }
}

TokenPacket ParseTokens(const Bytes& packet) {
  TokenPacket result;
  std::size_t at = 1;
  while (at < packet.size()) {
    const std::size_t length = packet[at];
    const std::size_t end = at + 1 + length;
    if (length < 2 || end > packet.size()) {
      result.bad_layout = "token " + std::to_string(result.tokens.size() + 1) +
                          " is longer than its packet or too short";
      break;
    }
    Token token;
    token.subtype = packet[at + 2];
    token.fields.assign(packet.begin() + static_cast<std::ptrdiff_t>(at + 3),
                        packet.begin() + static_cast<std::ptrdiff_t>(end));
    std::string problem = LayoutProblem(token);
    if (packet[at + 1] != 0) problem = "token of unknown type " + std::to_string(packet[at + 1]);
    if (result.bad_layout.empty()) result.bad_layout = problem;
    result.tokens.push_back(std::move(token));
    at = end;
  }
  if (result.bad_layout.empty() && packet[0] != result.tokens.size()) {
    result.wrong_count = "a packet of " + std::to_string(result.tokens.size()) +
                         " tokens says that it holds " + std::to_string(packet[0]);
  }
  return result;
}

}  // namespace ipodsim
