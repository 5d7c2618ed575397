// SPDX-License-Identifier: MIT
// Asks the iPod about itself.
#include "ipod/device_info.h"

#include <cstdio>

#include "console/text.h"

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

}  // namespace ipodctl
