// SPDX-License-Identifier: MIT
#include "wire/extcap_interfaces.h"

#include <algorithm>

#include "console/failure.h"

namespace ipodctl {

namespace {

// The names of choices.
constexpr const char* kPort = "port";
constexpr const char* kCommand = "command";
constexpr const char* kProfile = "profile";
constexpr const char* kRecording = "recording";

struct Value {
  std::string name;
  std::string shown;
};

// Something that people choose before they record.
struct Choice {
  std::string name;
  std::string shown;
  std::string tip;
  std::string type;  // in Wireshark's words
  std::string preset;
  std::vector<Value> values;  // of a selector
};

struct Interface {
  const char* name;
  const char* shown;
  std::vector<Choice> choices;
};

struct WatchedSession {
  const char* name;
  const char* shown;
  std::vector<std::string> arguments;
};

// What can be done with a dock while Wireshark looks on.
const std::vector<WatchedSession> kSessions = {
    {"info", "Identify, and ask what it is", {"info"}},
    {"follow", "Follow what it plays, until stopped", {"now", "--follow"}},
    {"artists", "List its artists", {"browse", "artists"}},
    {"tour", "The tour: identify, browse, play", {"tour"}},
};

Choice ChoiceOfSession(const char* preset) {
  Choice choice = {kCommand,   "What to do", "What is done while the line is recorded",
                   "selector", preset,       {}};
  for (const WatchedSession& session : kSessions)
    choice.values.push_back({session.name, session.shown});
  return choice;
}

Choice ChoiceOfProfile(const std::vector<std::string>& profiles) {
  Choice choice = {kProfile,   "Kind of iPod",   "See 'ipodctl --help'",
                   "selector", profiles.front(), {}};
  for (const std::string& profile : profiles) choice.values.push_back({profile, profile});
  return choice;
}

std::vector<Interface> InterfacesIn(const ExtcapSurroundings& surroundings) {
  std::vector<Interface> interfaces;
  interfaces.push_back({"ipod-dock",
                        "iPod in a dock",
                        {{kPort,
                          "Serial line",
                          "The dock's, which no other program has open",
                          "string",
                          surroundings.device,
                          {}},
                         ChoiceOfSession("info")}});
  interfaces.push_back({"ipod-recording",
                        "iPod session of another program",
                        {{kRecording,
                          "Its recording",
                          "What IPODCOMM_CAPTURE=FILE or --capture FILE makes there",
                          "fileselect",
                          "",
                          {}}}});
  if (!surroundings.profiles.empty()) {
    interfaces.push_back({"ipod-simulated",
                          "Simulated iPod",
                          {ChoiceOfProfile(surroundings.profiles), ChoiceOfSession("tour")}});
  }
  return interfaces;
}

Interface FindInterface(const ExtcapArguments& arguments, const ExtcapSurroundings& surroundings) {
  const std::string name = arguments.Value("extcap-interface");
  for (Interface& each : InterfacesIn(surroundings)) {
    if (name == each.name) return std::move(each);
  }
  throw CommandFailure(
      kUsage, "there is no interface '" + name + "'; 'ipodctl --extcap-interfaces' lists them");
}

// The characters that part Wireshark's own notation.
std::string Sentence(const std::string& key, const std::string& value) {
  std::string plain = value;
  std::replace_if(
      plain.begin(), plain.end(), [](char letter) { return letter == '{' || letter == '}'; }, '_');
  return "{" + key + "=" + plain + "}";
}

std::string ListInterfaces(const ExtcapSurroundings& surroundings) {
  std::string text = "extcap " + Sentence("version", surroundings.version) +
                     Sentence("display", "ipodcomm") + "\n";
  for (const Interface& each : InterfacesIn(surroundings)) {
    text += "interface " + Sentence("value", each.name) + Sentence("display", each.shown) + "\n";
  }
  return text;
}

std::string ListChoices(const Interface& line) {
  std::string text;
  for (std::size_t i = 0; i < line.choices.size(); ++i) {
    const Choice& choice = line.choices[i];
    text += "arg " + Sentence("number", std::to_string(i)) + Sentence("call", "--" + choice.name) +
            Sentence("display", choice.shown) + Sentence("tooltip", choice.tip) +
            Sentence("type", choice.type);
    if (!choice.preset.empty()) text += Sentence("default", choice.preset);
    text += choice.preset.empty() ? "{required=true}\n" : "\n";
    for (const Value& value : choice.values) {
      text += "value " + Sentence("arg", std::to_string(i)) + Sentence("value", value.name) +
              Sentence("display", value.shown);
      text += value.name == choice.preset ? "{default=true}\n" : "\n";
    }
  }
  return text;
}

// What a filter would leave out is shown: none is taken rather than ignored.
void RefuseFilter(const std::string& filter) {
  if (filter.empty()) return;
  throw CommandFailure(
      kUsage,
      "there are no capture filters for this line; record all of it, and choose by "
      "a display filter such as ipodcomm.lingo == 4");
}

std::string ChosenValue(const Choice& choice, const ExtcapArguments& arguments) {
  const std::string value =
      arguments.Has(choice.name) ? arguments.Value(choice.name) : choice.preset;
  if (value.empty()) {
    throw CommandFailure(kUsage, "--" + choice.name + " is missing: " + choice.tip);
  }
  const bool known =
      choice.values.empty() || std::any_of(choice.values.begin(), choice.values.end(),
                                           [&](const Value& each) { return each.name == value; });
  if (known) return value;
  throw CommandFailure(kUsage, "--" + choice.name + " cannot be '" + value + "'");
}

void RefuseUnknownChoices(const Interface& line, const ExtcapArguments& arguments) {
  for (const std::string& name : arguments.Choices()) {
    const bool known = std::any_of(line.choices.begin(), line.choices.end(),
                                   [&](const Choice& choice) { return name == choice.name; });
    if (!known) {
      throw CommandFailure(kUsage, std::string(line.name) + " has no choice --" + name);
    }
  }
}

void AddSession(const std::string& name, std::vector<std::string>* arguments) {
  const auto session = std::find_if(kSessions.begin(), kSessions.end(),
                                    [&](const WatchedSession& each) { return name == each.name; });
  arguments->insert(arguments->end(), session->arguments.begin(), session->arguments.end());
}

}  // namespace

std::string AnswerExtcap(const ExtcapArguments& arguments, const ExtcapSurroundings& surroundings) {
  if (!arguments.Has("extcap-interface")) return ListInterfaces(surroundings);
  const Interface line = FindInterface(arguments, surroundings);
  if (arguments.Has("extcap-dlts")) {
    return "dlt {number=250}{name=RTAC_SERIAL}{display=Serial line with an iPod}\n";
  }
  if (arguments.Has("extcap-config")) return ListChoices(line);
  if (arguments.Has("capture")) return {};
  if (arguments.Has("extcap-capture-filter")) {
    RefuseFilter(arguments.Value("extcap-capture-filter"));
    return {};
  }
  throw CommandFailure(kUsage, "nothing is asked of " + std::string(line.name) +
                                   ": --extcap-dlts, --extcap-config or --capture --fifo FILE");
}

ExtcapCapture CaptureForExtcap(const ExtcapArguments& arguments,
                               const ExtcapSurroundings& surroundings) {
  const Interface line = FindInterface(arguments, surroundings);
  RefuseFilter(arguments.Value("extcap-capture-filter"));
  RefuseUnknownChoices(line, arguments);
  ExtcapCapture capture;
  capture.pipe = arguments.Value("fifo");
  if (capture.pipe.empty()) throw CommandFailure(kUsage, "--fifo is missing: where to record to");
  for (const Choice& choice : line.choices) {
    const std::string value = ChosenValue(choice, arguments);
    if (choice.name == kRecording) capture.recording = value;
    if (choice.name == kPort) capture.session = {"--port", value};
    if (choice.name == kProfile) capture.session = {"--simulated=" + value};
    if (choice.name == kCommand) AddSession(value, &capture.session);
  }
  return capture;
}

}  // namespace ipodctl
