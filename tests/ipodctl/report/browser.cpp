// SPDX-License-Identifier: MIT
// Runs Chromium without a window, and reads what a script finds in its pages.
#include "browser.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/process.h"
#include "support/temporary_folder.h"

namespace report {

namespace {

constexpr const char* kBegin = "<pre>";
constexpr const char* kEnd = "\nlooked at all</pre>";

std::string Quoted(const std::string& html) {
  std::string quoted;
  for (const char letter : html) {
    if (letter == '&') {
      quoted += "&amp;";
    } else if (letter == '"') {
      quoted += "&quot;";
    } else {
      quoted.push_back(letter);
    }
  }
  return quoted;
}

std::string WithReplaced(std::string text, const std::string& part, const std::string& other) {
  EXPECT_NE(text.find(part), std::string::npos) << part;
  for (std::size_t at = text.find(part); at != std::string::npos;
       at = text.find(part, at + other.size())) {
    text.replace(at, part.size(), other);
  }
  return text;
}

// A frame's width is what its page takes for the screen's.
std::string Gallery(const std::vector<Viewed>& pages, const std::string& script) {
  std::string html = "<!DOCTYPE html>\n<meta charset=\"utf-8\">\n<title>Gallery</title>\n";
  for (const Viewed& page : pages) {
    html += "<iframe title=\"" + Quoted(page.name) +
            "\" style=\"border:0\" height=\"900\" width=\"" + std::to_string(page.width) +
            "\" srcdoc=\"" + Quoted(page.html) + "\"></iframe>\n";
  }
  return html + "<script>\n" + script + R"js(
addEventListener("load", () => {
  const lines = [];
  for (const frame of document.querySelectorAll("iframe")) {
    for (const text of look(frame.contentDocument, frame.contentWindow)) {
      lines.push(frame.title + ": " + text);
    }
  }
  const found = document.createElement("pre");
  found.textContent = lines.concat("looked at all").join("\n");
  document.body.replaceChildren(found);
});
</script>
)js";
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace

const char* const kChromium = "/usr/bin/chromium";

std::vector<std::string> LookAt(const std::vector<Viewed>& pages, const std::string& script) {
  const test::TemporaryFolder folder;
  const std::string gallery = folder.Write("gallery.html", Gallery(pages, script));
  const test::Ended ended = test::RunProgram(
      kChromium, {"--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                  "--no-first-run", "--user-data-dir=" + folder.path("profile"),
                  "--window-size=1400,1000", "--dump-dom", "file://" + gallery});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::string& dom = ended.out;
  const std::string text = "\n" + dom.substr(std::min(dom.size(), dom.find(kBegin) + 5));
  const std::size_t end = text.find(kEnd);
  EXPECT_NE(end, std::string::npos) << dom.substr(0, 2000) << ended.err;
  if (end == std::string::npos || end == 0) return {};
  return LinesOf(text.substr(1, end - 1));
}

std::string OnPaper(std::string html) {
  html = WithReplaced(std::move(html), "@media screen and", "@media tty and");
  return WithReplaced(std::move(html), "@media print", "@media all");
}

std::string InTheDark(std::string html) {
  return WithReplaced(std::move(html), "@media screen and (prefers-color-scheme: dark)",
                      "@media all");
}

}  // namespace report
