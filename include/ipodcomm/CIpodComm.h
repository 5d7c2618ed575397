// SPDX-License-Identifier: MIT
// The current interface: one docked iPod, identified, browsed, played and written to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ipodcomm/CIpodSerial.h"
#include "ipodcomm/IpodTypes.h"
#include "ipodcomm/detail/EarlierQuestions.h"
#include "ipodcomm/detail/KeepGoing.h"
#include "ipodcomm/detail/Lifeline.h"
#include "ipodcomm/detail/Lock.h"
#include "ipodcomm/detail/PacketQueue.h"
#include "ipodcomm/detail/RecordStream.h"
#include "ipodcomm/detail/Shared.h"
#include "ipodcomm/platform.h"

namespace ipodcomm {
class FrameBytes;
class OwnAnswers;
struct IpodRequest;
enum class AnswerVerdict : std::uint8_t;
enum class RequestReceiver : std::uint8_t;
}  // namespace ipodcomm

/// A session with the docked iPod.
///
/// The host constructs it, calls Open, SetModel and SetIDPSEnable, then
/// Command_IdentifyDeviceLingos once before any other command. Unless said otherwise an operation
///  - returns 1 for success and 0 for failure, and leaves its outputs untouched when it fails;
///  - runs on the calling thread and blocks until the iPod has answered or three attempts have
///    passed without an answer. An attempt ends after a second without any packet, so packets that
///    are not the answer prolong it;
///  - needs every output pointer that its comment does not call optional.
/// Numbers on the wire are big-endian. Frames are shown from the command on: `0018 cc` is the
/// command 0x0018 with one byte of data, before framing and transaction identifier.
///
/// A host makes one call at a time. Only these may run on other threads meanwhile: GetPlayStatus,
/// IsOpen, SetModel and WriteCommand. No exception leaves an operation, not even when memory is
/// out: it fails then. A session constructed without memory has no worker threads, so its commands
/// go unanswered.
///
/// Two worker threads sort what arrives and answer the iPod's own requests. A packet that they
/// cannot store because memory is out is dropped and logged. The threads outlive the session and
/// let go of it when it is destroyed, which may happen at any moment and takes under 100 ms.
///
/// A copy shares its source's handles and starts no thread. Whichever of the two is closed or
/// destroyed first closes them for both. The other may then be used and destroyed without a crash
/// or a hang; destroying it may take a second. But Windows uses handle values again: there the
/// other's handles may by then be those of another port or event of the process, which it would use
/// and close. So on Windows nothing may be opened between the end of the one and the end of the
/// other.
class IPODCOMM_API CIpodComm {
 public:
  /// Starts the worker threads, then opens the port once, sends a wake-up byte and closes it again.
  /// Takes 20 ms and the time that the driver needs. Closing restarts the serial driver, which goes
  /// on for about a second after the constructor has returned: an Open in that second may fail, or
  /// lose the port to the restart. A port that cannot be opened here is logged and otherwise
  /// hidden; Open's result shows it.
  CIpodComm();
  /// A copy shares the handles of `other`; see the class.
  CIpodComm(const CIpodComm& other);
  /// The same. What this session had open is not closed.
  CIpodComm& operator=(const CIpodComm& other);
  /// Closes the port and lets go of the worker threads, at any moment, in less than 100 ms.
  ~CIpodComm();

  /// @name Session (session/)
  /// @{

  /// Empties the queues, starts the own transaction identifier at 0 and opens "COM2:". On Linux
  /// that is the device in the environment variable IPODCOMM_COM2, else /dev/ttyS1.
  /// @return 0 or CIpodSerial::Open's code.
  long Open();
  /// Closes the port. The Sports-supported flag goes off.
  void Close();
  /// Non-zero after a successful Open, until Close.
  int IsOpen();
  /// Stores the host's window; nothing is posted to it. Always 1.
  int SetWindowsHandle(HWND window);
  /// Keeps the host's level. Nothing reads it.
  void SetLogLevel(int level);

  /// Copies the next answer and removes it from its queue, waiting up to 1000 ms for one.
  /// @return whether there was one.
  bool GetNextReadPacket(tagSERIAL_PACKET* packet);
  /// The same of what the iPod sent unasked.
  bool GetNextNotificationPacket(tagSERIAL_PACKET* packet);
  /// Command of the next answer, which stays queued; 0xFFFF when none comes within 1000 ms.
  unsigned short PeekNextReadPacket();

  /// Chooses how the session treats the line and the iPod's answers; see tagIPOD_CONDUCT. Holds
  /// from the next command on, also for sessions that are opened later. The host's thread, between
  /// two commands.
  /// @return 0, and nothing changes, for null, a pause over 10 s, a pause of 0 after reads that
  /// bring nothing or fail, bytes per read outside 1 to 1024, or a flag that is neither 0 nor 1.
  int SetConduct(const tagIPOD_CONDUCT* conduct);
  /// Tells the conduct, IPOD_CONDUCT_FIELD until another is chosen. 0 for null.
  int GetConduct(tagIPOD_CONDUCT* conduct);

