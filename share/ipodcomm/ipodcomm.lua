-- SPDX-License-Identifier: MIT
-- Dissects recordings of the serial line between a console and an iPod (link type 250).
--
-- Wireshark and tshark read it from a folder of Lua plug-ins, or with -X lua_script:ipodcomm.lua. It
-- takes over the link type by itself. Filters, besides those of the fields (ipodcomm.status):
--
--   ipodcomm.lingo, ipodcomm.command, ipodcomm.name, ipodcomm.transaction_id
--   ipodcomm.response_to, ipodcomm.response_in, ipodcomm.response_time
--   ipodcomm.bad_checksum, ipodcomm.refused, ipodcomm.retry, ipodcomm.unanswered, ipodcomm.late,
--   ipodcomm.unasked, ipodcomm.other_identifier, ipodcomm.other_sender, ipodcomm.damaged,
--   ipodcomm.no_frame, ipodcomm.line_event

-- What follows up to the end of the table is made from the folder wire/ of the sources.
-- The table begins here.
local field_types = {
  { "about_command", "command", "uint32" },
  { "about_lingo", "lingo", "uint32" },
  { "album_text", "album", "string" },
  { "artist_text", "artist", "string" },
  { "artwork_index", "artwork index", "uint32" },
  { "artworks_list", "artworks", "none" },
  { "bottom", "bottom", "uint32" },
  { "bundle_seed_text", "bundle seed", "string" },
  { "buttons", "buttons", "uint32" },
  { "capabilities", "capabilities", "uint32" },
  { "capabilities64", "capabilities", "uint64" },
  { "capabilities_bytes", "capabilities", "bytes" },
  { "category", "category", "uint32" },
  { "change", "change", "uint32" },
  { "chapter_begins_at", "chapter begins at", "uint32" },
  { "chapter_count", "chapter count", "uint32" },
  { "chapter_index", "chapter index", "uint32" },
  { "chapter_length", "chapter length", "uint32" },
  { "chapter_text", "chapter", "string" },
  { "class", "class", "uint32" },
  { "composer_text", "composer", "string" },
  { "control", "control", "uint32" },
  { "count", "count", "uint32" },
  { "data_text", "data", "string" },
  { "day", "day", "uint32" },
  { "delay", "delay", "uint32" },
  { "description_text", "description", "string" },
  { "device_id", "device ID", "uint32" },
  { "ending_text", "ending", "string" },
  { "event", "event", "uint32" },
  { "events64", "events", "uint64" },
  { "feature", "feature", "uint32" },
  { "file_handle", "file handle", "uint32" },
  { "first_record", "first record", "uint32" },
  { "first_track", "first track", "uint32" },
  { "flag", "flag", "uint32" },
  { "format_id", "format ID", "uint32" },
  { "formats_list", "formats", "none" },
  { "free_space64", "free space", "uint64" },
  { "genre_text", "genre", "string" },
  { "height", "height", "uint32" },
  { "hierarchy", "hierarchy", "uint32" },
  { "hour", "hour", "uint32" },
  { "how", "how", "uint32" },
  { "information", "information", "uint32" },
  { "ipod_bytes", "iPod", "bytes" },
  { "largest_file", "largest file", "uint32" },
  { "largest_write", "largest write", "uint32" },
  { "least_ipod_firmware_bytes", "least iPod firmware", "bytes" },
  { "least_lingo_version_bytes", "least lingo version", "bytes" },
  { "left", "left", "uint32" },
  { "limits_list", "limits", "none" },
  { "lingoes", "lingoes", "uint32" },
  { "lingoes_list", "lingoes", "none" },
  { "longest_wait", "longest wait", "uint32" },
  { "lyrics_text", "lyrics", "string" },
  { "manufacturer_text", "manufacturer", "string" },
  { "maximum_payload", "maximum payload", "uint32" },
  { "metadata", "metadata", "uint32" },
  { "minute", "minute", "uint32" },
  { "mode", "mode", "uint32" },
  { "model_id", "model ID", "uint32" },
  { "model_number_text", "model number", "string" },
  { "month", "month", "uint32" },
  { "more", "more", "uint32" },
  { "more_bytes", "more", "bytes" },
  { "name_text", "name", "string" },
  { "notifications", "notifications", "uint32" },
  { "offset", "offset", "uint32" },
  { "options", "options", "uint32" },
  { "options64", "options", "uint64" },
  { "padding_bytes", "padding", "bytes" },
  { "part", "part", "uint32" },
  { "part_flags", "part flags", "uint32" },
  { "pixel_format", "pixel format", "uint32" },
  { "pixels_bytes", "pixels", "bytes" },
  { "podcast_text", "podcast", "string" },
  { "position", "position", "uint32" },
  { "protocol_index", "protocol index", "uint32" },
  { "protocol_text", "protocol", "string" },
  { "record_count", "record count", "uint32" },
  { "record_index", "record index", "uint32" },
  { "record_text", "record", "string" },
  { "repeat", "repeat", "uint32" },
  { "reserved_bytes", "reserved", "bytes" },
  { "restore_on_exit", "restore on exit", "uint32" },
  { "rf_certifications", "RF certifications", "uint32" },
  { "right", "right", "uint32" },
  { "row_size", "row size", "uint32" },
  { "sample_rate", "sample rate", "uint32" },
  { "sample_rates_list", "sample rates", "none" },
  { "second", "second", "uint32" },
  { "serial_number_text", "serial number", "string" },
  { "setting", "setting", "uint32" },
  { "shuffle", "shuffle", "uint32" },
  { "sort_order", "sort order", "uint32" },
  { "speed", "speed", "uint32" },
  { "state", "state", "uint32" },
  { "status", "status", "uint32" },
  { "status_types", "status types", "uint32" },
  { "time_offset", "time offset", "uint32" },
  { "times_list", "times", "none" },
  { "title_text", "title", "string" },
  { "token", "token", "uint32" },
  { "token_count", "token count", "uint32" },
  { "token_type", "token type", "uint32" },
  { "tokens_list", "tokens", "none" },
  { "top", "top", "uint32" },
  { "total_space64", "total space", "uint64" },
  { "track_count", "track count", "uint32" },
  { "track_index", "track index", "uint32" },
  { "track_length", "track length", "uint32" },
  { "type", "type", "uint32" },
  { "user_index_bytes", "user index", "bytes" },
  { "value", "value", "uint32" },
  { "version_text", "version", "string" },
  { "weekday", "weekday", "uint32" },
  { "weight", "weight", "uint32" },
  { "width", "width", "uint32" },
  { "year", "year", "uint32" },
}

