// SPDX-License-Identifier: MIT
// Records and enumerations of the current interface (CIpodComm, CIpodSerial).
#pragma once

#include <cstdint>
#include <vector>

/// Header form of a frame, which its length byte shows.
enum tagIPOD_PACKET_TYPE : std::int32_t {
  IPOD_PACKET_TYPE_LARGE = 0,  ///< 0x00 marker, then a 16-bit length
  IPOD_PACKET_TYPE_SMALL = 1,  ///< one-byte length
};

/// One received frame, kept whole: normally from the sync byte 0xFF through the checksum byte.
struct tagSERIAL_PACKET {
  unsigned char data[1024];  ///< the bytes as they came
  std::uint32_t length;      ///< valid bytes in `data`
};

/// Results of the write/read machinery.
enum tagIPOD_COMM_ERROR : std::int32_t {
  IPOD_COMM_OK = 0,          ///< written; or the awaited answer (or an accepted ACK) was stored
  IPOD_COMM_NO_ANSWER = 1,   ///< write failed, nothing arrived, request served, or rejecting ACK
  IPOD_COMM_UNEXPECTED = 3,  ///< the last packet read was not the awaited one
  IPOD_COMM_RETRIES_EXHAUSTED = 4,  ///< every attempt ended with IPOD_COMM_NO_ANSWER
};

/// One outgoing command.
struct tagIPOD_WRITE_PARAMS {
  std::uint16_t command;  ///< the Extended Interface uses all 16 bits, other lingoes the low byte
  std::uint8_t lingo;     ///< IPOD_LINGO_... of ipod.h
  const unsigned char* data;  ///< command data, borrowed
  std::uint32_t length;       ///< bytes of `data`
};

/// One awaited answer: what is expected goes in, what arrived comes out.
struct tagIPOD_READ_PARAMS {
  std::uint16_t
      expected_command;  ///< in: counts as the answer (0x02 for commands answered by an ACK only)
  std::uint16_t received_command;  ///< out: command of the last packet looked at
  std::uint8_t lingo;              ///< out: lingo of the last packet looked at
  unsigned char* buffer;           ///< receives the answer's data, borrowed
  std::int32_t size;     ///< in: bytes of `buffer`; out: lowered to what a shorter answer stored.
                         ///< For an accepted ACK, 2 or 1 selects how much of it `ack` keeps
  std::uint32_t stored;  ///< out: bytes copied into `buffer`
  std::int32_t retries;  ///< in: attempts of write and read
  std::int32_t accept_ack;    ///< in: non-zero lets a General ACK count as the answer
  std::int32_t ack_received;  ///< out: non-zero once an ACK came
  std::uint16_t ack;          ///< out: the ACK's first data bytes as they lie: status, then command
  std::uint8_t final_command;  ///< in: General lingo: an ACK naming this command ends the wait
};

/// What came of a command that awaits an answer.
enum tagIPOD_EXCHANGE_RESULT : std::int32_t {
  IPOD_EXCHANGE_NONE = 0,        ///< none was sent yet
  IPOD_EXCHANGE_ANSWERED = 1,    ///< answered, or acknowledged with status 0
  IPOD_EXCHANGE_REFUSED = 2,     ///< an ACK with another status came in place of the answer
  IPOD_EXCHANGE_UNANSWERED = 3,  ///< no attempt was answered, or none could be written
  IPOD_EXCHANGE_DAMAGED = 4,     ///< no whole answer, but one cut short
  IPOD_EXCHANGE_ECHOED = 5,      ///< no answer, but the command's own bytes came back
};

/// A command that awaited an answer, and what came: under every conduct told as the robust one
/// judges it, so a foreign answer that the default conduct believed does not count here.
struct tagIPOD_EXCHANGE {
  tagIPOD_EXCHANGE_RESULT result;  ///< what came
  std::uint16_t command;           ///< as it was sent; the low byte outside of lingo 4
  std::uint8_t lingo;              ///< of the command
  std::uint8_t status;             ///< of the refusing ACK; 0 unless refused
  std::uint8_t argument;    ///< the command's first data byte, such as the lingo asked about, or 0
  std::uint8_t carried_id;  ///< 1 when it was sent with a transaction identifier, else 0
  std::uint8_t answer_carried_id;  ///< 1 when what came carried one
  std::uint8_t data_bytes;         ///< valid bytes of `data`
  unsigned char data[12];          ///< the first data bytes of the answer, whole or damaged
  std::uint32_t attempts;          ///< how often it was sent; 0 when it could not be written
  std::uint32_t took_ms;  ///< from the first attempt on; not measured by the default conduct, 0
};

