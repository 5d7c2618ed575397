// SPDX-License-Identifier: MIT
#include "wire/findings_view.h"

#include <cctype>
#include <nlohmann/json.hpp>

#include "console/interrupt.h"
#include "wire/findings/findings.h"
#include "wire/reading_progress.h"
#include "wire/recording_file.h"
#include "wire/transcript.h"

namespace ipodctl {

namespace {

using ipodwire::Finding;
using ipodwire::FindingPage;

// " (packets 3, 4)"; nothing where there are none.
std::string PacketList(const std::vector<std::uint64_t>& packets) {
  if (packets.empty()) return {};
  std::string list = packets.size() == 1 ? " (packet" : " (packets";
  for (std::size_t i = 0; i < packets.size(); ++i) {
    list += (i == 0 ? " " : ", ") + std::to_string(packets[i]);
  }
  return list + ")";
}

// What was seen, as a sentence.
std::string SentenceOf(const Finding& finding) {
  std::string sentence = finding.seen + PacketList(finding.packets) + ".";
  sentence[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence[0])));
  return sentence;
}

void ShowFinding(const Finding& finding, Output& output) {
  const FindingPage& page = *ipodwire::FindFindingPage(finding.code);
  output.Line(output.Bold(finding.code + "  " + page.title) + " (" + NameOf(finding.certainty) +
              ")");
  output.Fact("Tried", page.tried);
  output.Fact("Seen", SentenceOf(finding));
  output.Fact("Means", page.meaning);
  output.Fact("What to do", page.remedy);
  output.Object({{"finding", finding.code},
                 {"title", page.title},
                 {"certainty", NameOf(finding.certainty)},
                 {"seen", finding.seen},
                 {"packets", finding.packets},
                 {"tried", page.tried},
                 {"means", page.meaning},
                 {"what_to_do", page.remedy}});
}

// All that a recording tells; where it is damaged, up to there.
std::vector<Finding> ReadFindings(RecordingFile& file, ipodwire::RecordingReader& reader) {
  ipodwire::EvidenceCollector collector;
  ipodwire::Transcript transcript([&](const ipodwire::Told& told) { collector.Add(told); });
  ipodwire::Packet packet;
  ReadingProgress progress(file.size());
  while (!Interrupted() && reader.Next(&packet)) {
    if (packet.event == ipodwire::Packet::Event::kComplete) file.StopFollowing();
    collector.set_baud(packet.baud);
    transcript.Add(packet);
    progress.Update(reader.position());
  }
  progress.Hide();
  StopIfInterrupted();
  transcript.End();
  return FindingsOf(collector.evidence());
}

}  // namespace

void ShowPage(const FindingPage& page, Output& output) {
  output.Line(output.Bold(std::string(page.code) + "  " + page.title));
  output.Fact("Tried", page.tried);
  output.Fact("Means", page.meaning);
  output.Fact("What to do", page.remedy);
  output.Object({{"finding", page.code},
                 {"title", page.title},
                 {"tried", page.tried},
                 {"means", page.meaning},
                 {"what_to_do", page.remedy}});
}

std::string HeadlineOf(const Finding& finding) {
  const std::string title = finding.code + "  " + ipodwire::FindFindingPage(finding.code)->title +
                            " (" + NameOf(finding.certainty) + ")";
  return finding.seen.empty() ? title : title + ": " + finding.seen;
}

void ShowFindings(const std::vector<Finding>& findings, Output& output) {
  if (findings.empty()) output.Line("Nothing that went wrong is recorded.");
  for (std::size_t i = 0; i < findings.size(); ++i) {
    if (i > 0) output.Line("");
    ShowFinding(findings[i], output);
  }
}

void ShowFindingsOf(const std::string& recording, Output& output) {
  RecordingFile file(recording, /*follow=*/false);
  ipodwire::RecordingReader reader(file.source());
  const std::vector<Finding> findings = ReadFindings(file, reader);
  // Of a file that is no recording nothing was seen, which finds nothing either.
  if (findings.empty()) file.RequireEnd(reader);
  ShowFindings(findings, output);
  file.RequireEnd(reader);
}

std::vector<Finding> FindingsOfRecording(const std::string& recording) {
  RecordingFile file(recording, /*follow=*/true);
  ipodwire::RecordingReader reader(file.source());
  return ReadFindings(file, reader);
}

}  // namespace ipodctl
