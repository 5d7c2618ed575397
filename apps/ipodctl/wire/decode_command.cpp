// SPDX-License-Identifier: MIT
#include "wire/decode_command.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "wire/recording_file.h"
#include "wire/transcript.h"
#include "wire/wire_lines.h"

namespace ipodctl {

int RunDecode(const Options& options, Output& output) {
  RecordingFile file(options.recording, options.command == "monitor");
  ipodwire::RecordingReader reader(
      [&](std::uint8_t* bytes, std::size_t count) { return file.Read(bytes, count); });
  WireLines lines(output);
  ipodwire::Transcript transcript([&](const ipodwire::Told& told) { lines.Print(told); });
  ipodwire::Packet packet;
  while (!Interrupted() && output.Good() && reader.Next(&packet)) transcript.Add(packet);
  lines.PrintEnd(transcript.End());
  StopIfInterrupted();
  file.RequireEnd(reader);
  return kSuccess;
}

}  // namespace ipodctl
