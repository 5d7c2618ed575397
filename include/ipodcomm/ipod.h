// SPDX-License-Identifier: MIT
// The legacy interface: one docked iPod, driven synchronously on the caller's thread. Its constants
// are the protocol's vocabulary, which both interfaces use.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "ipodcomm/ipodserial.h"
#include "ipodcomm/platform.h"

namespace ipodcomm {

class FrameBytes;
struct PayloadField;

}  // namespace ipodcomm

/// The docked iPod of the legacy interface, and the protocol's numbers under exported names. What a
/// number means depends on its lingo: command families overlap, and some names share a value on
/// purpose.
///
/// It has no thread and no queue: an operation sends its request, reads the reply from the port on
/// the caller's thread, and is done. One thread at a time may use an object, except that any thread
/// may call closeport to end another's wait for a reply. Nothing closes the port but closeport. A
/// copy refers to the same open port; when one of the two has closed it, the other must open a port
/// anew before anything else, for the system may give the old handle's value to another object.
class IPODCOMM_API ipod {
 public:
  /// @name Frame byte positions and marker values
  /// Where things stand in a frame of the small, the extended and the large form, from the sync
  /// byte on, and the two bytes that every frame begins with.
  /// @{
  static const unsigned char IPOD_PACKET_EXT_LARGE_SYNC_LOC = 0x00;
  static const unsigned char IPOD_PACKET_EXT_SYNC_LOC = 0x00;
  static const unsigned char IPOD_PACKET_SYNC_LOC = 0x00;
  static const unsigned char IPOD_PACKET_EXT_LARGE_START_LOC = 0x01;
  static const unsigned char IPOD_PACKET_EXT_START_LOC = 0x01;
  static const unsigned char IPOD_PACKET_START_LOC = 0x01;
  static const unsigned char IPOD_PACKET_EXT_LARGE_MARKER_LOC = 0x02;
  static const unsigned char IPOD_PACKET_EXT_PAYLOADLEN_LOC = 0x02;
  static const unsigned char IPOD_PACKET_PAYLOADLEN_LOC = 0x02;
  static const unsigned char IPOD_PACKET_EXT_LARGE_PAYLOADLEN_LOC_HIGH = 0x03;
  static const unsigned char IPOD_PACKET_EXT_LINGO_LOC = 0x03;
  static const unsigned char IPOD_PACKET_LINGO_LOC = 0x03;
  static const unsigned char IPOD_PACKET_COMMAND_LOC = 0x04;
  static const unsigned char IPOD_PACKET_EXT_COMMAND_LOC_HIGH = 0x04;
  static const unsigned char IPOD_PACKET_EXT_LARGE_PAYLOADLEN_LOC_LOW = 0x04;
  static const unsigned char IPOD_PACKET_DATA_LOC = 0x05;
  static const unsigned char IPOD_PACKET_EXT_COMMAND_LOC_LOW = 0x05;
  static const unsigned char IPOD_PACKET_EXT_LARGE_LINGO_LOC = 0x05;
  static const unsigned char IPOD_PACKET_EXT_DATA_LOC = 0x06;
  static const unsigned char IPOD_PACKET_EXT_LARGE_COMMAND_LOC_HIGH = 0x06;
  static const unsigned char IPOD_PACKET_EXT_LARGE_COMMAND_LOC_LOW = 0x07;
  static const unsigned char IPOD_PACKET_EXT_LARGE_DATA_LOC = 0x08;
  static const unsigned char IPOD_PACKET_START_VAL = 0x55;
  static const unsigned char IPOD_PACKET_SYNC_VAL = 0xFF;
  /// @}

  /// @name Lingo identifiers
  /// A frame's lingo byte: the family that its command belongs to.
  /// @{
  static const unsigned char IPOD_LINGO_GENERAL = 0x00;
  static const unsigned char IPOD_LINGO_MICROPHONE = 0x01;
  static const unsigned char IPOD_LINGO_SIMPLEREMOTE = 0x02;
  static const unsigned char IPOD_LINGO_DISPLAY = 0x03;
  static const unsigned char IPOD_LINGO_EXTENDED = 0x04;
  static const unsigned char IPOD_LINGO_ACCESSORYPOWER = 0x05;
  static const unsigned char IPOD_LINGO_USBHOSTCONTROL = 0x06;
  static const unsigned char IPOD_LINGO_RTUNER = 0x07;
  static const unsigned char IPOD_LINGO_ACCESSORYEQ = 0x08;
  static const unsigned char IPOD_LINGO_SPORTS = 0x09;
  static const unsigned char IPOD_LINGO_STORAGE = 0x0C;
  static const unsigned char IPOD_LINGO_DIGITALAUDIO = 0x10;
  /// @}

  /// @name Supported-lingo value
  /// The Display Remote lingo's number, with its options.
  /// @{
  static const unsigned char IPOD_SUPPORTED_LINGO = 0x06;
  /// @}

  /// @name Lingo mask bits and power options
  /// Bits of the lingo masks of `13` (IdentifyDeviceLingoes) and of the accessory's options. Some
  /// belong to another byte of the mask than others, so that values repeat.
  /// @{
  static const unsigned char IPOD_LINGO_MASK_LOWPOWERONLY = 0x00;
  static const unsigned char IPOD_LINGO_MASK_ACCESSORYEQUALIZER = 0x01;
  static const unsigned char IPOD_LINGO_MASK_GENERAL = 0x01;
  static const unsigned char IPOD_LINGO_MASK_INTERMITTENTHIGHPOWER = 0x01;
  static const unsigned char IPOD_LINGO_MASK_MICROPHONE = 0x02;
  static const unsigned char IPOD_LINGO_MASK_RESERVED2 = 0x02;
  static const unsigned char IPOD_LINGO_MASK_SPORTS = 0x02;
  static const unsigned char IPOD_LINGO_MASK_RESERVED3 = 0x03;
  static const unsigned char IPOD_LINGO_MASK_DIGITALAUDIO = 0x04;
  static const unsigned char IPOD_LINGO_MASK_SIMPLEREMOTE = 0x04;
  static const unsigned char IPOD_LINGO_MASK_DISPLAYREMOTE = 0x08;
  static const unsigned char IPOD_LINGO_MASK_RESERVED = 0x08;
  static const unsigned char IPOD_LINGO_MASK_EXTENDED = 0x10;
  static const unsigned char IPOD_LINGO_MASK_STORAGE = 0x10;
  static const unsigned char IPOD_LINGO_MASK_ACCESSORYPOWER = 0x20;
  static const unsigned char IPOD_LINGO_MASK_USBHOSTCONTROL = 0x40;
  static const unsigned char IPOD_LINGO_MASK_RFTUNER = 0x80;
  /// @}

  /// @name Power
  /// What the options of `13` ask the iPod's power for: the least, or high power now and then.
  /// @{
  static const unsigned char IPOD_POWER_LOW = 0x00;
  static const unsigned char IPOD_POWER_SOMEHIGH = 0x04;
  /// @}

  /// @name General lingo (0) command identifiers
  /// The command byte of a frame of lingo 0. What each carries: docs/wire.md.
  /// @{
  static const unsigned char IPOD_COMMAND_REQUESTIDENTIFY = 0x00;
  static const unsigned char IPOD_COMMAND_IDENTIFY = 0x01;
  static const unsigned char IPOD_COMMAND_ACK = 0x02;
  static const unsigned char IPOD_COMMAND_REQUESTREMOTEUIMODE = 0x03;
  static const unsigned char IPOD_COMMAND_RETURNREMOTEUIMODE = 0x04;
  static const unsigned char IPOD_COMMAND_ENTERREMOTEUIMODE = 0x05;
  static const unsigned char IPOD_COMMAND_EXITREMOTEUIMODE = 0x06;
  static const unsigned char IPOD_COMMAND_REQUESTIPODNAME = 0x07;
  static const unsigned char IPOD_COMMAND_RETURNIPODNAME = 0x08;
  static const unsigned char IPOD_COMMAND_REQUESTIPODSOFTWAREVERSION = 0x09;
  static const unsigned char IPOD_COMMAND_RETURNIPODSOFTWAREVERSION = 0x0A;
  static const unsigned char IPOD_COMMAND_REQUESTIPODSERIALNUM = 0x0B;
  static const unsigned char IPOD_COMMAND_RETURNIPODSERIALNUM = 0x0C;
  static const unsigned char IPOD_COMMAND_REQUESTIPODMODELNUM = 0x0D;
  static const unsigned char IPOD_COMMAND_RETURNIPODMODELNUM = 0x0E;
  static const unsigned char IPOD_COMMAND_REQUESTLINGOPROTOCOLVERSION = 0x0F;
  static const unsigned char IPOD_COMMAND_RETURNLINGOPROTOCOLVERSION = 0x10;
  static const unsigned char IPOD_COMMAND_IDENTIFYDEVICELINGOS = 0x13;
  static const unsigned char IPOD_COMMAND_GETACCESSORYINFO = 0x27;
  static const unsigned char IPOD_COMMAND_RETURNACCESSORYINFO = 0x28;
  static const unsigned char IPOD_COMMAND_GETIPODPREFERENCES = 0x29;
  static const unsigned char IPOD_COMMAND_RETURNIPODPREFERENCES = 0x2A;
  static const unsigned char IPOD_COMMAND_SETIPODPREFERENCES = 0x2B;
  /// @}

