// SPDX-License-Identifier: MIT
// Writes lines and JSON objects, each as soon as it is known.
#include "console/output.h"

#include <cerrno>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "console/clock.h"
#include "console/interrupt.h"
#include "console/system.h"
#include "console/text.h"
#include "console/timestamp.h"

namespace ipodctl {

namespace {

constexpr std::size_t kLabelWidth = 20;

}  // namespace

Output::Output(std::FILE* stream, bool json)
    : stream_(stream),
      json_(json),
      styled_(IsTerminal(stream) && std::getenv("NO_COLOR") == nullptr) {}

bool Output::on_terminal() const { return IsTerminal(stream_); }

void Output::Line(const std::string& text) {
  if (!json_) Write(text);
}

void Output::Fact(const std::string& label, const std::string& value) {
  Line("  " + Padded(label, kLabelWidth) + value);
}

void Output::Object(const nlohmann::ordered_json& object) {
  if (json_) ObjectAt(UnixTime(), object);
}

void Output::ObjectAt(std::chrono::milliseconds since_1970, const nlohmann::ordered_json& object) {
  if (!json_) return;
  nlohmann::ordered_json stamped = {{"time", Timestamp(since_1970)}};
  if (!step_.empty()) stamped["step"] = step_;
  stamped.update(object);
  Write(stamped.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

std::string Output::Bold(const std::string& text) const { return Styled("\x1b[1m", text); }

std::string Output::Dim(const std::string& text) const { return Styled("\x1b[2m", text); }

bool Output::Good() const { return std::fflush(stream_) == 0 && std::ferror(stream_) == 0; }

// A command whose reader has left has nobody to go on for.
void Output::Write(const std::string& text, const char* end) {
  if (unread_) return;
  errno = 0;
  const bool written = std::fprintf(stream_, "%s%s", text.c_str(), end) >= 0 && Good();
  unread_ = !written && errno == EPIPE;
  if (unread_) Interrupt();
}

std::string Output::Styled(const char* code, const std::string& text) const {
  return styled_ ? code + text + "\x1b[0m" : text;
}

}  // namespace ipodctl
