// SPDX-License-Identifier: MIT
#include "wire/explain_command.h"

#include <algorithm>
#include <cctype>

#include "console/failure.h"
#include "wire/findings_view.h"

namespace ipodctl {

namespace {

using ipodwire::FindingPage;

// "E301", in either case.
bool IsCode(const std::string& text) {
  return text.size() == 4 && std::toupper(static_cast<unsigned char>(text[0])) == 'E' &&
         std::all_of(text.begin() + 1, text.end(),
                     [](unsigned char digit) { return std::isdigit(digit) != 0; });
}

int ExplainCode(std::string code, Output& output) {
  code[0] = 'E';
  const FindingPage* page = ipodwire::FindFindingPage(code);
  if (page == nullptr) {
    throw CommandFailure(kUsage, "there is no finding " + code + "; the first is " +
                                     ipodwire::FindingPages().front().code + ", the last " +
                                     ipodwire::FindingPages().back().code);
  }
  ShowPage(*page, output);
  return kSuccess;
}

}  // namespace

int RunExplain(const Options& options, Output& output) {
  if (IsCode(options.recording)) return ExplainCode(options.recording, output);
  ShowFindingsOf(options.recording, output);
  return kSuccess;
}

}  // namespace ipodctl
