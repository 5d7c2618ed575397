// SPDX-License-Identifier: MIT
// Asks the iPod about itself, and shows it.
#include "ipod/info.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "console/text.h"
#include "ipod/display_text.h"

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
    tagIPOD_VERSION version = {};
    if (session.ipod().Command_RequestLingoProtocolVersion(lingo.lingo, &version) != 0) {
      lingo.version = version;
    }
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
  json["name"] = info.name;
  json["model"] = info.model;
  json["model_id"] = info.model_id;
  json["color"] = static_cast<int>(info.color);
  json["identified_by"] = info.identified_by;
  json["sports"] = info.sports;
  if (info.max_payload) json["max_payload"] = *info.max_payload;
  for (const LingoVersion& lingo : info.lingoes) {
    if (lingo.version) json["lingoes"][lingo.name] = VersionText(*lingo.version);
  }
  return json;
}

}  // namespace

DeviceInfo ReadDeviceInfo(Session& session) {
  CIpodComm& ipod = session.ipod();
  DeviceInfo info;
  wchar_t text[kTextCapacity] = {};
  session.Require(ipod.Command_RequestIpodName(text, kTextCapacity) != 0, "tell its name");
  info.name = Utf8(text);
  wchar_t model[kTextCapacity] = {};
  unsigned long model_id = 0;
  session.Require(ipod.Command_RequestIpodModelNum(&model_id, model, kTextCapacity) != 0,
                  "tell its model");
  info.model_id = static_cast<std::uint32_t>(model_id);
  info.model = Utf8(model);
  session.Require(ipod.GetIPodColor(&info.color) != 0, "tell its model");
  info.identified_by = session.IdentifiedBy();
  info.sports = ipod.SupportsSports() != 0;
  if (ipod.Command_RequestMaxPayloadSize() != 0 && ipod.GetMaxPayloadSize() != 0) {
    info.max_payload = ipod.GetMaxPayloadSize();
  }
  info.lingoes = ReadLingoVersions(session);
  return info;
}

std::string VersionText(const tagIPOD_VERSION& version) {
  char text[16];
  std::snprintf(text, sizeof text, "%u.%02u", version.major, version.minor);
  return text;
}

void RunInfo(const Context& context, Session& session) {
  const DeviceInfo info = ReadDeviceInfo(session);
  Output& output = context.output;
  output.Object(ToJson(info, context.dock.device()));
  output.Line(output.Bold(Printable(info.name)) + " on " + context.dock.device());
  output.Fact("Model", Printable(info.model) + " (" + ModelId(info.model_id) + ")");
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

void RunLegacyInfo(const Context& context, LegacySession& session) {
  ipod& docked = session.interface();
  DisplayText name;
  DisplayText model;
  DisplayText number;
  DisplayText serial;
  DisplayText software;
  DisplayText general;
  session.Require(docked.getipodname(name.buffer()) != 0, "tell its name");
  session.Require(docked.getipodmodelname(model.buffer()) != 0, "tell its model");
  session.Require(docked.getipodmodelnum(number.buffer()) != 0, "tell its model number");
  session.Require(docked.getipodserailnum(serial.buffer()) != 0, "tell its serial number");
  // The result is 0 for versions 0.x, although the text is there.
  docked.getipodsoftwareversion(software.buffer(), DisplayText::kCapacity);
  session.Require(!software.text().empty(), "tell its software version");
  session.Require(docked.getipodlingoversion(general.buffer(), 0) != 0, "tell a lingo version");
  const bool workouts = session.AcceptsWorkouts();

  Output& output = context.output;
  output.Object({{"device", context.dock.device()},
                 {"name", name.text()},
                 {"model", model.text()},
                 {"model_number", number.text()},
                 {"serial_number", serial.text()},
                 {"software_version", software.text()},
                 {"lingo_version", general.text()},
                 {"sports", workouts}});
  output.Line(output.Bold(Printable(name.text())) + " on " + context.dock.device());
  output.Fact("Model", Printable(model.text()));
  output.Fact("Model number", number.text());
  output.Fact("Serial number", Printable(serial.text()));
  output.Fact("Software version", software.text());
  output.Fact("Lingo version", general.text());
  output.Fact("Workouts", workouts ? "supported" : "not supported");
}

}  // namespace ipodctl
