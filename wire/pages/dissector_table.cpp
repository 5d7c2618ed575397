// SPDX-License-Identifier: MIT
// Writes the table of commands of share/ipodcomm/ipodcomm.lua.
#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <functional>
#include <map>

#include "wire/pages/pages.h"
#include "wire/table.h"

namespace ipodwire {
namespace {

constexpr const char* kBegin = "-- The table begins here.\n";
constexpr const char* kEnd = "-- The table ends here.\n";

std::string Hexadecimal(unsigned number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%02X", number);
  return text.data();
}

// A text of the table's own, which holds nothing that Lua would take for more than text.
std::string Quote(const std::string& text) { return '"' + text + '"'; }

// Each line two columns further in.
std::string Indented(const std::string& text) {
  std::string indented;
  bool begins = true;
  for (const char letter : text) {
    if (begins && letter != '\n') indented += "  ";
    indented += letter;
    begins = letter == '\n';
  }
  return indented;
}

// "ipodcomm.track_index": by which people filter.
std::string FilterName(const std::string& name) {
  std::string filter;
  for (const char letter : name) {
    const bool word = std::isalnum(static_cast<unsigned char>(letter)) != 0;
    filter += word ? static_cast<char>(std::tolower(static_cast<unsigned char>(letter))) : '_';
  }
  return filter;
}

// What Wireshark keeps of a field.
const char* TypeOf(const Field& field) {
  switch (field.kind) {
    case Field::Kind::kNumber:
      return field.size > 4 ? "uint64" : "uint32";
    case Field::Kind::kLowFirst:
      return "uint32";
    case Field::Kind::kVersion:
    case Field::Kind::kText:
    case Field::Kind::kCharacters:
      return "string";
    case Field::Kind::kBytes:
      return "bytes";
    default:
      return "none";
  }
}

// Fields of one name and different types have different filters.
std::string KeyOf(const Field& field) {
  const std::string type = TypeOf(field);
  std::string key = FilterName(field.name);
  if (type == "uint64") key += "64";
  if (type == "string") key += "_text";
  if (type == "bytes") key += "_bytes";
  if (type == "none") key += "_list";
  // The frame's own lingo and command have these filters.
  return key == "lingo" || key == "command" ? "about_" + key : key;
}

bool Chooses(const Field& field) {
  return field.kind == Field::Kind::kChoice || field.kind == Field::Kind::kChoiceBySize;
}

using Keys = std::map<std::string, const Field*>;

void CollectKeys(const std::vector<Field>& fields, Keys* keys) {
  for (const Field& field : fields) {
    if (!Chooses(field)) keys->emplace(KeyOf(field), &field);
    CollectKeys(field.fields, keys);
    for (const Case& each : field.cases) CollectKeys(each.fields, keys);
    CollectKeys(field.otherwise, keys);
  }
}

const char* NameOf(Field::Kind kind) {
  switch (kind) {
    case Field::Kind::kNumber:
      return "number";
    case Field::Kind::kLowFirst:
      return "low_first";
    case Field::Kind::kVersion:
      return "version";
    case Field::Kind::kText:
      return "text";
    case Field::Kind::kCharacters:
      return "characters";
    case Field::Kind::kBytes:
      return "bytes";
    case Field::Kind::kRepeated:
      return "repeated";
    case Field::Kind::kCounted:
      return "counted";
    case Field::Kind::kRecords:
      return "records";
    case Field::Kind::kChoice:
      return "choice";
    case Field::Kind::kChoiceBySize:
      return "choice_by_size";
  }
  return "";
}

std::string Attributes(const Field& field) {
  std::string text = "kind = " + Quote(NameOf(field.kind)) + ", name = " + Quote(field.name);
  if (!Chooses(field)) text += ", key = " + Quote(KeyOf(field));
  if (field.size > 0) text += ", size = " + std::to_string(field.size);
  if (*field.unit != '\0') text += ", unit = " + Quote(field.unit);
  if (field.optional) text += ", optional = true";
  if (field.shown == Field::Shown::kHexadecimal) text += ", hexadecimal = true";
  if (field.shown == Field::Shown::kCommand) text += ", command = true";
  if (!field.values.empty()) {
    text += ", values = {";
    for (const Value& value : field.values) {
      text += "[" + std::to_string(value.number) + "] = " + Quote(value.name) + ", ";
    }
    text += "}";
  }
  if (field.shown != Field::Shown::kBits) return text;
  text += ", bits = {";
  for (const Bit& bit : field.bits) {
    text += "{" + Hexadecimal(bit.mask) + ", " + Quote(bit.name) + "}, ";
  }
  return text + "}";
}

using TextOf = std::function<std::string(const Field&)>;

// "{ a, b }", or a line for each where that would be long.
std::string List(const std::vector<Field>& fields, const TextOf& text_of) {
  constexpr std::size_t kLongestLine = 80;
  std::string line;
  std::string lines;
  for (const Field& field : fields) {
    const std::string text = text_of(field);
    line += (line.empty() ? "" : ", ") + text;
    lines += Indented(text) + ",\n";
  }
  if (fields.empty()) return "{}";
  const bool fits = line.size() <= kLongestLine && line.find('\n') == std::string::npos;
  return fits ? "{ " + line + " }" : "{\n" + lines + "}";
}

// One field, with `text_of` for those inside it.
std::string Compose(const Field& field, const TextOf& text_of) {
  const std::string attributes = Attributes(field);
  if (field.fields.empty() && field.cases.empty()) return "{ " + attributes + " }";
  std::string inside;
  if (!field.fields.empty()) inside += "fields = " + List(field.fields, text_of) + ",\n";
  if (!field.cases.empty()) {
    std::string cases;
    for (const Case& each : field.cases) {
      cases += "[" + std::to_string(each.number) + "] = " + List(each.fields, text_of) + ",\n";
    }
    inside += "cases = {\n" + Indented(cases) + "},\n";
  }
  if (!field.otherwise.empty()) inside += "otherwise = " + List(field.otherwise, text_of) + ",\n";
  return "{ " + attributes + ",\n" + Indented(inside) + "}";
}

std::string WholeText(const Field& field) { return Compose(field, WholeText); }

// Fields that commands have in common are written once, in front of the commands.
class SharedFields {
 public:
  SharedFields() {
    for (const Lingo& lingo : Lingoes()) {
      for (const Command& command : lingo.commands) Count(command.fields);
    }
  }

