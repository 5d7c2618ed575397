// SPDX-License-Identifier: MIT
// The library records for this program, which tells the frames and gathers the evidence. Where a
// recording was asked for and nothing is to be shown, it goes to its file as it would without us,
// which is read afterwards.
#include "wire/line_watch.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "console/output.h"
#include "console/system.h"
#include "platform/capture/recording_stream.h"
#include "wire/findings/findings.h"
#include "wire/findings_view.h"
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
    if (name_.empty()) return;
    errno = 0;
    file_.reset(ipodcomm::capture::OpenRecordingStream(name_));
    if (file_ != nullptr) return;
    std::fprintf(stderr, "ipodctl: nothing is recorded, %s: %s\n", name_.c_str(),
                 std::strerror(errno));
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

class LineWatch {
 public:
  /// @param baud 0: as the recording says
  /// @param copy file that takes the recording too; empty for none
  LineWatch(bool shown, std::uint32_t baud, std::string copy)
      : shown_(shown),
        baud_(baud),
        copy_(std::move(copy)),
        pipe_([this](RecordingPipe& pipe) { Watch(pipe); }) {}

  /// No more is watched.
  std::vector<ipodwire::Finding> Findings() {
    pipe_.Finish();
    return FindingsOf(collector_.evidence());
  }

 private:
  void Watch(RecordingPipe& pipe) {
    Output output(stderr, false);
    WireLines lines(output);
    ipodwire::Transcript transcript([&](const ipodwire::Told& told) {
      if (shown_) lines.Print(told);
      collector_.Add(told);
    });
    ipodwire::RecordingReader reader([&](std::uint8_t* bytes, std::size_t count) {
      const std::size_t read = pipe.Read(bytes, count);
      copy_.Add(bytes, read);
      return read;
    });
    ipodwire::Packet packet;
    while (reader.Next(&packet)) {
      pipe.set_recording(packet.event != ipodwire::Packet::Event::kComplete);
      collector_.set_baud(baud_ != 0 ? baud_ : packet.baud);
      transcript.Add(packet);
    }
    const std::vector<ipodwire::Note> notes = transcript.End();
    if (shown_) lines.PrintEnd(notes);
  }

  const bool shown_;
  const std::uint32_t baud_;
  Copy copy_;
  ipodwire::EvidenceCollector collector_;
  RecordingPipe pipe_;  // the last member: its thread uses the others
};

// Made before the library's recording, it ends after it.
std::unique_ptr<LineWatch>& TheWatch() {
  static std::unique_ptr<LineWatch> watch;
  return watch;
}

std::string RecordingAskedFor() { return Environment("IPODCOMM_CAPTURE"); }

}  // namespace

void WatchLine(bool shown, std::uint32_t baud) {
  const std::string copy = RecordingAskedFor();
  if (shown || copy.empty()) TheWatch() = std::make_unique<LineWatch>(shown, baud, copy);
}

std::optional<std::vector<ipodwire::Finding>> FindingsOfWatchedLine() {
  if (TheWatch() != nullptr) return TheWatch()->Findings();
  const std::string file = RecordingAskedFor();
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(std::filesystem::u8path(file), ignored))
    return std::nullopt;
  return FindingsOfRecording(file);
}

}  // namespace ipodctl
