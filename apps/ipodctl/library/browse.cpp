// SPDX-License-Identifier: MIT
// Lists records, and counts them.
#include "library/browse.h"

#include <algorithm>
#include <nlohmann/json.hpp>

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

void ShowRecords(const Options& options, Output& output, MediaLibrary& library,
                 const LibraryWalk& walk) {
  const unsigned long from = std::min(options.from, walk.count());
  const unsigned long left = walk.count() - from;
  const unsigned long count = std::min(options.count.value_or(left), left);
  const std::size_t width = std::to_string(from + count).size();

  Json json = {{"category", CategoryByCode(walk.category()).name},
               {"path", options.path},
               {"total", walk.count()},
               {"from", from},
               {"records", Json::array()}};
  output.Line(output.Bold(Heading(walk, options.path)));
  ProgressBar bar(std::string("Reading ") + CategoryByCode(walk.category()).name, count);
  library.ReadNames(walk.category(), from, count,
                    [&](unsigned long index, const std::string& name) {
                      const std::string number = std::to_string(index);
                      json["records"].push_back({{"index", index}, {"name", name}});
                      bar.Hide();
                      output.Line("  " + std::string(width - std::min(width, number.size()), ' ') +
                                  number + "  " + ShownName(name));
                      bar.Update(index - from + 1);
                      return true;
                    });
  bar.Hide();
  output.Object(json);
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