  /// @name Simple Remote lingo (2) command identifiers
  /// The command byte of a frame of lingo 2.
  /// @{
  static const unsigned char IPOD_COMMAND_CONTEXTBUTTONSTATUS = 0x00;
  static const unsigned char IPOD_COMMAND_SIMPLEREMOTEACK = 0x01;
  static const unsigned char IPOD_COMMAND_IMAGEBUTTONSTATUS = 0x02;
  static const unsigned char IPOD_COMMAND_VIDEOBUTTONSTATUS = 0x03;
  static const unsigned char IPOD_COMMAND_AUDIOBUTTONSTATUS = 0x04;
  /// @}

  /// @name Display Remote lingo (3) command identifiers
  /// The command byte of a frame of lingo 3.
  /// @{
  static const unsigned char IPOD_COMMAND_REMOTE_ACK = 0x00;
  static const unsigned char IPOD_COMMAND_REMOTE_GETINDEXEDPLAYINGTRACKINFO = 0x12;
  static const unsigned char IPOD_COMMAND_REMOTE_RETURNINDEXEDPLAYINGTRACKINFO = 0x13;
  static const unsigned char IPOD_COMMAND_REMOTE_GETTRACKARTWORKDATA = 0x18;
  static const unsigned char IPOD_COMMAND_REMOTE_RETURNTRACKARTWORKDATA = 0x19;
  static const unsigned char IPOD_COMMAND_REMOTE_GETTRACKARTWORKTIMES = 0x1F;
  static const unsigned char IPOD_COMMAND_REMOTE_RETURNTRACKARTWORKTIMES = 0x20;
  /// @}

  /// @name Sports lingo (9) command identifiers
  /// The command byte of a frame of lingo 9.
  /// @{
  static const short IPOD_COMMAND_SPORTS_ACK = 0x00;
  static const short IPOD_COMMAND_SPORTS_GETDEVICEVERSION = 0x01;
  static const short IPOD_COMMAND_SPORTS_RETURNDEVICEVERSION = 0x02;
  static const short IPOD_COMMAND_SPORTS_GETDEVICECAPS = 0x03;
  static const short IPOD_COMMAND_SPORTS_RETURNDEVICECAPS = 0x04;
  static const short IPOD_COMMAND_SPORTS_IPODACK = 0x80;
  static const short IPOD_COMMAND_SPORTS_GETIPODCAPS = 0x83;
  static const short IPOD_COMMAND_SPORTS_RETURNIPODCAPS = 0x84;
  static const short IPOD_COMMAND_SPORTS_GETUSERINDEX = 0x85;
  static const short IPOD_COMMAND_SPORTS_RETURNUSERINDEX = 0x86;
  static const short IPOD_COMMAND_SPORTS_GETUSERDATA = 0x88;
  static const short IPOD_COMMAND_SPORTS_RETURNUSERDATA = 0x89;
  static const short IPOD_COMMAND_SPORTS_SETUSERDATA = 0x90;
  /// @}

  /// @name Storage lingo (12) command identifiers
  /// The command byte of a frame of lingo 12.
  /// @{
  static const short IPOD_COMMAND_STORAGE_ACK = 0x00;
  static const short IPOD_COMMAND_STORAGE_GETIPODCAPS = 0x01;
  static const short IPOD_COMMAND_STORAGE_RETURNIPODCAPS = 0x02;
  static const short IPOD_COMMAND_STORAGE_RETURNIPODFILEHANDLE = 0x04;
  static const short IPOD_COMMAND_STORAGE_WRITEIPODFILEDATA = 0x07;
  static const short IPOD_COMMAND_STORAGE_CLOSEIPODFILE = 0x08;
  static const short IPOD_COMMAND_STORAGE_GETIPODFREESPACE = 0x10;
  static const short IPOD_COMMAND_STORAGE_RETURNIPODFREESPACE = 0x11;
  static const short IPOD_COMMAND_STORAGE_OPENIPODFEATUREFILE = 0x12;
  /// @}

  /// @name Extended Interface lingo (4) command identifiers
  /// The low byte of a frame's two command bytes in lingo 4; the high one is 0.
  /// @{
  static const unsigned char IPOD_COMMAND_EXTENDEDACK = 0x01;
  static const unsigned char IPOD_COMMAND_GETCURRENTPLAYINGTRACKCHAPTER = 0x02;
  static const unsigned char IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKCHAPTER = 0x03;
  static const unsigned char IPOD_COMMAND_SETCURRENTPLAYINGTRACKCHAPTER = 0x04;
  static const unsigned char IPOD_COMMAND_GETCURRENTPLAYINGTRACKCHAPTERPLAYSTATUS = 0x05;
  static const unsigned char IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKCHAPTERPLAYSTATUS = 0x06;
  static const unsigned char IPOD_COMMAND_GETCURRENTPLAYINGTRACKCHAPTERNAME = 0x07;
  static const unsigned char IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKCHAPTERNAME = 0x08;
  static const unsigned char IPOD_COMMAND_GETAUDIOBOOKSPEED = 0x09;
  static const unsigned char IPOD_COMMAND_RETURNAUDIOBOOKSPEED = 0x0A;
  static const unsigned char IPOD_COMMAND_SETAUDIOBOOKSPEED = 0x0B;
  static const unsigned char IPOD_COMMAND_GETINDEXEDPLAYINGTRACKINFO = 0x0C;
  static const unsigned char IPOD_COMMAND_RETURNINDEXEDPLAYINGTACKINFO = 0x0D;
  static const unsigned char IPOD_COMMAND_GETARTWORKFORMATS = 0x0E;
  static const unsigned char IPOD_COMMAND_RETURNARTWORKFORMATS = 0x0F;
  static const unsigned char IPOD_COMMAND_GETTRACKARTWORKDATA = 0x10;
  static const unsigned char IPOD_COMMAND_RETURNTRACKARTWORKDATA = 0x11;
  static const unsigned char IPOD_COMMAND_RESETDBSELECTION = 0x16;
  static const unsigned char IPOD_COMMAND_SELECTDBRECORD = 0x17;
  static const unsigned char IPOD_COMMAND_GETNUMBERCATORIZEDDBRECORDS = 0x18;
  static const unsigned char IPOD_COMMAND_RETURNNUMBERCATEGORIZEDDBRECORDS = 0x19;
  static const unsigned char IPOD_COMMAND_RETRIEVECATEGORIZEDDATABASERECORDS = 0x1A;
  static const unsigned char IPOD_COMMAND_RETURNCATEGORIZEDDATABASERECORDS = 0x1B;
  static const unsigned char IPOD_COMMAND_GETPLAYSTATUS = 0x1C;
  static const unsigned char IPOD_COMMAND_RETURNPLAYSTATUS = 0x1D;
  static const unsigned char IPOD_COMMAND_GETCURRENTPLAYINGTACKINDEX = 0x1E;
  static const unsigned char IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKINDEX = 0x1F;
  static const unsigned char IPOD_COMMAND_GETINDEXPLAYINGTRACKTITLE = 0x20;
  static const unsigned char IPOD_COMMAND_RETURNINDEXEDPLAYINGTRACKTITLE = 0x21;
  static const unsigned char IPOD_COMMAND_GETINDEXEDPLAYINGTRACKARTISTNAME = 0x22;
  static const unsigned char IPOD_COMMAND_RETURNINDEXEDPLAYINGTACKARTISTNAME = 0x23;
  static const unsigned char IPOD_COMMAND_GETINDEXEDPLAYINGTRACKALBUMNAME = 0x24;
  static const unsigned char IPOD_COMMAND_RETURNINDEXEDPLAYINGTRACKALBUMNAME = 0x25;
  static const unsigned char IPOD_COMMAND_SETPLAYSTATUSCHANGENOTIFICATION = 0x26;
  static const unsigned char IPOD_COMMAND_PLAYSTATUSCHANGENOTIFICATION = 0x27;
  static const unsigned char IPOD_COMMAND_PLAYCURRENTSELECTION = 0x28;
  static const unsigned char IPOD_COMMAND_PLAYCONTROL = 0x29;
  static const unsigned char IPOD_COMMAND_GETTRACKARTWORKTIMES = 0x2A;
  static const unsigned char IPOD_COMMAND_RETURNTRACKARTWORKTIMES = 0x2B;
  static const unsigned char IPOD_COMMAND_GETSHUFFLE = 0x2C;
  static const unsigned char IPOD_COMMAND_RETURNSHUFFLE = 0x2D;
  static const unsigned char IPOD_COMMAND_SETSHUFFLE = 0x2E;
  static const unsigned char IPOD_COMMAND_GETREPEAT = 0x2F;
  static const unsigned char IPOD_COMMAND_SETREPEAT = 0x2F;
  static const unsigned char IPOD_COMMAND_RETURNREPEAT = 0x30;
  static const unsigned char IPOD_COMMAND_SETDISPLAYIMAGE = 0x32;
  static const unsigned char IPOD_COMMAND_GETMONODISPLAYIMAGELIMITS = 0x33;
  static const unsigned char IPOD_COMMAND_RETURNMONODISPLAYIMAGELIMITS = 0x34;
  static const unsigned char IPOD_COMMAND_GETNUMPLAYINGTRACKS = 0x35;
  static const unsigned char IPOD_COMMAND_RETURNNUMPLAYINGTRACKS = 0x36;
  static const unsigned char IPOD_COMMAND_SETCURRENTPLAYINGTACKS = 0x37;
  static const unsigned char IPOD_COMMAND_SELECTSORTDBRECORD = 0x38;
  static const unsigned char IPOD_COMMAND_GETCOLRORDISPLAYIMAGELIMITS = 0x39;
  static const unsigned char IPOD_COMMAND_RETURNCOLORDISPLAYIMAGELIMITS = 0x3A;
  static const unsigned char IPOD_COMMAND_RESETDBSELECTIONHIERARCHY = 0x3B;
  /// @}