/// How a session treats the line and the iPod's answers (CIpodComm::SetConduct).
///
/// The default, IPOD_CONDUCT_FIELD, is what docks and iPods in the field have been served by for
/// years. It is slow on purpose, and believes an answer by its command alone. A host that wants
/// lost, late and doubled answers noticed asks for IPOD_CONDUCT_ROBUST; one that wants the speed of
/// the line as well asks for IPOD_CONDUCT_FAST.
///
/// What is known about docks that bear the short pauses: a serial adapter and a simulated iPod do.
/// The 20 ms after the sync byte wake an iPod's receiver from sleep, so the fast conduct keeps them
/// until the iPod has answered once. Whether each dock in the field bears the rest is not known: a
/// host that ships one tries it on that dock first.
struct tagIPOD_CONDUCT {
  std::uint32_t sync_pause_ms;         ///< after the sync byte of every frame sent
  std::uint32_t read_pause_ms;         ///< after every read that brought something
  std::uint32_t empty_read_pause_ms;   ///< after a read that brought nothing
  std::uint32_t failed_read_pause_ms;  ///< after a read that failed
  /// What empty_read_pause_ms grows to while the line is quiet, an eighth of the quiet so far; it
  /// goes back with the first byte, and with a write at once. What is below empty_read_pause_ms
  /// counts as that.
  std::uint32_t quiet_read_pause_ms;
  std::uint32_t bytes_per_read;  ///< 1 to 1024
  /// Non-zero ends the pause after the sync byte once the iPod has answered, until the next Open.
  std::int32_t sync_pause_until_answered;
  /// Non-zero tells answers apart by what they repeat of their request, asks for damaged ones
  /// again, finds frames that a damaged one swallowed, ends at once on a refusal, and counts a
  /// time-out from the last byte that came. Members of CIpodComm whose comments speak of a robust
  /// conduct mean this.
  std::int32_t robust;
};

/// One byte per read and long pauses: what every dock and iPod in the field bears.
constexpr tagIPOD_CONDUCT IPOD_CONDUCT_FIELD = {20, 2, 2, 50, 2, 1, 0, 0};
/// The same pace, with answers told apart.
constexpr tagIPOD_CONDUCT IPOD_CONDUCT_ROBUST = {20, 2, 2, 50, 2, 1, 0, 1};
/// Robust, and at the speed of the line.
constexpr tagIPOD_CONDUCT IPOD_CONDUCT_FAST = {20, 0, 1, 50, 16, 256, 1, 1};

/// Input of the identification token.
struct tagIdentifyToken {
  std::vector<unsigned char> lingoes;  ///< in the order in which they are announced
  unsigned char options[4];            ///< in wire order, most significant first
  unsigned char device_id[4];          ///< in wire order, most significant first
};

/// Outcome of the identification sequence.
enum tagIPOD_IDENTIFY_RESULT : std::int32_t {
  IPOD_IDENTIFY_RESULT_NONE = 0,    ///< not identified
  IPOD_IDENTIFY_RESULT_TOOOLD = 1,  ///< the iPod's lingo versions are below the minimums
  IPOD_IDENTIFY_RESULT_IDPS = 2,    ///< identified by tokens
  IPOD_IDENTIFY_RESULT_LINGOS = 3,  ///< identified by IdentifyDeviceLingoes
  /// Robust conduct only: the session's own bytes came back and nothing else did. The line is wired
  /// to itself, or bridged with no iPod behind it.
  IPOD_IDENTIFY_RESULT_ECHO = 4,
};

/// The evidence for an identification's outcome (CIpodComm::GetIdentifyReport): each command that
/// awaited an answer, in the order in which they were sent.
struct tagIPOD_IDENTIFY_REPORT {
  static constexpr std::uint32_t kMostSteps = 48;  ///< the room in `step`

  tagIPOD_IDENTIFY_RESULT result;  ///< how it ended
  std::uint32_t took_ms;         ///< all of it, pauses too; not measured by the default conduct, 0
  std::uint32_t steps;           ///< valid records in `step`
  std::uint32_t steps_left_out;  ///< those that came after kMostSteps
  tagIPOD_EXCHANGE step[kMostSteps];  ///< the first `steps` of them, in order
};