  /// Gives the host a say in every command. `keep_going` is called with `context` before each
  /// attempt and every 50 ms of a wait for an answer, on the thread that makes the call; a false
  /// ends the command within 100 ms, unanswered. It goes on saying false until the call has
  /// returned: a member that makes several exchanges asks before each, and sends nothing meanwhile.
  /// An answer that comes later is not taken for that to the next command, which waits for it, two
  /// seconds at most.
  ///
  /// The callback calls no member of the session and throws nothing. Command_IdentifyDeviceLingos
  /// asks it beside its own, and that one as often. GetNextNotificationPacket and the worker
  /// threads never ask. The host's thread, between two commands; null, the default, ends it.
  void SetKeepGoing(bool (*keep_going)(void* context), void* context);

  /// How many received packets were dropped since construction because nobody took them: under a
  /// robust conduct a queue holds 1024, and as many more as records have been asked for (65536 at
  /// most), and then loses the oldest. The default conduct has no limit. Any thread.
  unsigned long GetDroppedPackets();

  /// What play-status notifications have reported so far (see SetNotification). Any thread; does
  /// not block. Always 1.
  int GetPlayStatus(tagIPOD_PLAY_STATUS* status);

  /// Entry of the worker thread that parts answers from what the iPod sends unasked; `object` is
  /// the CIpodComm. It never returns.
  static unsigned long WINAPI ReadPacketThread(void* object);
  /// The same of the worker thread that follows the play status and answers the iPod's requests.
  static unsigned long WINAPI NotificationThread(void* object);
  /// @}

  /// @name Commands and answers (session/)
  /// @{

  /// Frames a command and sends it. More than 255 bytes from the lingo on, to which the
  /// length byte counts, are refused. @return IPOD_COMM_OK or IPOD_COMM_NO_ANSWER (not written).
  tagIPOD_COMM_ERROR WriteCommand(tagIPOD_WRITE_PARAMS* write);
  /// Reads answers until the expected one is found or none has come for 1000 ms. It does not know
  /// what was asked, so it takes an answer for the expected one by its command, under every
  /// conduct.
  /// @return the last decoder's value, IPOD_COMM_NO_ANSWER when nothing came.
  tagIPOD_COMM_ERROR ReadCommand(tagIPOD_READ_PARAMS* read);
  /// Sends a command and reads its answer, up to `read->retries` times. A Simple Remote command has
  /// no answer and succeeds once it is written.
  tagIPOD_COMM_ERROR WriteReadCommand(tagIPOD_WRITE_PARAMS* write, tagIPOD_READ_PARAMS* read);
  /// Tells what came of the command that WriteReadCommand, or an operation by it, sent last: what
  /// an operation's 0 does not say, whether the iPod refused or stayed silent. An operation that
  /// sends nothing, one of the Simple Remote lingo, which has no answer, and records asked for
  /// together leave it as it was. 0 for null.
  int GetLastExchange(tagIPOD_EXCHANGE* exchange);

  /// Decides whether a frame of the General lingo is the awaited answer, and copies its data to
  /// `read`. The decoder, not the frame's lingo byte, decides how wide the command is. Behind a
  /// pending ACK this one reads the next packet, and copies an ACK over `frame`, as far as `length`
  /// goes.
  /// @param frame from its sync byte on
  /// @param length bytes of `frame`
  /// @param read what is expected, and what came
  /// @param keep_reading optional; set when the reader shall read the next frame
  /// @return IPOD_COMM_OK, _NO_ANSWER or _UNEXPECTED
  tagIPOD_COMM_ERROR ProcessLingoGeneralReadCommand(unsigned char* frame, unsigned long length,
                                                    tagIPOD_READ_PARAMS* read, int* keep_reading);
  /// The same for a frame of the Display Remote lingo.
  tagIPOD_COMM_ERROR ProcessLingoDisplayRemoteReadCommand(unsigned char* frame,
                                                          unsigned long length,
                                                          tagIPOD_READ_PARAMS* read,
                                                          int* keep_reading);
  /// The same for a frame of the Extended Interface, whose commands have two bytes.
  tagIPOD_COMM_ERROR ProcessLingoExtendedReadCommand(unsigned char* frame, unsigned long length,
                                                     tagIPOD_READ_PARAMS* read, int* keep_reading);
  /// The same for a frame of the Sports lingo.
  tagIPOD_COMM_ERROR ProcessLingoSportsReadCommand(unsigned char* frame, unsigned long length,
                                                   tagIPOD_READ_PARAMS* read, int* keep_reading);
  /// The same for a frame of the Storage lingo.
  tagIPOD_COMM_ERROR ProcessLingoStorageReadCommand(unsigned char* frame, unsigned long length,
                                                    tagIPOD_READ_PARAMS* read, int* keep_reading);
  /// @}

  /// @name Identification (identify/)
  /// @{