  /// @name Acknowledgement status values and position
  /// The status byte of an ACK, `02 ss cc` or `0001 ss cccc`: 0 for done, all else is a refusal.
  /// The last is its place in an extended frame.
  /// @{
  static const unsigned char IPOD_ACKE_STATUS_OK = 0x00;
  static const unsigned char IPOD_ACKE_STATUS_COMMANDFAILED = 0x01;
  static const unsigned char IPOD_ACKE_STATUS_OUTOFRESOURCES = 0x02;
  static const unsigned char IPOD_ACKE_STATUS_BADPARAMETER = 0x03;
  static const unsigned char IPOD_ACKE_STATUS_UNKNOWNID = 0x04;
  static const unsigned char IPOD_ACKE_STATUS_RESERVED = 0x05;
  static const unsigned char IPOD_ACKE_STATUS_LOC = 0x06;
  /// @}

  /// @name Accessory information types
  /// What `27` (GetAccessoryInfo) asks for, and `28` answers with.
  /// @{
  static const unsigned char IPOD_ACCESSORYINFOTYPE_CAPABILITIES = 0x00;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_NAME = 0x01;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_MINIPODFIRMWARE = 0x02;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_MINIPODLINGOVERSION = 0x03;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_ACCESSORYFIRMWARE = 0x04;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_ACCESSORYHARDWARE = 0x05;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_ACCESSORYMFG = 0x06;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_ACCESSORYMODELNUM = 0x07;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_ACCESSORYSERIALNUM = 0x08;
  static const unsigned char IPOD_ACCESSORYINFOTYPE_ACCESSORYMAXPAYLOAD = 0x09;
  /// @}

  /// @name Accessory information type masks
  /// The bit of each of them in the capabilities that `28 00` tells.
  /// @{
  static const short IPOD_ACCESSORYINFOTYPE_MASK_CAPABILITIES = 0x01;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_NAME = 0x02;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_MINIPODFIRMWARE = 0x04;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_MINIPODLINGOVERSION = 0x08;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYFIRMWARE = 0x10;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYHARDWARE = 0x20;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYMFG = 0x40;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYMODELNUM = 0x80;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYSERIALNUM = 0x100;
  static const short IPOD_ACCESSORYINFOTYPE_MASK_ACCESSORYMAXPAYLOAD = 0x200;
  /// @}

  /// @name Context button masks (Simple Remote)
  /// The buttons that `00` of lingo 2 says are pressed, a bit each; 0 releases all.
  /// @{
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_PLAYPAUSE = 0x01UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_VOLUMEUP = 0x02UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_VOLUMEDOWN = 0x04UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_NEXTRACK = 0x08UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_PREVIOUSTRACK = 0x10UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_NEXTALBUM = 0x20UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_PREVIOUSALBUM = 0x40UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_STOP = 0x80UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_PLAYRESUME = 0x100UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_PAUSE = 0x200UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_MUTETOGGLE = 0x400UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_NEXTCHAPTER = 0x800UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_PREVIOUSCHAPTER = 0x1000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_NEXTPLAYLIST = 0x2000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_PREVIOUSPLAYLIST = 0x4000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_SHUFFLESETTINGADVANCE = 0x8000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_REPEATSSETTINGADVANCE = 0x10000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_POWERON = 0x20000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_POWEROFF = 0x40000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_BACKLIGHT30SECONDS = 0x80000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_BEGINFASTFORWARD = 0x100000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_BEGINREWIND = 0x200000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_MENU = 0x400000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_SELECT = 0x800000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_UPARROW = 0x1000000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_DOWNARROW = 0x2000000UL;
  static const unsigned long IPOD_BUTTON_CONTEXT_MASK_BACKLIGHTOFF = 0x4000000UL;
  /// @}

  /// @name Database categories
  /// What a database selection, count or record is of.
  /// @{
  static const unsigned char IPOD_CATEGORY_RESERVED1 = 0x00;
  static const unsigned char IPOD_CATEGORY_PLAYLIST = 0x01;
  static const unsigned char IPOD_CATEGORY_ARTIST = 0x02;
  static const unsigned char IPOD_CATEGORY_ALBUM = 0x03;
  static const unsigned char IPOD_CATEGORY_GENRE = 0x04;
  static const unsigned char IPOD_CATEGORY_TRACK = 0x05;
  static const unsigned char IPOD_CATEGORY_COMPOSER = 0x06;
  static const unsigned char IPOD_CATEGORY_AUDIOBOOK = 0x07;
  static const unsigned char IPOD_CATEGORY_PODCAST = 0x08;
  static const unsigned char IPOD_CATEGORY_NESTEDPLAYLIST = 0x09;
  /// @}

  /// @name Sort orders
  /// The order of `0038` (SelectSortDBRecord), for what is listed next.
  /// @{
  static const short IPOD_SELECTSORT_GENRE = 0x00;
  static const short IPOD_SELECTSORT_ARTIST = 0x01;
  static const short IPOD_SELECTSORT_COMPOSER = 0x02;
  static const short IPOD_SELECTSORT_ALBUM = 0x03;
  static const short IPOD_SELECTSORT_NAME = 0x04;
  static const short IPOD_SELECTSORT_PLAYLIST = 0x05;
  static const short IPOD_SELECTSORT_RELEASEDATE = 0x06;
  static const short IPOD_SELECTSORT_SERIES = 0x07;
  static const short IPOD_SELECTSORT_SEASON = 0x08;
  static const short IPOD_SELECTSORT_EPISODE = 0x09;
  static const short IPOD_SELECTSORT_DEFAULT = 0xFF;
  /// @}

