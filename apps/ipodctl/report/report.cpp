// SPDX-License-Identifier: MIT
// Reads a document, writes its page beside it, and sums it up.
#include "report/report.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "console/text.h"
#include "report/folder_report.h"
#include "report/markup.h"
#include "report/page.h"
#include "report/page_file.h"
#include "report/summary_json.h"
#include "report/workout_reader.h"

namespace ipodctl {

namespace {

namespace fs = std::filesystem;

constexpr const char* kStandard = "-";  // input or output

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

// A document from standard input goes on to standard output.
std::string PageOf(const Options& options) {
  if (!options.page.empty()) return options.page;
  if (options.document == kStandard) return kStandard;
  return PageBeside(fs::u8path(options.document)).u8string();
}

}  // namespace

int RunReport(const Options& options, Output& output) {
  const Presentation presentation = PresentationOf(options);
  std::error_code ignored;
  if (fs::is_directory(fs::u8path(options.document), ignored)) {
    if (options.page == kStandard) {
      throw CommandFailure(kUsage, "a folder makes many pages; name the overview's file with -o");
    }
    return RunFolderReport(options, presentation, output);
  }
  const WorkoutDocument document = ReadWorkoutDocument(options.document);
  const WorkoutFigures figures = FiguresOf(document);
  const bool from_input = options.document == kStandard;
  const std::string source = from_input ? "standard input" : options.document;
  const fs::path path = fs::u8path(source);
  const std::string html = RenderPage(document, figures, path.filename().u8string(), presentation);
  const std::string page = PageOf(options);
  if (page == kStandard) {
    output.Text(html);
  } else {
    if (!from_input) RequireAnotherFile(options.document, page);
    WritePage(html, page);
    nlohmann::ordered_json json = SummaryJson(document, figures);
    json["page"] = page;
    output.Object(json);
    output.Line("Wrote " + page + ": " + Headline(document, figures, presentation.measures) + ".");
  }
  if (!document.problem) return kSuccess;
  throw CommandFailure(kDamaged, source + " " + ProblemText(*document.problem) + "; " +
                                     (page == kStandard ? "the page" : page) +
                                     " shows what comes before that place");
}

}  // namespace ipodctl
