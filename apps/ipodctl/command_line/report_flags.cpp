// SPDX-License-Identifier: MIT
// The command that makes a page of a workout document.
#include "command_line/flags.h"
#include "report/phrases.h"

namespace ipodctl {

namespace {

const std::vector<std::string> kUnits = {"metric", "imperial"};

constexpr const char* kReportFooter =
    "Makes one page, for screens, phones and paper, of a workout document that an iPod has kept:\n"
    "its summary, its course over time as a chart to read values from, splits by kilometre or\n"
    "mile, the time in heart-rate zones, and the equipment. It needs no iPod and no network.\n"
    "A document that is cut short or malformed is shown as far as it goes; the exit status is\n"
    "then 65, and a sentence on standard error tells the line and the column.\n"
    "- is standard input, whose page goes to standard output unless -o names a file.\n"
    "Of a FOLDER all workout documents (.xml) get pages, and workouts.html an overview with sums "
    "by\n"
    "week; -o puts it elsewhere, and the pages beside it. What cannot be read is named and left "
    "out;\n"
    "the exit status is then 66.\n"
    "\n"
    "Examples:\n"
    "  ipodctl report workout.xml                  writes workout.html beside it\n"
    "  ipodctl report workout.xml -o /tmp/run.html\n"
    "  ipodctl report workout.xml --language de --max-heart-rate 185\n"
    "  ipodctl report files -o /tmp/all.html       all workouts of a folder\n"
    "  ipodctl report workout.xml --json           prints the figures too";

}  // namespace

void AddReportCommand(CommandLineParser& parser) {
  Options& options = parser.options();
  CLI::App* report = parser.AddCommand("report", "Workouts", "Make a page of a workout document",
                                       "FILE|FOLDER [OPTIONS]", kReportFooter);
  report->add_option("FILE", options.document)->required();
  report->add_option("-o,--output", options.page, "Write the page there (-: to standard output)")
      ->option_text("PAGE");
  report->add_option("--language", options.language, "The page's language (en)")
      ->check(CLI::IsMember(LanguageCodes()))
      ->option_text(CLI::detail::join(LanguageCodes(), "|"));
  report->add_option("--units", options.units, "Kilometres and kilograms, or miles and pounds")
      ->check(CLI::IsMember(kUnits))
      ->option_text(CLI::detail::join(kUnits, "|"));
  report
      ->add_option("--max-heart-rate", options.max_heart_rate,
                   "Your maximum heart rate: shows the time in its zones")
      ->check(CLI::Range(60u, 250u))
      ->option_text("BPM");
  parser.AddCheck([&options, report] {
    if (report->parsed() && options.document.empty()) {
      throw UsageProblem{"FILE needs the name of a workout document"};
    }
    const bool to_output = options.page == "-" || (options.document == "-" && options.page.empty());
    if (report->parsed() && to_output && options.json) {
      throw UsageProblem{"--json is printed where the page would be; name a file with -o"};
    }
    if (report->count("--output") != 0 && options.page.empty()) {
      throw UsageProblem{"--output needs the name of a file"};
    }
  });
}

}  // namespace ipodctl