-- Fields that several commands have.
local shared = {}
shared.about_lingo = { kind = "number", name = "lingo", key = "about_lingo", size = 1, values = {[0] = "General", [1] = "Microphone", [2] = "Simple Remote", [3] = "Display Remote", [4] = "Extended Interface", [5] = "Accessory Power", [6] = "USB Host Control", [7] = "RF Tuner", [8] = "Accessory Equalizer", [9] = "Sports", [10] = "Digital Audio", [12] = "Storage", } }
shared.status = { kind = "number", name = "status", key = "status", size = 1, values = {[0] = "ok", [1] = "command failed", [2] = "out of resources", [3] = "bad parameter", [4] = "unknown ID", [5] = "reserved", [6] = "pending", [7] = "accessory not authenticated", } }
shared.about_command = { kind = "number", name = "command", key = "about_command", size = 1, command = true }
shared.by_status = { kind = "choice", name = "status",
  cases = {
    [0] = {},
    [1] = {},
    [2] = {},
    [3] = {},
    [4] = {},
    [5] = {},
    [6] = {
      { kind = "number", name = "longest wait", key = "longest_wait", size = 4, unit = "ms" },
    },
    [7] = {},
  },
}
shared.mode = { kind = "number", name = "mode", key = "mode", size = 1, values = {[0] = "standard", [1] = "extended", } }
shared.name_text = { kind = "text", name = "name", key = "name_text" }
shared.version_text = { kind = "version", name = "version", key = "version_text", size = 3 }
shared.model_number_text = { kind = "text", name = "model number", key = "model_number_text" }
shared.version_text_2 = { kind = "version", name = "version", key = "version_text", size = 2 }
shared.maximum_payload = { kind = "number", name = "maximum payload", key = "maximum_payload", size = 2, unit = "bytes" }
shared.device_id = { kind = "number", name = "device ID", key = "device_id", size = 4, hexadecimal = true }
shared.type = { kind = "number", name = "type", key = "type", size = 1, values = {[0] = "capabilities", [1] = "name", [2] = "least iPod firmware", [3] = "least lingo version", [4] = "firmware version", [5] = "hardware version", [6] = "manufacturer", [7] = "model number", [8] = "serial number", [9] = "maximum payload", [11] = "status types", [12] = "RF certifications", } }
shared.by_type = { kind = "choice", name = "type",
  cases = {
    [0] = {
      { kind = "number", name = "capabilities", key = "capabilities", size = 4, bits = {{0x01, "capabilities"}, {0x02, "name"}, {0x04, "least iPod firmware"}, {0x08, "least lingo version"}, {0x10, "firmware version"}, {0x20, "hardware version"}, {0x40, "manufacturer"}, {0x80, "model number"}, {0x100, "serial number"}, {0x200, "maximum payload"}, {0x800, "status types"}, {0x1000, "RF certifications"}, } },
    },
    [1] = { shared.name_text },
    [2] = {
      { kind = "bytes", name = "least iPod firmware", key = "least_ipod_firmware_bytes", optional = true },
    },
    [3] = {
      { kind = "bytes", name = "least lingo version", key = "least_lingo_version_bytes", optional = true },
    },
    [4] = { shared.version_text },
    [5] = { shared.version_text },
    [6] = { { kind = "text", name = "manufacturer", key = "manufacturer_text" } },
    [7] = { shared.model_number_text },
    [8] = {
      { kind = "text", name = "serial number", key = "serial_number_text", optional = true },
    },
    [9] = { shared.maximum_payload },
    [11] = {
      { kind = "number", name = "status types", key = "status_types", size = 4, hexadecimal = true },
    },
    [12] = {
      { kind = "number", name = "RF certifications", key = "rf_certifications", size = 4, hexadecimal = true },
    },
  },
}
shared.class = { kind = "number", name = "class", key = "class", size = 1, values = {[0] = "video out", [1] = "screen configuration", [2] = "video signal format", [3] = "line out usage", [8] = "video out connection", [9] = "closed captioning", [10] = "video monitor aspect", [12] = "subtitles", [13] = "video alternate audio", [15] = "pause on removal", } }
shared.setting = { kind = "number", name = "setting", key = "setting", size = 1, values = {[0] = "off", [1] = "on", [2] = "ask user", } }
shared.setting_2 = { kind = "number", name = "setting", key = "setting", size = 1, values = {[0] = "off", [1] = "on", } }
shared.by_class = { kind = "choice", name = "class",
  cases = {
    [0] = { shared.setting },
    [1] = {
      { kind = "number", name = "setting", key = "setting", size = 1, values = {[0] = "fill entire screen", [1] = "fit to screen edge", } },
    },
    [2] = {
      { kind = "number", name = "setting", key = "setting", size = 1, values = {[0] = "NTSC", [1] = "PAL", } },
    },
    [3] = { shared.setting },
    [8] = {
      { kind = "number", name = "setting", key = "setting", size = 1, values = {[0] = "none", [1] = "composite", [2] = "S-video", [3] = "component", } },
    },
    [9] = { shared.setting_2 },
    [10] = {
      { kind = "number", name = "setting", key = "setting", size = 1, values = {[0] = "4:3", [1] = "16:9", } },
    },
    [12] = { shared.setting_2 },
    [13] = { shared.setting_2 },
    [15] = { shared.setting_2 },
  },
  otherwise = { { kind = "number", name = "setting", key = "setting", size = 1 } },
}
shared.restore_on_exit = { kind = "number", name = "restore on exit", key = "restore_on_exit", size = 1, values = {[0] = "no", [1] = "yes", } }
shared.token_count = { kind = "number", name = "token count", key = "token_count", size = 1 }
shared.token_type = { kind = "number", name = "token type", key = "token_type", size = 1, hexadecimal = true }
shared.token = { kind = "number", name = "token", key = "token", size = 1, values = {[0] = "identification", [1] = "accessory capabilities", [2] = "accessory information", [3] = "iPod preference", [4] = "protocol", [5] = "bundle seed", [8] = "protocol metadata", [14] = "audio sample rates", [15] = "video delay", } }
shared.protocol_index = { kind = "number", name = "protocol index", key = "protocol_index", size = 1 }
shared.events64 = { kind = "number", name = "events", key = "events64", size = 8, hexadecimal = true }
shared.buttons = { kind = "low_first", name = "buttons", key = "buttons", bits = {} }
shared.type_2 = { kind = "number", name = "type", key = "type", size = 1, values = {[0] = "capabilities", [1] = "chapter", [2] = "artist", [3] = "album", [4] = "genre", [5] = "title", [6] = "composer", [7] = "lyrics", [8] = "artwork count", } }
shared.track_index = { kind = "number", name = "track index", key = "track_index", size = 4 }
shared.chapter_index = { kind = "number", name = "chapter index", key = "chapter_index", size = 2 }
shared.capabilities = { kind = "number", name = "capabilities", key = "capabilities", size = 4, bits = {{0x01, "audiobook"}, {0x02, "chapters"}, {0x04, "artwork"}, {0x08, "lyrics"}, {0x80, "video"}, {0x100, "queued as video"}, } }
shared.track_length = { kind = "number", name = "track length", key = "track_length", size = 4, unit = "ms" }
shared.chapter_count = { kind = "number", name = "chapter count", key = "chapter_count", size = 2 }
shared.chapter_text = { kind = "text", name = "chapter", key = "chapter_text" }
shared.artist_text = { kind = "text", name = "artist", key = "artist_text" }
shared.album_text = { kind = "text", name = "album", key = "album_text" }
shared.genre_text = { kind = "text", name = "genre", key = "genre_text" }
shared.title_text = { kind = "text", name = "title", key = "title_text" }
shared.composer_text = { kind = "text", name = "composer", key = "composer_text" }
shared.part_flags = { kind = "number", name = "part flags", key = "part_flags", size = 1, hexadecimal = true }
shared.part = { kind = "number", name = "part", key = "part", size = 2 }
shared.lyrics_text = { kind = "text", name = "lyrics", key = "lyrics_text" }
shared.format_id = { kind = "number", name = "format ID", key = "format_id", size = 2 }
shared.count = { kind = "number", name = "count", key = "count", size = 2 }
shared.artworks_list = { kind = "repeated", name = "artworks", key = "artworks_list",
  fields = { shared.format_id, shared.count },
}
shared.time_offset = { kind = "number", name = "time offset", key = "time_offset", size = 4, unit = "ms" }
shared.pixel_format = { kind = "number", name = "pixel format", key = "pixel_format", size = 1, values = {[1] = "monochrome", [2] = "RGB 565", } }
shared.width = { kind = "number", name = "width", key = "width", size = 2, unit = "pixels" }
shared.height = { kind = "number", name = "height", key = "height", size = 2, unit = "pixels" }
shared.row_size = { kind = "number", name = "row size", key = "row_size", size = 4, unit = "bytes" }
shared.pixels_bytes = { kind = "bytes", name = "pixels", key = "pixels_bytes", optional = true }
shared.by_part = { kind = "choice", name = "part",
  cases = {
    [0] = {
      shared.pixel_format,
      shared.width,
      shared.height,
      { kind = "number", name = "left", key = "left", size = 2, unit = "pixels" },
      { kind = "number", name = "top", key = "top", size = 2, unit = "pixels" },
      { kind = "number", name = "right", key = "right", size = 2, unit = "pixels" },
      { kind = "number", name = "bottom", key = "bottom", size = 2, unit = "pixels" },
      shared.row_size,
      shared.pixels_bytes,
    },
  },
  otherwise = { shared.pixels_bytes },
}
shared.artwork_index = { kind = "number", name = "artwork index", key = "artwork_index", size = 2 }
shared.times_list = { kind = "repeated", name = "times", key = "times_list",
  fields = { shared.time_offset },
}
shared.chapter_index_2 = { kind = "number", name = "chapter index", key = "chapter_index", size = 4 }
shared.position = { kind = "number", name = "position", key = "position", size = 4, unit = "ms" }
shared.speed = { kind = "number", name = "speed", key = "speed", size = 1, values = {[255] = "slow", [0] = "normal", [1] = "fast", } }
shared.restore_on_exit_2 = { kind = "number", name = "restore on exit", key = "restore_on_exit", size = 1, optional = true, values = {[0] = "no", [1] = "yes", } }
shared.type_3 = { kind = "number", name = "type", key = "type", size = 1, values = {[0] = "capabilities", [1] = "podcast", [2] = "release date", [3] = "description", [4] = "lyrics", [5] = "genre", [6] = "composer", [7] = "artwork count", } }
shared.category = { kind = "number", name = "category", key = "category", size = 1, values = {[0] = "top", [1] = "playlist", [2] = "artist", [3] = "album", [4] = "genre", [5] = "track", [6] = "composer", [7] = "audiobook", [8] = "podcast", [9] = "nested playlist", } }
shared.record_index = { kind = "number", name = "record index", key = "record_index", size = 4 }
shared.record_count = { kind = "number", name = "record count", key = "record_count", size = 4 }
shared.shuffle = { kind = "number", name = "shuffle", key = "shuffle", size = 1, values = {[0] = "off", [1] = "tracks", [2] = "albums", } }
shared.repeat_mode = { kind = "number", name = "repeat", key = "repeat", size = 1, values = {[0] = "off", [1] = "one", [2] = "all", } }
shared.track_count = { kind = "number", name = "track count", key = "track_count", size = 4 }
shared.type_4 = { kind = "number", name = "type", key = "type", size = 1, values = {[2] = "flag", [3] = "weight", [4] = "value", } }
shared.by_type_2 = { kind = "choice", name = "type",
  cases = {
    [2] = { { kind = "number", name = "flag", key = "flag", size = 1 } },
    [3] = { { kind = "number", name = "weight", key = "weight", size = 2 } },
    [4] = { { kind = "number", name = "value", key = "value", size = 1 } },
  },
}
shared.total_space64 = { kind = "number", name = "total space", key = "total_space64", size = 8, unit = "bytes" }
shared.largest_file = { kind = "number", name = "largest file", key = "largest_file", size = 4, unit = "bytes" }
shared.largest_write = { kind = "number", name = "largest write", key = "largest_write", size = 2, unit = "bytes" }
shared.reserved_bytes = { kind = "bytes", name = "reserved", key = "reserved_bytes", size = 6 }
shared.file_handle = { kind = "number", name = "file handle", key = "file_handle", size = 1 }

