// SPDX-License-Identifier: MIT
#include "wire/decode_command.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "wire/recording_file.h"
#include "wire/transcript.h"
#include "wire/wire_lines.h"

namespace ipodctl {

namespace {

// How far a large recording has been read, in megabytes. Where its lines go to the terminal they
// show it themselves.
class ReadingProgress {
 public:
  ReadingProgress(std::uint64_t size, const Output& output)
      : bar_("Reading", Megabytes(size)), shown_(Megabytes(size) > 0 && !output.on_terminal()) {}

  void Update(std::uint64_t position) {
    if (!shown_ || Megabytes(position) == done_) return;
    done_ = Megabytes(position);
    bar_.Update(done_);
  }
  void Hide() { bar_.Hide(); }

 private:
  static std::uint64_t Megabytes(std::uint64_t bytes) { return bytes >> 20; }

  ProgressBar bar_;
  bool shown_;
  std::uint64_t done_ = 0;
};

}  // namespace

int RunDecode(const Options& options, Output& output) {
  RecordingFile file(options.recording, options.command == "monitor");
  ipodwire::RecordingReader reader(file.source());
  WireLines lines(output);
  ipodwire::Transcript transcript([&](const ipodwire::Told& told) { lines.Print(told); });
  ipodwire::Packet packet;
  ReadingProgress progress(file.size(), output);
  while (!Interrupted() && output.Good() && reader.Next(&packet)) {
    transcript.Add(packet);
    progress.Update(reader.position());
  }
  progress.Hide();
  lines.PrintEnd(transcript.End());
  StopIfInterrupted();
  file.RequireEnd(reader);
  return kSuccess;
}

}  // namespace ipodctl
