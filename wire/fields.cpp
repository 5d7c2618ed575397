// SPDX-License-Identifier: MIT
#include "wire/fields.h"

#include <utility>

namespace ipodwire {
namespace {

Field Make(Field::Kind kind, const char* name, std::size_t size) {
  Field field;
  field.kind = kind;
  field.name = name;
  field.size = size;
  return field;
}

Field MakeGroup(Field::Kind kind, const char* name, std::vector<Field> fields) {
  Field field = Make(kind, name, 0);
  field.fields = std::move(fields);
  return field;
}

}  // namespace

Field Number(std::size_t size, const char* name, const char* unit) {
  Field field = Make(Field::Kind::kNumber, name, size);
  field.unit = unit;
  return field;
}

Field Hex(std::size_t size, const char* name) {
  Field field = Number(size, name);
  field.shown = Field::Shown::kHexadecimal;
  return field;
}

Field Named(std::size_t size, const char* name, const std::vector<Value>& values) {
  Field field = Number(size, name);
  field.shown = Field::Shown::kNamed;
  field.values = values;
  return field;
}

Field Bits(std::size_t size, const char* name, const std::vector<Bit>& bits) {
  Field field = Number(size, name);
  field.shown = Field::Shown::kBits;
  field.bits = bits;
  return field;
}

Field CommandNumber(std::size_t size, const char* name) {
  Field field = Number(size, name);
  field.shown = Field::Shown::kCommand;
  return field;
}

Field LowFirstBits(const char* name, const std::vector<Bit>& bits) {
  Field field = Bits(0, name, bits);
  field.kind = Field::Kind::kLowFirst;
  return field;
}

Field Version(const char* name) { return Make(Field::Kind::kVersion, name, 2); }
Field LongVersion(const char* name) { return Make(Field::Kind::kVersion, name, 3); }
Field Text(const char* name) { return Make(Field::Kind::kText, name, 0); }
Field Characters(const char* name) { return Make(Field::Kind::kCharacters, name, 0); }
Field Bytes(const char* name, std::size_t size) { return Make(Field::Kind::kBytes, name, size); }

Field Repeated(const char* name, std::vector<Field> fields) {
  return MakeGroup(Field::Kind::kRepeated, name, std::move(fields));
}

Field Counted(const char* name, std::vector<Field> fields) {
  return MakeGroup(Field::Kind::kCounted, name, std::move(fields));
}

Field Records(const char* name, std::vector<Field> fields) {
  return MakeGroup(Field::Kind::kRecords, name, std::move(fields));
}

Field Choice(const char* selector, std::vector<Case> cases, std::vector<Field> otherwise) {
  Field field = Make(Field::Kind::kChoice, selector, 0);
  field.cases = std::move(cases);
  field.otherwise = std::move(otherwise);
  return field;
}

Field ChoiceBySize(std::vector<Case> cases) {
  Field field = Make(Field::Kind::kChoiceBySize, "", 0);
  field.cases = std::move(cases);
  return field;
}

Field Optional(Field field) {
  field.optional = true;
  return field;
}

}  // namespace ipodwire