local lingoes = {
  [0x00] = { name = "General", ack = 0x02, commands = {
    { number = 0x00, name = "RequestIdentify", from = "ipod",
      fields = {} },
    { number = 0x01, name = "Identify", from = "accessory", no_identifier = true,
      fields = { shared.about_lingo } },
    { number = 0x02, name = "ACK",
      fields = { shared.status, shared.about_command, shared.by_status } },
    { number = 0x03, name = "RequestRemoteUIMode", from = "accessory", acknowledged = true, no_identifier = true,
      fields = {} },
    { number = 0x04, name = "ReturnRemoteUIMode", from = "ipod",
      fields = { shared.mode } },
    { number = 0x05, name = "EnterRemoteUIMode", from = "accessory", acknowledged = true,
      fields = {} },
    { number = 0x06, name = "ExitRemoteUIMode", from = "accessory", acknowledged = true,
      fields = {} },
    { number = 0x07, name = "RequestiPodName", from = "accessory", reply = 0x08,
      fields = {} },
    { number = 0x08, name = "ReturniPodName", from = "ipod",
      fields = { shared.name_text } },
    { number = 0x09, name = "RequestiPodSoftwareVersion", from = "accessory", reply = 0x0A,
      fields = {} },
    { number = 0x0A, name = "ReturniPodSoftwareVersion", from = "ipod",
      fields = { shared.version_text } },
    { number = 0x0B, name = "RequestiPodSerialNum", from = "accessory", reply = 0x0C,
      fields = {} },
    { number = 0x0C, name = "ReturniPodSerialNum", from = "ipod",
      fields = { { kind = "text", name = "serial number", key = "serial_number_text" } } },
    { number = 0x0D, name = "RequestiPodModelNum", from = "accessory", reply = 0x0E,
      fields = {} },
    { number = 0x0E, name = "ReturniPodModelNum", from = "ipod",
      fields = {
      { kind = "number", name = "model ID", key = "model_id", size = 4, hexadecimal = true },
      shared.model_number_text,
    } },
    { number = 0x0F, name = "RequestLingoProtocolVersion", from = "accessory", reply = 0x10,
      fields = { shared.about_lingo } },
    { number = 0x10, name = "ReturnLingoProtocolVersion", from = "ipod",
      fields = { shared.about_lingo, shared.version_text_2 } },
    { number = 0x11, name = "RequestMaxPayloadSize", from = "accessory", reply = 0x12,
      fields = {} },
    { number = 0x12, name = "ReturnMaxPayloadSize", from = "ipod",
      fields = { shared.maximum_payload } },
    { number = 0x13, name = "IdentifyDeviceLingoes", from = "accessory", acknowledged = true, no_identifier = true,
      fields = {
      { kind = "number", name = "lingoes", key = "lingoes", size = 4, bits = {{0x01, "General"}, {0x02, "Microphone"}, {0x04, "Simple Remote"}, {0x08, "Display Remote"}, {0x10, "Extended Interface"}, {0x20, "Accessory Power"}, {0x40, "USB Host Control"}, {0x80, "RF Tuner"}, {0x100, "Accessory Equalizer"}, {0x200, "Sports"}, {0x400, "Digital Audio"}, {0x1000, "Storage"}, } },
      { kind = "number", name = "options", key = "options", size = 4, values = {[0] = "low power", [4] = "sometimes high power", } },
      shared.device_id,
    } },
    { number = 0x23, name = "NotifyiPodStateChange", from = "ipod",
      fields = { { kind = "number", name = "state", key = "state", size = 1, hexadecimal = true } } },
    { number = 0x27, name = "GetAccessoryInfo", from = "ipod", reply = 0x28,
      fields = {
      shared.type,
      { kind = "choice", name = "type",
        cases = {
          [0] = {},
          [1] = {},
          [2] = { { kind = "bytes", name = "iPod", key = "ipod_bytes", optional = true } },
          [3] = {
            { kind = "number", name = "lingo", key = "about_lingo", size = 1, optional = true, values = {[0] = "General", [1] = "Microphone", [2] = "Simple Remote", [3] = "Display Remote", [4] = "Extended Interface", [5] = "Accessory Power", [6] = "USB Host Control", [7] = "RF Tuner", [8] = "Accessory Equalizer", [9] = "Sports", [10] = "Digital Audio", [12] = "Storage", } },
          },
          [4] = {},
          [5] = {},
          [6] = {},
          [7] = {},
          [8] = {},
          [9] = {},
          [11] = {},
          [12] = {},
        },
      },
    } },
    { number = 0x28, name = "RetAccessoryInfo", from = "accessory", no_identifier = true,
      fields = { shared.type, shared.by_type } },
    { number = 0x29, name = "GetiPodPreferences", from = "accessory", reply = 0x2A,
      fields = { shared.class } },
    { number = 0x2A, name = "RetiPodPreferences", from = "ipod",
      fields = { shared.class, shared.by_class } },
    { number = 0x2B, name = "SetiPodPreferences", from = "accessory", acknowledged = true,
      fields = { shared.class, shared.by_class, shared.restore_on_exit } },
    { number = 0x37, name = "SetUIMode", from = "accessory", acknowledged = true,
      fields = { shared.mode } },
    { number = 0x38, name = "StartIDPS", from = "accessory", acknowledged = true,
      fields = {} },
    { number = 0x39, name = "SetFIDTokenValues", from = "accessory", reply = 0x3A,
      fields = {
      shared.token_count,
      { kind = "records", name = "tokens", key = "tokens_list",
        fields = {
          shared.token_type,
          shared.token,
          { kind = "choice", name = "token",
            cases = {
              [0] = {
                { kind = "counted", name = "lingoes", key = "lingoes_list",
                  fields = { shared.about_lingo },
                },
                { kind = "number", name = "options", key = "options", size = 4, hexadecimal = true },
                shared.device_id,
              },
              [1] = {
                { kind = "number", name = "capabilities", key = "capabilities64", size = 8, hexadecimal = true },
              },
              [2] = { shared.type, shared.by_type },
              [3] = { shared.class, shared.by_class, shared.restore_on_exit },
              [4] = {
                shared.protocol_index,
                { kind = "text", name = "protocol", key = "protocol_text" },
              },
              [5] = {
                { kind = "text", name = "bundle seed", key = "bundle_seed_text" },
                { kind = "bytes", name = "padding", key = "padding_bytes", optional = true },
              },
              [8] = {
                shared.protocol_index,
                { kind = "number", name = "metadata", key = "metadata", size = 1, hexadecimal = true },
              },
              [14] = {
                { kind = "repeated", name = "sample rates", key = "sample_rates_list",
                  fields = {
                    { kind = "number", name = "sample rate", key = "sample_rate", size = 4, unit = "Hz" },
                  },
                },
              },
              [15] = { { kind = "number", name = "delay", key = "delay", size = 4, unit = "ms" } },
            },
          },
        },
      },
    } },
    { number = 0x3A, name = "RetFIDTokenValueACKs", from = "ipod",
      fields = {
      shared.token_count,
      { kind = "records", name = "tokens", key = "tokens_list",
        fields = {
          shared.token_type,
          shared.token,
          { kind = "number", name = "status", key = "status", size = 1, values = {[0] = "accepted", [1] = "malformed", [2] = "not supported", } },
          { kind = "choice", name = "token",
            cases = {
              [0] = {},
              [1] = {},
              [2] = { shared.type },
              [3] = { shared.class },
              [4] = { shared.protocol_index },
              [5] = {},
              [8] = { shared.protocol_index },
              [14] = {},
              [15] = {},
            },
          },
        },
      },
    } },
    { number = 0x3B, name = "EndIDPS", from = "accessory", reply = 0x3C,
      fields = {
      { kind = "number", name = "how", key = "how", size = 1, values = {[0] = "all tokens sent", } },
    } },
    { number = 0x3C, name = "IDPSStatus", from = "ipod",
      fields = {
      { kind = "number", name = "status", key = "status", size = 1, values = {[0] = "identified", [1] = "tokens missing", [3] = "abandoned", [5] = "not to be tried again", } },
    } },
    { number = 0x49, name = "SetEventNotification", from = "accessory", acknowledged = true,
      fields = { shared.events64 } },
    { number = 0x4A, name = "iPodNotification", from = "ipod",
      fields = {
      { kind = "number", name = "event", key = "event", size = 1, hexadecimal = true },
      { kind = "bytes", name = "more", key = "more_bytes", optional = true },
    } },
    { number = 0x4B, name = "GetiPodOptionsForLingo", from = "accessory", reply = 0x4C,
      fields = { shared.about_lingo } },
    { number = 0x4C, name = "RetiPodOptionsForLingo", from = "ipod",
      fields = {
      shared.about_lingo,
      { kind = "choice", name = "lingo",
        cases = {
          [4] = {
            { kind = "number", name = "options", key = "options64", size = 8, bits = {{0x02, "track information from the database"}, } },
          },
          [9] = {
            { kind = "number", name = "options", key = "options64", size = 8, bits = {{0x02, "workouts"}, } },
          },
        },
        otherwise = {
          { kind = "number", name = "options", key = "options64", size = 8, hexadecimal = true },
        },
      },
    } },
    { number = 0x4F, name = "GetSupportedEventNotification", from = "accessory", reply = 0x51,
      fields = {} },
    { number = 0x50, name = "CancelCommand", from = "accessory", acknowledged = true,
      fields = {} },
    { number = 0x51, name = "RetSupportedEventNotification", from = "ipod",
      fields = { shared.events64 } },
  } },
  [0x02] = { name = "Simple Remote", ack = 0x01, commands = {
    { number = 0x00, name = "ContextButtonStatus", from = "accessory",
      fields = {
      { kind = "low_first", name = "buttons", key = "buttons", bits = {{0x01, "play/pause"}, {0x02, "volume up"}, {0x04, "volume down"}, {0x08, "next track"}, {0x10, "previous track"}, {0x20, "next album"}, {0x40, "previous album"}, {0x80, "stop"}, {0x100, "play"}, {0x200, "pause"}, {0x400, "mute"}, {0x800, "next chapter"}, {0x1000, "previous chapter"}, {0x2000, "next playlist"}, {0x4000, "previous playlist"}, {0x8000, "shuffle"}, {0x10000, "repeat"}, {0x20000, "power on"}, {0x40000, "power off"}, {0x80000, "backlight for 30 seconds"}, {0x100000, "fast forward"}, {0x200000, "rewind"}, {0x400000, "menu"}, {0x800000, "select"}, {0x1000000, "up"}, {0x2000000, "down"}, {0x4000000, "backlight off"}, } },
    } },
    { number = 0x01, name = "ACK", from = "ipod",
      fields = { shared.status, shared.about_command, shared.by_status } },
    { number = 0x02, name = "ImageButtonStatus", from = "accessory", acknowledged = true,
      fields = { shared.buttons } },
    { number = 0x03, name = "VideoButtonStatus", from = "accessory", acknowledged = true,
      fields = { shared.buttons } },
    { number = 0x04, name = "AudioButtonStatus", from = "accessory", acknowledged = true,
      fields = { shared.buttons } },
  } },
  [0x03] = { name = "Display Remote", ack = 0x00, commands = {
    { number = 0x00, name = "ACK", from = "ipod",
      fields = { shared.status, shared.about_command, shared.by_status } },
    { number = 0x12, name = "GetIndexedPlayingTrackInfo", from = "accessory", reply = 0x13,
      fields = { shared.type_2, shared.track_index, shared.chapter_index } },
    { number = 0x13, name = "RetIndexedPlayingTrackInfo", from = "ipod",
      fields = {
      shared.type_2,
      { kind = "choice", name = "type",
        cases = {
          [0] = { shared.capabilities, shared.track_length, shared.chapter_count },
          [1] = {
            { kind = "number", name = "chapter begins at", key = "chapter_begins_at", size = 4, unit = "ms" },
            shared.chapter_text,
          },
          [2] = { shared.artist_text },
          [3] = { shared.album_text },
          [4] = { shared.genre_text },
          [5] = { shared.title_text },
          [6] = { shared.composer_text },
          [7] = { shared.part_flags, shared.part, shared.lyrics_text },
          [8] = { shared.artworks_list },
        },
      },
    } },
    { number = 0x18, name = "GetTrackArtworkData", from = "accessory", reply = 0x19, streams = true,
      fields = { shared.track_index, shared.format_id, shared.time_offset } },
    { number = 0x19, name = "RetTrackArtworkData", from = "ipod",
      fields = { shared.part, shared.by_part } },
    { number = 0x1F, name = "GetTrackArtworkTimes", from = "accessory", reply = 0x20,
      fields = { shared.track_index, shared.format_id, shared.artwork_index, shared.count } },
    { number = 0x20, name = "RetTrackArtworkTimes", from = "ipod",
      fields = { shared.times_list } },
  } },
  [0x04] = { name = "Extended Interface", ack = 0x01, commands = {
    { number = 0x01, name = "ACK", from = "ipod",
      fields = {
      shared.status,
      { kind = "number", name = "command", key = "about_command", size = 2, command = true },
      shared.by_status,
    } },
    { number = 0x02, name = "GetCurrentPlayingTrackChapterInfo", from = "accessory", reply = 0x03,
      fields = {} },
    { number = 0x03, name = "ReturnCurrentPlayingTrackChapterInfo", from = "ipod",
      fields = {
      { kind = "number", name = "chapter index", key = "chapter_index", size = 4, values = {[4294967295] = "none", } },
      { kind = "number", name = "chapter count", key = "chapter_count", size = 4 },
    } },
    { number = 0x04, name = "SetCurrentPlayingTrackChapter", from = "accessory", acknowledged = true,
      fields = { shared.chapter_index_2 } },
    { number = 0x05, name = "GetCurrentPlayingTrackChapterPlayStatus", from = "accessory", reply = 0x06,
      fields = { shared.chapter_index_2 } },
    { number = 0x06, name = "ReturnCurrentPlayingTrackChapterPlayStatus", from = "ipod",
      fields = {
      { kind = "number", name = "chapter length", key = "chapter_length", size = 4, unit = "ms" },
      shared.position,
    } },
    { number = 0x07, name = "GetCurrentPlayingTrackChapterName", from = "accessory", reply = 0x08,
      fields = {
      { kind = "number", name = "chapter index", key = "chapter_index", size = 4, optional = true },
    } },
    { number = 0x08, name = "ReturnCurrentPlayingTrackChapterName", from = "ipod",
      fields = { shared.chapter_text } },
    { number = 0x09, name = "GetAudiobookSpeed", from = "accessory", reply = 0x0A,
      fields = {} },
    { number = 0x0A, name = "ReturnAudiobookSpeed", from = "ipod",
      fields = { shared.speed } },
    { number = 0x0B, name = "SetAudiobookSpeed", from = "accessory", acknowledged = true,
      fields = { shared.speed, shared.restore_on_exit_2 } },
    { number = 0x0C, name = "GetIndexedPlayingTrackInfo", from = "accessory", reply = 0x0D,
      fields = { shared.type_3, shared.track_index, shared.chapter_index } },
    { number = 0x0D, name = "ReturnIndexedPlayingTrackInfo", from = "ipod",
      fields = {
      shared.type_3,
      { kind = "choice", name = "type",
        cases = {
          [0] = { shared.capabilities, shared.track_length, shared.chapter_count },
          [1] = { { kind = "text", name = "podcast", key = "podcast_text" } },
          [2] = {
            { kind = "number", name = "second", key = "second", size = 1 },
            { kind = "number", name = "minute", key = "minute", size = 1 },
            { kind = "number", name = "hour", key = "hour", size = 1 },
            { kind = "number", name = "day", key = "day", size = 1 },
            { kind = "number", name = "month", key = "month", size = 1 },
            { kind = "number", name = "year", key = "year", size = 2 },
            { kind = "number", name = "weekday", key = "weekday", size = 1, values = {[0] = "Sunday", [1] = "Monday", [2] = "Tuesday", [3] = "Wednesday", [4] = "Thursday", [5] = "Friday", [6] = "Saturday", } },
          },
          [3] = { { kind = "text", name = "description", key = "description_text" } },
          [4] = { shared.part_flags, shared.part, shared.lyrics_text },
          [5] = { shared.genre_text },
          [6] = { shared.composer_text },
          [7] = { shared.artworks_list },
        },
      },
    } },
    { number = 0x0E, name = "GetArtworkFormats", from = "accessory", reply = 0x0F,
      fields = {} },
    { number = 0x0F, name = "RetArtworkFormats", from = "ipod",
      fields = {
      { kind = "repeated", name = "formats", key = "formats_list",
        fields = { shared.format_id, shared.pixel_format, shared.width, shared.height },
      },
    } },
    { number = 0x10, name = "GetTrackArtworkData", from = "accessory", reply = 0x11, streams = true,
      fields = { shared.track_index, shared.format_id, shared.time_offset } },
    { number = 0x11, name = "RetTrackArtworkData", from = "ipod",
      fields = { shared.part, shared.by_part } },
    { number = 0x16, name = "ResetDBSelection", from = "accessory", acknowledged = true,
      fields = {} },
    { number = 0x17, name = "SelectDBRecord", from = "accessory", acknowledged = true,
      fields = { shared.category, shared.record_index } },
    { number = 0x18, name = "GetNumberCategorizedDBRecords", from = "accessory", reply = 0x19,
      fields = { shared.category } },
    { number = 0x19, name = "ReturnNumberCategorizedDBRecords", from = "ipod",
      fields = { shared.record_count } },
    { number = 0x1A, name = "RetrieveCategorizedDatabaseRecords", from = "accessory", reply = 0x1B, streams = true,
      fields = {
      shared.category,
      { kind = "number", name = "first record", key = "first_record", size = 4 },
      shared.record_count,
    } },
    { number = 0x1B, name = "ReturnCategorizedDatabaseRecord", from = "ipod",
      fields = { shared.record_index, { kind = "text", name = "record", key = "record_text" } } },
    { number = 0x1C, name = "GetPlayStatus", from = "accessory", reply = 0x1D,
      fields = {} },
    { number = 0x1D, name = "ReturnPlayStatus", from = "ipod",
      fields = {
      shared.track_length,
      shared.position,
      { kind = "number", name = "state", key = "state", size = 1, values = {[0] = "stopped", [1] = "playing", [2] = "paused", [3] = "fast forward", [4] = "fast rewind", [5] = "ending fast forward or rewind", } },
    } },
    { number = 0x1E, name = "GetCurrentPlayingTrackIndex", from = "accessory", reply = 0x1F,
      fields = {} },
    { number = 0x1F, name = "ReturnCurrentPlayingTrackIndex", from = "ipod",
      fields = {
      { kind = "number", name = "track index", key = "track_index", size = 4, values = {[4294967295] = "none", } },
    } },
    { number = 0x1F, name = "GetTrackArtworkTimes", from = "accessory", reply = 0x2B,
      fields = { shared.track_index, shared.format_id, shared.artwork_index, shared.count } },
    { number = 0x20, name = "GetIndexedPlayingTrackTitle", from = "accessory", reply = 0x21,
      fields = { shared.track_index } },
    { number = 0x21, name = "ReturnIndexedPlayingTrackTitle", from = "ipod",
      fields = { shared.title_text } },
    { number = 0x22, name = "GetIndexedPlayingTrackArtistName", from = "accessory", reply = 0x23,
      fields = { shared.track_index } },
    { number = 0x23, name = "ReturnIndexedPlayingTrackArtistName", from = "ipod",
      fields = { shared.artist_text } },
    { number = 0x24, name = "GetIndexedPlayingTrackAlbumName", from = "accessory", reply = 0x25,
      fields = { shared.track_index } },
    { number = 0x25, name = "ReturnIndexedPlayingTrackAlbumName", from = "ipod",
      fields = { shared.album_text } },
    { number = 0x26, name = "SetPlayStatusChangeNotification", from = "accessory", acknowledged = true,
      fields = {
      { kind = "choice_by_size", name = "",
        cases = {
          [1] = {
            { kind = "number", name = "notifications", key = "notifications", size = 1, values = {[0] = "off", [1] = "on", } },
          },
          [4] = {
            { kind = "number", name = "notifications", key = "notifications", size = 4, bits = {{0x01, "stopped"}, {0x02, "status"}, {0x04, "track index"}, {0x08, "position in milliseconds"}, {0x10, "position in seconds"}, } },
          },
        },
      },
    } },
    { number = 0x27, name = "PlayStatusChangeNotification", from = "ipod",
      fields = {
      { kind = "number", name = "change", key = "change", size = 1, values = {[0] = "stopped", [1] = "track", [4] = "position", [6] = "status", [7] = "position", } },
      { kind = "choice", name = "change",
        cases = {
          [0] = {},
          [1] = { shared.track_index },
          [4] = { shared.position },
          [6] = {
            { kind = "number", name = "status", key = "status", size = 1, values = {[2] = "stopped", [5] = "fast forward", [6] = "rewind", [7] = "fast forward or rewind ended", [10] = "playing", [11] = "paused", } },
          },
          [7] = { { kind = "number", name = "position", key = "position", size = 4, unit = "s" } },
        },
      },
    } },
    { number = 0x28, name = "PlayCurrentSelection", from = "accessory", acknowledged = true,
      fields = { shared.track_index } },
    { number = 0x29, name = "PlayControl", from = "accessory", acknowledged = true,
      fields = {
      { kind = "number", name = "control", key = "control", size = 1, values = {[1] = "play/pause", [2] = "stop", [3] = "next track", [4] = "previous track", [5] = "begin fast forward", [6] = "begin rewind", [7] = "end fast forward or rewind", [8] = "next", [9] = "previous", [10] = "play", [11] = "pause", } },
    } },
    { number = 0x2A, name = "GetTrackArtworkTimes", from = "accessory", reply = 0x2B,
      fields = { shared.track_index, shared.format_id, shared.artwork_index, shared.count } },
    { number = 0x2B, name = "RetTrackArtworkTimes", from = "ipod",
      fields = { shared.times_list } },
    { number = 0x2C, name = "GetShuffle", from = "accessory", reply = 0x2D,
      fields = {} },
    { number = 0x2D, name = "ReturnShuffle", from = "ipod",
      fields = { shared.shuffle } },
    { number = 0x2E, name = "SetShuffle", from = "accessory", acknowledged = true,
      fields = { shared.shuffle, shared.restore_on_exit_2 } },
    { number = 0x2F, name = "GetRepeat", from = "accessory", reply = 0x30,
      fields = {} },
    { number = 0x30, name = "ReturnRepeat", from = "ipod",
      fields = { shared.repeat_mode } },
    { number = 0x31, name = "SetRepeat", from = "accessory", acknowledged = true,
      fields = { shared.repeat_mode, shared.restore_on_exit_2 } },
    { number = 0x32, name = "SetDisplayImage", from = "accessory", acknowledged = true,
      fields = {
      shared.part,
      { kind = "choice", name = "part",
        cases = {
          [0] = {
            shared.pixel_format,
            shared.width,
            shared.height,
            shared.row_size,
            shared.pixels_bytes,
          },
        },
        otherwise = { shared.pixels_bytes },
      },
    } },
    { number = 0x33, name = "GetMonoDisplayImageLimits", from = "accessory", reply = 0x34,
      fields = {} },
    { number = 0x34, name = "ReturnMonoDisplayImageLimits", from = "ipod",
      fields = { shared.width, shared.height, shared.pixel_format } },
    { number = 0x35, name = "GetNumPlayingTracks", from = "accessory", reply = 0x36,
      fields = {} },
    { number = 0x36, name = "ReturnNumPlayingTracks", from = "ipod",
      fields = { shared.track_count } },
    { number = 0x37, name = "SetCurrentPlayingTrack", from = "accessory", acknowledged = true,
      fields = { shared.track_index } },
    { number = 0x38, name = "SelectSortDBRecord", from = "accessory", acknowledged = true,
      fields = {
      shared.category,
      shared.record_index,
      { kind = "number", name = "sort order", key = "sort_order", size = 1, values = {[0] = "genre", [1] = "artist", [2] = "composer", [3] = "album", [4] = "name", [5] = "playlist", [6] = "release date", [7] = "series", [8] = "season", [9] = "episode", [255] = "default", } },
    } },
    { number = 0x39, name = "GetColorDisplayImageLimits", from = "accessory", reply = 0x3A,
      fields = {} },
    { number = 0x3A, name = "ReturnColorDisplayImageLimits", from = "ipod",
      fields = {
      { kind = "repeated", name = "limits", key = "limits_list",
        fields = { shared.width, shared.height, shared.pixel_format },
      },
    } },
    { number = 0x3B, name = "ResetDBSelectionHierarchy", from = "accessory", acknowledged = true,
      fields = {
      { kind = "number", name = "hierarchy", key = "hierarchy", size = 1, values = {[1] = "audio", [2] = "video", } },
    } },
    { number = 0x40, name = "RetrieveDBTrackInfo", from = "accessory", reply = 0x41, streams = true,
      fields = {
      { kind = "number", name = "first track", key = "first_track", size = 4 },
      shared.track_count,
      { kind = "number", name = "information", key = "information", size = 1, bits = {{0x40, "length"}, } },
    } },
    { number = 0x41, name = "ReturnDBTrackInfo", from = "ipod",
      fields = {
      shared.track_index,
      { kind = "number", name = "type", key = "type", size = 1, values = {[64] = "length", } },
      { kind = "choice", name = "type",
        cases = {
          [64] = { shared.track_length },
        },
      },
    } },
  } },
  [0x09] = { name = "Sports", ack = 0x80, commands = {
    { number = 0x00, name = "ACK", from = "accessory",
      fields = { shared.status, shared.about_command, shared.by_status } },
    { number = 0x01, name = "GetDeviceVersion", from = "ipod", reply = 0x02,
      fields = {} },
    { number = 0x02, name = "RetDeviceVersion", from = "accessory",
      fields = { shared.version_text_2 } },
    { number = 0x03, name = "GetDeviceCaps", from = "ipod", reply = 0x04,
      fields = {} },
    { number = 0x04, name = "RetDeviceCaps", from = "accessory",
      fields = { { kind = "bytes", name = "capabilities", key = "capabilities_bytes", size = 3 } } },
    { number = 0x80, name = "iPodACK", from = "ipod",
      fields = { shared.status, shared.about_command, shared.by_status } },
    { number = 0x83, name = "GetiPodCaps", from = "accessory", reply = 0x84,
      fields = {} },
    { number = 0x84, name = "RetiPodCaps", from = "ipod",
      fields = {
      { kind = "number", name = "capabilities", key = "capabilities", size = 2, bits = {{0x01, "workouts"}, {0x02, "user data"}, } },
      { kind = "number", name = "more", key = "more", size = 1, hexadecimal = true },
    } },
    { number = 0x85, name = "GetUserIndex", from = "accessory", reply = 0x86,
      fields = {} },
    { number = 0x86, name = "RetUserIndex", from = "ipod",
      fields = { { kind = "bytes", name = "user index", key = "user_index_bytes" } } },
    { number = 0x88, name = "GetUserData", from = "accessory", reply = 0x89,
      fields = { shared.type_4 } },
    { number = 0x89, name = "RetUserData", from = "ipod",
      fields = { shared.type_4, shared.by_type_2 } },
    { number = 0x8A, name = "SetUserData", from = "accessory", acknowledged = true,
      fields = { shared.type_4, shared.by_type_2 } },
  } },
  [0x0C] = { name = "Storage", ack = 0x00, commands = {
    { number = 0x00, name = "ACK", from = "ipod",
      fields = { shared.status, shared.about_command, shared.by_status } },
    { number = 0x01, name = "GetiPodCaps", from = "accessory", reply = 0x02,
      fields = {} },
    { number = 0x02, name = "RetiPodCaps", from = "ipod",
      fields = {
      shared.total_space64,
      shared.largest_file,
      shared.largest_write,
      shared.reserved_bytes,
      shared.version_text_2,
    } },
    { number = 0x04, name = "RetiPodFileHandle", from = "ipod",
      fields = { shared.file_handle } },
    { number = 0x07, name = "WriteiPodFileData", from = "accessory", acknowledged = true,
      fields = {
      { kind = "number", name = "offset", key = "offset", size = 4, unit = "bytes" },
      shared.file_handle,
      { kind = "characters", name = "data", key = "data_text", optional = true },
    } },
    { number = 0x08, name = "CloseiPodFile", from = "accessory", acknowledged = true,
      fields = { shared.file_handle } },
    { number = 0x10, name = "GetiPodFreeSpace", from = "accessory", reply = 0x11,
      fields = {} },
    { number = 0x11, name = "RetiPodFreeSpace", from = "ipod",
      fields = {
      { kind = "number", name = "free space", key = "free_space64", size = 8, unit = "bytes" },
    } },
    { number = 0x12, name = "OpeniPodFeatureFile", from = "accessory", reply = 0x04,
      fields = {
      { kind = "number", name = "feature", key = "feature", size = 1, values = {[1] = "radio tagging", [2] = "gym equipment", } },
      { kind = "number", name = "options", key = "options", size = 4, bits = {{0x01, "append data"}, {0x02, "append iPod information"}, {0x08, "append signature"}, } },
      { kind = "characters", name = "ending", key = "ending_text", optional = true },
    } },
    { number = 0x81, name = "GetAccessoryCaps", from = "ipod", reply = 0x82,
      fields = {} },
    { number = 0x82, name = "RetAccessoryCaps", from = "accessory",
      fields = {
      shared.total_space64,
      shared.largest_file,
      shared.largest_write,
      shared.reserved_bytes,
      shared.version_text_2,
    } },
  } },
}
-- The table ends here.

