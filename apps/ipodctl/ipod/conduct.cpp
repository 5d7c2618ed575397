// SPDX-License-Identifier: MIT
// The table of conducts.
#include "ipod/conduct.h"

#include <string>

namespace ipodctl {

namespace {

struct Conduct {
  const char* name;
  tagIPOD_CONDUCT session;
  tagIPOD_LEGACY_CONDUCT legacy;
};

constexpr Conduct kField = {"field", IPOD_CONDUCT_FIELD, IPOD_LEGACY_CONDUCT_FIELD};
constexpr Conduct kRobust = {"robust", IPOD_CONDUCT_ROBUST, IPOD_LEGACY_CONDUCT_ROBUST};
constexpr Conduct kFast = {"fast", IPOD_CONDUCT_FAST, IPOD_LEGACY_CONDUCT_FAST};

const Conduct& Chosen(const Options& options) {
  for (const Conduct* conduct : {&kField, &kRobust, &kFast}) {
    if (options.conduct == conduct->name) return *conduct;
  }
  return options.simulation ? kFast : kRobust;
}

}  // namespace

tagIPOD_CONDUCT ConductOf(const Options& options) { return Chosen(options).session; }

tagIPOD_LEGACY_CONDUCT LegacyConductOf(const Options& options) { return Chosen(options).legacy; }

}  // namespace ipodctl
