// SPDX-License-Identifier: MIT
// ipod: the workout document, a line per write. What stands in the document is seen here at a
// glance; the form differs from the current interface's in codes, units and elements.
#include <cwchar>
#include <iterator>

#include "ipodcomm/ipod.h"
#include "legacy/reply_text.h"
#include "platform/services.h"
#include "protocol/decimal.h"
#include "protocol/frame.h"

using ipodcomm::FrameBytes;
using ipodcomm::kIgnored;
using ipodcomm::ReplyByte;
using ipodcomm::Store;

namespace {

constexpr int kDecimals = 6;  // of a fraction in the document

template <std::size_t kCapacity>
void Show(wchar_t (&status)[kCapacity], const wchar_t* text) {
  StringCchCopyW(status, kCapacity, text);
}

// The lines of one call. The first one that fails ends the writing: later ones are left out.
class Lines {
 public:
  explicit Lines(ipod& writer) : writer_(writer) {}

  // 1 as long as nothing has failed.
  int result() const { return result_; }
  void Fail() { result_ = 0; }

  // Writes a formatted line. One that is cut here is longer than a frame holds all the same, so it
  // is refused, never written in part.
  template <class... Values>
  void Write(const wchar_t* format, Values... values) {
    wchar_t line[256];
    StringCchPrintfW(line, std::size(line), format, values...);
    result_ = writer_.ipodstoragewritestring(result_, line);
  }

 private:
  ipod& writer_;
  int result_ = 1;
};

// Names by code, which counts from 1 here; null for a code that is none.
template <std::size_t kNames>
const wchar_t* Name(const wchar_t* const (&names)[kNames], unsigned char code) {
  return code >= 1 && code <= kNames ? names[code - 1] : nullptr;
}

constexpr const wchar_t* kEquipment[] = {L"Treadmill", L"Elliptical", L"Stepper", L"Bike",
                                         L"Other"};
constexpr const wchar_t* kEvents[] = {L"start", L"end", L"continue", L"pause", L"resume"};

// The Storage ACK, `0C 00 status command`, and nothing else that carries a 0 in its command's
// place: the Extended Interface's notifications, whose commands begin with one, the ACKs of other
// lingoes, and frames that break off before the status.
bool IsStorageAck(const FrameBytes& frame) {
  constexpr std::uint8_t kLengthThroughStatus = 3;  // lingo, command, status
  return frame[ipod::IPOD_PACKET_LINGO_LOC] == ipod::IPOD_LINGO_STORAGE &&
         frame[ipod::IPOD_PACKET_PAYLOADLEN_LOC] >= kLengthThroughStatus;
}

}  // namespace

bool ipod::AwaitStorageAck(std::uint8_t* status) {
  constexpr std::uint8_t kAckUnits = 10;
  wchar_t ack[kAckUnits] = {};
  if (ExtractReply(IPOD_COMMAND_STORAGE_ACK, IsStorageAck, ack, kAckUnits, 0) == 0) return false;
  *status = ReplyByte(ack[0]);
  return true;
}

int ipod::issports(int* supported, unsigned char* extra) {
  constexpr int kGymAndUserData =
      IPOD_SPORTS_GETIPODCAPS_MASK_GYM | IPOD_SPORTS_GETIPODCAPS_MASK_USERDATA;
  constexpr std::size_t kSportsUnits = 5;
  constexpr std::size_t kStorageUnits = 50;
  Store(supported, 0);
  Store(extra, 0);
  wchar_t sports[kSportsUnits] = {};
  if (command_sportsgetipodcaps() == 0 ||
      extractdatafrompacket(IPOD_COMMAND_SPORTS_RETURNIPODCAPS, sports, kSportsUnits, 0,
                            kIgnored) == 0) {
    return 0;
  }
  Store(extra, ReplyByte(sports[2]));
  if ((ipodcomm::ReplyNumber16(sports) & kGymAndUserData) != kGymAndUserData) return 0;

  wchar_t storage[kStorageUnits] = {};
  if (command_storagegetipodcaps() == 0) return 0;
  const int answered = extractdatafrompacket(IPOD_COMMAND_STORAGE_RETURNIPODCAPS, storage,
                                             kStorageUnits, 0, kIgnored);
  // Whether or not the answer came: hosts in the field look at the result as well.
  Store(supported, 1);
  return answered;
}

// The port is closed and opened again before every line, which discards what iPods in the field
// have sent since: an answer that was late for the line before is not taken for this one's.
int ipod::ipodstoragewritestring(int previous_ok, wchar_t* text) {
  if (previous_ok == 0 || text == nullptr) return 0;
  Show(status_text_, text);
  serial_.PauseBetweenLines();
  closeport();
  openport();
  const auto count = static_cast<unsigned short>(std::wcslen(text));
  if (command_storeagewriteipodfiledata(text, count) == 0) return 0;
  std::uint8_t status = 0;
  if (!AwaitStorageAck(&status)) return 0;
  if (status == 0) {
    workout_size_ += count;
    return 1;
  }
  StringCchPrintfW(status_text_, std::size(status_text_),
                   L"Error in Ack from Storage Write, value is %d, should be 0", status);
  return 0;
}

