// SPDX-License-Identifier: MIT
#include "wire/wire_lines.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "console/text.h"
#include "wire/text.h"

namespace ipodctl {

namespace {

using nlohmann::ordered_json;

constexpr std::size_t kMostBytesShown = 32;
constexpr std::size_t kAllBytes = SIZE_MAX;

ordered_json FieldsJson(const std::vector<ipodwire::DecodedField>& fields) {
  ordered_json list = ordered_json::array();
  for (const ipodwire::DecodedField& field : fields) {
    ordered_json json = {{"name", field.name}};
    if (field.kind == ipodwire::DecodedField::Kind::kList) {
      json["items"] = ordered_json::array();
      for (const auto& item : field.items) json["items"].push_back(FieldsJson(item));
    } else {
      json["value"] = field.value;
    }
    if (field.number) json["raw"] = *field.number;
    if (!field.unit.empty()) json["unit"] = field.unit;
    list.push_back(std::move(json));
  }
  return list;
}

ordered_json NotesJson(const std::vector<ipodwire::Note>& notes) {
  ordered_json list = ordered_json::array();
  for (const ipodwire::Note& note : notes) {
    list.push_back({{"kind", ipodwire::NameOf(note.kind)}, {"text", note.text}});
  }
  return list;
}

double Milliseconds(ipodwire::Nanoseconds time) { return static_cast<double>(time) / 1e6; }

const char* Arrow(const ipodwire::Told& told) {
  if (told.is_event) return "*";
  return told.observed.sender == ipodwire::Sender::kIpod ? "<" : ">";
}

}  // namespace

void WireLines::Print(const ipodwire::Told& told) {
  if (output_.json()) {
    output_.ObjectAt(
        std::chrono::floor<std::chrono::milliseconds>(std::chrono::nanoseconds(told.observed.time)),
        Json(told));
  } else {
    output_.Line(Text(told));
  }
  previous_ = told.observed.time;
}

void WireLines::PrintEnd(const std::vector<ipodwire::Note>& notes) {
  for (const ipodwire::Note& note : notes) output_.Line("  " + NotesText({note}));
  if (!notes.empty()) output_.Object({{"notes", NotesJson(notes)}});
}

std::string WireLines::Text(const ipodwire::Told& told) const {
  std::array<char, 64> beginning{};
  std::snprintf(beginning.data(), beginning.size(), "%6llu %+9.3f ",
                static_cast<unsigned long long>(told.observed.number),
                static_cast<double>(SincePrevious(told)) / 1e9);
  std::string text = output_.Dim(beginning.data()) + Arrow(told);
  if (told.frame) {
    text += " " + ipodwire::Describe(*told.frame);
  } else if (!told.is_event) {
    text += " " + ipodwire::HexBytes(told.observed.bytes, kMostBytesShown);
  }
  const std::string notes = NotesText(told.notes);
  return notes.empty() ? text : text + "  " + notes;
}

std::string WireLines::NotesText(const std::vector<ipodwire::Note>& notes) const {
  std::string text;
  for (const ipodwire::Note& note : notes) {
    text += (text.empty() ? "! " : "; ") + Printable(note.text);
  }
  return text.empty() ? text : output_.Bold(text);
}

nlohmann::ordered_json WireLines::Json(const ipodwire::Told& told) const {
  ordered_json json = {{"packet", told.observed.number},
                       {"time_ns", told.observed.time},
                       {"since_previous_ms", Milliseconds(SincePrevious(told))}};
  if (!told.is_event) {
    json["from"] = told.observed.sender == ipodwire::Sender::kIpod ? "ipod" : "accessory";
    json["bytes"] = ipodwire::HexBytes(told.observed.bytes, kAllBytes);
  }
  if (told.frame) {
    const ipodwire::DecodedFrame& frame = *told.frame;
    json["lingo"] = {{"number", frame.frame.lingo}, {"name", frame.lingo_name()}};
    json["command"] = {{"number", frame.frame.command},
                       {"name", frame.command_name()},
                       {"known", frame.command != nullptr}};
    json["large"] = frame.frame.large;
    json["transaction_id"] =
        frame.identifier ? ordered_json(*frame.identifier) : ordered_json(nullptr);
    json["fields"] = FieldsJson(frame.fields);
  }
  if (told.question) {
    json["answers"] = *told.question;
    json["response_ms"] = Milliseconds(*told.response_time);
  }
  json["notes"] = NotesJson(told.notes);
  return json;
}

ipodwire::Nanoseconds WireLines::SincePrevious(const ipodwire::Told& told) const {
  return previous_ ? told.observed.time - *previous_ : 0;
}

}  // namespace ipodctl
