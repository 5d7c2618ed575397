// SPDX-License-Identifier: MIT
// The pages of the findings' codes.
//
//   E1..  the port           E3..  identification      E5..  the end of the line
//   E2..  bytes on the line  E4..  answers
#include <algorithm>

#include "wire/findings/finding.h"

namespace ipodwire {
namespace {

constexpr const char* kOpening = "The serial port was opened.";
constexpr const char* kListening = "The iPod was sent frames, and its answers were awaited.";
constexpr const char* kIdentifying = "The accessory identified itself to the iPod.";
constexpr const char* kAsking = "The identified accessory asked the iPod something.";

const std::vector<FindingPage> kPages = {
    {"E101", "The port does not exist", kOpening, "The system knows no device of this name.",
     "Check the cable to the adapter and the device's name; a USB adapter gets another name when "
     "it is "
     "plugged in again."},
    {"E102", "The port is in use", kOpening,
     "Another program has the port open, and two cannot share it.",
     "End the other program. A modem manager may hold every new serial port for some seconds."},
    {"E103", "The port may not be opened", kOpening,
     "The system lets this user neither read nor write the device.",
     "Run as a user who may use serial ports; on Debian that is a member of the group dialout."},
    {"E104", "The device is no serial line", kOpening,
     "The device takes no line settings, so it is no serial port, or one without its hardware.",
     "Name the serial port that leads to the dock."},

    {"E201", "Nothing came from the iPod", kListening,
     "Not one byte arrived. The dock has no power or no iPod, the iPod is off, or the line that "
     "the "
     "iPod sends on does not reach the adapter.",
     "Check that an iPod is docked and switched on, then that the iPod's transmit pin leads to the "
     "adapter's receive pin, and that both have a common ground."},
    {"E202", "Only what was sent came back", kListening,
     "The line that the accessory sends on is connected to the one that it receives on, and no "
     "iPod "
     "answered.",
     "Part the two lines; look for a bridge in the cable, the dock or the adapter's test mode."},
    {"E203", "Bytes came that are no frames", kListening,
     "Something sends, and it is not understood: at another baud rate, with inverted levels, or "
     "with "
     "too much noise on the line.",
     "The library always opens the line at 57600 baud. Check what the dock is set to, and that its "
     "levels are the adapter's (TTL, not RS-232)."},
    {"E204", "Frames came with bad checksums", kListening,
     "Bytes are lost or changed on their way. The checksum of a frame is one byte, so a few "
     "damaged "
     "frames may pass for good ones.",
     "Shorten the cable, keep it away from the motor's, check the ground, and that the adapter's "
     "driver "
     "does not drop bytes."},
    {"E205", "The driver met errors on the line", kListening,
     "Bytes came without a stop bit or faster than they were fetched: the levels or the rate are "
     "not "
     "quite right, or the machine is too busy.",
     "As for damaged frames; check also the load of the machine."},
    {"E206", "Frames came without their end", kListening,
     "They stop in the middle, and others follow: bytes are lost on their way, or come so late "
     "that "
     "they no longer belong to their frame.",
     "As for damaged frames; an iPod that was taken out and put back does it once."},
    {"E207", "Bytes came between the frames", kListening,
     "They belong to no frame: noise on the line, or what is left of a frame whose beginning was "
     "lost.",
     "As for damaged frames; a few of them right after docking are of no account."},

    {"E301", "The iPod wants an identifier on StartIDPS", kIdentifying,
     "It left StartIDPS unanswered until it carried a transaction identifier.",
     "Nothing: a host that chose the robust conduct sends one by itself. Others choose it by "
     "SetConduct."},
    {"E302", "The iPod does not identify accessories by tokens", kIdentifying,
     "It is older than that way of identification.",
     "Nothing: the library then announces its lingoes instead, and all but the newest services "
     "work. "
     "Without SetIDPSEnable it does so at once, which saves seconds."},
    {"E303", "The iPod refused a token", kIdentifying,
     "It does not accept what the accessory says about itself there.",
     "Malformed: look at the values that the host chose, such as the model number and the serial "
     "number. "
     "Not supported: an older iPod, which goes without."},
    {"E304", "The identification by tokens did not succeed", kIdentifying,
     "The iPod ended it with another status than that the accessory is identified.",
     "Look for a token that was refused. A status of 5 means that this accessory is not to try "
     "again "
     "before it is docked anew."},
    {"E305", "The iPod asks for authentication", kIdentifying,
     "It wants a certificate for the services that the accessory asked for. This library has none "
     "to "
     "show, and the iPod withdraws those services after some minutes.",
     "Use an iPod, or a dock with an authentication chip, that does without."},
    {"E306", "The iPod is too old", kIdentifying,
     "A lingo has a version below what the library needs.",
     "Update the iPod's software, or dock a newer one."},
    {"E307", "The iPod takes no workouts", kIdentifying,
     "It lacks the Sports or the Storage lingo, or has an older version of them. Music works.",
     "Dock an iPod that takes workouts, if they are to be written to it."},
    {"E308", "The iPod refused the lingoes that were announced", kIdentifying,
     "It does not know one of them, or does not admit it on this dock.",
     "Dock another iPod, or have a look at which lingoes it has versions for."},

    {"E401", "Answers came under another identifier, or none", kAsking,
     "They answer an earlier question, or the iPod repeats no identifiers.",
     "Choose the robust conduct, which tells such answers apart."},
    {"E402", "The iPod answers too slowly", kAsking,
     "Answers came later than the library waits for them, so that questions were asked twice.",
     "Choose the robust conduct, which knows late answers by what they repeat. A full or waking "
     "disk "
     "delays an iPod for seconds: try again."},
    {"E403", "The iPod has no room left", kAsking, "It could not store what was written.",
     "Free some space on the iPod."},
    {"E404", "The iPod wants an authenticated accessory for this", kAsking,
     "It acknowledged the question with the status for want of authentication.",
     "Nothing on this dock; what else was asked for may still work."},
    {"E405", "The iPod refused what it was asked", kAsking,
     "It acknowledged a command with a status other than success. Older iPods do not know newer "
     "commands, and many refuse one that does not fit what they are doing.",
     "Look the status up in the recording (ipodctl decode); where it is 'unknown ID', do without "
     "that command on this iPod."},
    {"E406", "Questions stayed unanswered", kAsking,
     "The iPod answers others, so these or their answers were lost on the way, or it was away for "
     "a "
     "moment.",
     "Nothing while it happens seldom: the question is asked again. Else check the cable."},
    {"E407", "Answers came that nobody had asked for", kAsking,
     "They come a second time, or for a question that had been given up.",
     "Choose the robust conduct, which tells such answers apart."},
    {"E408", "Records came twice, in another order, or not at all", kAsking,
     "A list does not come in one piece, each record once.",
     "Choose the robust conduct, which puts them in order and asks for missing ones again."},
    {"E409", "Answers do not hold what they should", kAsking,
     "The frame is whole and its checksum holds, but its data are too short or too long for the "
     "command: the iPod's software differs from what is known, or it cut them off.",
     "Choose the robust conduct, which asks for them again."},

    {"E501", "The line broke off in the middle of a frame", kAsking,
     "The last that came is a frame without its end: the cable was pulled, or the iPod taken out, "
     "while "
     "it was sending.",
     "Dock the iPod again, and fasten the cable."},
    {"E502", "The serial port went away", kAsking,
     "The system withdrew the device: the adapter was unplugged, or its driver gave up.",
     "Plug the adapter in again; it may get another name."},
    {"E503", "The iPod fell silent", kAsking,
     "It had answered before, and leaves the last questions unanswered, while the port is still "
     "there: "
     "the iPod was taken out of the dock, was switched off or hangs.",
     "Dock the iPod again; hold its reset keys if it does not answer then."},
    {"E504", "The iPod restarted, or was exchanged", kAsking,
     "It asked to be told anew who is there, or no longer knows an accessory that it had accepted.",
     "Identify again."},
};

}  // namespace

const char* NameOf(Certainty certainty) {
  switch (certainty) {
    case Certainty::kProved:
      return "proved";
    case Certainty::kLikely:
      return "likely";
    case Certainty::kNotExcluded:
      break;
  }
  return "not excluded";
}

const std::vector<FindingPage>& FindingPages() { return kPages; }

const FindingPage* FindFindingPage(const std::string& code) {
  const auto page = std::find_if(kPages.begin(), kPages.end(), [&](const FindingPage& candidate) {
    return candidate.code == code;
  });
  return page != kPages.end() ? &*page : nullptr;
}

}  // namespace ipodwire
