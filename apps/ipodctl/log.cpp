// SPDX-License-Identifier: MIT
// Verbose notes on standard error.
#include "log.h"

#include <atomic>
#include <cstdio>

namespace ipodctl {

namespace {

std::atomic<bool> is_verbose = false;
std::atomic<std::FILE*> messages = nullptr;  // null: standard error

}  // namespace

void SetVerbose(bool verbose) { is_verbose = verbose; }

bool Verbose() { return is_verbose; }

std::FILE* Messages() {
  std::FILE* const stream = messages;
  return stream == nullptr ? stderr : stream;
}

void SetMessages(std::FILE* stream) { messages = stream; }

void Note(const std::string& text) {
  if (Verbose()) std::fprintf(Messages(), "ipodctl: %s\n", text.c_str());
}

}  // namespace ipodctl
