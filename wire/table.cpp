// SPDX-License-Identifier: MIT
#include "wire/table.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace ipodwire {
namespace {

constexpr std::uint8_t kExtendedInterface = 0x04;

bool SentBy(const Command& command, Sender sender) {
  return command.sender == Sender::kEither || command.sender == sender;
}

// Not made when it is first needed: a thread that reads it may outlive what is made so late.
const std::vector<Lingo> kLingoes = {
    {0x00, "General", 0x02, GeneralCommands()},
    {0x02, "Simple Remote", 0x01, SimpleRemoteCommands()},
    {0x03, "Display Remote", 0x00, DisplayRemoteCommands()},
    {kExtendedInterface, "Extended Interface", 0x0001, ExtendedCommands()},
    {0x09, "Sports", 0x80, SportsCommands()},
    {0x0C, "Storage", 0x00, StorageCommands()},
};

}  // namespace

std::size_t Lingo::command_size() const { return CommandSize(number); }

std::size_t CommandSize(std::uint8_t lingo) { return lingo == kExtendedInterface ? 2 : 1; }

const std::vector<Lingo>& Lingoes() { return kLingoes; }

const Lingo* FindLingo(std::uint8_t number) {
  const auto found = std::find_if(Lingoes().begin(), Lingoes().end(),
                                  [&](const Lingo& lingo) { return lingo.number == number; });
  return found == Lingoes().end() ? nullptr : &*found;
}

const Command* FindCommand(std::uint8_t lingo, std::uint16_t number, Sender sender) {
  const Lingo* known = FindLingo(lingo);
  if (known == nullptr) return nullptr;
  const Command* other_side = nullptr;
  for (const Command& command : known->commands) {
    if (command.number != number) continue;
    if (SentBy(command, sender)) return &command;
    other_side = &command;
  }
  return other_side;
}

std::string LingoName(std::uint8_t number) {
  const Lingo* lingo = FindLingo(number);
  if (lingo != nullptr) return lingo->name;
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "lingo 0x%02X", unsigned{number});
  return text.data();
}

std::string CommandName(std::uint8_t lingo, std::uint16_t number, Sender sender) {
  const Command* command = FindCommand(lingo, number, sender);
  if (command != nullptr) return command->name;
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "command 0x%0*X",
                static_cast<int>(2 * CommandSize(lingo)), unsigned{number});
  return text.data();
}

}  // namespace ipodwire
