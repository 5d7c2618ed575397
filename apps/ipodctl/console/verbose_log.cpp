// SPDX-License-Identifier: MIT
// Verbose notes on standard error.
#include "console/verbose_log.h"

#include <atomic>
#include <cstdio>

namespace ipodctl {

namespace {

std::atomic<bool> is_verbose = false;

}  // namespace

void SetVerbose(bool verbose) { is_verbose = verbose; }

bool Verbose() { return is_verbose; }

void Note(const std::string& text) {
  if (Verbose()) std::fprintf(stderr, "ipodctl: %s\n", text.c_str());
}

}  // namespace ipodctl
