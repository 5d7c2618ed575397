// SPDX-License-Identifier: MIT
// The identification tokens, with which an accessory describes itself.
//
//   length   0x00   subtype   the fields of the subtype
//
// The length is that of what follows it.
#include "wire/shared_fields.h"

namespace ipodwire {
namespace {

std::vector<Value> Subtypes() {
  return {{0x00, "identification"},
          {0x01, "accessory capabilities"},
          {0x02, "accessory information"},
          {0x03, "iPod preference"},
          {0x04, "protocol"},
          {0x05, "bundle seed"},
          {0x08, "protocol metadata"},
          {0x0E, "audio sample rates"},
          {0x0F, "video delay"}};
}

}  // namespace

std::vector<Field> TokenFields() {
  return {
      U8("token count"),
      Records(
          "tokens",
          {
              Hex(1, "token type"),
              Named(1, "token", Subtypes()),
              Choice("token",
                     {
                         {0x00,
                          {Counted("lingoes", {Named(1, "lingo", LingoNumbers())}),
                           Hex(4, "options"), Hex(4, "device ID")}},
                         {0x01, {Hex(8, "capabilities")}},
                         {0x02,
                          {Named(1, "type", AccessoryInformationTypes()), AccessoryInformation()}},
                         {0x03,
                          {Named(1, "class", PreferenceClasses()), PreferenceSetting(),
                           Named(1, "restore on exit", YesOrNo())}},
                         {0x04, {U8("protocol index"), Text("protocol")}},
                         {0x05, {Text("bundle seed"), Optional(Bytes("padding"))}},
                         {0x08, {U8("protocol index"), Hex(1, "metadata")}},
                         {0x0E, {Repeated("sample rates", {U32("sample rate", "Hz")})}},
                         {0x0F, {U32("delay", "ms")}},
                     }),
          }),
  };
}

std::vector<Field> TokenAckFields() {
  return {
      U8("token count"),
      Records("tokens",
              {
                  Hex(1, "token type"),
                  Named(1, "token", Subtypes()),
                  Named(1, "status", {{0, "accepted"}, {1, "malformed"}, {2, "not supported"}}),
                  Choice("token",
                         {
                             {0x00, {}},
                             {0x01, {}},
                             {0x02, {Named(1, "type", AccessoryInformationTypes())}},
                             {0x03, {Named(1, "class", PreferenceClasses())}},
                             {0x04, {U8("protocol index")}},
                             {0x05, {}},
                             {0x08, {U8("protocol index")}},
                             {0x0E, {}},
                             {0x0F, {}},
                         }),
              }),
  };
}

}  // namespace ipodwire
