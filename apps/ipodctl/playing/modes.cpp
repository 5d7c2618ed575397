// SPDX-License-Identifier: MIT
// Reads, sets and shows the play modes.
#include "playing/modes.h"

#include <array>
#include <functional>
#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "ipodcomm/ipod.h"

namespace ipodctl {

namespace {

using ModeNames = std::array<const char*, 3>;  // by their numbers on the wire
constexpr ModeNames kShuffleModes = {"off", "tracks", "albums"};
constexpr ModeNames kRepeatModes = {"off", "one", "all"};

std::string NameOf(const ModeNames& names, unsigned long mode) {
  return mode < names.size() ? names[mode] : "mode " + std::to_string(mode);
}

unsigned char NumberOf(const ModeNames& names, const std::string& name) {
  unsigned char number = 0;
  while (number + 1U < names.size() && name != names[number]) ++number;
  return number;
}

// Fails unless the mode is the one that was set; what the iPod answered says less.
void RequireMode(Session& session, bool accepted, const std::string& what,
                 const std::string& wanted, const std::function<std::string(Session&)>& read) {
  const tagIPOD_EXCHANGE exchange = session.Last();
  const std::string mode = read(session);
  if (mode == wanted) return;
  if (!accepted) session.Fail(exchange, "set " + what + " to " + wanted + "; it is " + mode);
  throw CommandFailure(kFailed, "the iPod accepted, but " + what + " is " + mode);
}

void ShowMode(Output& output, const char* name, const char* label, const std::string& mode) {
  output.Object({{name, mode}});
  output.Line(std::string(label) + ": " + mode);
}

}  // namespace

std::string ReadShuffle(Session& session) {
  unsigned long mode = 0;
  session.Require(session.ipod().Command_GetShuffle(&mode) != 0, "tell whether it shuffles");
  return NameOf(kShuffleModes, mode);
}

void SetShuffle(Session& session, const std::string& mode, bool keep) {
  const bool accepted =
      session.ipod().Command_SetShuffle(NumberOf(kShuffleModes, mode), keep ? 1 : 0) != 0;
  RequireMode(session, accepted && !session.WasRefused(), "shuffle", mode, ReadShuffle);
}

// The library has no operation that reads the repeat mode, but exchanges any command.
std::string ReadRepeat(Session& session) {
  const tagIPOD_WRITE_PARAMS request = {ipod::IPOD_COMMAND_GETREPEAT, ipod::IPOD_LINGO_EXTENDED,
                                        nullptr, 0};
  const auto mode = session.Exchange(request, ipod::IPOD_COMMAND_RETURNREPEAT);
  session.Require(mode && !mode->empty(), "tell whether it repeats");
  return NameOf(kRepeatModes, mode->front());
}

void SetRepeat(Session& session, const std::string& mode, bool keep) {
  const bool accepted =
      session.ipod().Command_SetRepeat(NumberOf(kRepeatModes, mode), keep ? 0 : 1) != 0;
  RequireMode(session, accepted && !session.WasRefused(), "repeat", mode, ReadRepeat);
}

void RunShuffle(const Context& context, Session& session) {
  const Options& options = context.options;
  if (!options.mode.empty()) SetShuffle(session, options.mode, options.keep);
  ShowMode(context.output, "shuffle", "Shuffle", ReadShuffle(session));
}

void RunRepeat(const Context& context, Session& session) {
  const Options& options = context.options;
  if (!options.mode.empty()) SetRepeat(session, options.mode, options.keep);
  ShowMode(context.output, "repeat", "Repeat", ReadRepeat(session));
}

}  // namespace ipodctl
