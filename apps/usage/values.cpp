// SPDX-License-Identifier: MIT
#include "usage/values.h"

#include <algorithm>
#include <cctype>

namespace usage {

namespace {

bool StartsWith(const std::string& text, const char* start) { return text.rfind(start, 0) == 0; }

Offer OfferOfText(const std::string& text) {
  if (StartsWith(text, "FILE") || StartsWith(text, "PAGE")) return {{}, Offer::Paths::kFiles};
  if (text == "DIR") return {{}, Offer::Paths::kFolders};
  if (text == "DEVICE") return {{}, Offer::Paths::kPorts};
  const bool names_words =
      text.find('|') != std::string::npos && std::none_of(text.begin(), text.end(), [](char c) {
        return std::isupper(static_cast<unsigned char>(c)) != 0;
      });
  return names_words ? Offer{CLI::detail::split(text, '|'), Offer::Paths::kNone} : Offer{};
}

}  // namespace

void Values::Add(const CLI::Option* option, std::vector<std::string> words) {
  words_[option] = std::move(words);
}

void Values::AddAfter(const std::string& before, const CLI::Option* option,
                      std::vector<std::string> words) {
  words_after_[option][before] = std::move(words);
}

Offer Values::OfferFor(const CLI::Option* option, const std::string& before) const {
  Offer offer = OfferOfText(ValueText(option));
  const auto words = words_.find(option);
  if (words != words_.end()) offer.words = words->second;
  const auto after = words_after_.find(option);
  if (after == words_after_.end()) return offer;
  const auto fitting = after->second.find(before);
  if (fitting != after->second.end()) offer.words = fitting->second;
  return offer;
}

std::string ValueText(const CLI::Option* option) {
  std::string text = option->get_option_text();
  if (text.empty() && !option->nonpositional()) return option->get_name(true);
  if (StartsWith(text, "[=")) text = text.substr(2, text.size() - 3);
  return text;
}

bool TakesNextWord(const CLI::Option* option) { return option->get_items_expected_min() > 0; }

}  // namespace usage