  /// @name Hierarchies
  /// The two trees of the database, and 0 for whichever is current.
  /// @{
  static const unsigned char IPOD_RESETDBSELECTIONHIERARCHY_NONE = 0x00;
  static const unsigned char IPOD_HIERARCHY_AUDIO = 0x01;
  static const unsigned char IPOD_RESETDBSELECTIONHIERARCHY_AUDIO = 0x01;
  static const unsigned char IPOD_HIERARCHY_VIDEO = 0x02;
  static const unsigned char IPOD_RESETDBSELECTIONHIERARCHY_VIDEO = 0x02;
  /// @}

  /// @name Play control codes
  /// What `0029` (PlayControl) does. The last two need Extended Interface 1.13.
  /// @{
  static const unsigned long IPOD_PLAYCONTROL_PLAYPAUSE = 0x01UL;
  static const unsigned long IPOD_PLAYCONTROL_STOP = 0x02UL;
  static const unsigned long IPOD_PLAYCONTROL_NEXTTRACK = 0x03UL;
  static const unsigned long IPOD_PLAYCONTROL_PREVIOUSTRACK = 0x04UL;
  static const unsigned long IPOD_PLAYCONTROL_STARTFF = 0x05UL;
  static const unsigned long IPOD_PLAYCONTROL_STARTREW = 0x06UL;
  static const unsigned long IPOD_PLAYCONTROL_ENDFFREW = 0x07UL;
  static const unsigned long IPOD_PLAYCONTROL_NEXT = 0x08UL;
  static const unsigned long IPOD_PLAYCONTROL_PREVIOUS = 0x09UL;
  static const unsigned long IPOD_PLAYCONTROL_PLAY = 0x0AUL;
  static const unsigned long IPOD_PLAYCONTROL_PAUSE = 0x0BUL;
  /// @}

  /// @name Player states
  /// What `001D` (ReturnPlayStatus) says the player does.
  /// @{
  static const unsigned char IPOD_PLAYERSTATE_STOPPED = 0x00;
  static const unsigned char IPOD_PLAYERSTATE_PLAYING = 0x01;
  static const unsigned char IPOD_PLAYERSTATE_PAUSED = 0x02;
  static const unsigned char IPOD_PLAYERSTATE_FASTFORWARD = 0x03;
  static const unsigned char IPOD_PLAYERSTATE_FASTREWIND = 0x04;
  static const unsigned char IPOD_PLAYERSTATE_ENDINGFAST = 0x05;
  /// @}

  /// @name Indexed playing track information types (Extended Interface)
  /// What `000C` asks about a track of the now-playing list.
  /// @{
  static const short IPOD_PLAYINGTRACKINFO_CAPABILITIES = 0x00;
  static const short IPOD_PLAYINGTRACKINFO_PODCASTNAME = 0x01;
  static const short IPOD_PLAYINGTRACKINFO_RELEASEDATE = 0x02;
  static const short IPOD_PLAYINGTRACKINFO_DESCRIPTION = 0x03;
  static const short IPOD_PLAYINGTRACKINFO_SONGLYRICS = 0x04;
  static const short IPOD_PLAYINGTRACKINFO_GENRE = 0x05;
  static const short IPOD_PLAYINGTRACKINFO_COMPOSER = 0x06;
  static const short IPOD_PLAYINGTRACKINFO_ARTWORKCOUNT = 0x07;
  /// @}

  /// @name Indexed track information types (Display Remote)
  /// What `12` of lingo 3 asks about a track of the now-playing list.
  /// @{
  static const unsigned char IPOD_REMOTE_INFOTYPE_CAPSINFO = 0x00;
  static const unsigned char IPOD_REMOTE_INFOTYPE_CHAPTER = 0x01;
  static const unsigned char IPOD_REMOTE_INFOTYPE_ARTISTNAME = 0x02;
  static const unsigned char IPOD_REMOTE_INFOTYPE_ALBUMNAME = 0x03;
  static const unsigned char IPOD_REMOTE_INFOTYPE_GENRENAME = 0x04;
  static const unsigned char IPOD_REMOTE_INFOTYPE_TRACKTITLE = 0x05;
  static const unsigned char IPOD_REMOTE_INFOTYPE_COMPOSERNAME = 0x06;
  static const unsigned char IPOD_REMOTE_INFOTYPE_LYRICS = 0x07;
  static const unsigned char IPOD_REMOTE_INFOTYPE_ARTWORKCOUNT = 0x08;
  /// @}

  /// @name Track capability bits (Display Remote capability information)
  /// What a track has: the answer `13 00` of lingo 3, four bytes, most significant first.
  /// @{
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_AUDIOBOOK = 0x01UL;
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_CHAPTERS = 0x02UL;
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_ARTWORK = 0x04UL;
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_LYRICS = 0x08UL;
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_RESERVED1 = 0x10UL;
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_RESERVED2 = 0x20UL;
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_RESERVED3 = 0x40UL;
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_VIDEO = 0x80UL;
  static const unsigned long IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_QUEUEIDEO = 0x100UL;
  /// @}

  /// @name Display image formats
  /// The pixel formats of an image for the iPod's display.
  /// @{
  static const unsigned long IPOD_IMAGEFORMAT_MONO = 0x01UL;
  static const unsigned long IPOD_IMAGEFORMAT_RGB565BIGENDIAN16BPP = 0x02UL;
  static const unsigned long IPOD_IMAGEFORMAT_RGB565LITTLEENDIAN16BPP = 0x02UL;
  /// @}

  /// @name Preference classes
  /// What `29` and `2B` read and set.
  /// @{
  static const unsigned char IPOD_PREFERENCE_VIDEOOUTSETTING = 0x00;
  static const unsigned char IPOD_PREFERENCE_SCREENCONFIGURATION = 0x01;
  static const unsigned char IPOD_PREFERENCE_VIDEOSIGNALFORMAT = 0x02;
  static const unsigned char IPOD_PREFERENCE_LINEOUTUSAGE = 0x03;
  static const unsigned char IPOD_PREFERENCE_VIDEOOUTCONNECTION = 0x08;
  static const unsigned char IPOD_PREFERENCE_CLOSEDCAPTIONING = 0x09;
  static const unsigned char IPOD_PREFERENCE_VIDEOMONITORASPECT = 0x0A;
  static const unsigned char IPOD_PREFERENCE_SUBTITLES = 0x0C;
  static const unsigned char IPOD_PREFERENCE_VIDEOALTERNATEAUDIO = 0x0D;
  static const unsigned char IPOD_PREFERENCE_PAUSEONREMOVAL = 0x0F;
  /// @}

  /// @name Preference settings
  /// Values of those classes; each class has its own, so that numbers repeat.
  /// @{
  static const unsigned char IPOD_PREFERENCE_SETTING_4_3_ASPECT = 0x00;
  static const unsigned char IPOD_PREFERENCE_SETTING_FILLENTIRESCREEN = 0x00;
  static const unsigned char IPOD_PREFERENCE_SETTING_NTSC = 0x00;
  static const unsigned char IPOD_PREFERENCE_SETTING_OFF = 0x00;
  static const unsigned char IPOD_PREFERENCE_SETTING_16_9_ASPECT = 0x01;
  static const unsigned char IPOD_PREFERENCE_SETTING_COMPOSITE = 0x01;
  static const unsigned char IPOD_PREFERENCE_SETTING_FITTOSCREENEDGE = 0x01;
  static const unsigned char IPOD_PREFERENCE_SETTING_ON = 0x01;
  static const unsigned char IPOD_PREFERENCE_SETTING_PAL = 0x01;
  static const unsigned char IPOD_PREFERENCE_SETTING_ASKUSER = 0x02;
  static const unsigned char IPOD_PREFERENCE_SETTING_SVIDEO = 0x02;
  static const unsigned char IPOD_PREFERENCE_SETTING_COMPONENT = 0x03;
  /// @}

  /// @name Feature-file types
  /// What a file on the iPod is for (`12` of lingo 12).
  /// @{
  static const short IPOD_OPENIPODFEATUREFILE_FEATURE_RADIOTAGGING = 0x01;
  static const short IPOD_OPENIPODFEATUREFILE_FEATURE_GYMEQUIPMENT = 0x02;
  /// @}