local HEADER = 12          -- bytes in front of those of the line
local LONGEST_WAIT = 1.0   -- seconds; an answer that takes longer is late
local MOST_QUESTIONS = 32
local GENERAL, EXTENDED = 0x00, 0x04
local GENERAL_ACK, IDENTIFY_DEVICE_LINGOES, START_IDPS = 0x02, 0x13, 0x38
local PENDING = 0x06

local events = {
  [0] = "Control lines", [1] = "Sent", [2] = "Received", [3] = "Sent", [4] = "Received",
  [5] = "Bytes are missing here", [6] = "End of the recording", [7] = "Framing error",
  [8] = "Parity error", [9] = "Break", [10] = "Overflow",
}

local ipod = Proto("ipodcomm", "iPod Accessory Protocol")

local lingo_names = {}
for number, lingo in pairs(lingoes) do lingo_names[number] = lingo.name end

local own = {
  event = ProtoField.uint8("ipodcomm.event", "Event", base.DEC, events),
  control_lines = ProtoField.uint8("ipodcomm.control_lines", "Control lines", base.HEX),
  from = ProtoField.string("ipodcomm.from", "From"),
  large = ProtoField.bool("ipodcomm.large", "Large header"),
  lingo = ProtoField.uint8("ipodcomm.lingo", "Lingo", base.HEX, lingo_names),
  command = ProtoField.uint16("ipodcomm.command", "Command", base.HEX),
  name = ProtoField.string("ipodcomm.name", "Name"),
  transaction_id = ProtoField.uint16("ipodcomm.transaction_id", "Transaction identifier", base.HEX),
  data = ProtoField.bytes("ipodcomm.data", "Data"),
  checksum = ProtoField.uint8("ipodcomm.checksum", "Checksum", base.HEX),
  response_to = ProtoField.framenum("ipodcomm.response_to", "Answers", base.NONE,
                                    frametype.REQUEST),
  response_in = ProtoField.framenum("ipodcomm.response_in", "Answered in", base.NONE,
                                    frametype.RESPONSE),
  response_time = ProtoField.relative_time("ipodcomm.response_time", "Response time"),
}
local from_table = {}
for _, each in ipairs(field_types) do
  local key, name, kind = each[1], each[2], each[3]
  from_table[key] = ProtoField[kind]("ipodcomm." .. key, name)