  /// Makes the iPod accept the accessory: by tokens (IDPS) when enabled, else, or when the iPod
  /// does not take them, by IdentifyDeviceLingoes. Takes seconds; up to half a minute on a bad
  /// line.
  /// @param context handed to `keep_going`
  /// @param flag non-zero announces intermittent high power, 0 low power
  /// @param result optional; how the iPod was identified, or why it was not
  /// @param keep_going optional; asked with `context` between the steps, false abandons the
  /// sequence. Under a robust conduct it is asked before every attempt and pause, and at least
  /// every 100 ms, so that false ends the sequence at once
  /// @return non-zero when the accessory is identified.
  int Command_IdentifyDeviceLingos(int flag, tagIPOD_IDENTIFY_RESULT* result,
                                   bool (*keep_going)(void* context), void* context);
  /// Tells what the last identification asked and what came, however it ended: which versions an
  /// iPod told that is too old, with which status it refused, or that nothing came at all. Empty
  /// before the first. 0 for null.
  int GetIdentifyReport(tagIPOD_IDENTIFY_REPORT* report);
  /// Whether identification tries tokens first. Off after construction; identification turns it off
  /// when the iPod does not know tokens.
  void SetIDPSEnable(int enable);
  /// What was chosen, or what identification has made of it.
  int GetIDPSEnable();
  /// Non-zero once identification has found that the iPod supports Sports.
  int SupportsSports();

  /// Copies the host's description of the accessory into the session; null is ignored.
  void SetAccessoryInfo(tagIPOD_ACCESSORY_INFO* info);
  /// Sets the accessory's model number, sent in tokens and on request. Any thread.
  void SetModel(std::string model);
  /// @}

  /// @name General lingo requests (identify/general_requests.cpp)
  /// @{

  /// Asks for the remote user-interface mode: `03`, ACK with status 0 for 03.
  int Command_RequestRemoteUIMode();
  /// Enters it: `37 01`, or on anything but ACK 0 for it the older `05`.
  int Command_EnterRemoteUIMode();
  /// Reads the iPod's name: `07`, answer `08 name`. @param capacity characters of `name`
  /// @param name receives it; empty when the iPod refuses
  int Command_RequestIpodName(wchar_t* name, unsigned long capacity);
  /// Reads model identifier and number: `0D`, answer `0E iiiiiiii text`.
  /// @param capacity characters of `text`
  /// @param model_id optional. @param text optional, of `capacity` characters
  int Command_RequestIpodModelNum(unsigned long* model_id, wchar_t* text, unsigned long capacity);
  /// Chooses event notifications: `49 mask(8)`. The result is reversed: 0 after a clean exchange, 1
  /// only when the exchange failed and the reply buffer's status is 0.
  int Command_SetEventNotification(unsigned char* mask);
  /// Reads the supported event notifications: `4F`, answer `51 mask(8)`.
  int Command_GetEventNotification(unsigned char* mask);
  /// Reads a lingo's protocol version: `0F lingo`, answer `10 lingo major minor`. The outputs are
  /// optional. The session remembers the versions of the lingoes that it uses.
  int Command_RequestLingoProtocolVersion(unsigned char lingo, unsigned char* major,
                                          unsigned char* minor);
  /// The same into a record; 0 for a null one, without sending.
  int Command_RequestLingoProtocolVersion(unsigned char lingo, tagIPOD_VERSION* version);
  /// Reads the line's maximum payload: `11`, answer `12 ssss`.
  int Command_RequestMaxPayloadSize();
  /// The maximum payload read last, in bytes; 0 when none was.
  unsigned short GetMaxPayloadSize();
  /// Cancels a command: makes `transaction_id` the session's own identifier, sends `50` and
  /// drops queued answers up to the next ACK. Always 1.
  int Command_CancelCommand(unsigned short transaction_id);

  /// Finds the iPod's colour by its model number. IPOD_COLOR_NONE for an unknown model.
  int GetIPodColor(tagIPOD_COLOR* color);
  /// The same for a model number that is known already; sends nothing.
  static tagIPOD_COLOR ColorOfModel(const wchar_t* model);
  /// @}

  /// @name Browsing (media/browsing.cpp)
  /// @{

  /// Back to the top of the database: `0016`, ACK.
  int Command_ResetDBSelection();
  /// Back to the top of a hierarchy (1 audio, 2 video): `003B hh`, ACK.
  int Command_ResetDBSelectionHeirarchy(unsigned char hierarchy);
  /// Counts a category's records: `0018 cc`, answer `0019 nnnnnnnn`.
  int Command_GetNumberCategorizedDBRecords(unsigned char category, unsigned long* count);
  /// Asks for `count` names from `start` on: `001A cc ssssssss nnnnnnnn`. They arrive one by one
  /// and are read with GetNextCategorizedRecord, all of them before anything else is asked.
  /// @param start index of the first record
  /// @param count how many; what is beyond the category's end does not come
  /// @param category 255 for the current one
  /// @return the own transaction identifier with which this request went out, or would have if it
  /// carried one; 0 when it was not written.
  unsigned long Command_RetrieveCategorizedDatabaseRecords(unsigned long start, unsigned long count,
                                                           unsigned char category);
  /// Reads the next name asked for: `001B iiiiiiii name`. Clears `name` first; a longer name is
  /// cut.
  /// @param name empty after a failure
  /// @param chars characters of `name`
  int GetNextCategorizedRecord(wchar_t* name, unsigned long chars);
  /// The same, with the index that the iPod gives the record. Under a robust conduct the records
  /// come in the order of their indexes, each once: what is missing, damaged or doubled is noticed
  /// and asked for again, and a call beyond the records asked for fails without waiting.
  int GetNextCategorizedRecord(unsigned long* index, wchar_t* name, unsigned long chars);
  /// Reads one name. Does not clear `name` before.
  int Command_RetrieveCategorizedDatabaseRecord(wchar_t* name, unsigned long chars,
                                                unsigned long index, unsigned char category);
  /// Selects a record: `0017 cc iiiiiiii`, ACK. A refusal is logged. Selecting a track plays it.
  int Command_SelectDBRecord(unsigned char category, unsigned long index);
  /// The same with a sort order: `0038 cc iiiiiiii ss`, ACK.
  int Command_SelectSortDBRecord(unsigned char category, unsigned long index, unsigned char sort);

