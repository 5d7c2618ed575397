// SPDX-License-Identifier: MIT
// Chooses names that harm no document, and writes pages whole or not at all.
#include "report/page_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>

#include "console/failure.h"

namespace ipodctl {

namespace fs = std::filesystem;

fs::path PageBeside(const fs::path& document) {
  fs::path page = document;
  if (page.extension() == ".html") {
    page += ".html";
  } else {
    page.replace_extension(".html");
  }
  return page;
}

void RequireAnotherFile(const std::string& document, const std::string& page) {
  std::error_code none_there;
  if (!fs::equivalent(fs::u8path(document), fs::u8path(page), none_there)) return;
  throw CommandFailure(kUsage, page + " is the workout document itself; name another file with -o");
}

void WritePage(const std::string& html, const std::string& path) {
  const fs::path file = fs::u8path(path);
  errno = 0;
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  const bool opened = stream.is_open();
  stream << html;
  stream.close();
  if (stream) return;
  const std::string why = errno != 0 ? std::strerror(errno) : "the system does not say why";
  std::error_code ignored;
  if (opened && fs::is_regular_file(file, ignored)) fs::remove(file, ignored);
  throw CommandFailure(kFailed, "cannot write " + path + ": " + why);
}

}  // namespace ipodctl
