// SPDX-License-Identifier: MIT
// Recordings of the line: read, told frame by frame, and explained.
#include <algorithm>

#include "fuzz.h"
#include "wire/findings/findings.h"
#include "wire/text.h"
#include "wire/transcript.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::size_t at = 0;
  ipodwire::RecordingReader reader([&](std::uint8_t* into, std::size_t count) {
    const std::size_t taken = std::min(count, size - at);
    std::copy_n(data + at, taken, into);
    at += taken;
    return taken;
  });
  ipodwire::EvidenceCollector collector;
  ipodwire::Transcript transcript([&](const ipodwire::Told& told) {
    if (told.frame) Describe(*told.frame);
    collector.Add(told);
  });
  ipodwire::Packet packet;
  while (reader.Next(&packet)) {
    collector.set_baud(packet.baud);
    transcript.Add(packet);
  }
  transcript.End();
  fuzz::Require(reader.position() <= size);
  fuzz::Require(reader.end() != ipodwire::RecordingReader::End::kNone);
  const bool closed = reader.end() == ipodwire::RecordingReader::End::kClosed;
  fuzz::Require(closed == reader.problem().empty());
  for (const ipodwire::Finding& finding : FindingsOf(collector.evidence())) {
    fuzz::Require(ipodwire::FindFindingPage(finding.code) != nullptr && !finding.seen.empty());
  }
  return 0;
}