end

local function new_expert(name, text, group, severity)
  return ProtoExpert.new("ipodcomm." .. name, text, expert.group[group], expert.severity[severity])
end
local experts = {
  bad_checksum = new_expert("bad_checksum", "Bad checksum", "CHECKSUM", "ERROR"),
  damaged = new_expert("damaged", "The data do not fit the command", "PROTOCOL", "WARN"),
  refused = new_expert("refused", "Refused", "RESPONSE_CODE", "WARN"),
  retry = new_expert("retry", "Retry", "SEQUENCE", "NOTE"),
  unanswered = new_expert("unanswered", "Unanswered", "SEQUENCE", "WARN"),
  unasked = new_expert("unasked", "Nothing asked for it", "SEQUENCE", "WARN"),
  late = new_expert("late", "Late answer", "SEQUENCE", "WARN"),
  other_identifier = new_expert("other_identifier", "Another identifier than the question's",
                                "SEQUENCE", "WARN"),
  other_sender = new_expert("other_sender", "A command of the other side", "PROTOCOL", "WARN"),
  no_frame = new_expert("no_frame", "No frame", "UNDECODED", "WARN"),
  line_event = new_expert("line_event", "The line itself", "PROTOCOL", "ERROR"),
}

-- Wireshark takes the lists as a whole.
local all_fields, all_experts = {}, {}
for _, field in pairs(own) do table.insert(all_fields, field) end
for _, field in pairs(from_table) do table.insert(all_fields, field) end
for _, each in pairs(experts) do table.insert(all_experts, each) end
ipod.fields = all_fields
ipod.experts = all_experts