  /// @name Feature-file option bits
  /// What the iPod adds to a feature file when it is closed: the data it was opened with, facts
  /// about itself, a signature.
  /// @{
  static const unsigned char IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENDDATA = 0x01;
  static const unsigned char IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENXMLIPODINFO = 0x02;
  static const unsigned char IPOD_OPENIPODFEATUREFILE_OPTIONMASK_RESERVED = 0x04;
  static const unsigned char IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENXMLSIGNATURE = 0x08;
  /// @}

  /// @name Sports capability bits
  /// What an iPod can do for sports, `84 cccc`: log workouts, keep data of its user.
  /// @{
  static const unsigned char IPOD_SPORTS_GETIPODCAPS_MASK_GYM = 0x01;
  static const unsigned char IPOD_SPORTS_GETIPODCAPS_MASK_USERDATA = 0x02;
  static const unsigned char IPOD_SPORTS_RETURNIPODCAPS_MASK_GYM = 0x02;
  /// @}

  /// @name Sports interval types
  /// The event that an interval of ipod::intervalworkout records. INPROCESS has no element.
  /// @{
  static const unsigned char IPOD_SPORTS_INTERVAL_TYPE_START = 0x01;
  static const unsigned char IPOD_SPORTS_INTERVAL_TYPE_END = 0x02;
  static const unsigned char IPOD_SPORTS_INTERVAL_TYPE_CONTINUE = 0x03;
  static const unsigned char IPOD_SPORTS_INTERVAL_TYPE_PAUSE = 0x04;
  static const unsigned char IPOD_SPORTS_INTERVAL_TYPE_RESUME = 0x05;
  static const unsigned char IPOD_SPORTS_INTERVAL_TYPE_INPROCESS = 0x06;
  /// @}

  /// @name Sports workout types
  /// What is trained on, for ipod::startworkout. NONE is refused.
  /// @{
  static const unsigned short IPOD_SPORTS_WORKOUTTYPE_NONE = 0x00;
  static const unsigned short IPOD_SPORTS_WORKOUTTYPE_TREADMILL = 0x01;
  static const unsigned short IPOD_SPORTS_WORKOUTTYPE_ELLIPTICAL = 0x02;
  static const unsigned short IPOD_SPORTS_WORKOUTTYPE_STEPPER = 0x03;
  static const unsigned short IPOD_SPORTS_WORKOUTTYPE_BIKE = 0x04;
  static const unsigned short IPOD_SPORTS_WORKOUTTYPE_OTHER = 0x05;
  /// @}

  /// @name Text capacities of the legacy getters, in characters
  /// The least that the buffer of each getter has to hold, the terminator included.
  /// @{
  static const unsigned char SIZE_IPODCHAPTERCOUNT = 0x0A;
  static const unsigned char SIZE_IPODCURRENTCHAPTERINDEX = 0x0A;
  static const unsigned char SIZE_IPODLINGOVERSIONEXTENDED = 0x0A;
  static const unsigned char SIZE_IPODLINGOVERSIONGENERAL = 0x0A;
  static const unsigned char SIZE_IPODPLAYERSTATE = 0x0A;
  static const unsigned char SIZE_IPODTRACKLENGTH = 0x0A;
  static const unsigned char SIZE_IPODTRACKPOSITION = 0x0A;
  static const unsigned char SIZE_IPODCURRENTPLAYINGTRACKCHAPTERNAME = 0x19;
  static const unsigned char SIZE_IPODPREFERENCES = 0x19;
  /// @}

  /// No port is open, and nothing is sent.
  ipod();
  /// A copy refers to the same open port; see the class.
  ipod(const ipod& other);
  /// The same. The port that this object had open stays open, out of reach.
  ipod& operator=(const ipod& other);

  /// @name Port (legacy/packets.cpp)
  /// @{

  /// Opens and configures the port `name` ("COM2:") at `baud_rate`. The baud rate is kept for later
  /// openings, the name is not. Close an open port first: it would stay open, out of reach.
  /// @return 1 when the port is open, else 0.
  int openport(wchar_t* name, int baud_rate);
  /// The same with "COM2:" and the baud rate given last, 57600 at first.
  int openport();
  /// @return 1, also when no port is open.
  int closeport();
  /// The pause behind each frame's sync byte, how much a read asks for, and whether a question of
  /// the iPod's is answered in every wait: as ipodserial's.
  int SetConduct(const tagIPOD_LEGACY_CONDUCT* conduct);
  /// Tells what was chosen. @return 1, or 0 for null.
  int GetConduct(tagIPOD_LEGACY_CONDUCT* conduct) const;
  /// Gives the host a say in every wait for a reply, and in the self-test's for playback to begin,
  /// as ipodserial's: while `keep_going(context)` says false every operation that awaits a reply
  /// fails within 100 ms a wait. Commands still go out, so that a host can leave the remote
  /// user-interface mode. Null, the default, ends it.
  /// @return 1; 0 when the open port does not take the shorter waits, which changes nothing.
  int SetKeepGoing(bool (*keep_going)(void* context), void* context);
  /// @}

  /// @name Sending packets (legacy/packets.cpp)
  /// The senders send what the packet area holds: a lingo, a command and a payload, which the
  /// commands fill in. By default the sync byte goes out alone, 5 ms ahead of the rest. They return
  /// 1 when the port accepted every byte, 0 when it did not or when the payload does not fit the
  /// frame, and try nothing twice.
  /// @{

  /// `FF 55 LL lingo cc payload checksum`, with at most 250 bytes of payload.
  int sendpacket();
  /// `FF 55 LL lingo cc cc payload checksum`, with at most 249.
  int sendpacketextended();
  /// `FF 55 00 LL LL lingo cc cc payload checksum`, with at most 247, and without its last two
  /// bytes. The argument is ignored.
  int sendpacketextendedlarge(unsigned char* ignored);
  /// @}

  /// @name Receiving packets (legacy/extraction.cpp)
  /// The extractors read the reply straight from the port and copy its payload from byte `offset`
  /// on, a byte to a character, undecoded. The length byte less 2 is their number: where an offset
  /// or a two-byte command leaves fewer, the frame's checksum follows them and then zeros. At most
  /// `capacity` characters are copied, then the buffer's last character, not the one behind the
  /// text, becomes a terminator: clear the buffer first. A capacity of 0 and null for the buffer
  /// take the reply and copy nothing.
  ///
  /// Only silence ends their wait, five empty reads and about three seconds of it. Noise without a
  /// sync byte keeps every one of them waiting for as long as it lasts, and so do other frames, one
  /// every half second is enough, where they are passed over. A host gets out by its say
  /// (SetKeepGoing), or by calling closeport on another thread: the wait then fails within a second
  /// and a half.
  /// @{

  /// Reads until a frame with the one-byte command `expected_command` comes, of whatever lingo,
  /// passes over others, and answers the iPod's own requests for accessory information (lingo 0,
  /// `27`) and about the Sports lingo (lingo 9, `01` and `03`).
  /// @return 1, or 0 after a read that brought nothing. The text is then untouched.
  int extractdatafrompacket(unsigned char expected_command, wchar_t* text, unsigned char capacity,
                            unsigned char offset, int ignored);
  /// Reads one frame with a two-byte command, or two when the first is an accepting ACK and no ACK
  /// is expected. The command counts as its high byte times ten and its low byte, in 8 bits. What
  /// the iPod asks instead is taken for that frame, unless the conduct has such questions answered.
  /// @return 1, or 0 for another command, a bad checksum, and fewer than 7 bytes. The last
  /// prints a line to the debug output and discards what the port has received.
  int ExtractDataFromPacketExtended(unsigned short expected_command, wchar_t* text,
                                    unsigned char capacity, unsigned char offset, int ignored);
  /// Reads one frame with a two-byte command, of whatever number, and copies `count` bytes from its
  /// payload on; those past the frame's end are 0.
  /// @return 1, or 0 for a bad checksum and fewer than 7 bytes, as above.
  int ExtractDataFromPacketExtendedRaw(unsigned short ignored_command, void* buffer,
                                       unsigned long count);
  /// @param length bytes of `frame`
  /// @param frame from its sync byte through its checksum, `length` bytes
  /// @return 1 when the checksum is right, else 0.
  int VerifyReceivePacketChecksum(unsigned char* frame, unsigned long length);
  /// Decodes text that holds a byte of UTF-8 in each character, in place: at most 512 bytes of it,
  /// into at most 511 characters and a terminator. A longer text is cut between two characters.
  /// @return `text`
  wchar_t* utf8tounicode(wchar_t* text);
  /// @}

