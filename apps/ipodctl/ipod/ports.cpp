// SPDX-License-Identifier: MIT
#include "ipod/ports.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "console/failure.h"
#include "console/text.h"
#include "console/verbose_log.h"
#include "ipod/port_probe.h"
#include "usage/serial_ports.h"

namespace ipodctl {

namespace {

using usage::SerialPort;

nlohmann::ordered_json ToJson(const SerialPort& port) {
  nlohmann::ordered_json json = {{"port", port.device}};
  if (!port.adapter.empty()) json["adapter"] = port.adapter;
  if (!port.serial_number.empty()) json["serial_number"] = port.serial_number;
  if (!port.link.empty()) json["link"] = port.link;
  return json;
}

void AddTo(nlohmann::ordered_json* json, const PortAnswer& answer) {
  (*json)["answer"] = answer.word();
  if (answer.name) (*json)["name"] = *answer.name;
  if (answer.model) (*json)["model"] = *answer.model;
  if (!answer.trouble.empty()) (*json)["message"] = answer.trouble;
}

void ShowPort(const SerialPort& port, Output& output) {
  const std::string adapter = port.adapter.empty() ? "built in" : Printable(port.adapter);
  output.Line(output.Bold(port.device) + "  " + adapter);
  if (!port.serial_number.empty()) output.Fact("Serial number", Printable(port.serial_number));
  if (!port.link.empty()) output.Fact("Lasting name", Printable(port.link));
}

struct Asked {
  std::string device;
  PortAnswer answer;
};

std::vector<Asked> AskAll(const Options& options, const std::vector<SerialPort>& ports) {
  std::vector<Asked> asked;
  for (const SerialPort& port : ports) {
    Note("asking on " + port.device);
    asked.push_back({port.device, AskPort(options, port.device)});
  }
  return asked;
}

// "/dev/ttyUSB0 (busy), /dev/ttyUSB1 (nothing answers)"
std::string TextOf(const std::vector<Asked>& asked) {
  std::string text;
  for (const Asked& port : asked) {
    text += (text.empty() ? "" : ", ") + port.device + " (" + port.answer.Text() + ")";
  }
  return text;
}

[[noreturn]] void FailToFind(const std::vector<Asked>& asked) {
  const bool opened = std::any_of(asked.begin(), asked.end(),
                                  [](const Asked& port) { return port.answer.opened(); });
  throw CommandFailure(opened ? kNothingDocked : kPortUnavailable,
                       "no iPod answers on any port: " + TextOf(asked) +
                           "; check that it is docked and switched on, or name its port with "
                           "--port");
}

}  // namespace

void RunPorts(const Options& options, Output& output) {
  const std::vector<SerialPort> ports = usage::SerialPorts();
  if (ports.empty()) output.Line("There is no serial port; plug in the dock's adapter.");
  for (const SerialPort& port : ports) {
    ShowPort(port, output);
    nlohmann::ordered_json json = ToJson(port);
    if (options.probe) {
      const PortAnswer answer = AskPort(options, port.device);
      output.Fact("In the dock", answer.Text());
      AddTo(&json, answer);
    }
    output.Object(json);
  }
}

std::string FindPort(const Options& options) {
  const std::vector<SerialPort> ports = usage::SerialPorts();
  if (ports.empty()) {
    throw CommandFailure(
        kPortUnavailable,
        "there is no serial port; plug in the dock's adapter, or name its line with --port");
  }
  if (ports.size() == 1) return ports.front().device;
  const std::vector<Asked> asked = AskAll(options, ports);
  std::vector<Asked> answering;
  std::copy_if(asked.begin(), asked.end(), std::back_inserter(answering),
               [](const Asked& port) { return port.answer.ipod_answers(); });
  if (answering.empty()) FailToFind(asked);
  if (answering.size() == 1) return answering.front().device;
  throw CommandFailure(kUsage, "an iPod answers on more than one port: " + TextOf(answering) +
                                   "; name one of them with --port");
}

}  // namespace ipodctl