/// The host's description of the accessory. The library stores the block and reads none of it.
struct tagIPOD_ACCESSORY_INFO {
  unsigned char data[312];  ///< the host's own layout
};

/// A lingo's protocol version.
struct tagIPOD_VERSION {
  std::uint8_t major;  ///< 1 of 1.09
  std::uint8_t minor;  ///< 9 of 1.09
};

/// Colour variant of the docked iPod. The host maps each value to its own picture.
enum tagIPOD_COLOR : std::int32_t {
  IPOD_COLOR_NONE = 0,  ///< no colour known
  IPOD_COLOR_1,
  IPOD_COLOR_2,
  IPOD_COLOR_3,
  IPOD_COLOR_4,
  IPOD_COLOR_5,
  IPOD_COLOR_6,
  IPOD_COLOR_7,
  IPOD_COLOR_8,
  IPOD_COLOR_9,
  IPOD_COLOR_10,
  IPOD_COLOR_11,
};

/// What an iPod is asked to report (CIpodComm::SetNotification), a mask of these. It reports
/// changes only: what it is doing at first is not reported and must be read once. An iPod that
/// takes no mask chooses for itself, commonly stops, tracks and milliseconds. Of what other bits
/// report the session keeps nothing.
enum tagIPOD_PLAY_STATUS_BIT : std::uint32_t {
  IPOD_PLAY_STATUS_BIT_BASIC = 0x01,         ///< playback has stopped: state 0
  IPOD_PLAY_STATUS_BIT_STATE = 0x02,         ///< stopped, playing or paused: the state
  IPOD_PLAY_STATUS_BIT_TRACK = 0x04,         ///< another track plays: its index
  IPOD_PLAY_STATUS_BIT_MILLISECONDS = 0x08,  ///< the position in milliseconds, about twice a second
  IPOD_PLAY_STATUS_BIT_SECONDS = 0x10,       ///< the position in seconds, once a second
};

/// What the play-status notifications have reported so far. Each field has its own bit in
/// the mask of SetNotification and is 0 until it is first reported.
struct tagIPOD_PLAY_STATUS {
  std::uint32_t state;        ///< 0 stopped, 1 playing, 2 paused
  std::uint32_t position;     ///< of the track, in seconds
  std::uint32_t track_index;  ///< in the now-playing list
  std::uint32_t tick;         ///< GetTickCount of the last notification, in milliseconds
};

/// What the user trains on.
enum tagIPOD_EQUIPMENT_TYPE : std::int32_t {
  IPOD_EQUIPMENT_TYPE_TREADMILL = 0,
  IPOD_EQUIPMENT_TYPE_ELLIPTICAL = 1,
  IPOD_EQUIPMENT_TYPE_STEPPER = 2,
  IPOD_EQUIPMENT_TYPE_BIKE = 3,
  IPOD_EQUIPMENT_TYPE_OTHER = 4,
};

/// What a workout's distance is.
enum tagIPOD_DISTANCE_TYPE : std::int32_t {
  IPOD_DISTANCE_TYPE_KM = 0,      ///< kilometres
  IPOD_DISTANCE_TYPE_FLOORS = 1,  ///< floors climbed
};

/// What a workout's speed is.
enum tagIPOD_SPEED_TYPE : std::int32_t {
  IPOD_SPEED_TYPE_PACE = 0,
  IPOD_SPEED_TYPE_SPM = 1,  ///< steps per minute
  IPOD_SPEED_TYPE_RPM = 2,  ///< revolutions per minute
};

/// The file that holds the workout, as far as the session knows.
struct tagIPOD_WORKOUT_FILE {
  std::uint32_t handle;         ///< the iPod's number for it
  std::uint32_t write_offset;   ///< where the next write lands, in bytes
  std::uint32_t failed_writes;  ///< lines and blocks since the start that were not written
};

/// The event that an interval of the workout records.
enum tagIPOD_INTERVAL_TYPE : std::int32_t {
  IPOD_INTERVAL_TYPE_START = 0,
  IPOD_INTERVAL_TYPE_CONTINUE = 1,
  IPOD_INTERVAL_TYPE_PAUSE = 2,
  IPOD_INTERVAL_TYPE_RESUME = 3,
  IPOD_INTERVAL_TYPE_END = 4,
};
