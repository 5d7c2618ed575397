// SPDX-License-Identifier: MIT
// The library records for this program, which tells the frames.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "console/output.h"
#include "wire/live_lines.h"
#include "wire/recording_pipe.h"
#include "wire/transcript.h"
#include "wire/wire_lines.h"

namespace ipodctl {

namespace {

// The file that takes the recording too.
class Copy {
 public:
  /// @param name empty for none
  explicit Copy(std::string name) : name_(std::move(name)) {
    if (!name_.empty()) file_.reset(std::fopen(name_.c_str(), "wbe"));
  }

  // A full disk ends the recording, not the session.
  void Add(const std::uint8_t* bytes, std::size_t count) {
    if (file_ == nullptr) return;
    errno = 0;
    if (std::fwrite(bytes, 1, count, file_.get()) == count && std::fflush(file_.get()) == 0) return;
    std::fprintf(stderr, "ipodctl: the recording %s ends here: %s.\n", name_.c_str(),
                 std::strerror(errno));
    file_.reset();
  }

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  const std::string name_;
  std::unique_ptr<std::FILE, Closer> file_;
};

void TellLines(const std::string& copy_name, RecordingPipe& pipe) {
  Copy copy(copy_name);
  Output output(stderr, false);
  WireLines lines(output);
  ipodwire::Transcript transcript([&](const ipodwire::Told& told) { lines.Print(told); });
  ipodwire::RecordingReader reader([&](std::uint8_t* bytes, std::size_t count) {
    const std::size_t read = pipe.Read(bytes, count);
    copy.Add(bytes, read);
    return read;
  });
  ipodwire::Packet packet;
  while (reader.Next(&packet)) transcript.Add(packet);
  lines.PrintEnd(transcript.End());
}

}  // namespace

void ShowLineLive() {
  const char* const file = std::getenv("IPODCOMM_CAPTURE");
  const std::string copy = file == nullptr ? "" : file;
  static const RecordingPipe pipe([copy](RecordingPipe& self) { TellLines(copy, self); });
}

}  // namespace ipodctl
