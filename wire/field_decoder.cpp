// SPDX-License-Identifier: MIT
#include "wire/field_decoder.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "wire/text.h"

namespace ipodwire {
namespace {

constexpr std::size_t kAllBytes = SIZE_MAX;

std::string Hexadecimal(std::uint64_t number, std::size_t size) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "0x%0*llX", static_cast<int>(2 * size),
                static_cast<unsigned long long>(number));
  return text.data();
}

std::string NameOf(const std::vector<Value>& values, std::uint64_t number) {
  const auto found = std::find_if(values.begin(), values.end(),
                                  [&](const Value& value) { return value.number == number; });
  return found == values.end() ? std::to_string(number) : found->name;
}

// The names of the bits that are set. Those without a name are told by their mask.
std::string NamesOf(const std::vector<Bit>& bits, std::uint64_t number, std::size_t size) {
  if (number == 0) return "none";
  std::string text;
  const auto add = [&](const std::string& name) {
    if (!text.empty()) text += " + ";
    text += name;
  };
  for (const Bit& bit : bits) {
    if ((number & bit.mask) == 0) continue;
    add(bit.name);
    number &= ~std::uint64_t{bit.mask};
  }
  if (number != 0) add(Hexadecimal(number, size));
  return text;
}

std::string Bytes(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

DecodedField Plain(const std::string& name, std::string value) {
  DecodedField field;
  field.name = name;
  field.value = std::move(value);
  return field;
}

bool IsGroup(Field::Kind kind) {
  return kind == Field::Kind::kChoice || kind == Field::Kind::kChoiceBySize;
}

}  // namespace

std::uint8_t FieldDecoder::Cursor::Take() {
  --left;
  return *at++;
}

std::vector<std::uint8_t> FieldDecoder::Cursor::Take(std::size_t count) {
  std::vector<std::uint8_t> bytes(at, at + count);
  at += count;
  left -= count;
  return bytes;
}

std::vector<DecodedField> FieldDecoder::Decode(const std::vector<Field>& fields,
                                               const std::uint8_t* data, std::size_t size) {
  Cursor cursor = {data, size};
  Fields read;
  ReadAll(fields, &cursor, &read);
  if (cursor.left > 0) {
    problems_.push_back(Bytes(cursor.left) + " more than the command has");
    ReadRest("surplus", &cursor, &read);
  }
  return read;
}

// False when the data ended too early.
bool FieldDecoder::ReadAll(const std::vector<Field>& fields, Cursor* cursor, Fields* read) {
  for (const Field& field : fields) {
    if (field.optional && cursor->left == 0) return true;
    if (!Read(field, cursor, read)) return false;
  }
  return true;
}

bool FieldDecoder::Read(const Field& field, Cursor* cursor, Fields* read) {
  if (cursor->left < field.size || (field.kind == Field::Kind::kLowFirst && cursor->left == 0)) {
    return CutShort(field, cursor, read);
  }
  switch (field.kind) {
    case Field::Kind::kNumber:
    case Field::Kind::kLowFirst:
      return ReadNumber(field, cursor, read);
    case Field::Kind::kVersion:
      ReadVersion(field, cursor, read);
      return true;
    case Field::Kind::kText:
    case Field::Kind::kCharacters:
      ReadText(field, cursor, read);
      return true;
    case Field::Kind::kBytes:
      read->push_back(
          Plain(field.name,
                HexBytes(cursor->Take(field.size == 0 ? cursor->left : field.size), kAllBytes)));
      return true;
    case Field::Kind::kRepeated:
      return ReadRepeated(field, cursor, read);
    case Field::Kind::kCounted:
      return ReadCounted(field, cursor, read);
    case Field::Kind::kRecords:
      return ReadRecords(field, cursor, read);
    case Field::Kind::kChoice: {
      const auto selector =
          std::find_if(read->rbegin(), read->rend(),
                       [&](const DecodedField& each) { return each.name == field.name; });
      return ReadChoice(field, selector->number.value_or(0), cursor, read);
    }
    case Field::Kind::kChoiceBySize:
      return ReadChoice(field, cursor->left, cursor, read);
  }
  return false;
}

bool FieldDecoder::ReadNumber(const Field& field, Cursor* cursor, Fields* read) {
  const bool low_first = field.kind == Field::Kind::kLowFirst;
  const std::size_t size = low_first ? std::min<std::size_t>(cursor->left, 4) : field.size;
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const std::uint64_t byte = cursor->Take();
    number = low_first ? number | (byte << (8 * i)) : (number << 8) | byte;
  }
  DecodedField decoded = Plain(field.name, Show(field, low_first ? 4 : size, number));
  decoded.number = number;
  decoded.unit = field.unit;
  read->push_back(std::move(decoded));
  return true;
}

