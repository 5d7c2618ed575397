// SPDX-License-Identifier: MIT
#include "wire/decode.h"

#include <algorithm>

#include "wire/field_decoder.h"
#include "wire/fields.h"
#include "wire/numbers.h"

namespace ipodwire {
namespace {

constexpr std::size_t kIdentifierSize = 2;

// Of a command that is not in the table.
const std::vector<Field> kUnknown = {Optional(Bytes("data"))};

bool NeverCarriesIdentifier(const Frame& frame, const Command* command) {
  if (command != nullptr && !command->carries_identifier) return true;
  // An ACK of status and command alone.
  return frame.lingo == lingo::kGeneral && frame.command == general::kAck && frame.data.size() == 2;
}

}  // namespace

const DecodedField* FindField(const std::vector<DecodedField>& fields, const char* name) {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&](const DecodedField& each) { return each.name == name; });
  return found != fields.end() ? &*found : nullptr;
}

std::optional<std::uint64_t> DecodedFrame::Number(const char* field) const {
  const DecodedField* const found = FindField(fields, field);
  return found != nullptr ? found->number : std::nullopt;
}

DecodedFrame Decode(const Frame& frame, Sender sender, Identifier identifier) {
  DecodedFrame decoded;
  decoded.frame = frame;
  decoded.sender = sender;
  decoded.command = FindCommand(frame.lingo, frame.command, sender);
  const std::vector<std::uint8_t>& data = frame.data;
  std::size_t begin = 0;
  if (identifier == Identifier::kPresent && !NeverCarriesIdentifier(frame, decoded.command)) {
    if (data.size() < kIdentifierSize) {
      decoded.problems.emplace_back("no transaction identifier");
    } else {
      decoded.identifier = static_cast<std::uint16_t>((data[0] << 8) | data[1]);
      begin = kIdentifierSize;
    }
  }
  const std::vector<Field>& fields =
      decoded.command == nullptr ? kUnknown : decoded.command->fields;
  FieldDecoder decoder(frame.lingo, sender);
  decoded.fields = decoder.Decode(fields, data.data() + begin, data.size() - begin);
  if (decoded.command == nullptr) decoded.problems.emplace_back("unknown command");
  decoded.problems.insert(decoded.problems.end(), decoder.problems().begin(),
                          decoder.problems().end());
  return decoded;
}

std::optional<Identifier> ProvenIdentifier(const Frame& frame, Sender sender) {
  const Command* command = FindCommand(frame.lingo, frame.command, sender);
  if (command == nullptr || NeverCarriesIdentifier(frame, command)) return std::nullopt;
  const bool fits_without = Decode(frame, sender, Identifier::kAbsent).problems.empty();
  const bool fits_with = Decode(frame, sender, Identifier::kPresent).problems.empty();
  if (fits_with == fits_without) return std::nullopt;
  return fits_with ? Identifier::kPresent : Identifier::kAbsent;
}

}  // namespace ipodwire
