// SPDX-License-Identifier: MIT
// What stands on the screen at one moment: pieces of text at their places, and what a click on a
// place means. It knows of no terminal.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "screen/action.h"

namespace ipodctl::screen {

struct Area {
  int row = 0;
  int column = 0;
  int rows = 0;
  int columns = 0;

  bool Has(int at_row, int at_column) const {
    return at_row >= row && at_row < row + rows && at_column >= column &&
           at_column < column + columns;
  }
};

enum class Style { kPlain, kDim, kStrong, kBorder, kSelected, kKey, kPlaying, kHeart, kWarning };

struct Piece {
  int row;
  int column;
  std::string text;  // harmless, and no wider than its room
  Style style;
};

/// What can be clicked.
struct Target {
  Area area;
  Action action;
  unsigned long record = 0;  // of the list, for Action::kPointAt
};

class Frame {
 public:
  Frame(int rows, int columns) : rows_(rows), columns_(columns) {}

  int rows() const { return rows_; }
  int columns() const { return columns_; }
  const std::vector<Piece>& pieces() const { return pieces_; }

  /// Text from anywhere, cut to `room` columns and to the frame.
  void Put(int row, int column, const std::string& text, Style style, int room);
  /// A border with a title in its upper edge, and a second one at that edge's end if it has room.
  /// What was there before is covered. @return what is inside of it, with a space on either side
  Area Box(const Area& area, const std::string& title, const std::string& corner);

  void AddTarget(Target target) { targets_.push_back(target); }
  /// What a click does; the target that was added last counts.
  std::optional<Target> TargetAt(int row, int column) const;

  /// The whole as lines, for tests and for whoever looks for a fault.
  std::vector<std::string> Lines() const;

 private:
  int rows_;
  int columns_;
  std::vector<Piece> pieces_;
  std::vector<Target> targets_;
};

}  // namespace ipodctl::screen
