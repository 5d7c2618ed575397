// SPDX-License-Identifier: MIT
// Reads, sets and shows the play modes.
#include "playing/modes.h"

#include <array>
#include <nlohmann/json.hpp>

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
  session.Require(
      session.ipod().Command_SetShuffle(NumberOf(kShuffleModes, mode), keep ? 1 : 0) != 0,
      "set shuffle to " + mode);
}

// The library has no operation that reads the repeat mode, but exchanges any command.
std::string ReadRepeat(Session& session) {
  constexpr std::uint8_t kExtendedLingo = 4;
  unsigned char mode = 0;
  tagIPOD_WRITE_PARAMS request = {};
  request.lingo = kExtendedLingo;
  request.command = 0x002F;
  tagIPOD_READ_PARAMS answer = {};
  answer.expected_command = 0x0030;
  answer.buffer = &mode;
  answer.size = 1;
  answer.retries = 3;
  session.Require(session.ipod().WriteReadCommand(&request, &answer) == IPOD_COMM_OK,
                  "tell whether it repeats");
  return NameOf(kRepeatModes, mode);
}

void SetRepeat(Session& session, const std::string& mode, bool keep) {
  session.Require(session.ipod().Command_SetRepeat(NumberOf(kRepeatModes, mode), keep ? 0 : 1) != 0,
                  "set repeat to " + mode);
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
