// SPDX-License-Identifier: MIT
// Identifies, and judges what came of it.
#include "ipod/port_probe.h"

#include "console/clock.h"
#include "console/failure.h"
#include "console/interrupt.h"
#include "console/text.h"
#include "ipod/dock_line.h"
#include "ipod/identify_evidence.h"
#include "ipod/session.h"

namespace ipodctl {

namespace {

using Kind = PortAnswer::Kind;

// For the first answer. Who answers is given the time that identification takes.
constexpr std::chrono::seconds kPatience(5);

PortAnswer OfPort(const CommandFailure& failure) {
  if (failure.finding() == "E102") return {Kind::kBusy, {}, {}, {}};
  if (failure.finding() == "E103") return {Kind::kForbidden, {}, {}, {}};
  return {Kind::kUnusable, {}, {}, failure.what()};
}

PortAnswer OfIdentification(const CommandFailure& failure, Session& session) {
  if (failure.finding() == "E202") return {Kind::kEcho, {}, {}, {}};
  if (!IdentifyEvidence(session.ipod()).AnyAnswer()) return {};
  return {Kind::kNotAccepted, {}, {}, failure.what()};
}

std::optional<std::string> AskName(Session& session) {
  wchar_t name[260] = {};
  if (session.ipod().Command_RequestIpodName(name, std::size(name)) == 0) return std::nullopt;
  return Utf8(name);
}

std::optional<std::string> AskModel(Session& session) {
  wchar_t model[260] = {};
  unsigned long id = 0;
  if (session.ipod().Command_RequestIpodModelNum(&id, model, std::size(model)) == 0) {
    return std::nullopt;
  }
  return Utf8(model);
}

PortAnswer Ask(Session& session) {
  try {
    session.Identify(SteadyTime() + kPatience);
  } catch (const CommandFailure& failure) {
    StopIfInterrupted();
    return OfIdentification(failure, session);
  }
  PortAnswer answer{Kind::kIpod, AskName(session), {}, {}};
  if (answer.name) answer.model = AskModel(session);
  StopIfInterrupted();
  return answer;
}

std::string IpodText(const PortAnswer& answer) {
  const std::string name = answer.name ? Printable(*answer.name) : "an iPod that tells no name";
  return answer.model ? name + " (" + Printable(*answer.model) + ")" : name;
}

}  // namespace

bool PortAnswer::opened() const {
  return kind != Kind::kBusy && kind != Kind::kForbidden && kind != Kind::kUnusable;
}

const char* PortAnswer::word() const {
  switch (kind) {
    case Kind::kIpod:
      return "ipod";
    case Kind::kNotAccepted:
      return "not-accepted";
    case Kind::kEcho:
      return "echo";
    case Kind::kBusy:
      return "busy";
    case Kind::kForbidden:
      return "no-permission";
    case Kind::kUnusable:
      return "unusable";
    default:
      return "nothing";
  }
}

std::string PortAnswer::Text() const {
  switch (kind) {
    case Kind::kIpod:
      return IpodText(*this);
    case Kind::kNotAccepted:
      return "an iPod, but " + trouble;
    case Kind::kEcho:
      return "what is sent comes back";
    case Kind::kBusy:
      return "busy";
    case Kind::kForbidden:
      return "no permission";
    case Kind::kUnusable:
      return trouble;
    default:
      return "nothing answers";
  }
}

PortAnswer AskPort(const Options& options, const std::string& device) {
  Options asked = options;
  asked.simulation.reset();
  asked.port = device;
  std::optional<Session> session;
  const DockLine dock(asked);
  try {
    session.emplace(asked, dock);
  } catch (const CommandFailure& failure) {
    return OfPort(failure);
  }
  return Ask(*session);
}

}  // namespace ipodctl