-- Fields ------------------------------------------------------------------------------------------
--
-- A cursor has a tvb, the place `at` and the place behind the last byte, `stop`. A context collects
-- the problems, and the numbers and texts of the fields that are not inside lists. Without a tree the
-- fields are only tried.

local read_fields

local function left(cursor) return cursor.stop - cursor.at end

local function take(cursor, size)
  local range = cursor.tvb(cursor.at, size)
  cursor.at = cursor.at + size
  return range
end

local function find_command(lingo, number, from)
  local other_side
  for _, command in ipairs(lingoes[lingo] and lingoes[lingo].commands or {}) do
    if command.number == number then
      if not command.from or command.from == from then return command end
      other_side = command
    end
  end
  return other_side
end

local function command_name(lingo, number, from)
  local command = find_command(lingo, number, from)
  if command then return command.name end
  return string.format(lingo == EXTENDED and "command 0x%04X" or "command 0x%02X", number)
end

local function other_side(from) return from == "ipod" and "accessory" or "ipod" end

local function names_of_bits(bits, number)
  if number == 0 then return "none" end
  local names = {}
  for _, each in ipairs(bits) do
    if math.floor(number / each[1]) % 2 == 1 then
      table.insert(names, each[2])
      number = number - each[1]
    end
  end
  if number > 0 then table.insert(names, string.format("0x%X", number)) end
  return table.concat(names, " + ")
end

local function shown(field, value, size, context)
  if field.command then return command_name(context.lingo, value, other_side(context.from)) end
  if field.values then return field.values[value] or tostring(value) end
  if size > 4 then
    if field.bits and value:higher() == 0 then return names_of_bits(field.bits, value:lower()) end
    return (field.hexadecimal or field.bits) and "0x" .. value:tohex() or tostring(value)
  end
  if field.bits then return names_of_bits(field.bits, value) end
  if field.hexadecimal then return string.format("0x%0" .. 2 * size .. "X", value) end
  return tostring(value)