int ipod::startworkout(unsigned char equipment, wchar_t* manufacturer_id, wchar_t* /*ignored*/,
                       wchar_t* model, wchar_t* serial_number, wchar_t* gym_name,
                       wchar_t* gym_location, float weight_kg) {
  constexpr std::size_t kHandleUnits = 10;
  Show(status_text_, L"Makeing sure iPod supports workout");
  workout_size_ = 0;
  std::uint8_t status = 0;
  command_storagecloseipodfile();  // a file that is still open, if there is one
  AwaitStorageAck(&status);
  if (issports(nullptr, nullptr) == 0) return 0;

  Show(status_text_, L"Opening iPod Workout File");
  if (command_storageopenipodfeaturefile() == 0) return 0;
  Show(status_text_, L"Getting File Handle From iPod");
  storage_file_handle_ = 0;
  wchar_t handle[kHandleUnits] = {};
  if (extractdatafrompacket(IPOD_COMMAND_STORAGE_RETURNIPODFILEHANDLE, handle, kHandleUnits, 0,
                            kIgnored) == 0) {
    return 0;
  }
  Show(status_text_, L"Writing Workout XML File Information");
  storage_file_handle_ = ReplyByte(handle[0]);
  storage_write_offset_ = 0;

  const wchar_t* const type = Name(kEquipment, equipment);
  Lines lines(*this);
  lines.Write(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
  lines.Write(L"\t<gymData>\n");
  lines.Write(L"\t<vers>1</vers>\n");
  lines.Write(L"\t<equipmentInfo>\n");
  lines.Write(L"\t\t<manufacturerID>%s</manufacturerID>\n", manufacturer_id);
  if (type == nullptr) {
    lines.Fail();
  } else {
    lines.Write(L"\t\t<type>%s</type>\n", type);
  }
  lines.Write(L"\t\t<model>%s</model>\n", model);
  lines.Write(L"\t\t<serialNumber>%s</serialNumber>\n", serial_number);
  lines.Write(L"\t\t<gymName>%s</gymName>\n", gym_name);
  lines.Write(L"\t\t<gymLocation>%s</gymLocation>\n", gym_location);
  lines.Write(L"\t</equipmentInfo>\n");
  lines.Write(L"\t<userInfo>\n");
  lines.Write(L"\t\t<kg>%s</kg>\n", ipodcomm::Decimal(weight_kg, kDecimals).text());
  lines.Write(L"\t</userInfo>\n");
  if (lines.result() != 0) Show(status_text_, L"Start Workout Good");
  return lines.result();
}

int ipod::intervalworkout(unsigned char event, unsigned int seconds, unsigned int kcal, float km,
                          float /*ignored_speed*/, unsigned int pace, unsigned int /*ignored1*/,
                          unsigned int /*ignored2*/, unsigned int bpm, float incline,
                          unsigned int level) {
  const wchar_t* const name = Name(kEvents, event);
  Show(status_text_, L"Starting Interval Write");
  Lines lines(*this);
  lines.Write(L"\t<interval>\n");
  // Not when that line failed. The step is left out with all that follows the failure, and hosts in
  // the field show the refusal of this line like that of any other.
  if (lines.result() != 0) Show(status_text_, L"Writing Event if Needed");
  if (name != nullptr) {
    lines.Write(L"\t\t<event>%s</event>\n", name);
  } else if (event != IPOD_SPORTS_INTERVAL_TYPE_INPROCESS) {
    lines.Fail();
  }
  lines.Write(L"\t\t<sec>%d</sec>\n", seconds);
  lines.Write(L"\t\t<kCal>%d</kCal>\n", kcal);
  lines.Write(L"\t\t<km>%s</km>\n", ipodcomm::Decimal(km, kDecimals).text());
  lines.Write(L"\t\t<pace>%d</pace>\n", pace);
  lines.Write(L"\t\t<bpm>%d</bpm>\n", bpm);
  lines.Write(L"\t\t<incline>%s</incline>\n", ipodcomm::Decimal(incline, kDecimals).text());
  lines.Write(L"\t\t<level>%d</level>\n", level);
  lines.Write(L"\t</interval>\n");
  if (lines.result() != 0) Show(status_text_, L"Internval Write Good");
  return lines.result();
}

int ipod::finishworkout(unsigned int seconds, unsigned int kcal, float km, float /*ignored_speed*/,
                        unsigned int pace, unsigned int /*ignored1*/, unsigned int /*ignored2*/,
                        unsigned int bpm) {
  Lines lines(*this);
  lines.Write(L"\t<workoutSummary>\n");
  lines.Write(L"\t\t<sec>%d</sec>\n", seconds);
  lines.Write(L"\t\t<kCal>%d</kCal>\n", kcal);
  lines.Write(L"\t\t<km>%s</km>\n", ipodcomm::Decimal(km, kDecimals).text());
  lines.Write(L"\t\t<pace>%d</pace>\n", pace);
  lines.Write(L"\t\t<bpm>%d</bpm>\n", bpm);
  lines.Write(L"\t</workoutSummary>\n");
  // A doubled acknowledgement of the last line is not taken for that of closing.
  if (serial_.PauseBetweenLines()) serial_.purgerx();
  // Closed also when a line failed: the iPod keeps what it has.
  std::uint8_t status = 0;
  const bool closed = command_storagecloseipodfile() != 0 && AwaitStorageAck(&status);
  return lines.result() != 0 && closed && status == 0 ? 1 : 0;
}

unsigned long ipod::getworkoutsize() { return workout_size_; }
