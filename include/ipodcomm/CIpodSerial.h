// SPDX-License-Identifier: MIT
// The serial port of the current interface: the line to the dock, its read thread, and the queue of
// received packets.
#pragma once

#include <cstdint>
#include <list>
#include <memory>

#include "ipodcomm/IpodTypes.h"
#include "ipodcomm/detail/Departure.h"
#include "ipodcomm/detail/FrameAssembler.h"
#include "ipodcomm/detail/Lifeline.h"
#include "ipodcomm/detail/LinePace.h"
#include "ipodcomm/detail/Lock.h"
#include "ipodcomm/detail/PacketLimit.h"
#include "ipodcomm/detail/QuietPause.h"
#include "ipodcomm/detail/Shared.h"
#include "ipodcomm/platform.h"

/// Owns "COM2:", to which the dock is wired, and a thread that reads it byte by byte, assembles
/// frames and queues those whose checksum holds.
///
/// A CIpodComm holds one and uses it for all traffic; a host needs it alone only for raw access.
///
/// Open, Close, copying and destruction are for one thread at a time. WritePacket, ReadPacket and
/// GetNextPacket may run on several threads at once.
///
/// A copy shares its source's handles and starts no thread; whichever of the two is closed or
/// destroyed first leaves the other with stale handles. On Linux their use fails with code 6.
/// Windows uses handle values again: there a stale one may by then stand for something else that
/// the process has opened, and closing or destroying the second of the two closes that. A host that
/// copies there destroys neither before both are out of use and nothing else opens handles.
///
/// Nothing is thrown, also when memory is out: an object made then opens without a read thread
/// only, a copy made then has none of the received packets, and a packet that cannot be stored is
/// dropped. The last two are logged.
class IPODCOMM_API CIpodSerial {
 public:
  /// Opens nothing.
  CIpodSerial();
  /// A copy shares the handles of `other` and starts no thread; see the class.
  CIpodSerial(const CIpodSerial& other);
  /// The same. What this object had open is not closed.
  CIpodSerial& operator=(const CIpodSerial& other);
  /// Closes the port. Does not wait for the read thread, which restarts the serial driver and ends.
  ~CIpodSerial();

  /// Opens and configures "COM2:" (57600 baud, 8 data bits, no parity, the platform's code for one
  /// and a half stop bits, no flow control), closing it first if it is open. On Linux "COM2:" is
  /// the device that the environment variable IPODCOMM_COM2 names, else /dev/ttyS1.
  ///
  /// An earlier read thread can read no more when this returns. One that is still in its loop is
  /// ended by TerminateThread (exit code 0xFFFFFFFF), always asleep and holding no lock.
  /// @param start_read_thread whether received bytes are to be assembled and queued
  /// @return 0, or the system's error code, logged; the port then does not count as open.
  /// Blocks for the driver only, and a few milliseconds while an earlier thread lets go.
  long Open(bool start_read_thread);

  /// Closes the port. The read thread notices after its next pause (50 ms at most), empties the
  /// queue, restarts the serial driver (about one second) and ends; this does not wait for it.
  void Close();

  /// Sends one frame: the first byte alone, 20 ms of silence, then the rest. Any thread.
  /// @param data a whole frame, borrowed
  /// @param length bytes of `data`
  /// @return 0; 6 when the port is closed; 122 when `length` is 0; else the system's code of the
  /// write that failed. Blocks 20 ms and for as long as the driver needs.
  long WritePacket(unsigned char* data, unsigned long length);

  /// Sends bytes one by one without the port lock: the first, 10 ms of silence, then the others.
  /// @return whether every byte was written; a failure is told on the debug output.
  bool WriteRawPacket(unsigned char* data, unsigned long length);

  /// Waits until the driver holds `count` bytes, looking every 10 ms, and reads them. For ports
  /// opened without read thread.
  /// @return false after `timeout_ms`, or when fewer bytes could be read.
  bool ReadRawPacket(unsigned char* buffer, unsigned long count, unsigned long timeout_ms);

  /// Blocks until bytes are waiting in the driver. Both arguments are ignored.
  /// @return the number of bytes waiting; 0 when the wait ended for another reason.
  int WaitForData(int unused1, int unused2);

  /// Discards what the driver has received and nobody has read.
  void FlushRx();
  /// Discards what the driver has yet to send.
  void FlushTx();

  /// Non-zero when the driver holds received bytes.
  int CheckReceiveData();

