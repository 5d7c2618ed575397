// SPDX-License-Identifier: MIT
// Written out by hand.
#include "documents.h"

namespace report {

const char* const kRun =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<gymData>\n"
    "\t<vers>1</vers>\n"
    "\t<equipmentInfo>\n"
    "\t\t<manufacturerID>41</manufacturerID>\n"
    "\t\t<manufacturerName>Northway &amp; S\xC3\xB6hne</manufacturerName>\n"
    "\t\t<type>Treadmill</type>\n"
    "\t\t<model>QZ104</model>\n"
    "\t\t<serialNumber>QZ-0042</serialNumber>\n"
    "\t</equipmentInfo>\n"
    "\t<userInfo>\n"
    "\t\t<kg>72.5</kg>\n"
    "\t</userInfo>\n"
    "\t<interval>\n"
    "\t\t<event>start</event>\n"
    "\t\t<sec>0</sec>\n"
    "\t\t<kCal>0.00</kCal>\n"
    "\t\t<km>0.00</km>\n"
    "\t\t<pace>0</pace>\n"
    "\t\t<incline>0.0</incline>\n"
    "\t\t<level>0</level>\n"
    "\t</interval>\n"
    "\t<interval>\n"
    "\t\t<event>continue</event>\n"
    "\t\t<sec>60</sec>\n"
    "\t\t<kCal>10.25</kCal>\n"
    "\t\t<km>0.20</km>\n"
    "\t\t<pace>300</pace>\n"
    "\t\t<incline>-1.5</incline>\n"
    "\t\t<bpm>120</bpm>\n"
    "\t\t<level>4</level>\n"
    "\t</interval>\n"
    "\t<interval>\n"
    "\t\t<event>pause</event>\n"
    "\t\t<sec>120</sec>\n"
    "\t\t<kCal>20.50</kCal>\n"
    "\t\t<km>0.40</km>\n"
    "\t\t<pace>320</pace>\n"
    "\t\t<incline>1.5</incline>\n"
    "\t\t<bpm>150</bpm>\n"
    "\t</interval>\n"
    "\t<interval>\n"
    "\t\t<event>resume</event>\n"
    "\t\t<sec>180</sec>\n"
    "\t\t<kCal>21.00</kCal>\n"
    "\t\t<km>0.40</km>\n"
    "\t\t<pace>0</pace>\n"
    "\t\t<incline>1.5</incline>\n"
    "\t\t<bpm>100</bpm>\n"
    "\t</interval>\n"
    "\t<interval>\n"
    "\t\t<event>end</event>\n"
    "\t\t<sec>240</sec>\n"
    "\t\t<kCal>31.25</kCal>\n"
    "\t\t<km>0.60</km>\n"
    "\t\t<pace>310</pace>\n"
    "\t\t<incline>1.5</incline>\n"
    "\t\t<bpm>140</bpm>\n"
    "\t</interval>\n"
    "\t<workoutSummary>\n"
    "\t\t<sec>240</sec>\n"
    "\t\t<kCal>31.25</kCal>\n"
    "\t\t<km>0.61</km>\n"
    "\t\t<pace>305</pace>\n"
    "\t\t<bpm>131</bpm>\n"
    "\t</workoutSummary>\n"
    "\t<iPodInfo>\n"
    "\t\t<model>MB598LL</model>\n"
    "\t\t<softwareVersion>1.0.2</softwareVersion>\n"
    "\t\t<serialNumber>8K1234</serialNumber>\n"
    "\t</iPodInfo>\n"
    "\t<signature>0123456789</signature>\n"
    "</gymData>";

const char* const kOlderRide =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "\t<gymData>\n"
    "\t<vers>1</vers>\n"
    "\t<equipmentInfo>\n"
    "\t\t<manufacturerID>41</manufacturerID>\n"
    "\t\t<type>Bike</type>\n"
    "\t\t<model>QZ88</model>\n"
    "\t\t<serialNumber>QZ-0007</serialNumber>\n"
    "\t\t<gymName>Harbour Gym</gymName>\n"
    "\t\t<gymLocation>Pier 4</gymLocation>\n"
    "\t</equipmentInfo>\n"
    "\t<userInfo>\n"
    "\t\t<kg>81.199997</kg>\n"
    "\t</userInfo>\n"
    "\t<interval>\n"
    "\t\t<event>start</event>\n"
    "\t\t<sec>0</sec>\n"
    "\t\t<kCal>0</kCal>\n"
    "\t\t<km>0.000000</km>\n"
    "\t\t<pace>0</pace>\n"
    "\t\t<bpm>0</bpm>\n"
    "\t\t<incline>0.000000</incline>\n"
    "\t\t<level>-1</level>\n"
    "\t</interval>\n"
    "\t<interval>\n"
    "\t\t<sec>30</sec>\n"
    "\t\t<kCal>4</kCal>\n"
    "\t\t<km>0.250000</km>\n"
    "\t\t<pace>120</pace>\n"
    "\t\t<bpm>99</bpm>\n"
    "\t\t<incline>0.500000</incline>\n"
    "\t\t<level>7</level>\n"
    "\t</interval>\n"
    "\t<workoutSummary>\n"
    "\t\t<sec>30</sec>\n"
    "\t\t<kCal>4</kCal>\n"
    "\t\t<km>0.250000</km>\n"
    "\t\t<pace>120</pace>\n"
    "\t\t<bpm>0</bpm>\n"
    "\t</workoutSummary>\n"
    "</gymData>";

std::string RunUpTo(const std::string& text) {
  const std::string run = kRun;
  return run.substr(0, run.find(text) + text.size());
}

std::string Document(const std::string& elements) { return "<gymData>" + elements + "</gymData>"; }

std::string IntervalAt(int seconds, const std::string& elements, const std::string& event) {
  return "<interval>" + (event.empty() ? "" : "<event>" + event + "</event>") + "<sec>" +
         std::to_string(seconds) + "</sec>" + elements + "</interval>\n";
}

std::string KmAt(int seconds, const char* km, const std::string& event) {
  return IntervalAt(seconds, std::string("<km>") + km + "</km>", event);
}

std::string Replaced(std::string text, const std::string& part, const std::string& replacement) {
  return text.replace(text.find(part), part.size(), replacement);
}

}  // namespace report
