// SPDX-License-Identifier: MIT
// The commands of the protocol and their fields: one table, from which frames are decoded, and from
// which docs/wire.md and the fields of the Wireshark dissector are made.
//
// Each lingo has a file of its own, which reads like its documentation. Numbers are big-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ipodwire {

/// A number that stands for something.
struct Value {
  std::uint32_t number;
  const char* name;
};

/// A bit of a mask that stands for something.
struct Bit {
  std::uint32_t mask;
  const char* name;
};

struct Case;

/// What one or several bytes of a command's data hold.
struct Field {
  enum class Kind {
    kNumber,        ///< of `size` bytes
    kLowFirst,      ///< a number of up to four bytes, the least significant first, to the end
    kVersion,       ///< of `size` bytes: major, minor and, with three, a third number
    kText,          ///< UTF-8 that ends with a zero byte
    kCharacters,    ///< UTF-8 to the end, without a zero byte
    kBytes,         ///< `size` bytes; to the end when that is 0
    kRepeated,      ///< `fields`, over and over to the end
    kCounted,       ///< a byte with their number, then `fields` as often
    kRecords,       ///< records to the end: a byte with the length of the rest, then `fields`
    kChoice,        ///< the fields of the case that the field named `name` selects
    kChoiceBySize,  ///< the fields of the case whose number is that of the bytes left
  };
  /// How a number is shown.
  enum class Shown { kDecimal, kHexadecimal, kNamed, kBits, kCommand };

  Kind kind = Kind::kNumber;
  std::string name;
  std::size_t size = 0;
  Shown shown = Shown::kDecimal;
  const char* unit = "";
  std::vector<Value> values;
  std::vector<Bit> bits;
  std::vector<Field> fields;
  std::vector<Case> cases;
  /// Of a choice, where no case is selected. Without any, the bytes are shown as they are.
  std::vector<Field> otherwise;
  bool optional = false;  ///< the data may end before it
};

struct Case {
  std::uint32_t number;
  std::vector<Field> fields;
};

enum class Sender { kAccessory, kIpod, kEither };

/// What is due after a command.
struct Reply {
  enum class Kind {
    kNone,
    kAck,      ///< the lingo's ACK
    kCommand,  ///< `command`, or an ACK that refuses
    kStream,   ///< `command` any number of times, or an ACK that refuses
  };
  Kind kind = Kind::kNone;
  std::uint16_t command = 0;
};

struct Command {
  std::uint16_t number;
  const char* name;
  Sender sender;
  Reply reply;
  std::vector<Field> fields;
  /// False for the few that carry no transaction identifier even where identifiers are on.
  bool carries_identifier = true;
  const char* remark = "";
};

struct Lingo {
  static constexpr std::uint16_t kNoAck = 0xFFFF;

  std::uint8_t number;
  const char* name;
  std::uint16_t ack;  ///< the iPod's; kNoAck where there is none
  const std::vector<Command>& commands;

  /// Bytes of a command's number.
  std::size_t command_size() const;
};

/// In the order of their numbers.
const std::vector<Lingo>& Lingoes();
/// Null for a lingo without commands here.
const Lingo* FindLingo(std::uint8_t number);
/// Where both sides have a command of that number, that of `sender`. Null for an unknown one.
const Command* FindCommand(std::uint8_t lingo, std::uint16_t number, Sender sender);
/// "General", or "lingo 0x0B" for an unknown one.
std::string LingoName(std::uint8_t number);
/// "GetPlayStatus", or "command 0x0099" for an unknown one.
std::string CommandName(std::uint8_t lingo, std::uint16_t number, Sender sender);
/// Bytes of a command's number in that lingo.
std::size_t CommandSize(std::uint8_t lingo);

const std::vector<Command>& GeneralCommands();
const std::vector<Command>& SimpleRemoteCommands();
const std::vector<Command>& DisplayRemoteCommands();
const std::vector<Command>& ExtendedCommands();
const std::vector<Command>& SportsCommands();
const std::vector<Command>& StorageCommands();

}  // namespace ipodwire
