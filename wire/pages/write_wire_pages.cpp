// SPDX-License-Identifier: MIT
// Writes docs/wire.md and the table of share/ipodcomm/ipodcomm.lua anew.
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "wire/pages/pages.h"

namespace {

bool Write(const std::string& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream << text;
  stream.close();
  if (!stream) std::fprintf(stderr, "write_wire_pages: cannot write %s\n", file.c_str());
  return static_cast<bool>(stream);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: write_wire_pages FOLDER\n", stderr);
    return 64;
  }
  const std::string folder = argv[1];
  const std::string dissector = folder + "/share/ipodcomm/ipodcomm.lua";
  std::ostringstream before;
  before << std::ifstream(dissector, std::ios::binary).rdbuf();
  const std::string after = ipodwire::WithTable(before.str(), ipodwire::DissectorTable());
  if (after.empty()) {
    std::fprintf(stderr, "write_wire_pages: %s has no place for the table\n", dissector.c_str());
    return 1;
  }
  return Write(folder + "/docs/wire.md", ipodwire::WirePage()) && Write(dissector, after) ? 0 : 1;
}
