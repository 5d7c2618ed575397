// SPDX-License-Identifier: MIT
// Writes the manual pages and the completion scripts of the programs.
//
//   man/man1/ipodctl.1 and so on    from the options of the programs
//   man/man3/ipodcomm.3             from a page written by hand, with this build's version and date
//   man/man7/ipodcomm-wire.7        from the table of the protocol's commands
//   completion/ipodctl.bash ...     for each shell
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "ipodctl/command_line/parser.h"
#include "ipodsim/command_line.h"
#include "usage/completion_script.h"
#include "usage/roff.h"
#include "wire_manual.h"

namespace {

namespace fs = std::filesystem;

void Write(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream << text;
  stream.close();
  if (!stream) throw std::runtime_error("cannot write " + file.string());
}

std::string Read(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  return text.str();
}

void WriteCommandPages(const std::vector<usage::ManualPage>& pages, const fs::path& folder) {
  for (const usage::ManualPage& page : pages) {
    Write(folder / "man/man1" / (page.name + ".1"), page.text);
  }
}

void WriteAll(const fs::path& folder, const fs::path& written_by_hand) {
  WriteCommandPages(ipodctl::CommandLineParser().ManualPages(), folder);
  WriteCommandPages(ipodsim::CommandLine().ManualPages(), folder);
  Write(folder / "man/man3/ipodcomm.3", usage::RoffTitle("ipodcomm", 3, "Library Functions") +
                                            Read(written_by_hand / "ipodcomm.3"));
  Write(folder / "man/man7/ipodcomm-wire.7", WireManualPage());
  for (const char* program : {"ipodctl", "ipodsim"}) {
    for (const std::string& shell : usage::Shells()) {
      Write(folder / "completion" / (program + ("." + shell)),
            usage::CompletionScript(program, shell));
    }
  }
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 3) {
    std::fputs("usage: write_manual FOLDER FOLDER-WITH-PAGES-WRITTEN-BY-HAND\n", stderr);
    return 64;
  }
  // Nothing of an earlier build stays, such as the page of a command that is no more.
  fs::remove_all(fs::path(argv[1]) / "man");
  WriteAll(argv[1], argv[2]);
  return 0;
} catch (const std::exception& problem) {
  std::fprintf(stderr, "write_manual: %s\n", problem.what());
  return 1;
}
