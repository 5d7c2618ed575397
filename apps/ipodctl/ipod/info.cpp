// SPDX-License-Identifier: MIT
// Asks the iPod about itself, and shows it.
#include "ipod/info.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "console/text.h"
#include "ipod/identify_evidence.h"
#include "ipod/refusal.h"

namespace ipodctl {

namespace {

constexpr unsigned char kSportsLingo = 0x09;
constexpr std::size_t kTextCapacity = 260;

std::vector<LingoVersion> ReadLingoVersions(Session& session) {
  std::vector<LingoVersion> lingoes = {
      {"General", 0x00},        {"Simple Remote", 0x02},
      {"Display Remote", 0x03}, {"Extended Interface", 0x04},
      {"Sports", kSportsLingo}, {"Storage", 0x0C},
  };
  for (LingoVersion& lingo : lingoes) {
    lingo.version = session.LingoVersion(lingo.lingo);
    lingo.refusal = session.LingoRefusal(lingo.lingo);
    lingo.lacking = session.LacksLingo(lingo.lingo);
  }
  return lingoes;
}

std::string ModelId(std::uint32_t id) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", id);
  return text;
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

void ReadSerialNumber(Session& session, DeviceInfo* info) {
  const auto data = session.ExchangeWhole(
      {ipod::IPOD_COMMAND_REQUESTIPODSERIALNUM, ipod::IPOD_LINGO_GENERAL, nullptr, 0},
      ipod::IPOD_COMMAND_RETURNIPODSERIALNUM,
      [](const std::vector<unsigned char>& text) { return !text.empty() && text.back() == 0; },
      "its serial number");
  if (data) info->serial_number = Utf8(Wide(reinterpret_cast<const char*>(data->data())).c_str());
}

void ReadSoftwareVersion(Session& session, DeviceInfo* info) {
  const auto data = session.ExchangeWhole(
      {ipod::IPOD_COMMAND_REQUESTIPODSOFTWAREVERSION, ipod::IPOD_LINGO_GENERAL, nullptr, 0},
      ipod::IPOD_COMMAND_RETURNIPODSOFTWAREVERSION,
      [](const std::vector<unsigned char>& numbers) { return numbers.size() >= 3; },
      "its software version");
  if (data) info->software_version = Dotted(*data, ".");
}

std::string ShownVersion(const LingoVersion& lingo) {
  if (lingo.version) return VersionText(*lingo.version);
  if (lingo.lacking) return "not supported";
  return "not told (" + StatusText(lingo.refusal.value_or(0)) + ")";
}

}  // namespace

nlohmann::ordered_json ToJson(const DeviceInfo& info, const std::string& device) {
  nlohmann::ordered_json json;
  json["device"] = device;
  if (info.name) json["name"] = *info.name;
  if (info.model) json["model"] = *info.model;
  if (info.model) json["model_id"] = info.model_id;
  if (info.color != IPOD_COLOR_NONE) json["color"] = static_cast<int>(info.color);
  if (info.serial_number) json["serial_number"] = *info.serial_number;
  if (info.software_version) json["software_version"] = *info.software_version;
  if (info.identified_by) json["identified_by"] = *info.identified_by;
  if (info.sports) json["sports"] = *info.sports;
  if (info.max_payload) json["max_payload"] = *info.max_payload;
  json["lingoes"] = nlohmann::ordered_json::object();
  for (const LingoVersion& lingo : info.lingoes) {
    if (lingo.version) json["lingoes"][lingo.name] = VersionText(*lingo.version);
  }
  return json;
}

std::string WorkoutsText(const DeviceInfo& info) {
  if (info.sports) return *info.sports ? "supported" : "not supported";
  for (const LingoVersion& lingo : info.lingoes) {
    if (lingo.lingo == kSportsLingo && !lingo.version) return ShownVersion(lingo);
  }
  return "not offered";
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
  ReadSerialNumber(session, &info);
  ReadSoftwareVersion(session, &info);
  info.identified_by = session.IdentifiedBy();
  if (ipod.Command_RequestMaxPayloadSize() == 0) {
    session.Require(session.WasRefused(), "tell its maximum payload");
  } else if (ipod.GetMaxPayloadSize() != 0) {
    info.max_payload = ipod.GetMaxPayloadSize();
  }
  info.lingoes = ReadLingoVersions(session);
  if (ipod.SupportsSports() != 0) {
    info.sports = true;
  } else if (session.LacksLingo(kSportsLingo)) {
    info.sports = false;
  }
  return info;
}

void RunInfo(const Context& context, Session& session) {
  const DeviceInfo info = ReadDeviceInfo(session);
  Output& output = context.output;
  output.Object(ToJson(info, context.dock.device()));
  output.Line(output.Bold(ToldName(info.name)) + " on " + context.dock.device());
  output.Fact("Model",
              ToldName(info.model) + (info.model ? " (" + ModelId(info.model_id) + ")" : ""));
  output.Fact("Colour",
              info.color == IPOD_COLOR_NONE ? "unknown" : "number " + std::to_string(info.color));
  output.Fact("Serial number", ToldName(info.serial_number));
  output.Fact("Software version", ToldName(info.software_version));
  output.Fact("Identified by", *info.identified_by);
  output.Fact("Workouts", WorkoutsText(info));
  if (info.max_payload)
    output.Fact("Maximum payload", std::to_string(*info.max_payload) + " bytes");
  for (const LingoVersion& lingo : info.lingoes) {
    output.Fact(lingo.name, ShownVersion(lingo));
  }
}

namespace {

// None when the iPod refuses to tell it.
std::optional<LegacyAnswer> Told(LegacySession& session, const LegacyAnswer& answer,
                                 const char* what) {
  if (answer.refused()) return std::nullopt;
  session.Require(answer, std::string("tell its ") + what);
  return answer;
}

// What the iPod answers; none where it refuses to.
struct LegacyAnswers {
  std::optional<LegacyAnswer> name;
  std::optional<LegacyAnswer> model;
  std::optional<LegacyAnswer> serial_number;
  std::optional<LegacyAnswer> software_version;
  std::optional<LegacyAnswer> general;  // number and version of the General lingo
};
constexpr std::size_t kIdBytes = 4;  // of the model's number, before its text

LegacyAnswers ReadLegacyAnswers(LegacySession& session) {
  // Goes out under the lingo of the command before, which is General here.
  const LegacyQuestion lingo_question = {
      [](ipod& docked) { return docked.command_requestlingoprotocolversion(0); },
      ipod::IPOD_COMMAND_REQUESTLINGOPROTOCOLVERSION,
      ipod::IPOD_COMMAND_RETURNLINGOPROTOCOLVERSION,
      3,
      false,
      {ipod::IPOD_LINGO_GENERAL}};
  LegacyAnswers answers;
  answers.name = Told(session, session.AskShort(NameQuestion()), "name");
  answers.model = Told(session, session.model(), "model");
  answers.serial_number = Told(session, session.AskShort(SerialNumberQuestion()), "serial number");
  answers.software_version =
      Told(session, session.AskShort(SoftwareVersionQuestion()), "software version");
  answers.general = Told(session, session.AskShort(lingo_question), "General version");
  return answers;
}

// As through the current interface.
DeviceInfo InfoFrom(const LegacyAnswers& answers) {
  DeviceInfo info;
  if (answers.name) info.name = TextIn(*answers.name);
  if (answers.model) {
    info.model_id = answers.model->Number(0);
    info.model = TextIn(*answers.model, kIdBytes);
    info.color = CIpodComm::ColorOfModel(Wide(*info.model).c_str());
  }
  if (answers.serial_number) info.serial_number = TextIn(*answers.serial_number);
  if (answers.software_version) info.software_version = Dotted(answers.software_version->data, ".");
  if (answers.general) {
    const std::vector<std::uint8_t>& data = answers.general->data;
    info.lingoes = {{"General", ipod::IPOD_LINGO_GENERAL, tagIPOD_VERSION{data[1], data[2]}}};
  }
  return info;
}

}  // namespace

void RunLegacyInfo(const Context& context, LegacySession& session) {
  const LegacyAnswers answers = ReadLegacyAnswers(session);
  DeviceInfo info = InfoFrom(answers);
  // Which models take workouts is known by their number.
  if (answers.model) {
    const WorkoutSupport workouts = session.AcceptsWorkouts();
    if (!workouts.refusal) info.sports = workouts.accepted;
  }
  std::optional<std::string> number;
  if (answers.model) number = session.model_number();
  std::optional<std::string> general;
  if (answers.general) general = Dotted(answers.general->data, " - ");

  Output& output = context.output;
  output.Object(ToJson(info, context.dock.device()));
  output.Line(output.Bold(ToldName(info.name)) + " on " + context.dock.device());
  output.Fact("Model", ToldName(info.model));
  output.Fact("Model number", ToldName(number));
  output.Fact("Serial number", ToldName(info.serial_number));
  output.Fact("Software version", ToldName(info.software_version));
  output.Fact("Lingo version", ToldName(general));
  output.Fact("Workouts", info.sports ? WorkoutsText(info) : "(not told)");
}

}  // namespace ipodctl