std::string FieldDecoder::Show(const Field& field, std::size_t size, std::uint64_t number) const {
  switch (field.shown) {
    case Field::Shown::kDecimal:
      return std::to_string(number);
    case Field::Shown::kHexadecimal:
      return Hexadecimal(number, size);
    case Field::Shown::kNamed:
      return NameOf(field.values, number);
    case Field::Shown::kBits:
      return NamesOf(field.bits, number, size);
    case Field::Shown::kCommand: {
      // Of the other side: an ACK speaks of what it has received.
      const Command* command =
          FindCommand(lingo_, static_cast<std::uint16_t>(number),
                      sender_ == Sender::kIpod ? Sender::kAccessory : Sender::kIpod);
      return command == nullptr ? Hexadecimal(number, size) : command->name;
    }
  }
  return {};
}

void FieldDecoder::ReadVersion(const Field& field, Cursor* cursor, Fields* read) {
  std::array<char, 16> text{};
  const unsigned major = cursor->Take();
  const unsigned minor = cursor->Take();
  if (field.size == 2) {
    std::snprintf(text.data(), text.size(), "%u.%02u", major, minor);
  } else {
    std::snprintf(text.data(), text.size(), "%u.%u.%u", major, minor, unsigned{cursor->Take()});
  }
  read->push_back(Plain(field.name, text.data()));
}

void FieldDecoder::ReadText(const Field& field, Cursor* cursor, Fields* read) {
  const std::uint8_t* end = cursor->at + cursor->left;
  const bool ended = field.kind == Field::Kind::kText;
  const std::uint8_t* stop = ended ? std::find(cursor->at, end, 0) : end;
  if (ended && stop == end) problems_.push_back("no zero byte ends " + field.name);
  DecodedField text = Plain(field.name, std::string(cursor->at, stop));
  text.kind = DecodedField::Kind::kText;
  read->push_back(std::move(text));
  cursor->Take(static_cast<std::size_t>(stop - cursor->at) + (stop == end ? 0 : 1));
}

bool FieldDecoder::ReadRepeated(const Field& field, Cursor* cursor, Fields* read) {
  DecodedField list = Plain(field.name, {});
  list.kind = DecodedField::Kind::kList;
  bool whole = true;
  while (whole && cursor->left > 0) {
    Fields item;
    whole = ReadAll(field.fields, cursor, &item);
    list.items.push_back(std::move(item));
  }
  read->push_back(std::move(list));
  return whole;
}

bool FieldDecoder::ReadCounted(const Field& field, Cursor* cursor, Fields* read) {
  if (cursor->left == 0) return CutShort(field, cursor, read);
  DecodedField list = Plain(field.name, {});
  list.kind = DecodedField::Kind::kList;
  bool whole = true;
  for (std::size_t count = cursor->Take(); whole && count > 0; --count) {
    Fields item;
    whole = ReadAll(field.fields, cursor, &item);
    list.items.push_back(std::move(item));
  }
  read->push_back(std::move(list));
  return whole;
}

bool FieldDecoder::ReadRecords(const Field& field, Cursor* cursor, Fields* read) {
  DecodedField list = Plain(field.name, {});
  list.kind = DecodedField::Kind::kList;
  bool whole = true;
  while (whole && cursor->left > 0) {
    const std::size_t length = cursor->Take();
    Fields item;
    if (length > cursor->left) {
      whole = CutShort(field, cursor, &item);
    } else {
      Cursor record = {cursor->at, length};
      // What is wrong inside a record does not lead the reader astray: the next has its own place.
      if (ReadAll(field.fields, &record, &item) && record.left > 0) {
        problems_.push_back(Bytes(record.left) + " too many in " + field.name);
        ReadRest("surplus", &record, &item);
      }
      cursor->Take(length);
    }
    list.items.push_back(std::move(item));
  }
  read->push_back(std::move(list));
  return whole;
}

bool FieldDecoder::ReadChoice(const Field& field, std::uint64_t selector, Cursor* cursor,
                              Fields* read) {
  const auto chosen = std::find_if(field.cases.begin(), field.cases.end(),
                                   [&](const Case& each) { return each.number == selector; });
  if (chosen != field.cases.end()) return ReadAll(chosen->fields, cursor, read);
  if (!field.otherwise.empty()) return ReadAll(field.otherwise, cursor, read);
  if (field.kind == Field::Kind::kChoiceBySize) {
    problems_.push_back(Bytes(cursor->left) + " of data, which is no size that the command has");
  } else if (cursor->left > 0) {
    problems_.push_back("unknown " + field.name + " " + std::to_string(selector));
  }
  if (cursor->left > 0) ReadRest("data", cursor, read);
  return true;
}

void FieldDecoder::ReadRest(const char* name, Cursor* cursor, Fields* read) {
  read->push_back(Plain(name, HexBytes(cursor->Take(cursor->left), kAllBytes)));
}

bool FieldDecoder::CutShort(const Field& field, Cursor* cursor, Fields* read) {
  problems_.push_back(IsGroup(field.kind) ? "cut short" : "cut short at " + field.name);
  if (cursor->left > 0) ReadRest("cut", cursor, read);
  return false;
}

}  // namespace ipodwire