end

-- Without a value the field has that of the bytes.
local function add(tree, field, range, value, text, context)
  if tree then
    local item = value == nil and tree:add(from_table[field.key], range)
                 or tree:add(from_table[field.key], range, value)
    item:set_text(field.name .. ": " .. text)
  end
  if not context.inside then table.insert(context.texts, field.name .. " " .. text) end
end

local function cut_short(field, cursor, context)
  table.insert(context.problems, "Cut short at " .. field.name)
  cursor.at = cursor.stop
  return false
end

local readers = {}

function readers.number(field, cursor, tree, seen, context)
  if left(cursor) < field.size then return cut_short(field, cursor, context) end
  local range = take(cursor, field.size)
  local value = field.size > 4 and range:uint64() or range:uint()
  seen[field.name] = value
  local text = shown(field, value, field.size, context)
  if field.unit then text = text .. " " .. field.unit end
  add(tree, field, range, value, text, context)
  return true
end

function readers.low_first(field, cursor, tree, seen, context)
  if left(cursor) == 0 then return cut_short(field, cursor, context) end
  local range = take(cursor, math.min(left(cursor), 4))
  local value = range:le_uint()
  seen[field.name] = value
  add(tree, field, range, value, shown(field, value, 4, context), context)
  return true
end

function readers.version(field, cursor, tree, seen, context)
  if left(cursor) < field.size then return cut_short(field, cursor, context) end
  local range = take(cursor, field.size)
  local text = string.format("%d.%02d", range(0, 1):uint(), range(1, 1):uint())
  if field.size == 3 then
    text = string.format("%d.%d.%d", range(0, 1):uint(), range(1, 1):uint(), range(2, 1):uint())
  end
  add(tree, field, range, text, text, context)
  return true
end

function readers.text(field, cursor, tree, seen, context)
  local size = 0
  while size < left(cursor) and cursor.tvb(cursor.at + size, 1):uint() ~= 0 do size = size + 1 end
  local ended = size < left(cursor)
  if not ended then table.insert(context.problems, "No zero byte ends " .. field.name) end
  if size == 0 and not ended then return true end
  local range = take(cursor, ended and size + 1 or size)
  local text = size > 0 and range(0, size):string(ENC_UTF_8) or ""
  add(tree, field, range, text, '"' .. text .. '"', context)
  return true
end

function readers.characters(field, cursor, tree, seen, context)
  if left(cursor) == 0 then return true end
  local range = take(cursor, left(cursor))
  local text = range:string(ENC_UTF_8)
  add(tree, field, range, text, '"' .. text .. '"', context)
  return true
end

function readers.bytes(field, cursor, tree, seen, context)
  local size = field.size or left(cursor)
  if left(cursor) < size then return cut_short(field, cursor, context) end
  if size == 0 then return true end
  local range = take(cursor, size)
  add(tree, field, range, nil, range:bytes():tohex(false, " "), context)
  return true
end

-- The items of a list, each read by `read_item(item's tree)`, until that or `more` says otherwise.
local function read_list(field, cursor, tree, context, more, read_item)
  local was_inside = context.inside
  context.inside = true
  local list
  if tree and left(cursor) > 0 then
    list = tree:add(from_table[field.key], cursor.tvb(cursor.at, left(cursor)))
    list:set_text(field.name)
  end
  local whole, count = true, 0
  while whole and more(count) do
    count = count + 1
    local begin, item = cursor.at, nil
    if list then item = list:add(cursor.tvb(cursor.at, left(cursor)), field.name .. " " .. count) end
    whole = read_item(item)
    if item then item:set_len(cursor.at - begin) end
  end
  context.inside = was_inside
  if not context.inside then table.insert(context.texts, count .. " " .. field.name) end
  return whole
end

function readers.repeated(field, cursor, tree, seen, context)
  return read_list(field, cursor, tree, context,
                   function() return left(cursor) > 0 end,
                   function(item) return read_fields(field.fields, cursor, item, {}, context) end)
end

function readers.counted(field, cursor, tree, seen, context)
  if left(cursor) == 0 then return cut_short(field, cursor, context) end
  local total = take(cursor, 1):uint()
  return read_list(field, cursor, tree, context,
                   function(count) return count < total end,
                   function(item) return read_fields(field.fields, cursor, item, {}, context) end)
end

function readers.records(field, cursor, tree, seen, context)
  return read_list(field, cursor, tree, context,
                   function() return left(cursor) > 0 end,
                   function(item)
    local length = take(cursor, 1):uint()
    if length > left(cursor) then return cut_short(field, cursor, context) end
    -- What is wrong inside a record does not lead astray: the next has its own place.
    local record = { tvb = cursor.tvb, at = cursor.at, stop = cursor.at + length }
    if read_fields(field.fields, record, item, {}, context) and left(record) > 0 then
      table.insert(context.problems, left(record) .. " bytes too many in " .. field.name)
    end
    cursor.at = record.stop
    return true
  end)
end

local function read_case(field, selector, cursor, tree, seen, context)
  local chosen = field.cases[selector] or field.otherwise
  if chosen then return read_fields(chosen, cursor, tree, seen, context) end
  if field.kind == "choice_by_size" then
    table.insert(context.problems,
                 left(cursor) .. " bytes of data, which is no size that the command has")
  elseif left(cursor) > 0 then
    table.insert(context.problems, "Unknown " .. field.name .. " " .. tostring(selector))
  end
  cursor.at = cursor.stop
  return true
end

function readers.choice(field, cursor, tree, seen, context)
  return read_case(field, seen[field.name], cursor, tree, seen, context)
end

function readers.choice_by_size(field, cursor, tree, seen, context)
  return read_case(field, left(cursor), cursor, tree, seen, context)
end

-- False when the data ended too early.
function read_fields(fields, cursor, tree, seen, context)
  for _, field in ipairs(fields) do
    if field.optional and left(cursor) == 0 then return true end
    if not readers[field.kind](field, cursor, tree, seen, context) then return false end
  end
  return true
end

-- Frames ------------------------------------------------------------------------------------------

-- Nil for bytes that are no whole frame.
local function parse(tvb, from)
  local size = tvb:len()
  local function byte(at) return tvb(at, 1):uint() end
  if size < HEADER + 4 or byte(HEADER) ~= 0xFF or byte(HEADER + 1) ~= 0x55 then return nil end
  local frame = { from = from, large = byte(HEADER + 2) == 0 }
  frame.lingo_at = HEADER + (frame.large and 5 or 3)
  if size <= frame.lingo_at then return nil end
  local length = frame.large and tvb(HEADER + 3, 2):uint() or byte(HEADER + 2)
  frame.stop = frame.lingo_at + length
  if size ~= frame.stop + 1 then return nil end
  frame.lingo = byte(frame.lingo_at)
  frame.command_size = frame.lingo == EXTENDED and 2 or 1
  if length < 1 + frame.command_size then return nil end
  frame.command = tvb(frame.lingo_at + 1, frame.command_size):uint()
  frame.data_at = frame.lingo_at + 1 + frame.command_size
  local sum = 0
  for at = HEADER + 2, frame.stop do sum = sum + byte(at) end
  frame.checksum_holds = sum % 256 == 0
  frame.known = find_command(frame.lingo, frame.command, from)
  frame.name = command_name(frame.lingo, frame.command, from)
  return frame
end

local function never_carries_identifier(frame)
  if frame.known and frame.known.no_identifier then return true end
  return frame.lingo == GENERAL and frame.command == GENERAL_ACK and
         frame.stop - frame.data_at == 2
end

-- What the data say: a context. With a tree the fields are added to it.
local function read_data(tvb, frame, with_identifier, tree)
  local context = { lingo = frame.lingo, from = frame.from, problems = {}, texts = {}, seen = {} }
  local cursor = { tvb = tvb, at = frame.data_at, stop = frame.stop }
  if with_identifier and not never_carries_identifier(frame) then
    if left(cursor) < 2 then
      table.insert(context.problems, "No transaction identifier")
    else
      local range = take(cursor, 2)
      context.identifier = range:uint()
      if tree then tree:add(own.transaction_id, range) end
    end
  end
  context.data = left(cursor) > 0 and tvb(cursor.at, left(cursor)):bytes():tohex() or ""
  if not frame.known then
    if tree and left(cursor) > 0 then tree:add(own.data, tvb(cursor.at, left(cursor))) end
    table.insert(context.problems, "Unknown command")
    return context
  end
  read_fields(frame.known.fields, cursor, tree, context.seen, context)
  if left(cursor) > 0 then
    if tree then tree:add(own.data, tvb(cursor.at, left(cursor))) end
    table.insert(context.problems, left(cursor) .. " bytes more than the command has")
  end
  return context
end

-- Whether the data begin with an identifier, as far as the frame itself tells; nil where both are
-- possible.
local function proven_identifier(tvb, frame)
  if not frame.known or never_carries_identifier(frame) then return nil end
  local fits_without = #read_data(tvb, frame, false).problems == 0
  local fits_with = #read_data(tvb, frame, true).problems == 0
  if fits_with == fits_without then return nil end
  return fits_with
end