  /// Returns to the top (hierarchy 0), or to that of a hierarchy (1 audio, 2 video), and enters a
  /// category.
  /// @param category IPOD_CATEGORY_... of ipod.h
  /// @param count optional; the category's records, 0 after a failure
  /// @param hierarchy 0, 1 or 2; any other fails and sends nothing
  int SelectTop(unsigned char category, unsigned long* count, unsigned char hierarchy);
  /// Selects record `index` of the selection category and enters `category`; of a track list it
  /// starts the track instead and stays.
  /// @param category of the list to enter, IPOD_CATEGORY_...
  /// @param count the records of `category`, 0 when staying and after a failure
  /// @param index from 0
  int Select(unsigned char category, unsigned long* count, unsigned long index);
  /// Selects a record without moving, to start a track. Prints a line on standard output, "Select
  /// iPod track category 5, index 0", for service staff who watch it; a host whose standard output
  /// is for something else takes the form above or Command_SelectDBRecord, which print nothing, or
  /// takes the stream for itself (docs/traps.md).
  int Select(unsigned char category, unsigned long index);
  /// @}

  /// @name Playback (media/playback.cpp)
  /// @{

  /// Plays, pauses, stops, skips: `0029 code` (IPOD_PLAYCONTROL_...), ACK. A refusal is logged.
  ///
  /// IPOD_PLAYCONTROL_PLAY and _PAUSE need an iPod of Extended Interface 1.13; an older one
  /// commonly acknowledges and ignores them. Under a robust conduct they are sent only to an iPod
  /// that has told such a version (identification by tokens asks for none;
  /// Command_RequestLingoProtocolVersion does). For any other the state is read, and
  /// IPOD_PLAYCONTROL_PLAYPAUSE sent only where it has to change: 1 then also means that there was
  /// nothing to do.
  ///
  /// Under a robust conduct a code that toggles or skips is sent once, never again when its ACK
  /// stays away: a failure then does not say that nothing happened.
  int Command_PlayControl(unsigned char code);
  /// Presses the buttons of a mask (IPOD_BUTTON_CONTEXT_MASK_...), 0 releases them: Simple Remote
  /// `00` and one to four bytes, least significant first. @return 0 for success.
  tagIPOD_COMM_ERROR Command_SimplePlayControl(unsigned long buttons);
  /// Reads the player's state (IPOD_PLAYERSTATE_...), track length and position in milliseconds:
  /// `001C`, answer `001D llllllll pppppppp ss`.
  int Command_GetPlayStatus(unsigned char* state, unsigned long* length, unsigned long* position);
  /// Reads the playing track's index in the now-playing list: `001E`, answer `001F iiiiiiii`.
  int Command_GetCurrentPlayingTrackIndex(unsigned long* index);
  /// Reads the length of a track of the database in whole seconds: `0040 iiiiiiii 00000001 40`,
  /// answer `0041 ...`. Fails without asking when identification did not find that the
  /// iPod supports it.
  int Command_RetrieveDBTrackTime(unsigned long track, unsigned long* seconds);
  /// Chooses play-status notifications (IPOD_PLAY_STATUS_BIT_...): `0026 mmmmmmmm`, or, when that
  /// is refused, `0026 01` (`00` for mask 0). GetPlayStatus gives what they report.
  ///
  /// The iPod reports changes only. What it is doing when the notifications begin is not reported:
  /// a host reads it once (Command_GetPlayStatus, Command_GetCurrentPlayingTrackIndex).
  int SetNotification(unsigned long mask);
  /// Reads shuffle (0 off, 1 tracks, 2 albums): `002C`, answer `002D mm`. `mode` is optional.
  int Command_GetShuffle(unsigned long* mode);
  /// Sets shuffle: `002E mm rr`, ACK. @param keep 0 restores the user's setting on detach
  /// @param mode 0 off, 1 tracks, 2 albums
  int Command_SetShuffle(unsigned long mode, int keep);
  /// Sets repeat (0 off, 1 one track, 2 all): `0031 mm rr`, ACK.
  /// @param mode 0 off, 1 one track, 2 all
  /// @param restore non-zero restores the user's setting on detach: the reverse of
  /// Command_SetShuffle
  int Command_SetRepeat(unsigned char mode, int restore);
  /// Reads what is playing: its index, whether it is a video's or other flagged track (the top bit
  /// of its capabilities), title, artist and album. Every output is optional; capacities are
  /// characters. A text that cannot be read stays as it was. @return the result of reading the
  /// index.
  int GetPlayInfo(unsigned long* index, int* flag, wchar_t* title, unsigned long title_chars,
                  wchar_t* artist, unsigned long artist_chars, wchar_t* album,
                  unsigned long album_chars);
  /// @}