  /// @name Commands (legacy/commands.cpp)
  /// A command fills in the packet area and sends it. It writes only its own payload; the bytes
  /// behind it keep what the commands before left. Unless said otherwise it returns what its sender
  /// returned and does not wait for the reply. Numbers go out most significant byte first.
  /// @{

  /// `03`, asks whether the iPod is in remote UI mode.
  int command_requestremoteuimode();
  /// `05`, and waits for the ACK `02`, twice if need be, 20 ms apart; accepted or refused is all
  /// the same.
  /// @return 1 when an ACK came.
  int command_enterremoteuimode();
  /// `06`
  int command_exitremoteuimode();
  /// `07`
  int command_requestipodname();
  /// `09`
  int command_requestipodsoftwareversion();
  /// `0B`
  int command_requestipodserialnum();
  /// `0D`
  int command_requestipodmodelnum();
  /// `0F 00`, under the lingo of the command before; always asks for the version of lingo 0.
  int command_requestlingoprotocolversion(unsigned char ignored_lingo);
  /// `29 class` (IPOD_PREFERENCE_...)
  int command_getipodpreference(unsigned char preference_class);
  /// `2B class setting 01`: the iPod returns to its own setting when the accessory leaves.
  int command_setipodpreference(unsigned char preference_class, unsigned char setting);

  /// Presses buttons on lingo 2 for 30 ms: `cc mmmmmmmm`, then `cc 00000000`, with the mask's least
  /// significant byte first.
  /// @return 1 when both frames were written; without the first there is no second.
  int command_buttonstatus(unsigned char command, unsigned long buttons);
  /// The same with command `00` and IPOD_BUTTON_CONTEXT_MASK_... .
  int command_contextbutton(unsigned long buttons);
  /// `12 type iiiiiiii cccc` on lingo 3 (IPOD_REMOTE_INFOTYPE_...)
  int command_remote_getindexedplayingtrackinfo(unsigned char type, unsigned long track,
                                                unsigned short chapter);
  /// `83` on lingo 9
  int command_sportsgetipodcaps();
  /// `01` on lingo 12
  int command_storagegetipodcaps();
  /// @}

  /// @name Commands of the Extended Interface (legacy/commands.cpp)
  /// As those above; these go to lingo 4.
  /// @{

  /// `001C`. Clears the payload area's first byte.
  int command_getplaystatus();
  /// `0007`
  int command_getcurrentplayingtrackchaptername();
  /// `001E`
  int command_getcurrentplayingtrackindex();
  /// `0020 iiiiiiii`
  int command_getindexedplayingtracktitle(unsigned long track);
  /// `000C type iiiiiiii cccc` (IPOD_PLAYINGTRACKINFO_...)
  int command_getindexedplayingtrackinfo(unsigned char type, unsigned long track,
                                         unsigned short chapter);
  /// `0029 code` (IPOD_PLAYCONTROL_...), and waits for the ACK.
  /// @return 1 unless the frame was not written or the ACK refuses; a missing ACK is 1.
  int command_playcontrol(unsigned char code);
  /// `0018 category`, of the current category
  int command_getnumbercategorizeddbrecords();
  /// `001A category iiiiiiii 00000001`: one record of the current category.
  int command_retrievecategorizeddbrecords(unsigned long start);
  /// `0016`
  int command_resetdbselection();
  /// `003B hierarchy` (IPOD_HIERARCHY_...)
  int command_resetdbselectionhierarchy(unsigned char hierarchy);
  /// `0017 category iiiiiiii`, printed to the debug output.
  int command_selectdbrecord(unsigned long index);
  /// `0038 category iiiiiiii order`, printed to the debug output (IPOD_SELECTSORT_...).
  int command_selectsortdbrecord(unsigned long index, unsigned char sort_order);
  /// `0033`
  int command_getmonodisplayimagelimits();
  /// `000E`
  int command_getartworkformats();
  /// `001F iiiiiiii ffff aaaa nnnn`: the Display Remote's number of this request.
  int command_gettrackartworktimes(unsigned long track, unsigned short format_id,
                                   unsigned short artwork_index, unsigned short count);
  /// `0010 iiiiiiii ffff tttttttt`
  int command_gettrackartworkdata(unsigned long track, unsigned short format_id,
                                  unsigned long time_offset);
  /// @}

  /// @name Identification (legacy/identification.cpp)
  /// @{

  /// `01 04`, the older identification.
  int command_identify();
  /// Identifies the older way, asks for the model, and announces what the accessory speaks: `13
  /// llllllll oooooooo 00000000`. Lingoes 0, 2, 3 and 4 always, 9 and 12 for models 0014 and 0017;
  /// options 4 (some power) when `option` is not 0. Model 0010 turns on sorted selection for good.
  /// @return whether the last frame was written. An iPod that does not answer with its model costs
  /// about three seconds.
  int command_identifydevicelingos(int option);
  /// `28 type ...`, the answer to the iPod's request `27`: the accessory's capabilities, name,
  /// versions and such (IPOD_ACCESSORYINFOTYPE_...); the type alone where there is no more.
  int command_returnaccessoryinfo(unsigned char type);
  /// `02 01 00` on lingo 9: version 1.0 of it.
  int command_sportsreturndeviceversion();
  /// `04 02 00 00` on lingo 9
  int command_sportsreturndevicecaps();
  /// @}

  /// @name Feature file (legacy/feature_file.cpp), lingo 12
  /// @{

  /// `12 02 0000000B "</gymData>"`: opens the workout file, to which the iPod is to add its own
  /// information and a signature.
  int command_storageopenipodfeaturefile();
  /// `07 oooooooo handle text`: writes `count` characters, at most 245, each as its low byte. The
  /// offset of the next write grows by as much, also when the frame is not written; a text that
  /// does not fit is refused and changes nothing.
  int command_storeagewriteipodfiledata(wchar_t* text, unsigned short count);
  /// `08 handle`. Handle and offset are 0 afterwards.
  int command_storagecloseipodfile();
  /// @}

  /// @name Display image commands (legacy/display_images.cpp)
  /// Neither sends the image or its measures: the frame, `0032` in the large form, has the length
  /// that they would need, carries what the payload area holds, and lacks its last two bytes.
  /// @{

  /// The length of 11 bytes and `count`, which is at most 236.
  int command_setdisplayimagefirst(unsigned char pixel_format, unsigned short width,
                                   unsigned short height, unsigned long count,
                                   unsigned char* image);
  /// The length of 2 bytes and `count`, which is at most 245. Writes the index into the payload
  /// area's first two bytes.
  int command_setdisplayimagerest(unsigned short descriptor_index, unsigned long count,
                                  unsigned char* image);
  /// @}

  /// @name Facts as display text (legacy/getters.cpp, legacy/preferences.cpp)
  /// Unless said otherwise an operation of this and the next three sections sends its request and
  /// reads the answer, returns 1 when both succeeded and 0 when not, and takes null for an output
  /// that the host does not want. An answer that does not come costs about three seconds on a
  /// silent line, and no less than that on another (see the extractors). Texts are emptied first,
  /// or begin as "Unknown", and stay so after a failure; sizes count characters. Every request
  /// overwrites the packet area.
  /// @{

