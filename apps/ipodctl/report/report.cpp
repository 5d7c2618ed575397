// SPDX-License-Identifier: MIT
// Reads a document, writes its page beside it, and sums it up.
#include "report/report.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "console/text.h"
#include "report/markup.h"
#include "report/page.h"
#include "report/summary_json.h"
#include "report/workout_reader.h"

namespace ipodctl {

namespace {

namespace fs = std::filesystem;

std::string PagePath(const Options& options) {
  if (!options.page.empty()) return options.page;
  fs::path page = fs::u8path(options.document);
  // A document that is itself named so must not be overwritten.
  if (page.extension() == ".html") {
    page += ".html";
  } else {
    page.replace_extension(".html");
  }
  return page.u8string();
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

Presentation PresentationOf(const Options& options) {
  const std::vector<std::string>& codes = LanguageCodes();
  const auto code = std::find(codes.begin(), codes.end(), options.language);
  Presentation presentation;
  presentation.words = Wording(static_cast<Language>(code - codes.begin()));
  presentation.measures = Measures(options.units == "imperial" ? Units::kImperial : Units::kMetric);
  presentation.max_heart_rate = options.max_heart_rate;
  return presentation;
}

// For the terminal, whose language is not the page's.
std::string Headline(const WorkoutDocument& document, const WorkoutFigures& figures,
                     const Measures& measures) {
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (!document.equipment.type.empty()) add(Printable(document.equipment.type));
  if (figures.seconds.value) add(ClockText(*figures.seconds.value));
  if (figures.km.value) {
    add(Fixed(measures.Distance(*figures.km.value), 2) + " " +
        Wording().Say(measures.distance_unit()));
  }
  if (figures.floors.value) add(Short(*figures.floors.value, 1) + " floors");
  add(Counted(static_cast<unsigned long>(document.intervals.size()), "interval"));
  return text;
}

}  // namespace

int RunReport(const Options& options, Output& output) {
  const WorkoutDocument document = ReadWorkoutDocument(options.document);
  const WorkoutFigures figures = FiguresOf(document);
  const std::string page = PagePath(options);
  RequireAnotherFile(options.document, page);
  const std::string name = fs::u8path(options.document).filename().u8string();
  const Presentation presentation = PresentationOf(options);
  WritePage(RenderPage(document, figures, name, presentation), page);
  nlohmann::ordered_json json = SummaryJson(document, figures);
  json["page"] = page;
  output.Object(json);
  output.Line("Wrote " + page + ": " + Headline(document, figures, presentation.measures) + ".");
  if (!document.problem) return kSuccess;
  throw CommandFailure(kDamaged, options.document + " " + ProblemText(*document.problem) + "; " +
                                     page + " shows what comes before that place");
}

}  // namespace ipodctl
