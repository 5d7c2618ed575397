// SPDX-License-Identifier: MIT
// The tests' look inside the exported classes. Private members are called through pointers:
//
//   (session.*CIpodCommPeer::kAddAccCapsToken)(destination, capacity, caps)
#pragma once

#include <memory>

#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/CIpodSerial.h"
#include "ipodcomm/ipod.h"
#include "ipodcomm/ipodserial.h"

struct CIpodSerialPeer {
  static auto& Assembler(CIpodSerial& serial) { return serial.assembler_; }
  static auto& Driver(CIpodSerial& serial) { return serial.driver_; }
  static void ChoosePace(CIpodSerial& serial, const tagIPOD_CONDUCT& conduct) {
    serial.ChoosePace(conduct);
  }
  static void FeedAssembler(CIpodSerial& serial, const unsigned char* bytes, std::size_t count) {
    serial.FeedAssembler(bytes, static_cast<unsigned long>(count));
  }
  static void GiveUpStalledFrame(CIpodSerial& serial) { serial.GiveUpStalledFrame(); }
  static auto& LastByteMs(CIpodSerial& serial) { return serial.last_byte_ms_; }
  static auto& Limit(CIpodSerial& serial) { return serial.limit_; }
  static auto& Port(CIpodSerial& serial) { return serial.port_; }
  static auto& PacketEvent(CIpodSerial& serial) { return serial.packet_event_; }
  static auto& PacketType(CIpodSerial& serial) { return serial.packet_type_; }
  static auto& ReadThread(CIpodSerial& serial) { return serial.read_thread_; }
  static auto& Received(CIpodSerial& serial) { return serial.received_; }
  /// The queue as it is now, taken while the read thread may be adding to it.
  static auto CopyOfReceived(const CIpodSerial& serial) { return serial.CopyOfQueue(); }
  static auto& Running(CIpodSerial& serial) { return serial.running_; }
  static auto& StateLock(CIpodSerial& serial) { return serial.state_lock_; }
  static auto& Status(CIpodSerial& serial) { return serial.status_; }
  static auto& ThreadRunning(CIpodSerial& serial) { return serial.thread_running_; }
  static auto& Window(CIpodSerial& serial) { return serial.window_; }
};

struct CIpodCommPeer {
  using IdentificationSequence = CIpodComm::IdentificationSequence;

  static auto& Browsing(CIpodComm& session) { return session.browsing_; }
  static auto& IdentificationEvent(CIpodComm& session) { return session.identification_event_; }
  static auto& Identity(CIpodComm& session) { return session.identity_; }
  static auto& IpodTransactionIds(CIpodComm& session) {
    return session.outgoing_.ipod_transaction_ids;
  }
  /// One of them, taken while the routing thread may be noting another.
  static auto IpodTransactionId(CIpodComm& session, int lingo) {
    const ipodcomm::LockScope lock(session.transmit_lock_);
    return session.outgoing_.ipod_transaction_ids[lingo];
  }
  /// What its workers hold of it; empty once the last of them has let go.
  static std::weak_ptr<ipodcomm::Lifeline> Lifeline(CIpodComm& session) {
    return session.lifeline_.shared();
  }
  static auto& LogLevel(CIpodComm& session) { return session.log_level_; }
  static auto& Notifications(CIpodComm& session) { return session.notification_; }
  static auto& FailedTextWrites(CIpodComm& session) { return session.failed_text_writes_; }
  static auto& OpenFileHandle(CIpodComm& session) { return session.open_file_handle_; }
  static auto& OwnTransactionId(CIpodComm& session) { return session.outgoing_.own_transaction_id; }
  static auto& Responses(CIpodComm& session) { return session.response_; }
  static auto& Serial(CIpodComm& session) { return session.serial_; }
  static auto& StorageWriteOffset(CIpodComm& session) { return session.storage_write_offset_; }
  static auto& TransactionIdMode(CIpodComm& session) { return session.transaction_id_mode_; }
  static auto& Window(CIpodComm& session) { return session.window_; }

