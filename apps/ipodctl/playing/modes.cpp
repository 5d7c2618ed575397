// SPDX-License-Identifier: MIT
// ipodctl shuffle and repeat: shows or sets a play mode.
#include <nlohmann/json.hpp>

#include "commands.h"
#include "playing/play_modes.h"

namespace ipodctl {

namespace {

void ShowMode(Output& output, const char* name, const char* label, const std::string& mode) {
  output.Object({{name, mode}});
  output.Line(std::string(label) + ": " + mode);
}

}  // namespace

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