  /// @name Track information and preferences (media/track_info.cpp, preferences.cpp)
  /// @{

  /// Reads one kind of information about a track: Display Remote `12 tt iiiiiiii cccc`, answer `13`
  /// into `buffer`, at most `size` bytes.
  int Command_GetIndexedPlayingTrackInfo(unsigned char type, unsigned long track,
                                         unsigned short chapter, unsigned char* buffer,
                                         unsigned long size);
  /// Reads the title of a track of the now-playing list as UTF-8: `0020 iiiiiiii`, answer `0021
  /// text`. Cut to `size` bytes; a cut text has no terminator.
  int Command_GetIndexedPlayingTrackTitle(unsigned long track, unsigned char* buffer,
                                          unsigned long size);
  /// The same of its artist: `0022 iiiiiiii`, answer `0023 text`.
  int Command_GetIndexedPlayingTrackArtistName(unsigned long track, unsigned char* buffer,
                                               unsigned long size);
  /// The same of its album: `0024 iiiiiiii`, answer `0025 text`.
  int Command_GetIndexedPlayingTrackAlbumName(unsigned long track, unsigned char* buffer,
                                              unsigned long size);
  /// Reads a preference (IPOD_PREFERENCE_...): `29 cc`, answer `2A cc ss`. `setting` is optional.
  /// Needs General lingo 1.05 or later; fails without asking an older iPod, or one whose version is
  /// not known.
  int Command_GetPreference(unsigned char preference_class, unsigned char* setting);
  /// Sets a preference until the accessory is detached: `2B cc ss 01`, ACK. Same condition.
  int Command_SetPreference(unsigned char preference_class, unsigned char setting);
  /// @}

  /// @name Files on the iPod (workout/storage.cpp)
  /// @{

  /// Reads the iPod's storage capabilities: Storage `01`, answer `02` with 22 bytes. Every output
  /// is optional.
  /// @param major, minor version of the Storage lingo
  /// @param total_space bytes, exact to 64 KiB only: the two low bytes are not the iPod's
  /// @param max_file_size bytes. @param max_write_size bytes that one write may carry
  int Command_StorageGetIpodCaps(__int64* total_space, unsigned long* max_file_size,
                                 unsigned short* max_write_size, unsigned char* major,
                                 unsigned char* minor);
  /// Reads the free space in bytes, exact to 64 KiB only: `10`, answer `11 ssssssssssssssss`.
  int Command_GetiPodFreeSpace(__int64* free_space);
  /// Opens a feature file and starts the write offset over, whether it can be opened or not:
  /// `12 ff oooooooo data`, answer `04 handle`. A failure is told to the debug output.
  /// @param feature_type IPOD_OPENIPODFEATUREFILE_FEATURE_...
  /// @param length bytes of `data`
  /// @param handle receives the iPod's number for the file, for writing and closing
  /// @param options IPOD_OPENIPODFEATUREFILE_OPTIONMASK_...
  /// @param data what the iPod appends when the file is closed, `length` bytes
  int Command_OpeniPodFeatureFile(unsigned char feature_type, unsigned long options,
                                  unsigned char* data, unsigned long length, unsigned char* handle);
  /// Writes `length` bytes at the write offset in one frame: `07 oooooooo hh data`, ACK `00` with
  /// status 0. The offset moves on by `length` even when the write fails, so a failed write leaves
  /// a gap. More than 248 bytes (246 with transaction identifiers) fit no frame and are refused
  /// without being sent.
  int Command_WriteiPodFileData(unsigned char handle, unsigned char* data, unsigned long length);
  /// Closes a file: `08 hh`, ACK `00` with status 0.
  int Command_CloseiPodFile(unsigned char handle);
  /// Tells the accessory's storage capabilities: Storage `82`, 22 bytes. Not awaited. The write
  /// offset of the open file starts over.
  int Command_ST_RetAccessoryCaps(unsigned char major, unsigned char minor);
  /// @}

  /// @name The user's data (workout/sports.cpp)
  /// @{

  /// Reads the iPod's Sports capabilities: Sports `83`, answer `84 mmmm ee`. Both are optional.
  /// @param extra the answer's byte `ee`
  /// @param caps IPOD_SPORTS_GETIPODCAPS_MASK_...: workouts can be logged, user's data are kept
  int Command_SportsGetIpodCaps(unsigned short* caps, unsigned char* extra);
  /// Reads the user's data, each as far as it is asked for: `88 tt`, answer `89`. Asks for the
  /// capabilities first and fails when the iPod keeps no user's data. The first failure ends it;
  /// what was read before stays.
  /// @param flag optional; data type 2: 1 when the iPod's value is 2, else 0
  /// @param weight optional; data type 3, in the iPod's unit
  /// @param value optional; data type 4
  int Command_GetUserData(int* flag, unsigned short* weight, unsigned char* value);
  /// Sets the user's weight, in the iPod's unit: `8A 03 wwww`, ACK `80` with status 0. Asks for the
  /// capabilities first and fails when the iPod keeps no user's data.
  int Command_SetUserWeight(unsigned short weight);
  /// @}

