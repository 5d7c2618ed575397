// SPDX-License-Identifier: MIT
// Asks the iPod about itself, and shows it.
#include "ipod/info.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "console/text.h"
#include "ipod/identify_evidence.h"

namespace ipodctl {

namespace {

constexpr unsigned char kSportsLingo = 0x09;
constexpr std::size_t kTextCapacity = 260;

std::vector<LingoVersion> ReadLingoVersions(Session& session) {
  std::vector<LingoVersion> lingoes = {
      {"General", 0x00, {}},        {"Simple Remote", 0x02, {}},
      {"Display Remote", 0x03, {}}, {"Extended Interface", 0x04, {}},
      {"Sports", kSportsLingo, {}}, {"Storage", 0x0C, {}},
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
  if (info.sports) json["sports"] = *info.sports;
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

std::string WorkoutsText(const DeviceInfo& info) {
  if (!info.sports) return "not offered";
  return *info.sports ? "supported" : "not supported";
}

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
  if (ipod.Command_RequestMaxPayloadSize() == 0) {
    session.Require(session.WasRefused(), "tell its maximum payload");
  } else if (ipod.GetMaxPayloadSize() != 0) {
    info.max_payload = ipod.GetMaxPayloadSize();
  }
  info.lingoes = ReadLingoVersions(session);
  if (ipod.SupportsSports() != 0) {
    info.sports = true;
  } else if (!session.LingoVersion(kSportsLingo)) {
    info.sports = false;
  }
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
  output.Fact("Workouts", WorkoutsText(info));
  if (info.max_payload)
    output.Fact("Maximum payload", std::to_string(*info.max_payload) + " bytes");
  for (const LingoVersion& lingo : info.lingoes) {
    output.Fact(lingo.name, lingo.version ? VersionText(*lingo.version) : "not supported");
  }
}

namespace {

// Three bytes as the interface shows them, joined by dots from the second on.
std::string Dotted(const std::vector<std::uint8_t>& bytes, const char* first_separator) {
  return std::to_string(bytes[0]) + first_separator + std::to_string(bytes[1]) + "." +
         std::to_string(bytes[2]);
}

// None when the iPod refuses to tell it.
std::optional<LegacyAnswer> Told(LegacySession& session, const LegacyAnswer& answer,
                                 const char* what) {
  if (answer.refused()) return std::nullopt;
  session.Require(answer, std::string("tell its ") + what);
  return answer;
}

struct LegacyFact {
  const char* key;
  const char* label;
  std::optional<std::string> text;
};

std::vector<LegacyFact> ReadLegacyFacts(LegacySession& session) {
  const LegacyQuestion serial_question = {
      [](ipod& docked) { return docked.command_requestipodserialnum(); },
      ipod::IPOD_COMMAND_REQUESTIPODSERIALNUM, ipod::IPOD_COMMAND_RETURNIPODSERIALNUM, 1, true};
  const LegacyQuestion software_question = {
      [](ipod& docked) { return docked.command_requestipodsoftwareversion(); },
      ipod::IPOD_COMMAND_REQUESTIPODSOFTWAREVERSION, ipod::IPOD_COMMAND_RETURNIPODSOFTWAREVERSION,
      3};
  // Goes out under the lingo of the command before, which is General here.
  const LegacyQuestion lingo_question = {
      [](ipod& docked) { return docked.command_requestlingoprotocolversion(0); },
      ipod::IPOD_COMMAND_REQUESTLINGOPROTOCOLVERSION,
      ipod::IPOD_COMMAND_RETURNLINGOPROTOCOLVERSION,
      3,
      false,
      {ipod::IPOD_LINGO_GENERAL}};
  constexpr std::size_t kIdBytes = 4;
  const auto model = Told(session, session.model(), "model");
  const auto serial = Told(session, session.AskShort(serial_question), "serial number");
  const auto software = Told(session, session.AskShort(software_question), "software version");
  const auto lingo = Told(session, session.AskShort(lingo_question), "General version");
  std::vector<LegacyFact> facts = {{"model", "Model", {}},
                                   {"model_number", "Model number", {}},
                                   {"serial_number", "Serial number", {}},
                                   {"software_version", "Software version", {}},
                                   {"lingo_version", "Lingo version", {}}};
  if (model) facts[0].text = TextIn(*model, kIdBytes);
  if (model) facts[1].text = session.model_number();
  if (serial) facts[2].text = TextIn(*serial);
  if (software) facts[3].text = Dotted(software->data, ".");
  if (lingo) facts[4].text = Dotted(lingo->data, " - ");
  return facts;
}

}  // namespace

void RunLegacyInfo(const Context& context, LegacySession& session) {
  std::optional<std::string> name;
  if (const auto told = Told(session, session.AskShort(NameQuestion()), "name")) {
    name = TextIn(*told);
  }
  const std::vector<LegacyFact> facts = ReadLegacyFacts(session);
  // Which models take workouts is known by their number.
  WorkoutSupport workouts;
  if (session.model().answered()) workouts = session.AcceptsWorkouts();
  const bool is_told = session.model().answered() && !workouts.refusal;

  Output& output = context.output;
  nlohmann::ordered_json json = {{"device", context.dock.device()}};
  if (name) json["name"] = *name;
  output.Line(output.Bold(ToldOrNot(name)) + " on " + context.dock.device());
  for (const LegacyFact& fact : facts) {
    if (fact.text) json[fact.key] = *fact.text;
    output.Fact(fact.label, ToldOrNot(fact.text));
  }
  if (is_told) json["sports"] = workouts.accepted;
  output.Fact("Workouts", !is_told            ? "(not told)"
                          : workouts.accepted ? "supported"
                                              : "not supported");
  output.Object(json);
}

}  // namespace ipodctl
