// SPDX-License-Identifier: MIT
// What a frame says.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "wire/frame.h"
#include "wire/table.h"

namespace ipodwire {

struct DecodedField {
  enum class Kind {
    kPlain,  ///< `value` says it all
    kText,   ///< `value` is a text from the iPod or the accessory, which may hold anything
    kList,   ///< `items`
  };

  std::string name;
  Kind kind = Kind::kPlain;
  std::string value;
  std::optional<std::uint64_t> number;  ///< as it lies in the frame
  std::string unit;
  std::vector<std::vector<DecodedField>> items;  ///< of a list: the fields of each item
};

/// The field of that name; null where there is none.
const DecodedField* FindField(const std::vector<DecodedField>& fields, const char* name);

struct DecodedFrame {
  Frame frame;
  Sender sender = Sender::kAccessory;
  const Command* command = nullptr;  ///< null for an unknown one
  std::optional<std::uint16_t> identifier;
  std::vector<DecodedField> fields;
  /// What does not fit the command's fields, in sentences without a full stop.
  std::vector<std::string> problems;

  std::string lingo_name() const { return LingoName(frame.lingo); }
  std::string command_name() const { return CommandName(frame.lingo, frame.command, sender); }
  /// The number in the field of that name; none where there is no such field.
  std::optional<std::uint64_t> Number(const char* field) const;
};

enum class Identifier { kAbsent, kPresent };

/// @param identifier whether the data begin with a transaction identifier
DecodedFrame Decode(const Frame& frame, Sender sender, Identifier identifier);

/// Whether the frame's data begin with a transaction identifier, as far as the frame itself tells:
/// none where both are possible. Where its data fit the command's fields only in one of the two
/// ways, that is it.
std::optional<Identifier> ProvenIdentifier(const Frame& frame, Sender sender);

}  // namespace ipodwire