  /// @name Workout document (workout/workout.cpp)
  /// A workout is logged as a "gymData" document: started once, an interval recorded at each of its
  /// events, finished once. Units are the document's: kilograms, kilometres or floors,
  /// kilocalories, seconds, beats per minute; nothing is converted. Fractions are rounded to the
  /// digits shown, a half to the even digit, and have a point whatever the host's locale; pace, spm
  /// and rpm are cut to whole numbers, the nearest of 32 bits (0 for no number).
  ///
  /// Every text goes out as it is given, in UTF-8: a host whose names may hold `<` or `&` hands
  /// them through ipodcomm::DocumentText first. A line or block is one write of at most 512 bytes.
  /// One that fits no frame (see Command_WriteiPodFileData) or is refused is reported on the debug
  /// output and leaves a gap.
  /// @{

  /// Checks that the iPod can log workouts (Sports and Storage capabilities, 128 bytes a write, 5
  /// MiB free), opens the document and writes its header, a line at a time. Whether the lines were
  /// written does not count.
  /// @param equipment one that is unknown has no element
  /// @param weight_kg of the user
  /// @param manufacturer_id, manufacturer_name, model, serial_number of the equipment
  /// @return 1 when the document was opened. Missing capabilities and too small a write size are
  /// told to the debug output.
  int Sports_StartWorkout(const wchar_t* manufacturer_id, const wchar_t* manufacturer_name,
                          const wchar_t* model, const wchar_t* serial_number,
                          tagIPOD_EQUIPMENT_TYPE equipment, double weight_kg);
  /// Appends an interval, cut to 511 characters. An unknown event is left out. Instead of an
  /// unknown distance or speed the line before it is written again. Nothing checks that a workout
  /// was started.
  /// @param event what happened
  /// @param distance_type, speed_type what `distance` and `speed` count
  /// @param speed seconds per kilometre, or steps or revolutions per minute
  /// @param incline per cent
  /// @param seconds, kcal, distance since the start
  /// @param bpm 0 for none. @param level -1 for none
  /// @return 1 when it was written.
  int Sports_IntervalWorkout(tagIPOD_INTERVAL_TYPE event, int seconds, double kcal, double distance,
                             tagIPOD_DISTANCE_TYPE distance_type, double speed,
                             tagIPOD_SPEED_TYPE speed_type, double incline, int bpm, int level);
  /// Appends the summary and closes the document, to which the iPod adds
  /// its end. The speed's element follows `distance_type`: pace for kilometres, spm for floors.
  /// @param seconds, kcal, distance of the whole workout
  /// @param distance_type what `distance` counts
  /// @param speed the mean: seconds per kilometre, or steps per minute
  /// @param speed_type ignored
  /// @param bpm 0 for none
  /// @return 1 when the document was closed.
  int Sports_FinishWorkout(int seconds, double kcal, double distance,
                           tagIPOD_DISTANCE_TYPE distance_type, double speed,
                           tagIPOD_SPEED_TYPE speed_type, int bpm);
  /// Tells which file the workout was started in and whether anything is missing from it, which the
  /// results of starting and finishing do not say. Sends nothing. Always 1.
  int GetWorkoutFile(tagIPOD_WORKOUT_FILE* file);
  /// @}

 private:
  friend struct CIpodCommPeer;  // the tests' look inside

  class IdentificationSequence;  // identify/identification_sequence.h
  struct PlayStatus;
  struct Outgoing;
  struct ModelNumber;

  // Session (session/session.cpp)
  static HANDLE NewEvent();
  HANDLE StartWorker(unsigned long(WINAPI* entry)(void*));
  void RunWorker(void (CIpodComm::*turn)());
  bool SendWakeUpByte();
  void LetWorkersGo();
  void CopySession(const CIpodComm& other);
  PlayStatus CopyOfPlayStatus() const;
  Outgoing CopyOfOutgoing() const;

  // Worker threads (session/packet_routing.cpp, session/notifications.cpp)
  void ReadPacketThread();
  void NotificationThread();
  void RouteNextPacket();
  void RoutePacket(const tagSERIAL_PACKET& packet);
  void HandleNextNotification();
  void StoreRequestId(std::uint8_t lingo, std::uint16_t transaction_id);
  void StorePlayStatus(const ipodcomm::FrameBytes& data);

  // What the iPod asks (session/ipod_requests.cpp)
  void MeetRequest(tagSERIAL_PACKET& packet, ipodcomm::RequestReceiver receiver);
  void ReactTo(const ipodcomm::IpodRequest& request, unsigned char* data, std::uint32_t length);

  // Frames (session/transmit.cpp)
  tagIPOD_COMM_ERROR Send(const tagIPOD_WRITE_PARAMS& write, std::uint16_t* own_transaction_id);
  std::uint32_t BuildFrame(const tagIPOD_WRITE_PARAMS& write, unsigned char* frame,
                           std::uint16_t* own_transaction_id);
  void AddTransactionID(unsigned char* destination, unsigned char lingo, unsigned short command);
  void SetOwnTransactionId(std::uint16_t id);

  // Decoding (session/decoding.cpp)
  bool AcceptAnswer(std::uint8_t lingo, const unsigned char* bytes, unsigned long length,
                    tagIPOD_READ_PARAMS* read, int* keep_reading) const;
  bool AwaitPendingData(const tagSERIAL_PACKET& packet);

