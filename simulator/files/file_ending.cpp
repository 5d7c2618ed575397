// SPDX-License-Identifier: MIT
// The elements for the iPod and for the signature.

#include "file_ending.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace ipodsim {
namespace {

std::string Escape(const std::string& text) {
  std::string escaped;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += letter;
    }
  }
  return escaped;
}

}  // namespace

void Signature::Add(const Bytes& data) {
  for (const std::uint8_t byte : data) hash_ = (hash_ ^ byte) * 0x100000001B3;
}

std::string Signature::Text() const {
  std::array<char, 17> digits{};
  std::snprintf(digits.data(), digits.size(), "%016" PRIX64, hash_);
  return digits.data();
}

std::string IpodInfoElement(const Settings& settings) {
  const Traits& traits = TraitsOf(settings.profile);
  const std::string model =
      settings.model_number.empty() ? traits.model_number : settings.model_number;
  std::string version = std::to_string(traits.software[0]);
  for (const int part : {1, 2}) version += "." + std::to_string(traits.software[part]);
  return "\t<iPodInfo>\n\t\t<model>" + Escape(model) + "</model>\n\t\t<softwareVersion>" + version +
         "</softwareVersion>\n\t\t<serialNumber>" + Escape(traits.serial_number) +
         "</serialNumber>\n\t</iPodInfo>\n";
}

std::string SignatureElement(const Signature& signature) {
  return "\t<signature>" + signature.Text() + "</signature>\n";
}

}  // namespace ipodsim
