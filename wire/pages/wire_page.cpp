// SPDX-License-Identifier: MIT
// What the page about the commands says.
#include <array>
#include <cstdio>

#include "wire/pages/pages.h"
#include "wire/table.h"

namespace ipodwire {
namespace {

constexpr const char* kIntroduction =
    "The commands that consoles and iPods exchange, as `ipodctl decode` and the Wireshark "
    "dissector\n"
    "read them. Numbers are big-endian; a text is UTF-8 and ends with a zero byte. A frame is";

constexpr const char* kFrames =
    "small   FF 55 length lingo command [transaction identifier] data... checksum\n"
    "large   FF 55 00 length-high length-low lingo command [transaction identifier] data... "
    "checksum";

constexpr const char* kFrameRules =
    "The length counts the lingo through the last byte of the data; all bytes from the length "
    "through\n"
    "the checksum sum to 0 modulo 256. The command's number is one byte, in the Extended Interface "
    "two.\n"
    "From an accepted StartIDPS to an accepted IdentifyDeviceLingoes a transaction identifier of "
    "two\n"
    "bytes stands before the data of every command, but for those that say otherwise. An answer "
    "repeats\n"
    "its question's identifier.";

std::string Hexadecimal(unsigned number, std::size_t bytes) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%0*X", static_cast<int>(2 * bytes), number);
  return text.data();
}

std::string Meaning(const Field& field) {
  std::string text;
  const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (field.optional) add("may be missing");
  for (const Value& value : field.values) {
    add(std::to_string(value.number) + " " + value.name);
  }
  for (const Bit& bit : field.bits) add(Hexadecimal(bit.mask, field.size) + " " + bit.name);
  if (field.shown == Field::Shown::kCommand) add("the number of a command of the same lingo");
  if (*field.unit != '\0') add(field.unit);
  switch (field.kind) {
    case Field::Kind::kText:
      add("text");
      break;
    case Field::Kind::kCharacters:
      add("text without a zero byte, to the end");
      break;
    case Field::Kind::kVersion:
      add(field.size == 2 ? "major, minor" : "three numbers");
      break;
    case Field::Kind::kLowFirst:
      add("least significant byte first");
      break;
    case Field::Kind::kRepeated:
      add("repeated to the end:");
      break;
    case Field::Kind::kCounted:
      add("a byte with their number, then as often:");
      break;
    case Field::Kind::kRecords:
      add("repeated to the end: a byte with the length of the rest, then:");
      break;
    default:
      break;
  }
  return text;
}

std::string Size(const Field& field) {
  if (field.size > 0) return std::to_string(field.size);
  return field.kind == Field::Kind::kLowFirst ? "1 to 4" : "";
}

std::string NameOfCase(const std::vector<Field>& siblings, const Field& choice,
                       std::uint32_t number) {
  if (choice.kind == Field::Kind::kChoiceBySize) return "with " + std::to_string(number) + " bytes";
  for (const Field& field : siblings) {
    if (field.name != choice.name) continue;
    for (const Value& value : field.values) {
      if (value.number == number) return choice.name + " " + value.name;
    }
  }
  return choice.name + " " + std::to_string(number);
}

void AddRows(const std::vector<Field>& fields, const std::string& where, PageWriter* page) {
  for (const Field& field : fields) {
    const bool chooses =
        field.kind == Field::Kind::kChoice || field.kind == Field::Kind::kChoiceBySize;
    if (!chooses) {
      page->Field(where + field.name, Size(field), Meaning(field));
      AddRows(field.fields, where + field.name + ": ", page);
      continue;
    }
    for (const Case& each : field.cases) {
      AddRows(each.fields, where + NameOfCase(fields, field, each.number) + ": ", page);
    }
    AddRows(field.otherwise, where + "otherwise: ", page);
  }
}

std::string Sentences(const Lingo& lingo, const Command& command) {
  std::string text = command.sender == Sender::kAccessory ? "From the accessory."
                     : command.sender == Sender::kIpod    ? "From the iPod."
                                                          : "From either side.";
  const Sender other = command.sender == Sender::kAccessory ? Sender::kIpod : Sender::kAccessory;
  switch (command.reply.kind) {
    case Reply::Kind::kNone:
      break;
    case Reply::Kind::kAck:
      text += " Acknowledged.";
      break;
    case Reply::Kind::kCommand:
      text += " Answered by " + CommandName(lingo.number, command.reply.command, other) + ".";
      break;
    case Reply::Kind::kStream:
      text += " Answered by any number of " +
              CommandName(lingo.number, command.reply.command, other) + ".";
      break;
  }
  if (!command.carries_identifier) text += " Never carries a transaction identifier.";
  if (*command.remark != '\0') text += std::string(" ") + command.remark;
  return text;
}

}  // namespace

void WriteWirePage(PageWriter* page) {
  page->Title("What goes over the line");
  page->Paragraph(kIntroduction);
  page->Verbatim(kFrames);
  page->Paragraph(kFrameRules);
  for (const Lingo& lingo : Lingoes()) {
    page->Lingo(std::string(lingo.name) + ", lingo " + Hexadecimal(lingo.number, 1));
    for (const Command& command : lingo.commands) {
      page->Command(Hexadecimal(command.number, lingo.command_size()) + " " + command.name);
      page->Paragraph(Sentences(lingo, command));
      if (command.fields.empty()) continue;
      page->BeginFields();
      AddRows(command.fields, "", page);
    }
  }
}

}  // namespace ipodwire
