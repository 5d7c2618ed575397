// SPDX-License-Identifier: MIT
// Standard output: readable text for people, or JSON for machines.
#pragma once

#include <chrono>
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
  /// For who shows more than lines.
  std::FILE* stream() const { return stream_; }

  /// One line of text. Shown at once: what follows may take seconds.
  void Line(const std::string& text);
  /// Text as it stands, where it is itself what was asked for.
  void Text(const std::string& text) { Write(text, ""); }
  /// "Name      Anna's iPod": one fact in a column of its own.
  void Fact(const std::string& label, const std::string& value);
  /// One JSON object on a line of its own, stamped with the present time as "time".
  void Object(const nlohmann::ordered_json& object);
  /// The same of something that happened at another time.
  void ObjectAt(std::chrono::milliseconds since_1970, const nlohmann::ordered_json& object);
  /// From now on every object begins with the name of the step that it belongs to, as "step".
  void BeginStep(const std::string& name) { step_ = name; }

  /// `text` emphasised where the terminal can.
  std::string Bold(const std::string& text) const;
  std::string Dim(const std::string& text) const;

  /// False when something could not be written, such as to a full disk.
  bool Good() const;
  /// Whether it was a pipe that nobody reads any more; the program is interrupted then.
  bool unread() const { return unread_; }

 private:
  void Write(const std::string& text, const char* end = "\n");
  std::string Styled(const char* code, const std::string& text) const;

  std::FILE* stream_;
  bool json_;
  bool styled_;
  bool unread_ = false;
  std::string step_;
};

}  // namespace ipodctl
