// SPDX-License-Identifier: MIT
// Opens and closes a page.
#include "report/page_frame.h"

#include <algorithm>

#include "report/markup.h"
#include "report/page_script.h"
#include "report/page_style.h"

namespace ipodctl {

namespace {

// Whatever a document brings into the page, the browser runs no script but this page's own, known
// by its SHA-256, and fetches nothing.
constexpr const char* kContentPolicy =
    "default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'; "
    "script-src 'sha256-7c+9U53IIy68Y9K25qSow+nurXkbYDWQ0gHtg4+4YzU='";

}  // namespace

std::string NameTag(const std::string& text) { return "<bdi>" + Escaped(text) + "</bdi>"; }

std::string NoteTag(const std::string& headline, const std::string& text) {
  return "<div class=\"note\" role=\"note\"><strong>" + Escaped(headline) + "</strong>" +
         Escaped(text) + "</div>\n";
}

std::string RowTag(const std::string& label, const std::string& value) {
  return "<tr role=\"row\"><th role=\"rowheader\" scope=\"row\">" + Escaped(label) +
         "</th><td role=\"cell\">" + value + "</td></tr>\n";
}

std::string BarCell(const char* kind, double share) {
  return std::string("<td class=\"bar ") + kind +
         "\" style=\"--share:" + Fixed(100 * std::clamp(share, 0.0, 1.0), 1) +
         "%\" aria-hidden=\"true\"></td>";
}

std::string PageHead(const Wording& words, const std::string& title, const std::string& heading,
                     const std::string& lead) {
  std::string html = "<!DOCTYPE html>\n<html lang=\"" + words.code() +
                     "\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n"
                     "<meta charset=\"utf-8\"/>\n"
                     "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
                     kContentPolicy +
                     "\"/>\n"
                     "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
                     "<title>" +
                     Escaped(title) + "</title>\n<style>" + kPageStyle +
                     "</style>\n</head>\n<body>\n<main>\n<header>\n<h1>" + heading + "</h1>\n";
  if (!lead.empty()) html += "<p class=\"lead\">" + lead + "</p>\n";
  return html + "</header>\n";
}

std::string PageFoot(const std::string& footer, bool scripted) {
  std::string html = "<footer>" + footer + "</footer>\n</main>\n";
  if (scripted) html += std::string("<script>") + kPageScript + "</script>\n";
  return html + "</body>\n</html>\n";
}

}  // namespace ipodctl