  // Attempts and what came of them (session/answer_and_retry.cpp)
  tagIPOD_COMM_ERROR ExchangeByCommand(const tagIPOD_WRITE_PARAMS& write, ipodcomm::OwnAnswers* own,
                                       tagIPOD_READ_PARAMS* read);
  bool Attempt(const tagIPOD_WRITE_PARAMS& write, ipodcomm::OwnAnswers* own);
  void NoteExchange(const ipodcomm::OwnAnswers& own, std::uint32_t took_ms);

  // The host's say (session/hosts_say.cpp)
  ipodcomm::KeepGoing& HostToAsk();
  bool MayGoOn();
  bool StoppedByHost() const;
  void AwaitStopped();

  // The robust conduct (session/robust_exchange.cpp)
  tagIPOD_COMM_ERROR ExchangeRobustly(const tagIPOD_WRITE_PARAMS& write, ipodcomm::OwnAnswers* own,
                                      tagIPOD_READ_PARAMS* read);
  tagIPOD_COMM_ERROR AttemptRobustly(const tagIPOD_WRITE_PARAMS& write, ipodcomm::OwnAnswers* own,
                                     tagIPOD_READ_PARAMS* read, std::uint32_t* arrived);
  void AwaitQuiet(const tagIPOD_WRITE_PARAMS& question);
  void PassOver(tagSERIAL_PACKET& packet);
  ipodcomm::AnswerVerdict AwaitOwnAnswer(ipodcomm::OwnAnswers* own, tagIPOD_READ_PARAMS* read);
  bool AwaitPacket(std::uint32_t silence_ms, tagSERIAL_PACKET* packet);

  // Exchanges that many operations share (session/exchange.cpp)
  bool Exchange(tagIPOD_WRITE_PARAMS write, tagIPOD_READ_PARAMS* read);
  bool Exchange(tagIPOD_WRITE_PARAMS write, tagIPOD_READ_PARAMS read);
  bool ExchangeForGeneralAck(tagIPOD_WRITE_PARAMS write);
  bool ExchangeForExtendedAck(tagIPOD_WRITE_PARAMS write, unsigned char* status);
  bool ExchangeForLoggedAck(tagIPOD_WRITE_PARAMS write, const wchar_t* function,
                            const wchar_t* refusal);

  // Identification (identify/identification_sequence.cpp) and its tokens (identify/tokens.cpp)
  void ForgetIdentification();
  unsigned long AddIdentifyToken(unsigned char* destination, unsigned long capacity,
                                 tagIdentifyToken& token);
  unsigned long AddAccCapsToken(unsigned char* destination, unsigned long capacity,
                                unsigned char* caps);
  unsigned long AddAccVersionToken(unsigned char* destination, unsigned long capacity,
                                   unsigned char info_type, unsigned char* version);
  unsigned long AddAccMaxPayloadToken(unsigned char* destination, unsigned long capacity, int size);
  unsigned long AddAccStatusToken(unsigned char* destination, unsigned long capacity,
                                  unsigned char* status);
  unsigned long AddAccRFCertToken(unsigned char* destination, unsigned long capacity,
                                  unsigned char* cert);
  unsigned long AddPreferenceToken(unsigned char* destination, unsigned long capacity,
                                   unsigned char class_id, unsigned char setting);
  unsigned long AddEAPMetaToken(unsigned char* destination, unsigned long capacity,
                                unsigned char protocol_index, unsigned char metadata);
  unsigned long AddAVDelayToken(unsigned char* destination, unsigned long capacity,
                                unsigned char unused, unsigned long delay);
  unsigned long AddAccNameToken(unsigned char* destination, unsigned long capacity,
                                unsigned char info_type, std::string name);
  unsigned long AddEAPToken(unsigned char* destination, unsigned long capacity,
                            unsigned char protocol_index, std::string protocol);
  unsigned long AddBundleSeedToken(unsigned char* destination, unsigned long capacity,
                                   std::string seed);
  unsigned long AddAudioSampleToken(unsigned char* destination, unsigned long capacity,
                                    std::vector<unsigned long> sample_rates);
  bool Command_SetFIDTokenValue(unsigned char* payload, unsigned long length);

  // Answers to the iPod (identify/accessory_info.cpp, workout/sports.cpp, workout/storage.cpp)
  void Return_AccessoryInfo(unsigned char* request, unsigned long length);
  int ReturnStorageCaps(unsigned char major, unsigned char minor);
  void Return_SportsDeviceVersion();
  void Return_SportsDeviceCaps();
  ModelNumber Model() const;

  // Workout (workout/storage.cpp, workout/sports.cpp, workout/workout.cpp)
  bool ExchangeFileData(std::uint16_t command, const unsigned char (&head)[5],
                        const unsigned char* data, unsigned long length, tagIPOD_READ_PARAMS read);
  int WriteStorageFileString(const wchar_t* text);
  bool KeepsUserData();
  bool GetUserDataItem(unsigned char type, unsigned char* reply, std::size_t size);
  bool AcceptsWorkouts();

  // The conduct (session/conduct.cpp)
  void LimitQueues();

