// SPDX-License-Identifier: MIT
// Fields and values that commands of several lingoes, or several commands of one, have in common.
#pragma once

#include <cstddef>
#include <vector>

#include "wire/fields.h"

namespace ipodwire {

/// Who sends a command, as short as a table needs it.
constexpr Sender kAccessory = Sender::kAccessory;
constexpr Sender kIpod = Sender::kIpod;

/// Of an ACK.
std::vector<Value> AckStatuses();
/// An ACK's data: the status, and the number of the command that it acknowledges, of
/// `command_size` bytes. One that says "pending" says also for how long.
std::vector<Field> AckFields(std::size_t command_size);

std::vector<Value> LingoNumbers();
std::vector<Bit> LingoBits();
std::vector<Value> YesOrNo();

/// What an accessory tells of itself, when asked and in its identification tokens.
std::vector<Value> AccessoryInformationTypes();
/// By the number of the type, in a field named "type" before it.
Field AccessoryInformation();

std::vector<Value> PreferenceClasses();
/// The setting, by the number of the class, in a field named "class" before it.
Field PreferenceSetting();

/// The data of SetFIDTokenValues and of RetFIDTokenValueACKs.
std::vector<Field> TokenFields();
std::vector<Field> TokenAckFields();

/// A track's capabilities, length and number of chapters.
std::vector<Field> TrackCapabilities();
std::vector<Field> Lyrics();
std::vector<Field> ArtworkCounts();

std::vector<Value> PixelFormats();
std::vector<Field> ArtworkDataQuestion();
std::vector<Field> ArtworkData();
std::vector<Field> ArtworkTimesQuestion();
std::vector<Field> ArtworkTimes();

}  // namespace ipodwire
