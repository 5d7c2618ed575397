// SPDX-License-Identifier: MIT
// Standard output: readable text for people, or JSON for machines.
#pragma once

#include <cstdio>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace ipodctl {

class Output {
 public:
  /// @param json whether Object() is shown and Line() is not, instead of the other way round
  Output(std::FILE* stream, bool json);

  bool json() const { return json_; }
  bool on_terminal() const;

  /// One line of text. Shown at once: what follows may take seconds.
  void Line(const std::string& text);
  /// "Name      Anna's iPod": one fact in a column of its own.
  void Fact(const std::string& label, const std::string& value);
  /// One JSON object on a line of its own.
  void Object(const nlohmann::ordered_json& object);

  /// `text` emphasised where the terminal can.
  std::string Bold(const std::string& text) const;
  std::string Dim(const std::string& text) const;

  /// False when something could not be written, such as to a full disk.
  bool Good() const;
  /// Whether it was a pipe that nobody reads any more; the program is interrupted then.
  bool unread() const { return unread_; }

 private:
  void Write(const std::string& line);
  std::string Styled(const char* code, const std::string& text) const;

  std::FILE* stream_;
  bool json_;
  bool styled_;
  bool unread_ = false;
};

}  // namespace ipodctl
