// SPDX-License-Identifier: MIT
// Pages as a browser lays them out.
#pragma once

#include <string>
#include <vector>

namespace report {

extern const char* const kChromium;

/// A page, and the size of window it is looked at in.
struct Viewed {
  std::string name;  // of the page, for what is said of it
  std::string html;
  int width = 1280;
};

/// Loads all pages beside each other and runs `script` once they are there. It defines a function
/// `look(document, window)` that returns a list of texts.
/// @return the texts, a line each: "NAME: TEXT"
std::vector<std::string> LookAt(const std::vector<Viewed>& pages, const std::string& script);

/// The page as it is on paper, and as it is where dark colours are wanted; for any screen.
std::string OnPaper(std::string html);
std::string InTheDark(std::string html);

}  // namespace report