  static constexpr auto kAddAccCapsToken = &CIpodComm::AddAccCapsToken;
  static constexpr auto kAddAccMaxPayloadToken = &CIpodComm::AddAccMaxPayloadToken;
  static constexpr auto kAddAccNameToken = &CIpodComm::AddAccNameToken;
  static constexpr auto kAddAccRFCertToken = &CIpodComm::AddAccRFCertToken;
  static constexpr auto kAddAccStatusToken = &CIpodComm::AddAccStatusToken;
  static constexpr auto kAddAccVersionToken = &CIpodComm::AddAccVersionToken;
  static constexpr auto kAddAudioSampleToken = &CIpodComm::AddAudioSampleToken;
  static constexpr auto kAddAVDelayToken = &CIpodComm::AddAVDelayToken;
  static constexpr auto kAddBundleSeedToken = &CIpodComm::AddBundleSeedToken;
  static constexpr auto kAddEAPMetaToken = &CIpodComm::AddEAPMetaToken;
  static constexpr auto kAddEAPToken = &CIpodComm::AddEAPToken;
  static constexpr auto kAddIdentifyToken = &CIpodComm::AddIdentifyToken;
  static constexpr auto kAddPreferenceToken = &CIpodComm::AddPreferenceToken;
  static constexpr auto kAddTransactionID = &CIpodComm::AddTransactionID;
  static constexpr auto kCommand_SetFIDTokenValue = &CIpodComm::Command_SetFIDTokenValue;
  static constexpr auto kReturn_AccessoryInfo = &CIpodComm::Return_AccessoryInfo;
  static constexpr auto kReturn_SportsDeviceCaps = &CIpodComm::Return_SportsDeviceCaps;
  static constexpr auto kReturn_SportsDeviceVersion = &CIpodComm::Return_SportsDeviceVersion;
  static constexpr auto kRoutePacket = &CIpodComm::RoutePacket;
  static constexpr auto kWriteStorageFileString = &CIpodComm::WriteStorageFileString;
};

struct ipodserialPeer {
  static auto& BaudRate(ipodserial& serial) { return serial.baud_rate_; }
  static auto& DataBits(ipodserial& serial) { return serial.data_bits_; }
  static auto& Parity(ipodserial& serial) { return serial.parity_; }
  static auto& Port(ipodserial& serial) { return serial.port_; }
  static auto& PortName(ipodserial& serial) { return serial.port_name_; }
  static auto& PortState(ipodserial& serial) { return serial.port_state_; }
  static auto& PortTimeouts(ipodserial& serial) { return serial.port_timeouts_; }
  static auto& StopBits(ipodserial& serial) { return serial.stop_bits_; }
  static auto& TimeoutMs(ipodserial& serial) { return serial.timeout_ms_; }
};

struct ipodPeer {
  static auto& Category(ipod& legacy) { return legacy.category_; }
  static auto& Command(ipod& legacy) { return legacy.command_; }
  static auto& ExtendedCommand(ipod& legacy) { return legacy.extended_command_; }
  static auto& ExtendedModel(ipod& legacy) { return legacy.extended_model_; }
  static auto& LastCategory(ipod& legacy) { return legacy.last_category_; }
  static auto& Lingo(ipod& legacy) { return legacy.lingo_; }
  static auto& NameSort(ipod& legacy) { return legacy.name_sort_; }
  static auto& Payload(ipod& legacy) { return legacy.payload_; }
  static auto& PayloadLength(ipod& legacy) { return legacy.payload_length_; }
  static auto& SelfTestStep(ipod& legacy) { return legacy.self_test_step_; }
  static auto& Serial(ipod& legacy) { return legacy.serial_; }
  static auto& StatusText(ipod& legacy) { return legacy.status_text_; }
  static auto& StorageFileHandle(ipod& legacy) { return legacy.storage_file_handle_; }
  static auto& StorageWriteOffset(ipod& legacy) { return legacy.storage_write_offset_; }
  static auto& TopSelectionResult(ipod& legacy) { return legacy.top_selection_result_; }
  static auto& TrackLengthText(ipod& legacy) { return legacy.track_length_text_; }
  static auto& TrackPositionText(ipod& legacy) { return legacy.track_position_text_; }
};
