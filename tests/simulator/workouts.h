// SPDX-License-Identifier: MIT
// Whole workout documents as consoles write them, up to where the iPod goes on, and the frames that
// carry them.

#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "simulator/protocol/commands.h"
#include "simulator/wire/frame.h"

namespace ipodsim {

inline const char* const kNewerWorkout =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<gymData>\n"
    "\t<vers>1</vers>\n"
    "\t<equipmentInfo>\n"
    "\t\t<manufacturerID>1234</manufacturerID>\n"
    "\t\t<manufacturerName>Gym & <Söhne></manufacturerName>\n"
    "\t\t<type>Bike</type>\n"
    "\t\t<model>T1</model>\n"
    "\t\t<serialNumber>0001</serialNumber>\n"
    "\t</equipmentInfo>\n"
    "\t<userInfo>\n"
    "\t\t<kg>70.0</kg>\n"
    "\t</userInfo>\n"
    "\t<interval>\n"
    "\t\t<event>start</event>\n"
    "\t\t<sec>60</sec>\n"
    "\t\t<kCal>12.50</kCal>\n"
    "\t\t<km>0.25</km>\n"
    "\t\t<rpm>80</rpm>\n"
    "\t\t<incline>-1.5</incline>\n"
    "\t\t<bpm>120</bpm>\n"
    "\t\t<level>0</level>\n"
    "\t</interval>\n"
    "\t<workoutSummary>\n"
    "\t\t<sec>60</sec>\n"
    "\t\t<kCal>12.50</kCal>\n"
    "\t\t<km>0.25</km>\n"
    "\t\t<pace>240</pace>\n"
    "\t\t<bpm>120</bpm>\n"
    "\t</workoutSummary>\n";

inline const char* const kOlderWorkout =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "\t<gymData>\n"
    "\t<vers>1</vers>\n"
    "\t<equipmentInfo>\n"
    "\t\t<manufacturerID>0042</manufacturerID>\n"
    "\t\t<type>Bike</type>\n"
    "\t\t<model>B7</model>\n"
    "\t\t<serialNumber>123-4</serialNumber>\n"
    "\t\t<gymName>Nord</gymName>\n"
    "\t\t<gymLocation>Hall 2</gymLocation>\n"
    "\t</equipmentInfo>\n"
    "\t<userInfo>\n"
    "\t\t<kg>72.500000</kg>\n"
    "\t</userInfo>\n"
    "\t<interval>\n"
    "\t\t<sec>61</sec>\n"
    "\t\t<kCal>12</kCal>\n"
    "\t\t<km>0.250000</km>\n"
    "\t\t<pace>245</pace>\n"
    "\t\t<bpm>0</bpm>\n"
    "\t\t<incline>-1.500000</incline>\n"
    "\t\t<level>7</level>\n"
    "\t</interval>\n"
    "\t<workoutSummary>\n"
    "\t\t<sec>1800</sec>\n"
    "\t\t<kCal>320</kCal>\n"
    "\t\t<km>6.125000</km>\n"
    "\t\t<pace>294</pace>\n"
    "\t\t<bpm>128</bpm>\n"
    "\t</workoutSummary>\n";

/// The writes that store the text in the file of handle 1, a line each.
inline std::vector<Bytes> WritesOf(const std::string& text) {
  std::vector<Bytes> writes;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    Bytes data;
    Put32(data, static_cast<std::uint32_t>(at));
    Put8(data, 1);
    data.insert(data.end(), text.begin() + static_cast<std::ptrdiff_t>(at),
                text.begin() + static_cast<std::ptrdiff_t>(end));
    writes.push_back(BuildFrame({kStorage, storage::kWriteIpodFileData, data}));
    at = end;
  }
  return writes;
}

}  // namespace ipodsim
