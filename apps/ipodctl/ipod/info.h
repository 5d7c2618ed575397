// SPDX-License-Identifier: MIT
// ipodctl info: what is in the dock, through either interface.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "context.h"
#include "ipod/legacy_session.h"
#include "ipod/session.h"

namespace ipodctl {

struct LingoVersion {
  const char* name;
  unsigned char lingo;
  std::optional<tagIPOD_VERSION> version = {};  // none: the iPod refused to tell it
  std::optional<std::uint8_t> refusal = {};     // the status with which it did
  bool lacking = false;                         // it said that it does not know the lingo
};

struct DeviceInfo {
  std::optional<std::string> name;  // none: the iPod refuses to tell it
  std::optional<std::string> model;
  std::uint32_t model_id = 0;
  tagIPOD_COLOR color = IPOD_COLOR_NONE;
  std::optional<std::string> serial_number;
  std::optional<std::string> software_version;
  std::optional<std::string> identified_by;  // none: the interface does not tell it
  // Whether it takes workouts; none where that is not known, and where it has the service and did
  // not offer it.
  std::optional<bool> sports;
  std::optional<unsigned> max_payload;  // bytes; none: the iPod does not report it
  std::vector<LingoVersion> lingoes;
};

DeviceInfo ReadDeviceInfo(Session& session);
/// @param device the line that it is docked on
nlohmann::ordered_json ToJson(const DeviceInfo& info, const std::string& device);
/// "supported", "not supported", "not offered" or "not told", and why.
std::string WorkoutsText(const DeviceInfo& info);

void RunInfo(const Context& context, Session& session);
/// Shows the legacy interface's display texts.
void RunLegacyInfo(const Context& context, LegacySession& session);

}  // namespace ipodctl
