// SPDX-License-Identifier: MIT
// The serial port of the legacy interface: no thread, every call blocks its caller.
#pragma once

#include <cstdint>

#include "ipodcomm/detail/KeepGoing.h"
#include "ipodcomm/detail/Shared.h"
#include "ipodcomm/platform.h"

/// How the legacy interface treats the line, and the questions on it (ipodserial::SetConduct,
/// ipod::SetConduct).
struct tagIPOD_LEGACY_CONDUCT {
  std::uint32_t sync_pause_ms;  ///< after the sync byte of every frame sent; at most 10000
  std::uint32_t
      bytes_per_read;  ///< 1 to 1024; never more than the driver holds and the frame needs
  /// 1 ends the pause after the sync byte once a whole frame has been read, until the port is
  /// opened anew; else 0.
  std::int32_t sync_pause_until_answered;
  /// Before the port is closed and opened again between two lines of a workout, and before its file
  /// is closed; at most 10000. What arrives in this time is discarded. Without it a doubled
  /// acknowledgement is taken for that of the next line, whose bytes the opening after that
  /// discards before they have left.
  std::uint32_t line_pause_ms;
  /// 1: what the iPod asks while a reply with a two-byte command is awaited, such as an ACK of the
  /// Extended Interface, is answered, and the wait goes on, for 32 frames at most; 0: it is taken
  /// for the reply, stays unanswered, and each exchange after it reads the reply to the one before.
  /// In other waits it is answered in any case. Of `ipod` alone: raw reads answer nothing.
  std::int32_t answers_questions;
};

/// A pause behind every sync byte and one byte per read: what docks in the field bear.
constexpr tagIPOD_LEGACY_CONDUCT IPOD_LEGACY_CONDUCT_FIELD = {5, 1, 0, 0, 0};
/// The same, and a pause between the lines of a workout, for iPods that acknowledge twice; and the
/// iPod's questions are answered at any time.
constexpr tagIPOD_LEGACY_CONDUCT IPOD_LEGACY_CONDUCT_ROBUST = {5, 1, 0, 10, 1};
/// Robust, and at the speed of the line. The pause wakes an iPod's receiver from sleep, so it is
/// kept until the iPod has answered once. Whether a dock bears the rest is for the host that ships
/// it to try.
constexpr tagIPOD_LEGACY_CONDUCT IPOD_LEGACY_CONDUCT_FAST = {5, 256, 1, 10, 1};

/// Opens a port, writes raw bytes and reads one frame at a time, by default byte by byte, on the
/// caller's thread.
///
/// A copy refers to the same open port. Whichever of the two closes it leaves the other with a
/// stale handle, which must not be used: the system may give its value to another object, and on
/// Windows soon does. The other opens a port anew first. Nothing closes the port by itself: the
/// owner does.
class IPODCOMM_API ipodserial {
 public:
  /// "COM2:" at 57600 baud, 8 data bits, no parity; opens nothing.
  ipodserial();
  /// A copy refers to the same open port; see the class.
  ipodserial(const ipodserial& other);
  /// The same. The port that this object had open stays open, out of reach.
  ipodserial& operator=(const ipodserial& other);

  /// Chooses the pause and the reads, before opening or in between; IPOD_LEGACY_CONDUCT_FIELD until
  /// then. Not while another thread uses the object.
  /// @return 1; 0 for null and for values outside their range, which change nothing.
  int SetConduct(const tagIPOD_LEGACY_CONDUCT* conduct);
  /// Tells what was chosen. @return 1, or 0 for null.
  int GetConduct(tagIPOD_LEGACY_CONDUCT* conduct) const;

  /// Gives the host a say in every wait of readport, so also of the interface's operations that
  /// read. `keep_going` is called with `context` before each read and every 50 ms of a wait, on the
  /// thread that makes the call; a false ends the wait within 100 ms, with the bytes that it has.
  /// It goes on saying false until the call has returned. What is under way then stays in the port;
  /// see purgerx. Writes never ask: a frame that has begun goes out whole.
  ///
  /// The callback calls no member of the object and throws nothing. While there is one, reads of
  /// the port's own wait for 50 ms; a silent line is given up as late as without. Null, the
  /// default, ends it. Not while another thread uses the object.
  /// @return 1; 0 when the open port does not take those waits, which changes nothing.
  int SetKeepGoing(bool (*keep_going)(void* context), void* context);

  /// Opens and configures the port `name`, without flow control of any kind and with the platform's
  /// code for one and a half stop bits, and discards what it held. The baud rate is kept for later
  /// openings, the name is not. Close an open port first: it would stay open, out of reach.
  /// @return 1 when the port is open, else 0; it is closed then.
  int openport(const wchar_t* name, int baud_rate);
  /// The same with "COM2:" and the baud rate given last.
  int openport();
  /// @return 1, also when no port is open.
  int closeport();

  /// Writes in one go, and does not go on when the port takes less.
  /// @return the bytes that the port accepted; 0 when it is closed or the write fails.
  unsigned long writeport(unsigned char* bytes, int count);
  /// Reads one frame, from its sync byte through its checksum, and leaves what follows it in the
  /// port. Bytes before it are dropped; its checksum is not judged.
  /// @param buffer receives the frame
  /// @param size bytes that `buffer` has room for; a longer frame ends there
  /// @return the bytes stored: fewer than the frame's after five empty reads of up to 400 ms, each
  /// followed by a pause of 200 ms, wherever they fall, so about three seconds of silence in all; 0
  /// when the port is closed. Bytes before the frame are no empty reads: noise without a sync byte
  /// keeps the call waiting for as long as it lasts. When another thread closes the port meanwhile,
  /// the call ends within a second and a half.
  unsigned long readport(unsigned char* buffer, int size);

  /// Discards what was received and not read.
  void purgerx();
  /// Discards what was written and not sent.
  void purgetx();

  /// Prints the calling thread's last error code, and the system's text for it, to the debug
  /// output. The library never calls it; a host may.
  void Error();

 private:
  friend class ipod;
  friend struct ipodserialPeer;  // the tests' look inside

  bool PauseBetweenLines() const;  // whether the conduct has one
  unsigned long WriteFrame(unsigned char* frame, unsigned length);
  unsigned long ReadSome(unsigned char* buffer, unsigned long most);
  unsigned long BytesToRead(unsigned long most, bool* told) const;
  bool ConfigureLine();
  bool ConfigureTimeouts();

  ipodcomm::Shared<HANDLE> port_;  // one thread may close what another reads
  DCB port_state_ = {};
  COMMTIMEOUTS port_timeouts_ = {};
  std::int32_t baud_rate_ = 57600;
  std::int32_t data_bits_ = 8;
  std::int32_t stop_bits_ = 1;
  std::int32_t parity_ = 0;
  std::uint32_t timeout_ms_ = 200;
  wchar_t port_name_[26] = {};
  tagIPOD_LEGACY_CONDUCT conduct_ = IPOD_LEGACY_CONDUCT_FIELD;
  std::int32_t answered_ = 0;   // a whole frame has been read since the port was opened
  std::int32_t byte_wise_ = 0;  // the driver does not tell what it holds
  ipodcomm::KeepGoing keep_going_;
};
