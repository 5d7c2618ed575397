// SPDX-License-Identifier: MIT
#include "wire/shared_fields.h"

namespace ipodwire {

std::vector<Value> AckStatuses() {
  return {{0x00, "ok"},
          {0x01, "command failed"},
          {0x02, "out of resources"},
          {0x03, "bad parameter"},
          {0x04, "unknown ID"},
          {0x05, "reserved"},
          {0x06, "pending"},
          {0x07, "accessory not authenticated"}};
}

std::vector<Field> AckFields(std::size_t command_size) {
  return {
      Named(1, "status", AckStatuses()),
      CommandNumber(command_size, "command"),
      Choice("status", {{0x00, {}},
                        {0x01, {}},
                        {0x02, {}},
                        {0x03, {}},
                        {0x04, {}},
                        {0x05, {}},
                        {0x06, {U32("longest wait", "ms")}},
                        {0x07, {}}}),
  };
}

std::vector<Value> LingoNumbers() {
  return {{0x00, "General"},          {0x01, "Microphone"},         {0x02, "Simple Remote"},
          {0x03, "Display Remote"},   {0x04, "Extended Interface"}, {0x05, "Accessory Power"},
          {0x06, "USB Host Control"}, {0x07, "RF Tuner"},           {0x08, "Accessory Equalizer"},
          {0x09, "Sports"},           {0x0A, "Digital Audio"},      {0x0C, "Storage"}};
}

std::vector<Bit> LingoBits() {
  std::vector<Bit> bits;
  for (const Value& lingo : LingoNumbers()) bits.push_back({1U << lingo.number, lingo.name});
  return bits;
}

std::vector<Value> YesOrNo() { return {{0, "no"}, {1, "yes"}}; }

std::vector<Value> AccessoryInformationTypes() {
  return {{0x00, "capabilities"},        {0x01, "name"},
          {0x02, "least iPod firmware"}, {0x03, "least lingo version"},
          {0x04, "firmware version"},    {0x05, "hardware version"},
          {0x06, "manufacturer"},        {0x07, "model number"},
          {0x08, "serial number"},       {0x09, "maximum payload"},
          {0x0B, "status types"},        {0x0C, "RF certifications"}};
}

Field AccessoryInformation() {
  std::vector<Bit> bits;
  for (const Value& type : AccessoryInformationTypes()) {
    bits.push_back({1U << type.number, type.name});
  }
  return Choice("type", {
                            {0x00, {Bits(4, "capabilities", bits)}},
                            {0x01, {Text("name")}},
                            // Older accessories answer these with nothing.
                            {0x02, {Optional(Bytes("least iPod firmware"))}},
                            {0x03, {Optional(Bytes("least lingo version"))}},
                            {0x04, {LongVersion("version")}},
                            {0x05, {LongVersion("version")}},
                            {0x06, {Text("manufacturer")}},
                            {0x07, {Text("model number")}},
                            {0x08, {Optional(Text("serial number"))}},
                            {0x09, {U16("maximum payload", "bytes")}},
                            {0x0B, {Hex(4, "status types")}},
                            {0x0C, {Hex(4, "RF certifications")}},
                        });
}

std::vector<Value> PreferenceClasses() {
  return {{0, "video out"},
          {1, "screen configuration"},
          {2, "video signal format"},
          {3, "line out usage"},
          {8, "video out connection"},
          {9, "closed captioning"},
          {10, "video monitor aspect"},
          {12, "subtitles"},
          {13, "video alternate audio"},
          {15, "pause on removal"}};
}

Field PreferenceSetting() {
  const auto setting = [](const std::vector<Value>& values) {
    return std::vector<Field>{Named(1, "setting", values)};
  };
  const std::vector<Value> switched = {{0, "off"}, {1, "on"}};
  const std::vector<Value> asked = {{0, "off"}, {1, "on"}, {2, "ask user"}};
  return Choice("class",
                {
                    {0, setting(asked)},
                    {1, setting({{0, "fill entire screen"}, {1, "fit to screen edge"}})},
                    {2, setting({{0, "NTSC"}, {1, "PAL"}})},
                    {3, setting(asked)},
                    {8, setting({{0, "none"}, {1, "composite"}, {2, "S-video"}, {3, "component"}})},
                    {9, setting(switched)},
                    {10, setting({{0, "4:3"}, {1, "16:9"}})},
                    {12, setting(switched)},
                    {13, setting(switched)},
                    {15, setting(switched)},
                },
                {U8("setting")});
}

std::vector<Field> TrackCapabilities() {
  return {
      Bits(4, "capabilities",
           {{0x001, "audiobook"},
            {0x002, "chapters"},
            {0x004, "artwork"},
            {0x008, "lyrics"},
            {0x080, "video"},
            {0x100, "queued as video"}}),
      U32("track length", "ms"),
      U16("chapter count"),
  };
}

std::vector<Field> Lyrics() { return {Hex(1, "part flags"), U16("part"), Text("lyrics")}; }

std::vector<Field> ArtworkCounts() {
  return {Repeated("artworks", {U16("format ID"), U16("count")})};
}

std::vector<Value> PixelFormats() { return {{0x01, "monochrome"}, {0x02, "RGB 565"}}; }

std::vector<Field> ArtworkDataQuestion() {
  return {U32("track index"), U16("format ID"), U32("time offset", "ms")};
}

std::vector<Field> ArtworkData() {
  return {
      U16("part"),
      Choice("part",
             {{0,
               {Named(1, "pixel format", PixelFormats()), U16("width", "pixels"),
                U16("height", "pixels"), U16("left", "pixels"), U16("top", "pixels"),
                U16("right", "pixels"), U16("bottom", "pixels"), U32("row size", "bytes"),
                Optional(Bytes("pixels"))}}},
             {Optional(Bytes("pixels"))}),
  };
}

std::vector<Field> ArtworkTimesQuestion() {
  return {U32("track index"), U16("format ID"), U16("artwork index"), U16("count")};
}

std::vector<Field> ArtworkTimes() { return {Repeated("times", {U32("time offset", "ms")})}; }

}  // namespace ipodwire
