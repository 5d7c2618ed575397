// SPDX-License-Identifier: MIT
// Draws the list that is open.
#include <algorithm>

#include "console/text.h"
#include "library/categories.h"
#include "screen/cells.h"
#include "screen/layout.h"

namespace ipodctl::screen {

namespace {

// One line of the list, and what stands at its end.
struct Line {
  std::string name;
  std::string end;
  bool dim = false;
};

Line OverviewLine(const LibrarySnapshot& library, unsigned long index) {
  const Category& category = AllCategories()[index];
  std::string name = category.name;
  name.front() = static_cast<char>(name.front() - 'a' + 'A');
  const auto count = library.counts.find(category.code);
  if (count == library.counts.end()) return {name, "", true};
  return {name, Grouped(count->second), count->second == 0};
}

Line RecordLine(const RecordList& list, bool tracks, unsigned long index) {
  const std::string* const name = list.NameOf(index);
  if (name == nullptr) return {"…", "", true};
  return {ShownName(*name), tracks ? "" : "›", false};
}

std::string Corner(const Browser& browser, std::optional<unsigned long> count) {
  if (!count) return {};
  if (*count == 0) return "empty";
  return Grouped(browser.cursor() + 1) + " of " + Grouped(*count);
}

void DrawLine(const Line& line, bool selected, int row, const Area& inside, Frame* frame) {
  const int end = Width(line.end);
  const Style style = selected ? Style::kSelected : line.dim ? Style::kDim : Style::kPlain;
  const int room = inside.columns - (end == 0 ? 0 : end + 1);
  const std::string text = Fit(Harmless(line.name), room) + (end == 0 ? "" : " " + line.end);
  frame->Put(row, inside.column - 1, " " + text + " ", style, inside.columns + 2);
}

void DrawText(const std::string& text, const Area& inside, Frame* frame) {
  int row = inside.row;
  for (const std::string& line : Wrapped(Harmless(text), inside.columns)) {
    if (row == inside.row + inside.rows) break;
    frame->Put(row++, inside.column, line, Style::kDim, inside.columns);
  }
}

}  // namespace

void DrawLibrary(const Scene& scene, const Area& area, Frame* frame) {
  const Browser& browser = scene.browser;
  const LibrarySnapshot& library = scene.snapshot.library;
  const std::optional<unsigned long> count = browser.Count(library);
  const Area inside = frame->Box(area, browser.Title(), Corner(browser, count));
  if (!library.problem.empty()) return DrawText(library.problem, inside, frame);
  if (!count) {
    return DrawText(scene.snapshot.docked ? "Reading …" : "No iPod is docked.", inside, frame);
  }
  const bool tracks = browser.place().category() == kTracks;
  const unsigned long first = browser.view().first;
  const auto rows = static_cast<unsigned long>(std::max(0, inside.rows));
  const unsigned long end = std::min(*count, first + rows);
  for (unsigned long index = first; index < end; ++index) {
    const int row = inside.row + static_cast<int>(index - first);
    const Line line = browser.place().is_overview()
                          ? OverviewLine(library, index)
                          : RecordLine(*library.lists.at(browser.place()), tracks, index);
    DrawLine(line, index == browser.cursor(), row, inside, frame);
    frame->AddTarget({{row, inside.column, 1, inside.columns}, Action::kPointAt, index});
  }
}

}  // namespace ipodctl::screen