  // The field, or the name of where it is written.
  std::string TextOf(const Field& field) {
    const auto text_of = [this](const Field& inner) { return TextOf(inner); };
    const std::string whole = WholeText(field);
    if (uses_[whole] < 2) return Compose(field, text_of);
    std::string& name = names_[whole];
    if (name.empty()) {
      const std::string text = Compose(field, text_of);
      name = NewName(field);
      definitions_ += name + " = " + text + "\n";
    }
    return name;
  }

  const std::string& definitions() const { return definitions_; }

 private:
  // What is inside a field counts where that is written.
  void Count(const std::vector<Field>& fields) {
    for (const Field& field : fields) {
      if (++uses_[WholeText(field)] > 1) continue;
      Count(field.fields);
      for (const Case& each : field.cases) Count(each.fields);
      Count(field.otherwise);
    }
  }

  std::string NewName(const Field& field) {
    std::string name = "shared." + (Chooses(field) ? "by_" + FilterName(field.name) : KeyOf(field));
    // A word of Lua's own.
    if (name == "shared.repeat") name += "_mode";
    const unsigned number = ++numbers_[name];
    return number == 1 ? name : name + "_" + std::to_string(number);
  }

  std::map<std::string, unsigned> uses_;      // by the whole text
  std::map<std::string, std::string> names_;  // likewise
  std::map<std::string, unsigned> numbers_;   // of those of one name
  std::string definitions_;
};

std::string CommandHead(const Command& command) {
  std::string text = "number = " + Hexadecimal(command.number) + ", name = " + Quote(command.name);
  text += command.sender == Sender::kAccessory ? ", from = \"accessory\""
          : command.sender == Sender::kIpod    ? ", from = \"ipod\""
                                               : "";
  switch (command.reply.kind) {
    case Reply::Kind::kNone:
      break;
    case Reply::Kind::kAck:
      text += ", acknowledged = true";
      break;
    case Reply::Kind::kCommand:
      text += ", reply = " + Hexadecimal(command.reply.command);
      break;
    case Reply::Kind::kStream:
      text += ", reply = " + Hexadecimal(command.reply.command) + ", streams = true";
      break;
  }
  if (!command.carries_identifier) text += ", no_identifier = true";
  return text;
}

}  // namespace

std::string DissectorTable() {
  Keys keys;
  for (const Lingo& lingo : Lingoes()) {
    for (const Command& command : lingo.commands) CollectKeys(command.fields, &keys);
  }
  std::string lua = "local field_types = {\n";
  for (const auto& [key, field] : keys) {
    lua += "  { " + Quote(key) + ", " + Quote(field->name) + ", " + Quote(TypeOf(*field)) + " },\n";
  }
  lua += "}\n";
  SharedFields shared;
  std::string lingoes;
  for (const Lingo& lingo : Lingoes()) {
    lingoes += "  [" + Hexadecimal(lingo.number) + "] = { name = " + Quote(lingo.name) +
               ", ack = " + Hexadecimal(lingo.ack) + ", commands = {\n";
    for (const Command& command : lingo.commands) {
      const std::string fields =
          List(command.fields, [&](const Field& field) { return shared.TextOf(field); });
      lingoes +=
          Indented(Indented("{ " + CommandHead(command) + ",\n  fields = " + fields + " },\n"));
    }
    lingoes += "  } },\n";
  }
  return lua + "\n-- Fields that several commands have.\nlocal shared = {}\n" +
         shared.definitions() + "\nlocal lingoes = {\n" + lingoes + "}\n";
}

std::string WithTable(const std::string& dissector, const std::string& table) {
  const std::size_t begin = dissector.find(kBegin);
  const std::size_t end = dissector.find(kEnd);
  if (begin == std::string::npos || end == std::string::npos || end < begin) return {};
  return dissector.substr(0, begin) + kBegin + table + dissector.substr(end);
}

}  // namespace ipodwire
