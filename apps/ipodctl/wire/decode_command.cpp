// SPDX-License-Identifier: MIT
#include "wire/decode_command.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "wire/reading_progress.h"
#include "wire/recording_file.h"
#include "wire/transcript.h"
#include "wire/wire_lines.h"

namespace ipodctl {

int RunDecode(const Options& options, Output& output) {
  RecordingFile file(options.recording, options.command == "monitor");
  ipodwire::RecordingReader reader(file.source());
  WireLines lines(output);
  ipodwire::Transcript transcript([&](const ipodwire::Told& told) { lines.Print(told); });
  ipodwire::Packet packet;
  // Where the lines go to the terminal they show it themselves.
  ReadingProgress progress(output.on_terminal() ? 0 : file.size());
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
