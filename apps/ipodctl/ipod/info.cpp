// SPDX-License-Identifier: MIT
// ipodctl info: what is in the dock.
#include <cstdio>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "console/text.h"
#include "ipod/device_info.h"

namespace ipodctl {

namespace {

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

}  // namespace ipodctl
