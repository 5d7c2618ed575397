// SPDX-License-Identifier: MIT
// Asks the iPod about itself, and shows it.
#include "ipod/info.h"

#include <cstdio>
#include <functional>
#include <nlohmann/json.hpp>

#include "console/text.h"
#include "ipod/display_text.h"
#include "ipod/identify_evidence.h"

namespace ipodctl {

namespace {

constexpr std::size_t kTextCapacity = 260;

std::vector<LingoVersion> ReadLingoVersions(Session& session) {
  std::vector<LingoVersion> lingoes = {
      {"General", 0x00, {}},        {"Simple Remote", 0x02, {}},
      {"Display Remote", 0x03, {}}, {"Extended Interface", 0x04, {}},
      {"Sports", 0x09, {}},         {"Storage", 0x0C, {}},
  };
  for (LingoVersion& lingo : lingoes) {
    lingo.version = session.LingoVersion(lingo.lingo);
  }
  return lingoes;
}

std::string ModelId(std::uint32_t id) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", id);
  return text;
}

nlohmann::ordered_json ToJson(const DeviceInfo& info, const std::string& device) {
  nlohmann::ordered_json json;
  json["device"] = device;
  if (info.name) json["name"] = *info.name;
  if (info.model) json["model"] = *info.model;
  if (info.model) json["model_id"] = info.model_id;
  json["color"] = static_cast<int>(info.color);
  json["identified_by"] = info.identified_by;
  json["sports"] = info.sports;
  if (info.max_payload) json["max_payload"] = *info.max_payload;
  for (const LingoVersion& lingo : info.lingoes) {
    if (lingo.version) json["lingoes"][lingo.name] = VersionText(*lingo.version);
  }
  return json;
}

void ReadModel(Session& session, DeviceInfo* info) {
  CIpodComm& ipod = session.ipod();
  wchar_t model[kTextCapacity] = {};
  unsigned long id = 0;
  if (ipod.Command_RequestIpodModelNum(&id, model, kTextCapacity) == 0) {
    session.Require(session.WasRefused(), "tell its model");
    return;
  }
  info->model_id = static_cast<std::uint32_t>(id);
  info->model = Utf8(model);
  info->color = CIpodComm::ColorOfModel(model);
}

std::string ToldOrNot(const std::optional<std::string>& text) {
  return text ? ShownName(*text) : "(not told)";
}

}  // namespace

DeviceInfo ReadDeviceInfo(Session& session) {
  CIpodComm& ipod = session.ipod();
  DeviceInfo info;
  wchar_t name[kTextCapacity] = {};
  if (ipod.Command_RequestIpodName(name, kTextCapacity) != 0) {
    info.name = Utf8(name);
  } else {
    session.Require(session.WasRefused(), "tell its name");
  }
  ReadModel(session, &info);
  info.identified_by = session.IdentifiedBy();
  info.sports = ipod.SupportsSports() != 0;
  if (ipod.Command_RequestMaxPayloadSize() == 0) {
    session.Require(session.WasRefused(), "tell its maximum payload");
  } else if (ipod.GetMaxPayloadSize() != 0) {
    info.max_payload = ipod.GetMaxPayloadSize();
  }
  info.lingoes = ReadLingoVersions(session);
  return info;
}

void RunInfo(const Context& context, Session& session) {
  const DeviceInfo info = ReadDeviceInfo(session);
  Output& output = context.output;
  output.Object(ToJson(info, context.dock.device()));
  output.Line(output.Bold(ToldOrNot(info.name)) + " on " + context.dock.device());
  output.Fact("Model",
              ToldOrNot(info.model) + (info.model ? " (" + ModelId(info.model_id) + ")" : ""));
  output.Fact("Colour",
              info.color == IPOD_COLOR_NONE ? "unknown" : "number " + std::to_string(info.color));
  output.Fact("Identified by", info.identified_by);
  output.Fact("Workouts", info.sports ? "supported" : "not supported");
  if (info.max_payload)
    output.Fact("Maximum payload", std::to_string(*info.max_payload) + " bytes");
  for (const LingoVersion& lingo : info.lingoes) {
    output.Fact(lingo.name, lingo.version ? VersionText(*lingo.version) : "not supported");
  }
}

namespace {

// A display text; none when the iPod does not tell it, which the interface cannot tell from a
// refusal.
std::optional<std::string> ReadText(LegacySession& session,
                                    const std::function<int(wchar_t* text)>& read) {
  constexpr int kAttempts = 2;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    DisplayText text;
    const bool told = read(text.buffer()) != 0;
    if (told || !text.text().empty()) return text.text();
  }
  session.RequireAnswers();
  return std::nullopt;
}

}  // namespace

void RunLegacyInfo(const Context& context, LegacySession& session) {
  ipod& docked = session.interface();
  struct Fact {
    const char* key;
    const char* label;
    std::optional<std::string> text;
  };
  const auto name = ReadText(session, [&](wchar_t* text) { return docked.getipodname(text); });
  std::vector<Fact> facts;
  facts.push_back({"model", "Model", ReadText(session, [&](wchar_t* text) {
                     return docked.getipodmodelname(text);
                   })});
  const bool has_number = !session.model_number().empty();
  facts.push_back({"model_number", "Model number",
                   has_number ? std::optional(session.model_number()) : std::nullopt});
  facts.push_back({"serial_number", "Serial number", ReadText(session, [&](wchar_t* text) {
                     return docked.getipodserailnum(text);
                   })});
  // The result is 0 for versions 0.x, although the text is there.
  facts.push_back({"software_version", "Software version", ReadText(session, [&](wchar_t* text) {
                     return docked.getipodsoftwareversion(text, DisplayText::kCapacity);
                   })});
  facts.push_back({"lingo_version", "Lingo version", ReadText(session, [&](wchar_t* text) {
                     return docked.getipodlingoversion(text, 0);
                   })});
  const bool workouts = session.AcceptsWorkouts();

  Output& output = context.output;
  nlohmann::ordered_json json = {{"device", context.dock.device()}};
  if (name) json["name"] = *name;
  output.Line(output.Bold(ToldOrNot(name)) + " on " + context.dock.device());
  for (const Fact& fact : facts) {
    if (fact.text) json[fact.key] = *fact.text;
    output.Fact(fact.label, ToldOrNot(fact.text));
  }
  json["sports"] = workouts;
  output.Fact("Workouts", workouts ? "supported" : "not supported");
  output.Object(json);
}

}  // namespace ipodctl
