// SPDX-License-Identifier: MIT
// Turns the elements and texts of a workout document into its parts.
#pragma once

#include <cstddef>
#include <string>

#include "report/workout_document.h"

namespace ipodctl {

/// Gets each element as the parser meets it. Unknown elements are skipped with all they hold.
class DocumentBuilder {
 public:
  /// False when the document is to be read no further: it is no workout, or never ends.
  bool StartElement(const std::string& name);
  void EndElement(const std::string& name);
  void Text(const char* text, std::size_t length);

  const WorkoutDocument& document() const { return document_; }
  /// The document, once no more of it will come.
  WorkoutDocument Finish();

 private:
  enum class Section { kOther, kEquipment, kIpod, kUser, kInterval, kSummary };

  bool StartSection(const std::string& name);
  void StoreValue(const std::string& name, const std::string& text);
  void StoreReading(const std::string& name, const std::string& text, Readings* readings);

  WorkoutDocument document_;
  Section section_ = Section::kOther;
  std::size_t depth_ = 0;  // of open elements
  std::string text_;       // of the open value
};

}  // namespace ipodctl