  /// Stores the host's window. Nothing is posted to it.
  void SetWindowHand(HWND window);

  /// Takes the next received packet into a flat buffer.
  /// @param buffer receives the packet
  /// @param size bytes of `buffer`; must exceed the packet's length, or the packet is lost
  /// @param length receives the packet's bytes
  /// @param type when given, receives the header form of the frame assembled last, which need not
  ///   be the one returned
  /// @return 0; 6 when the port is closed; 0x80004005 when none came within 2000 ms, none was left
  ///   after the wait, or the buffer is too small.
  long ReadPacket(unsigned char* buffer, unsigned long size, unsigned long* length,
                  tagIPOD_PACKET_TYPE* type);

  /// Takes the next received packet, waiting up to `timeout_ms` for one.
  /// @return whether one was taken; a wake-up without a packet counts as none.
  bool GetNextPacket(tagSERIAL_PACKET* packet, unsigned long timeout_ms);

  /// Entry of the read thread; `object` is the CIpodSerial. Exit code 1.
  static unsigned long WINAPI PortReadThread(void* object);

 private:
  friend class CIpodComm;
  friend struct CIpodSerialPeer;  // the tests' look inside

  using Lifeline = ipodcomm::Lifeline;

  CIpodSerial(const CIpodSerial& other, const ipodcomm::LifelineHold& source_held);

  // Opening (opening.cpp)
  void DismissReadThread();
  bool StartReadThread();
  void ClosePort();
  static long FailOpen(const wchar_t* message);

  // Pace (line_io.cpp)
  void ChoosePace(const tagIPOD_CONDUCT& conduct);
  long WriteFrame(const unsigned char* data, unsigned long length);

  // Read thread (read_thread.cpp, and driver_restart.cpp for its end)
  bool BeginReading();
  unsigned long ReadTurn();
  unsigned long BytesToRead(bool* told) const;
  void ReadByteWise();
  void FeedAssembler(const unsigned char* bytes, unsigned long count);
  void GiveUpStalledFrame();
  void ReadGivenUpAgain();
  bool KeepReading();
  void EndReading();
  static void RestartDriver(CIpodSerial* serial, Lifeline& lifeline, HANDLE driver);

  // Packet queue (received_packets.cpp)
  void QueueAssembledFrame();
  bool StoreStaged();
  bool PopPacket(tagSERIAL_PACKET* packet);
  std::list<tagSERIAL_PACKET> CopyOfQueue() const;

  ipodcomm::Shared<HANDLE> port_ = INVALID_HANDLE_VALUE;
  HANDLE read_thread_ = INVALID_HANDLE_VALUE;
  ipodcomm::Shared<HANDLE> packet_event_ = INVALID_HANDLE_VALUE;
  ipodcomm::Shared<std::int32_t> running_ = 0;         // the port is meant to be open
  ipodcomm::Shared<std::int32_t> thread_running_ = 0;  // the read thread is inside its loop
  ipodcomm::FrameAssembler assembler_;                 // used by the read thread only
  std::list<tagSERIAL_PACKET> received_;               // needs no memory while it is empty
  ipodcomm::PacketLimit limit_;                        // of that queue
  tagSERIAL_PACKET staging_ = {};                      // a finished frame on its way into the queue
  mutable ipodcomm::Lock state_lock_;                  // guards the two flags and the queue
  ipodcomm::Shared<HANDLE> driver_ = INVALID_HANDLE_VALUE;  // as ActivateDevice returned it
  ipodcomm::LinePace pace_;
  ipodcomm::QuietPause quiet_pause_;  // the read thread's, where the conduct lets it grow
  ipodcomm::Shared<std::int32_t> byte_wise_ = 0;    // the driver does not tell what it holds
  ipodcomm::Shared<std::uint32_t> bytes_read_ = 0;  // since construction
  ipodcomm::Lock port_lock_;        // held around every read of the thread and every packet written
  std::uint32_t last_byte_ms_ = 0;  // when the read thread, where it rereads, last read any
  std::uint32_t status_ = 0;
  HWND window_ = nullptr;
  ipodcomm::Shared<tagIPOD_PACKET_TYPE> packet_type_ = IPOD_PACKET_TYPE_LARGE;

  ipodcomm::OwnLifeline lifeline_;                  // of the read threads that work on this object
  std::shared_ptr<Lifeline> thread_owner_;          // of the object whose thread read_thread_ is
  std::shared_ptr<ipodcomm::Departure> departure_;  // of that thread
};
