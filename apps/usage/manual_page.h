// SPDX-License-Identifier: MIT
// Manual pages of a program and its commands, from the options that its parser knows and from the
// text of its help.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "usage/help.h"

namespace usage {

struct ManualPage {
  std::string name;  // "ipodctl-browse"; its section is 1
  std::string text;  // for man
};

/// The program's page, and one for each of its commands.
std::vector<ManualPage> ManualPages(const CLI::App& app, const HelpFormatter& help);

}  // namespace usage