  // Records (media/record_stream.cpp)
  bool AskForRecords(std::uint16_t* transaction_id);
  bool ReadNextRecord(tagIPOD_READ_PARAMS* read);
  bool AwaitNextRecord(bool stop_at_gap, tagIPOD_READ_PARAMS* read);

  // Playing and pausing (media/playback.cpp)
  bool KnowsPlayAndPause() const;
  int SendPlayControl(unsigned char code);
  int PlayOrPause(bool play);

  // Browsing and track texts (media/browsing.cpp, media/track_info.cpp)
  unsigned char CategoryOnWire(unsigned char category) const;
  int SelectRecord(unsigned char category, unsigned long index);
  void EnterCategory(unsigned char category);
  int GetTrackText(std::uint16_t command, unsigned long track, unsigned char* buffer,
                   unsigned long size);
  using TrackTextRequest = int (CIpodComm::*)(unsigned long, unsigned char*, unsigned long);
  void GetPlayingText(TrackTextRequest request, unsigned long track, wchar_t* text,
                      unsigned long chars);

  // Lingo versions (identify/general_requests.cpp, media/preferences.cpp)
  bool KnowsPreferences() const;
  tagIPOD_VERSION* LingoVersion(unsigned char lingo);

  static constexpr int kLingoSlots = 13;

  /// What play-status notifications have reported, in the session's order of fields.
  struct PlayStatus {
    std::uint32_t state;
    std::uint32_t position_s;
    std::uint32_t unused;  // no notification writes it
    std::uint32_t track_index;
    std::uint32_t tick_ms;
  };
  /// The accessory's model number. One that is longer fits neither a token nor a frame, so the rest
  /// of it is not kept.
  struct ModelNumber {
    static constexpr std::size_t kMaxChars = 520;

    std::string_view text() const { return {chars, length}; }

    char chars[kMaxChars + 1];  // with a terminator
    std::size_t length;
  };
  /// What goes out: the frame being built and the facts that it is built from.
  struct Outgoing {
    unsigned char frame[1024];
    ipodcomm::Shared<std::uint16_t> own_transaction_id = 0;  // of the next frame
    std::uint16_t ipod_transaction_ids[kLingoSlots];         // of the last request, by lingo
    ModelNumber model;
  };
  /// What identification has found out and the host has set. Used by the host's thread only.
  struct Identity {
    std::int32_t idps_enabled;
    std::int32_t idps_done;
    std::int32_t sports_supported;
    std::int32_t general_option;
    std::int32_t start_carries_id;     // StartIDPS is answered only with an identifier
    std::int32_t database_track_info;  // the Extended Interface option
    tagIPOD_VERSION general;
    tagIPOD_VERSION display_remote;
    tagIPOD_VERSION extended;
    tagIPOD_VERSION sports;
    tagIPOD_VERSION storage;
    std::uint16_t max_payload_size;
    tagIPOD_ACCESSORY_INFO accessory;
  };
  /// Where the host stands in the database. Used by the host's thread only.
  struct Browsing {
    std::uint8_t current_category;
    std::uint8_t selection_category;
    std::int32_t sort_select_only;
    ipodcomm::RecordStream records;
  };

  PlayStatus play_status_ = {};
  mutable ipodcomm::Lock play_status_lock_;
  Outgoing outgoing_ = {};
  CIpodSerial serial_;
  int log_level_ = 0;
  HWND window_ = nullptr;
  ipodcomm::Shared<std::int32_t> open_ = 0;
  ipodcomm::Shared<std::int32_t> transaction_id_mode_ = 0;
  tagIPOD_CONDUCT conduct_ = IPOD_CONDUCT_FIELD;  // used by the host's thread only
  ipodcomm::Shared<std::int32_t> robust_ = IPOD_CONDUCT_FIELD.robust;  // of it, for every thread
  // Used by the host's thread only, as the conduct.
  ipodcomm::EarlierQuestions earlier_;
  tagIPOD_EXCHANGE last_exchange_ = {};
  tagIPOD_IDENTIFY_REPORT identify_report_ = {};
  std::int32_t identifying_ = 0;             // exchanges are steps of the report
  ipodcomm::OwnAnswers* watched_ = nullptr;  // the exchange that takes answers by their command
  ipodcomm::KeepGoing keep_going_;           // asked before every attempt and wait
  // Asked in its place while the accessory is identified; asks it, too.
  ipodcomm::KeepGoing* keep_identifying_ = nullptr;
  Identity identity_ = {};
  Browsing browsing_ = {};
  ipodcomm::Shared<std::uint32_t> storage_write_offset_ = 0;
  std::uint8_t open_file_handle_ = 0;     // of the workout; used by the host's thread only
  std::uint32_t failed_text_writes_ = 0;  // since the workout's start; the same
  ipodcomm::PacketQueue response_;
  mutable ipodcomm::Lock transmit_lock_;                        // guards outgoing_
  ipodcomm::Shared<HANDLE> identification_event_ = NewEvent();  // the model number was asked for
  HANDLE spare_events_[2] = {NewEvent(), NewEvent()};  // part of the session; nothing waits on them
  ipodcomm::PacketQueue notification_;
  HANDLE routing_thread_ = nullptr;
  HANDLE notification_thread_ = nullptr;

  ipodcomm::OwnLifeline lifeline_;  // of the two worker threads
};
