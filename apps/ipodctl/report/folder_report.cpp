// SPDX-License-Identifier: MIT
// Goes through a folder. A document that cannot be read does not keep the others from their pages.
#include "report/folder_report.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "console/failure.h"
#include "console/text.h"
#include "report/calendar.h"
#include "report/overview.h"
#include "report/page.h"
#include "report/page_file.h"
#include "report/summary_json.h"
#include "report/workout_reader.h"

namespace ipodctl {

namespace {

namespace fs = std::filesystem;

std::string Lower(std::string text) {
  for (char& letter : text) {
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return text;
}

std::vector<fs::path> DocumentsIn(const std::string& folder) {
  std::vector<fs::path> documents;
  std::error_code error;
  for (fs::directory_iterator entry(fs::u8path(folder), error), end; !error && entry != end;
       entry.increment(error)) {
    const fs::path& path = entry->path();
    std::error_code ignored;
    if (Lower(path.extension().u8string()) != ".xml") continue;
    if (fs::is_regular_file(path, ignored)) documents.push_back(path);
  }
  if (error) throw CommandFailure(kInputFile, "cannot read " + folder + ": " + error.message());
  std::sort(documents.begin(), documents.end());
  return documents;
}

std::time_t WrittenAt(const fs::path& document) {
  std::error_code error;
  const auto written = fs::last_write_time(document, error);
  if (error) return 0;
  using std::chrono::system_clock;
  const auto ago = written - fs::file_time_type::clock::now();
  return system_clock::to_time_t(system_clock::now() +
                                 std::chrono::duration_cast<system_clock::duration>(ago));
}

// Every byte that could mean something in a link is written as %20 is.
std::string LinkTo(const std::string& file_name) {
  std::string link;
  for (const char letter : file_name) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x80 && (std::isalnum(byte) != 0 || letter == '-' || letter == '.' ||
                        letter == '_' || letter == '~')) {
      link.push_back(letter);
    } else {
      char code[4];
      std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(byte));
      link += code;
    }
  }
  return link;
}

class FolderReport {
 public:
  FolderReport(const Options& options, const Presentation& presentation, Output& output)
      : folder_(options.document),
        overview_file_(options.page.empty() ? fs::u8path(options.document) / "workouts.html"
                                            : fs::u8path(options.page)),
        presentation_(presentation),
        output_(output) {
    presentation_.overview = LinkTo(overview_file_.filename().u8string());
    taken_.insert(Lower(overview_file_.filename().u8string()));
  }

  int Run();

 private:
  void MakePage(const fs::path& path);
  void Tell(const CommandFailure& failure);
  fs::path PageOf(const fs::path& document);
  void WriteOverview();
  void RequireAll() const;

  std::string folder_;
  fs::path overview_file_;
  Presentation presentation_;
  Output& output_;
  std::set<std::string> taken_;  // names of pages, small
  std::vector<std::pair<std::time_t, OverviewEntry>> workouts_;
  std::vector<std::string> left_out_;
  std::size_t damaged_ = 0;
};

// Beside the overview, which may be elsewhere because the folder cannot be written to.
fs::path FolderReport::PageOf(const fs::path& document) {
  fs::path name = PageBeside(document.filename());
  if (!taken_.insert(Lower(name.u8string())).second) {
    name = document.filename();
    name += ".html";
    taken_.insert(Lower(name.u8string()));
  }
  return overview_file_.parent_path() / name;
}

// One file's failure is not the end of the command.
void FolderReport::Tell(const CommandFailure& failure) {
  std::fprintf(stderr, "ipodctl: %s.\n", failure.what());
  output_.Object(ToJson(failure));
}

void FolderReport::MakePage(const fs::path& path) {
  const std::string file = path.u8string();
  WorkoutDocument document;
  try {
    document = ReadWorkoutDocument(file);
  } catch (const CommandFailure& failure) {
    if (failure.status() != kInputFile) throw;
    left_out_.push_back(path.filename().u8string());
    Tell(failure);
    return;
  }
  const WorkoutFigures figures = FiguresOf(document);
  const fs::path page = PageOf(path);
  RequireAnotherFile(file, page.u8string());
  WritePage(RenderPage(document, figures, path.filename().u8string(), presentation_),
            page.u8string());
  nlohmann::ordered_json json = SummaryJson(document, figures);
  json["document"] = file;
  json["page"] = page.u8string();
  output_.Object(json);
  if (document.problem) {
    ++damaged_;
    Tell({kDamaged, file + " " + ProblemText(*document.problem) + "; " + page.u8string() +
                        " shows what comes before that place"});
  }
  const std::time_t written = WrittenAt(path);
  workouts_.push_back(
      {written,
       {DayOf(written), LinkTo(page.filename().u8string()),
        WorkoutTitle(document, presentation_.words), figures, document.problem.has_value()}});
}

void FolderReport::WriteOverview() {
  std::stable_sort(workouts_.begin(), workouts_.end(),
                   [](const auto& left, const auto& right) { return left.first > right.first; });
  Overview overview;
  for (auto& [written, workout] : workouts_) overview.workouts.push_back(std::move(workout));
  overview.left_out = left_out_;
  // "files/" and "." have no name of their own.
  const fs::path folder = fs::weakly_canonical(fs::u8path(folder_));
  overview.folder = folder.filename().u8string();
  const std::string file = overview_file_.u8string();
  WritePage(RenderOverview(overview, presentation_), file);
  output_.Object({{"overview", file},
                  {"workouts", overview.workouts.size()},
                  {"damaged", damaged_},
                  {"left_out", left_out_.size()}});
  output_.Line("Wrote " + file + ": " +
               Counted(static_cast<std::uint64_t>(overview.workouts.size()), "workout") + ".");
}

void FolderReport::RequireAll() const {
  const auto files = [](std::size_t count) {
    return Counted(static_cast<std::uint64_t>(count), "file");
  };
  const std::string overview = overview_file_.u8string();
  if (!left_out_.empty()) {
    throw CommandFailure(kInputFile,
                         overview + " leaves out " + files(left_out_.size()) + " of " + folder_);
  }
  if (damaged_ != 0) {
    throw CommandFailure(kDamaged, files(damaged_) + " of " + folder_ +
                                       " could not be read to the end, and " + overview +
                                       " counts what comes before the damage");
  }
}

int FolderReport::Run() {
  const std::vector<fs::path> documents = DocumentsIn(folder_);
  for (const fs::path& document : documents) {
    RequireAnotherFile(document.u8string(), overview_file_.u8string());
  }
  for (const fs::path& document : documents) MakePage(document);
  if (workouts_.empty()) {
    throw CommandFailure(kInputFile, folder_ +
                                         " holds no workout document, which would be a file "
                                         "with a name that ends in .xml");
  }
  WriteOverview();
  RequireAll();
  return kSuccess;
}

}  // namespace

int RunFolderReport(const Options& options, const Presentation& presentation, Output& output) {
  return FolderReport(options, presentation, output).Run();
}

}  // namespace ipodctl