-- The conversation --------------------------------------------------------------------------------
--
-- Each line has one, by the line's name: a line whose settings change has several interfaces of one
-- name. It is followed once, when the recording is read; what was found is kept by the packet's
-- number.

local conversations, told, answers
local interface_name = Field.new("frame.interface_name")

function ipod.init()
  conversations = {}
  told = {}
  answers = {}
end

local function conversation_of_line()
  local name = interface_name()
  local line = name and name.value or ""
  if not conversations[line] then
    conversations[line] = { carries = { ipod = false, accessory = false }, questions = {} }
  end
  return conversations[line]
end

local function note(result, kind, text) table.insert(result.notes, { kind = kind, text = text }) end

local function is_ack(frame)
  return frame.known ~= nil and (frame.name == "ACK" or frame.name == "iPodACK")
end

local function is_answer(frame)
  for _, command in ipairs(lingoes[frame.lingo].commands) do
    if command.reply == frame.command and command.from == other_side(frame.from) then return true end
  end
  return false
end

local function find_question(questions, frame, context)
  local best, best_rank = nil, 0
  for _, question in ipairs(questions) do
    if question.from ~= frame.from and question.lingo == frame.lingo then
      local fits = question.known.reply == frame.command
      if is_ack(frame) then fits = context.seen.command == question.command end
      if fits and (not question.answered or question.known.streams) then
        local same = context.identifier == question.identifier  -- also where neither has one
        local rank = (same and 4 or 0) + (question.answered and 1 or question.reported and 2 or 3)
        if rank > best_rank or (rank == best_rank and question.answered) then
          best, best_rank = question, rank
        end
      end
    end
  end
  return best
end

local function settle(frame, context, question, result)
  local too_late = question.reported or result.response_time > LONGEST_WAIT
  if not question.answered and not question.extended and too_late then
    note(result, "late", string.format("Late answer to %d, after %.1f s", question.number,
                                       result.response_time))
  end
  if frame.from == "ipod" and context.identifier and question.identifier and
     context.identifier ~= question.identifier then
    note(result, "other_identifier",
         string.format("Not under its question's identifier, 0x%04X", question.identifier))
  end
  question.answered = true
  if not answers[question.number] then answers[question.number] = result.number end
end

local function notice_answer(questions, frame, context, result, now)
  local question = find_question(questions, frame, context)
  if question then
    result.response_to = question.number
    result.response_time = now - question.time
  else
    note(result, "unasked", "Nothing asked for it")
  end
  if not is_ack(frame) then
    if question then settle(frame, context, question, result) end
    return
  end
  local status = context.seen.status
  if status == PENDING then
    if question then question.extended = true end
    return
  end
  if status and status ~= 0 then
    note(result, "refused", command_name(frame.lingo, context.seen.command or 0,
                                         other_side(frame.from)) ..
                            " refused: " .. (context.texts[1] or ""))
  end
  if question then settle(frame, context, question, result) end
end

local function notice_silence(questions, frame, result, now)
  for _, question in ipairs(questions) do
    local waits = not question.answered and not question.reported and not question.extended
    local asked_again = frame.from == question.from and frame.known == question.known
    if waits and now - question.time > LONGEST_WAIT and not asked_again then
      question.reported = true
      note(result, "unanswered", question.number .. " " .. question.known.name .. " is unanswered")
    end
  end
end

local function notice_question(questions, frame, context, result, now)
  for _, earlier in ipairs(questions) do
    if not earlier.answered and earlier.from == frame.from and earlier.known == frame.known and
       earlier.data == context.data then
      if not earlier.reported then
        note(result, "retry", string.format("Retry of %d, unanswered for %.1f s", earlier.number,
                                            now - earlier.time))
      end
      earlier.reported = true
    end
  end
  table.insert(questions, { number = result.number, time = now, from = frame.from,
                            lingo = frame.lingo, command = frame.command, known = frame.known,
                            identifier = context.identifier, data = context.data })
  if #questions > MOST_QUESTIONS then table.remove(questions, 1) end
  result.asks = true
end

local function notice_identifiers(carries, frame, context)
  if frame.lingo ~= GENERAL or frame.from ~= "ipod" or not is_ack(frame) then return end
  if context.seen.status ~= 0 then return end
  if context.seen.command == START_IDPS then
    carries.ipod, carries.accessory = true, true
  elseif context.seen.command == IDENTIFY_DEVICE_LINGOES then
    carries.ipod, carries.accessory = false, false
  end
end

local function follow(tvb, pinfo, frame)
  local result = { number = pinfo.number, notes = {} }
  local conversation = conversation_of_line()
  local carries, questions = conversation.carries, conversation.questions
  local proven = proven_identifier(tvb, frame)
  local begins = frame.lingo == GENERAL and frame.command == START_IDPS
  if proven ~= nil and not begins and frame.checksum_holds then carries[frame.from] = proven end
  result.with_identifier = carries[frame.from]
  if proven ~= nil then result.with_identifier = proven end
  local context = read_data(tvb, frame, result.with_identifier)
  if not frame.checksum_holds then
    note(result, "bad_checksum", "Bad checksum")
    return result
  end
  for _, problem in ipairs(context.problems) do note(result, "damaged", problem) end
  local known, now = frame.known, pinfo.rel_ts
  if known and known.from == other_side(frame.from) then
    note(result, "other_sender",
         frame.from == "ipod" and "A command of accessories" or "A command of iPods")
  elseif known then
    if is_ack(frame) or is_answer(frame) then notice_answer(questions, frame, context, result, now) end
    notice_silence(questions, frame, result, now)
    if known.reply or known.acknowledged then
      notice_question(questions, frame, context, result, now)
    end
    notice_identifiers(carries, frame, context)
  end
  return result
end

-- What is shown -----------------------------------------------------------------------------------

local function show_frame(tvb, pinfo, tree, frame)
  local result = told[pinfo.number]
  if not result then
    result = follow(tvb, pinfo, frame)
    told[pinfo.number] = result
  end
  tree:add(own.large, tvb(HEADER + 2, 1), frame.large)
  tree:add(own.lingo, tvb(frame.lingo_at, 1))
  local command = tvb(frame.lingo_at + 1, frame.command_size)
  tree:add(own.command, command):append_text(" " .. frame.name)
  tree:add(own.name, command, frame.name):set_generated()
  local context = read_data(tvb, frame, result.with_identifier, tree)
  tree:add(own.checksum, tvb(frame.stop, 1))

  if result.response_to then
    tree:add(own.response_to, result.response_to):set_generated()
    local seconds = math.floor(result.response_time)
    local time = NSTime.new(seconds, math.floor((result.response_time - seconds) * 1e9 + 0.5))
    tree:add(own.response_time, time):set_generated()
  end
  local answer = answers[pinfo.number]
  if answer then
    tree:add(own.response_in, answer):set_generated()
  elseif result.asks and pinfo.visited then
    tree:add_proto_expert_info(experts.unanswered, "No answer came")
  end
  for _, each in ipairs(result.notes) do
    tree:add_proto_expert_info(experts[each.kind], each.text)
  end

  local lingo = lingoes[frame.lingo]
  local info = (lingo and lingo.name or string.format("lingo 0x%02X", frame.lingo)) .. " " ..
               frame.name
  if context.identifier then info = info .. string.format(" id 0x%04X", context.identifier) end
  if #context.texts > 0 then info = info .. ": " .. table.concat(context.texts, ", ") end
  for _, each in ipairs(result.notes) do info = info .. " [" .. each.text .. "]" end
  pinfo.cols.info = info
end

local function show_bytes(tvb, pinfo, tree)
  local bytes = tvb(HEADER)
  tree:add(own.data, bytes)
  pinfo.cols.info = bytes:bytes():tohex(false, " ")
  for at = 0, bytes:len() - 1 do
    -- Sync bytes alone wake the iPod up.
    if bytes(at, 1):uint() ~= 0xFF then
      tree:add_proto_expert_info(experts.no_frame)
      return
    end
  end
end

function ipod.dissector(tvb, pinfo, root)
  if tvb:len() < HEADER then return 0 end
  pinfo.cols.protocol = "iPod"
  local tree = root:add(ipod, tvb())
  local event = tvb(8, 1):uint()
  tree:add(own.event, tvb(8, 1))
  tree:add(own.control_lines, tvb(9, 1))
  local sent, received = event == 1 or event == 3, event == 2 or event == 4
  if (not sent and not received) or tvb:len() == HEADER then
    pinfo.cols.info = events[event] or string.format("Event 0x%02X", event)
    if event == 5 or event >= 7 then
      tree:add_proto_expert_info(experts.line_event, events[event] or "Unknown event")
    end
    return tvb:len()
  end
  local from = received and "ipod" or "accessory"
  pinfo.cols.src = received and "iPod" or "accessory"
  pinfo.cols.dst = received and "accessory" or "iPod"
  tree:add(own.from, from):set_generated()
  local frame = parse(tvb, from)
  if frame then
    show_frame(tvb, pinfo, tree, frame)
  else
    show_bytes(tvb, pinfo, tree)
  end
  return tvb:len()
end

DissectorTable.get("wtap_encap"):add(wtap.RTAC_SERIAL, ipod)