  /// Software version as "2.1.0": `09`, answer `0A major minor patch`, cut to `size` characters.
  /// @return 1 when the major version is not 0; a version 0.x has its text all the same.
  int getipodsoftwareversion(wchar_t* text, unsigned long size);
  /// Model identifier as "000b|0004", into at least 10 characters: `0D`, answer `0E iiiiiiii ...`.
  int getipodmodelnum(wchar_t* text);
  /// Always 0; nothing is sent and the text is not touched.
  int getipodprotocolversion(wchar_t* text);
  /// Lingo and its version as "0 - 1.9", cut to SIZE_IPODLINGOVERSIONGENERAL characters: `0F 00`,
  /// answer `10 lingo major minor`. Always asks for lingo 0.
  int getipodlingoversion(wchar_t* text, unsigned char ignored_lingo);
  /// The iPod's name, into at least 250 characters: `07`, answer `08 name`. This and the other
  /// converted texts are read into the host's buffer, with a terminator in its last character, cut
  /// between two characters if need be, and converted from UTF-8 there. One that the iPod sends
  /// without its terminator is followed by what the buffer held, after the frame's checksum where
  /// that is copied too: in the model's name and in texts of the Extended Interface.
  int getipodname(wchar_t* text);
  /// Serial number, converted, into at least 250 characters: `0B`, answer `0C text`.
  int getipodserailnum(wchar_t* text);
  /// Model number behind the identifier, converted, into at least 250 characters: `0D`, answer `0E
  /// iiiiiiii text`. Without its terminator it is followed by one character that is the frame's
  /// checksum.
  int getipodmodelname(wchar_t* text);
  /// Reads a preference: `29 cc`, answer `2A cc ss`. Only an answer for the class asked counts;
  /// otherwise `setting` stays as it is. @param preference_class IPOD_PREFERENCE_...
  /// @param setting IPOD_PREFERENCE_SETTING_...
  int loadipodpreference(unsigned char preference_class, unsigned char* setting);
  /// Chooses the video output, restored when the accessory leaves: `2B 00 ss 01`, ACK `02 status
  /// 2B`. @return 1 when the status was 0 and also when no ACK came, 0 when the iPod refused.
  int setipodpreferencevidooutsetting(unsigned char setting);
  /// @}

  /// @name Preferences as display text (legacy/preferences.cpp)
  /// A preference's setting as text, into at least SIZE_IPODPREFERENCES characters. One without a
  /// text stays "Unknown". The result is loadipodpreference's.
  /// @{

  /// "Off", "On", "Ask User"
  int getipodpreferencevideooutsetting(wchar_t* text);
  /// "Fill Entire Screen", "Fit Edge To Screen"
  int getipodpreferencescreenconfiguration(wchar_t* text);
  /// "NTSC", "PAL"
  int getipodpreferencevideosignalformat(wchar_t* text);
  /// "Disabled", "Enabled", "Ask User"
  int getipodpreferencelineoutusage(wchar_t* text);
  /// "No Connection", "Composite", "S-Video", "Component"
  int getipodpreferencevideoutconnection(wchar_t* text);
  /// "Off", "On"
  int getipodpreferenceclosedcaptioning(wchar_t* text);
  /// "4 by 3", "16 by 9"
  int getipodpreferencevideomonitoraspect(wchar_t* text);
  /// "Off", "On"
  int getipodpreferencesubtitles(wchar_t* text);
  /// "Off", "On"
  int getipodpreferencevideoalternateaudiochannel(wchar_t* text);
  /// @}

  /// @name What is playing (legacy/playing.cpp)
  /// @{

  /// The player's state, IPOD_PLAYERSTATE_..., 255 after a failure: `001C`, answer `001D
  /// length(4) position(4) state`.
  int getipodplayerstatenum(unsigned char* state);
  /// The same with the track's length and position in milliseconds, 0 after a failure. Any frame
  /// with a good checksum is taken for the answer.
  int GetIpodPlayerStateNumEx(unsigned char* state, unsigned long* length, unsigned long* position);
  /// The state as "Stopped", "Playing", "Paused", "Fast Forward", "Fast Rewind", "Ending Fast
  /// Forward or Rewind" or "Unknown": into at least 30 characters, as screens show the texts whole.
  /// The three that begin with "Fast" or "Ending" overrun a buffer of SIZE_IPODPLAYERSTATE; who has
  /// no more calls getipodplayerstatenum.
  int getipodplayerstate(wchar_t* text);
  /// 1 when the iPod plays, 0 when not and after a failure.
  int isplaying();
  /// This and the next show the same number, the first four bytes of the packet area's payload,
  /// once the iPod has answered `001C`, and "Unknown" otherwise. GetIpodPlayerStateNumEx has the
  /// true values.
  /// @return the object's own text, which lives as long as the object.
  wchar_t* getipodtracklength();
  /// The same of the position.
  wchar_t* getipodtrackposition();
  /// Index of the current track in the now-playing list: `001E`, answer `001F index(4)`. It is
  /// stored as 0 when no answer came to a request that was sent.
  int getcurrentplayingtrackindex(unsigned long* index);
  /// Title of the current track, converted, into at least 250 characters: its index as above, then
  /// `0020 track(4)`, answer `0021 title`.
  int getindexedplayingtracktitle(wchar_t* text);
  /// Name of the current chapter, "Unknown" beforehand, converted, into at least
  /// SIZE_IPODCURRENTPLAYINGTRACKCHAPTERNAME characters: `0007`, answer `0008 name`.
  int getipodcurrentplayingtrackchaptername(wchar_t* text);
  /// Whether the current track is a video: its index as above, then Display Remote `12 00 track(4)
  /// 0000`, answer `13 00 capabilities(4) ...`. @param flag 0x80 when it is, 0 when not
  int iscurrentvideo(int* flag);
  /// Pauses what plays: the state as above, then play control 1 when it is playing.
  /// @return 1 also when nothing plays, and then nothing more is sent.
  int pausestop();
  /// @}

  /// @name Browsing (legacy/browsing.cpp)
  /// @{

  /// The category of the next selection, count and record, IPOD_CATEGORY_...; 0 at first.
  unsigned char getcategory();
  /// Chooses it. Sends nothing.
  void setcategory(unsigned char category);
  /// The category entered last.
  unsigned char getlastcategory();
  /// The workout's progress text, 256 characters of the object.
  wchar_t* getlasttry();
  /// Records of the category: `0018 cc`, answer `0019 count(4)`; 0 after a failure.
  int loadipodcategorydbrecordcount(unsigned long* count);
  /// Goes to the database's top, `0016` or for a hierarchy `003B hh` (ACK `0001 status ...`), and
  /// enters a category there when the status is 0. Prints what came of it to the debug output.
  /// @param category to enter, IPOD_CATEGORY_...
  /// @param count the category's records, 0 after a failure
  /// @param hierarchy IPOD_RESETDBSELECTIONHIERARCHY_...; any other fails and sends nothing
  int selecttop(unsigned char category, unsigned long* count, unsigned char hierarchy);
  /// Selects a record of the category entered last, `0017 cc index(4)` or, sorted by name, `0038 cc
  /// index(4) 04` (ACK), and goes on to `category`. A selected track plays: then the iPod is
  /// stopped first when `category` is that of tracks, no ACK is awaited, and category and count
  /// stay. Prints what came of it to the debug output.
  /// @param category of the list to go on to
  /// @param index of the record, from 0
  /// @param count the records of `category`, 0 for a track or after a failure
  int select(unsigned char category, unsigned short index, unsigned long* count);
  /// Reads a record's name, converted: `001A cc index(4) 00000001`, answer `001B index(4) name`. A
  /// failure or an empty name is tried once more.
  /// @param name receives it
  /// @param index of the record, from 0
  /// @param capacity characters of `name`; a name that does not fit is cut between two characters
  /// @return 1 when the name is not empty.
  int getnextcategorizeddbrecord(wchar_t* name, int capacity, unsigned long index);
  /// Releases record lists of the platform's heap (LocalAlloc): the elements of `*names`, whose
  /// first is their number, itself included, then the array, then `*values`. Either may be null or
  /// point to null. The pointers stay as they are.
  void deleterecords(wchar_t*** names, unsigned long** values);
  /// @}

  /// @name Artwork (legacy/artwork.cpp)
  /// @{

  /// Format identifiers of the artwork: `000E`, answer `000F id(2) pixel format(1) width(2)
  /// height(2) ...`. @param format_ids room for 20; the rest stays as it is. @param count always 0
  int getartworkformats(unsigned short* format_ids, unsigned char* count);
  /// Looks for the artwork of a track: `000C 07 track(4) 0000`, answer `000D 07 (id(2)
  /// count(2))...`.
  /// @param track index in the now-playing list
  /// @param value two bytes from four-byte steps through the answer, beginning with its 07, where
  /// the fourth and fifth byte of a step are not both 0; stays as it is when there is no such step
  int getindexedplayingtrackartworkcount(unsigned long track, unsigned short* value);
  /// Time of a track's first artwork: `001F track(4) id(2) 0000 0001`, answer `002B b0 b1 b2 b3`.
  /// @param track index in the now-playing list
  /// @param format_id as the operation above gives it
  /// @param time b0 * 2^24 + b1 * 2^16 + b2 + b3 + 256; stays as it is after a failure
  int gettrackartworktimes(unsigned long track, unsigned short format_id, unsigned long* time);
  /// Requests the current track's artwork with the value and the time of the two operations above,
  /// `0010 track(4) id(2) time(4)`, and reads the first answer, `0011 ...`, of which nothing is
  /// kept. @return 0 when the track is not known, else whether that answer came.
  int getcurrenttrackartworkdata(unsigned short format_id);
  /// @}

