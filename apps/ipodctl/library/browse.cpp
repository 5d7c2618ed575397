// SPDX-License-Identifier: MIT
// Lists records, and counts them.
#include "library/browse.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "console/progress.h"
#include "console/text.h"
#include "library/categories.h"
#include "library/legacy_library.h"
#include "library/session_library.h"
#include "library/walk.h"

namespace ipodctl {

namespace {

using Json = nlohmann::ordered_json;

// How many records each category has at the top.
void ShowOverview(const Options& options, Output& output, MediaLibrary& library) {
  Json json;
  LibraryWalk walk(library, options.hierarchy);
  for (const Category& category : AllCategories()) {
    walk.EnterTop(category.code);
    json["categories"][category.name] = walk.count();
    output.Fact(category.name, std::to_string(walk.count()));
  }
  output.Object(json);
}

std::string Heading(const LibraryWalk& walk, const std::vector<std::string>& path) {
  std::string heading;
  for (std::size_t i = 1; i < path.size(); ++i) heading += Printable(path[i]) + " > ";
  return heading + CategoryByCode(walk.category()).name + " (" + std::to_string(walk.count()) + ")";
}

// Shows each record as it comes, and counts those whose names cannot be read.
class RecordList {
 public:
  RecordList(Output& output, const char* category, unsigned long from, unsigned long count)
      : output_(output),
        width_(std::to_string(from + count).size()),
        bar_(std::string("Reading ") + category, count) {}

  void Show(unsigned long index, const std::optional<std::string>& name) {
    const std::string number = std::to_string(index);
    Json json = {{"index", index}};
    json["name"] = name ? Json(*name) : Json(nullptr);
    bar_.Hide();
    output_.Object(json);
    output_.Line("  " + std::string(width_ - std::min(width_, number.size()), ' ') + number + "  " +
                 (name ? ShownName(*name) : "(cannot be read)"));
    ++shown_;
    if (!name) ++unread_;
    bar_.Update(shown_);
  }
  void Hide() { bar_.Hide(); }

  unsigned long shown() const { return shown_; }
  unsigned long unread() const { return unread_; }

 private:
  Output& output_;
  std::size_t width_;
  ProgressBar bar_;
  unsigned long shown_ = 0;
  unsigned long unread_ = 0;
};

void ShowRecords(const Options& options, Output& output, MediaLibrary& library,
                 const LibraryWalk& walk) {
  const Category category = CategoryByCode(walk.category());
  const unsigned long from = std::min(options.from, walk.count());
  const unsigned long left = walk.count() - from;
  const unsigned long count = std::min(options.count.value_or(left), left);

  output.Object({{"category", category.name},
                 {"path", options.path},
                 {"total", walk.count()},
                 {"from", from},
                 {"count", count}});
  output.Line(output.Bold(Heading(walk, options.path)));
  RecordList list(output, category.name, from, count);
  const auto of_all = [&](unsigned long number) {
    return std::to_string(number) + " of " + Counted(count, category.singular);
  };
  try {
    library.ReadNames(walk.category(), from, count,
                      [&list](unsigned long index, const std::optional<std::string>& name) {
                        list.Show(index, name);
                        return true;
                      });
  } catch (const CommandFailure& failure) {
    list.Hide();
    throw CommandFailure(failure.status(),
                         failure.what() + ("; it had read " + of_all(list.shown())));
  }
  list.Hide();
  if (list.unread() == 0) return;
  throw CommandFailure(kFailed, "could not read the names of " + of_all(list.unread()));
}

void ShowLibrary(const Options& options, Output& output, MediaLibrary& library) {
  if (options.path.empty()) {
    ShowOverview(options, output, library);
    return;
  }
  LibraryWalk walk(library, options.hierarchy);
  WalkPath(walk, options.path, options.category);
  ShowRecords(options, output, library, walk);
}

}  // namespace

void RunBrowse(const Context& context, Session& session) {
  SessionLibrary library(session);
  ShowLibrary(context.options, context.output, library);
}

void RunLegacyBrowse(const Context& context, LegacySession& session) {
  LegacyLibrary library(session);
  ShowLibrary(context.options, context.output, library);
}

}  // namespace ipodctl