  /// @name Monochrome display (legacy/display_images.cpp)
  /// @{

  /// Pixels of the monochrome display and its pixel format: `0033`, answer `0034 width(2) height(2)
  /// format`. They are stored as 0 when no answer came to a request that was sent.
  int getmonodisplayimagelimits(unsigned short* width, unsigned short* height,
                                unsigned char* pixel_format);
  /// Announces a test image of the display's size, one row to a frame: `0032`. What the frames
  /// carry is the packet area's old payload. @return the last frame's result.
  int setmonoimage();
  /// @}

  /// @name Workout (legacy/workout.cpp)
  /// A workout is started, gets any number of intervals, and is finished. `getlasttry` shows what
  /// was tried last: the step, the line written, or the status with which the iPod refused it,
  /// which no later step of the same call replaces. Only the Storage lingo's ACK counts as the
  /// iPod's. A name goes out with the low byte of each of its characters, as it is:
  /// ipodcomm::LegacyDocumentText makes it fit. The other elements are numbers.
  /// @{

  /// Asks for the iPod's Sports capabilities: Sports `83`, answer `84 cccc ee`; and, when workouts
  /// and user data are both among them (values 1 and 2), for its storage: Storage `01`, answer `02
  /// ...`. Both outputs are optional.
  /// @param supported 1 when both capabilities are there and the storage was asked for, else 0
  /// @param extra the answer's byte `ee`
  /// @return 1 when both are there and both answers came.
  int issports(int* supported, unsigned char* extra);
  /// Writes one line to the open file: Storage `07 oooooooo hh text`, ACK `00 ss ...`, after
  /// closing the port and opening the stored one again. Does nothing when `previous_ok` is 0, so
  /// that calls that hand on each other's result end with the first failure.
  /// @return 1 when the iPod acknowledged with status 0. More than 245 characters do not fit a
  /// frame and fail unsent; the length counts in 16 bits.
  int ipodstoragewritestring(int previous_ok, wchar_t* text);
  /// Closes what may be open, asks whether the iPod takes workouts, opens its gym-equipment file
  /// (Storage `12`, answer `04 hh`) and writes the header.
  /// @param manufacturer_id, model, serial_number of the equipment
  /// @param gym_name, gym_location where it stands
  /// @param weight_kg of the user
  /// @param ignored not used
  /// @param equipment IPOD_SPORTS_WORKOUTTYPE_...; any other ends the header before its type
  /// @return 1 when the whole header was written.
  int startworkout(unsigned char equipment, wchar_t* manufacturer_id, wchar_t* ignored,
                   wchar_t* model, wchar_t* serial_number, wchar_t* gym_name, wchar_t* gym_location,
                   float weight_kg);
  /// Writes an interval. All values are already in the units of the document, distance in
  /// kilometres; integers are written as signed ones.
  /// @param seconds, kcal, km since the start
  /// @param pace seconds per kilometre
  /// @param bpm beats per minute; 0 stands in the document as 0
  /// @param incline per cent
  /// @param level of resistance
  /// @param ignored_speed, ignored1, ignored2 not used
  /// @param event IPOD_SPORTS_INTERVAL_TYPE_...; INPROCESS has no element, and any unknown one ends
  /// the interval before it
  /// @return 1 when all of it was written.
  int intervalworkout(unsigned char event, unsigned int seconds, unsigned int kcal, float km,
                      float ignored_speed, unsigned int pace, unsigned int ignored1,
                      unsigned int ignored2, unsigned int bpm, float incline, unsigned int level);
  /// Writes the summary and closes the file (Storage `08 hh`, ACK), also when the summary failed.
  /// The iPod completes the document.
  /// @param seconds, kcal, km of the whole workout
  /// @param pace the mean, seconds per kilometre
  /// @param bpm the mean, beats per minute
  /// @param ignored_speed, ignored1, ignored2 not used
  /// @return 1 when the summary was written and the file closed.
  int finishworkout(unsigned int seconds, unsigned int kcal, float km, float ignored_speed,
                    unsigned int pace, unsigned int ignored1, unsigned int ignored2,
                    unsigned int bpm);
  /// Bytes of the document that the iPod has acknowledged since `startworkout`. The number stays
  /// when the file is closed. Sends nothing.
  unsigned long getworkoutsize();
  /// @}

  /// @name Self-test (legacy/self_test.cpp)
  /// A regression test for a service screen: it is started, and then every call performs a step.
  /// Title and detail are texts to show and hold 256 characters each; any output may be null.
  /// @{

  /// Opens the stored port and starts over with the first step. Close an open port first: it would
  /// stay open, out of reach, and when it is the stored one, opening fails. `detail` says that the
  /// port was opened in either case. @return 1 when the port opened.
  int startregressiontest(wchar_t* detail);
  /// Performs the next step: connection, information, tracks of the first album, play and pause and
  /// stop, end. `detail` follows what is being done, and names what failed. Blocks for as long as
  /// the step takes.
  /// @param title receives the step's name, and what the iPod told
  /// @param detail receives what is being done
  /// @param result 1 when the step passed; a failed one does not end the sequence
  /// @return 1 when further steps follow, 0 after the last, which closes the port.
  int nextregressiontest(wchar_t* title, int* result, wchar_t* detail);
  /// @}

 private:
  friend struct ipodPeer;  // the tests' look inside

  int SendSmall(std::uint8_t lingo, std::uint8_t command,
                std::initializer_list<ipodcomm::PayloadField> payload);
  int SendExtended(std::uint16_t command, std::initializer_list<ipodcomm::PayloadField> payload);
  int SendDisplayImage(unsigned long header_size, unsigned long count);
  void FillPayload(std::initializer_list<ipodcomm::PayloadField> payload);
  int ExtractReply(std::uint8_t command, bool (*is_reply)(const ipodcomm::FrameBytes& frame),
                   wchar_t* text, std::uint8_t capacity, std::uint8_t offset);
  bool AnswerRequest(const ipodcomm::FrameBytes& frame);
  bool AnswerQuestionInBetween(unsigned char* bytes, unsigned long length);
  unsigned long ReadExtendedFrame(unsigned char* bytes);
  bool AwaitStorageAck(std::uint8_t* status);
  void NoteModel();

  int ReadGeneralText(int sent, unsigned char reply_command, unsigned char offset, wchar_t* text);
  wchar_t* ShowPlayTime(wchar_t* text, unsigned char offset);
  int ResetSelection(unsigned char hierarchy);
  int SelectRecord(unsigned char category, unsigned short index, unsigned long* count);
  int EnterWhenAcknowledged(unsigned char category, unsigned long* count);
  int ReadRecordName(wchar_t* name, int capacity, unsigned long index);

  std::uint8_t lingo_ = 0;
  std::uint8_t command_ = 0;
  std::uint8_t payload_[256] = {};  // shared by all commands: what one leaves, the next may send
  std::uint16_t payload_length_ = 0;
  std::uint16_t extended_command_ = 0;
  std::uint8_t category_ = 0;
  std::uint8_t last_category_ = 0;
  std::uint32_t self_test_step_ = 0;
  std::int32_t top_selection_result_ = 0;
  std::uint8_t storage_file_handle_ = 0;
  std::uint32_t storage_write_offset_ = 0;
  std::uint32_t workout_size_ = 0;  // acknowledged; the offset counts failed writes too
  std::int32_t extended_model_ = 0;
  std::int32_t name_sort_ = 0;
  wchar_t track_length_text_[SIZE_IPODTRACKLENGTH] = {};
  wchar_t track_position_text_[SIZE_IPODTRACKPOSITION] = {};
  wchar_t status_text_[256] = {};
  ipodserial serial_;
};
