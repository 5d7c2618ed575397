// SPDX-License-Identifier: MIT
// Pages of the program in a browser: nothing sticks out or overlaps, all of it can be read.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "browser.h"
#include "documents.h"
#include "support/process.h"
#include "support/temporary_folder.h"

using report::Document;
using report::IntervalAt;
using report::InTheDark;
using report::LookAt;
using report::OnPaper;
using report::Viewed;
using test::Ended;
using test::Ipodctl;
using test::RunProgram;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr int kDesktop = 1280;
constexpr int kPhone = 390;
constexpr int kPaper = 688;  // A4 without its margins, at 96 dots an inch

std::string Number(double number) {
  std::ostringstream text;
  text << number;
  return text.str();
}

// A workout in which everything is measured, every ten seconds.
std::string Long(const std::string& type, const char* speed, int seconds) {
  std::string text = "<equipmentInfo><type>" + type + "</type></equipmentInfo>";
  for (int at = 0; at <= seconds; at += 10) {
    text += IntervalAt(at,
                       "<kCal>" + Number(at * 0.2) + "</kCal><km>" + Number(at * 0.003) + "</km><" +
                           speed + ">" + Number(300 + at * 7 % 90) + "</" + speed + "><incline>" +
                           Number(at / 100 % 5) + "</incline><bpm>" + Number(90 + at * 3 % 95) +
                           "</bpm>",
                       at == 600   ? "pause"
                       : at == 660 ? "resume"
                                   : "continue");
  }
  return Document(text);
}

// Names of 300 letters with and without spaces, markup, and script from right to left.
std::string Hostile() {
  const std::string markup = "&lt;script&gt;document.title=\"\"&lt;/script&gt;&amp;amp;\"'";
  const std::string arabic = "\u0634\u0631\u0643\u0629 \u0627\u0644\u0623\u062C\u0647\u0632\u0629";
  std::string words;
  while (words.size() < 300) words += "Maker & Sons "[words.size() % 13];
  std::string escaped;
  for (const char letter : words) {
    escaped += letter == '&' ? std::string("&amp;") : std::string(1, letter);
  }
  return Document("<equipmentInfo><type>" + markup + std::string(300, 'W') + "</type>" +
                  "<manufacturerName>" + escaped + "</manufacturerName><model>" +
                  std::string(300, 'M') + "</model><serialNumber>" + arabic +
                  "</serialNumber><gymName>" + arabic + markup + "</gymName></equipmentInfo>" +
                  IntervalAt(2147483647,
                             "<km>9999999999</km><pace>2147483647</pace>"
                             "<bpm>2147483647</bpm><incline>-9999999</incline>"
                             "<kCal>9999999999</kCal>") +
                  "<workoutSummary><km>9999999999</km></workoutSummary>");
}

class Rendered : public ::testing::Test {
 protected:
  // All pages that differ in what there is to lay out, made once.
  static void SetUpTestSuite() {
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("w"));
    const auto add = [&folder](const std::string& name, const std::string& document,
                               const std::vector<std::string>& options = {}) {
      std::vector<std::string> arguments = {"report", folder.Write("w/" + name + ".xml", document),
                                            "-o", folder.path("page")};
      arguments.insert(arguments.end(), options.begin(), options.end());
      Ipodctl(arguments);
      Add(name + (options.empty() ? "" : " " + options.back()), folder.path("page"));
    };
    add("run", report::kRun);
    for (const char* language : {"en", "de", "fr", "es"}) {
      for (const char* units : {"metric", "imperial"}) {
        add("long run", Long("Treadmill", "pace", 3600),
            {"--max-heart-rate", "185", "--units", units, "--language", language});
      }
      add("ride", Long("Bike", "rpm", 2400), {"--max-heart-rate", "185", "--language", language});
    }
    add("hours", Long("Bike", "rpm", 20 * 3600));
    add("stairs", Document(IntervalAt(0, "<floors>0</floors><spm>40</spm>") +
                           IntervalAt(600, "<floors>42.5</floors><spm>60</spm>")));
    add("nothing", "<gymData/>");
    add("one interval", Document(IntervalAt(5, "<km>0.01</km><bpm>100</bpm>")));
    add("no heart rate", Document(report::KmAt(0, "0") + report::KmAt(330, "1.2")));
    add("damaged", report::RunUpTo("<sec>120</sec>"), {"--language", "de"});
    add("hostile", Hostile(), {"--max-heart-rate", "185", "--language", "fr"});
    std::ofstream(folder.path("w/" + std::string(200, 'n') + ".xml")) << "no workout";
    for (const char* language : {"en", "es"}) {
      Ipodctl({"report", folder.path("w"), "-o", folder.path("all"), "--language", language});
      Add(std::string("overview ") + language, folder.path("all"));
    }
  }

  static void TearDownTestSuite() { pages().clear(); }

  static std::vector<Viewed>& pages() {
    static std::vector<Viewed> pages;
    return pages;
  }

  static std::vector<Viewed> PagesAt(int width, std::string (*changed)(std::string) = nullptr) {
    std::vector<Viewed> viewed = pages();
    for (Viewed& page : viewed) {
      page.width = width;
      if (changed != nullptr) page.html = changed(page.html);
    }
    return viewed;
  }

 private:
  static void Add(const std::string& name, const std::string& file) {
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    pages().push_back({name, content.str()});
  }
};

class InBrowser : public Rendered {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(report::kChromium)) {
      GTEST_SKIP() << "this system has no Chromium; script/bootstrap installs it where it can";
    }
  }
};

// What sticks out of the page, of its box, or of its picture, and texts that lie on each other.
constexpr const char* kLookForOverflow = R"js(
function nameOf(element) {
  const text = element.textContent.trim().slice(0, 40);
  return element.tagName.toLowerCase() + "." + (element.getAttribute("class") || "") + " " + text;
}
function lookAtPicture(svg, found) {
  const box = svg.getBoundingClientRect();
  const texts = Array.from(svg.querySelectorAll("text"), (text) => [text, text.getBoundingClientRect()]);
  texts.forEach(([text, at], i) => {
    if (at.left < box.left - 1 || at.right > box.right + 1) found.push(nameOf(text) + " leaves its picture");
    for (const [other, there] of texts.slice(i + 1)) {
      const across = Math.min(at.right, there.right) - Math.max(at.left, there.left);
      const down = Math.min(at.bottom, there.bottom) - Math.max(at.top, there.top);
      if (across > 0 && down > 4) found.push(nameOf(text) + " lies on " + nameOf(other));
    }
  });
}
function look(document, window) {
  const found = [];
  const root = document.documentElement;
  if (root.scrollWidth > root.clientWidth) found.push("is " + root.scrollWidth + " wide");
  for (const element of document.querySelectorAll("main, main *")) {
    const style = window.getComputedStyle(element);
    const clipped = element.closest("thead") &&
      window.getComputedStyle(element.closest("thead")).clipPath !== "none";
    if (style.display === "none" || element.closest("svg") || clipped) continue;
    const box = element.getBoundingClientRect();
    if (box.left < -0.5 || box.right > root.clientWidth + 0.5) found.push(nameOf(element) + " sticks out");
    if (style.display !== "inline" && element.scrollWidth > element.clientWidth + 1) {
      found.push(nameOf(element) + " overflows its box");
    }
  }
  for (const svg of document.querySelectorAll("svg")) {
    if (window.getComputedStyle(svg).display !== "none") lookAtPicture(svg, found);
  }
  return found;
}
)js";

TEST_F(InBrowser, PagesFitADesktop) {
  EXPECT_THAT(LookAt(PagesAt(kDesktop), kLookForOverflow), IsEmpty());
}

TEST_F(InBrowser, PagesFitAPhone) {
  EXPECT_THAT(LookAt(PagesAt(kPhone), kLookForOverflow), IsEmpty());
}

TEST_F(InBrowser, PagesFitPaper) {
  EXPECT_THAT(LookAt(PagesAt(kPaper, OnPaper), kLookForOverflow), IsEmpty());
}

TEST_F(InBrowser, AnOverflowWouldBeSeen) {
  const std::string wide = "<!DOCTYPE html><main><p style=\"width:500px\">wide</p></main>";
  const std::string lying =
      "<!DOCTYPE html><main><svg viewBox=\"0 0 100 50\" width=\"100\"><text x=\"10\" y=\"20\">one"
      "</text><text x=\"12\" y=\"20\">two</text></svg></main>";
  EXPECT_THAT(LookAt({{"wide", wide, kPhone}, {"lying", lying, kPhone}}, kLookForOverflow),
              ElementsAre("wide: is 508 wide", "wide: main. wide overflows its box",
                          "wide: p. wide sticks out", "lying: text. one lies on text. two"));
}

// Texts whose contrast with what is behind them is below 4.5 to 1, the least that is thought
// legible.
constexpr const char* kLookForContrast = R"js(
function luminance([red, green, blue]) {
  const linear = [red, green, blue].map((part) => {
    const share = part / 255;
    return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
  });
  return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2];
}
const colour = (text) => text.match(/[\d.]+/g).map(Number);
function behind(element, window) {
  for (let at = element; at; at = at.parentElement) {
    const back = colour(window.getComputedStyle(at).backgroundColor);
    if (back.length === 3 || back[3] === 1) return back;
  }
  return [255, 255, 255];
}
function look(document, window) {
  const found = new Set();
  for (const element of document.querySelectorAll("body *")) {
    const own = Array.from(element.childNodes).some((node) => node.nodeType === 3 && node.data.trim());
    if (!own || element.tagName === "SCRIPT" || element.tagName === "desc") continue;
    const style = window.getComputedStyle(element);
    const ink = luminance(colour(element.closest("svg") ? style.fill : style.color));
    const back = luminance(behind(element, window));
    const ratio = (Math.max(ink, back) + 0.05) / (Math.min(ink, back) + 0.05);
    if (ratio < 4.5) {
      const name = element.tagName + "." + (element.getAttribute("class") || "");
      found.add(name + " has a contrast of " + ratio.toFixed(2));
    }
  }
  return Array.from(found);
}
)js";

TEST_F(InBrowser, PagesAreLegible) {
  EXPECT_THAT(LookAt(PagesAt(kDesktop), kLookForContrast), IsEmpty());
}

TEST_F(InBrowser, PagesAreLegibleInTheDark) {
  EXPECT_THAT(LookAt(PagesAt(kDesktop, InTheDark), kLookForContrast), IsEmpty());
}

TEST_F(InBrowser, PagesAreLegibleOnPaper) {
  EXPECT_THAT(LookAt(PagesAt(kPaper, OnPaper), kLookForContrast), IsEmpty());
}

TEST_F(InBrowser, AFaintTextWouldBeSeen) {
  const std::string faint =
      "<!DOCTYPE html><body style=\"background:#fff\"><p style=\"color:#777\">faint</p>"
      "<p style=\"color:#767676\">good</p>";
  EXPECT_THAT(LookAt({{"page", faint}}, kLookForContrast),
              ElementsAre("page: P. has a contrast of 4.48"));
}

// Who does not see the page hears its titles and the names of its parts.
constexpr const char* kLookForNames = R"js(
function look(document) {
  const found = [];
  if (!document.title.trim()) found.push("has no title");
  const levels = Array.from(document.querySelectorAll("h1, h2, h3"), (heading) => {
    if (!heading.textContent.trim()) found.push("has an empty heading");
    return heading.tagName;
  });
  if (levels[0] !== "H1" || levels.lastIndexOf("H1") !== 0) found.push("has headings " + levels);
  const ids = Array.from(document.querySelectorAll("[id]"), (element) => element.id);
  if (new Set(ids).size !== ids.length) found.push("has an id twice");
  for (const svg of document.querySelectorAll("svg")) {
    const description = document.getElementById(svg.getAttribute("aria-describedby"));
    if (!svg.getAttribute("aria-label") || !description.textContent) found.push("has a nameless picture");
  }
  for (const input of document.querySelectorAll("input")) {
    if (input.labels.length !== 1 || !input.getAttribute("aria-valuetext")) found.push("has a nameless slider");
  }
  for (const link of document.querySelectorAll("a")) {
    if (!link.textContent.trim()) found.push("has a nameless link");
    const target = link.getAttribute("href");
    if (target.startsWith("#") && !document.getElementById(target.slice(1))) found.push("links to nothing");
  }
  if (!document.documentElement.lang) found.push("has no language");
  if (document.querySelector("figure") && document.querySelector("figure [hidden]")) found.push("ran no script");
  return found;
}
)js";

TEST_F(InBrowser, PagesNameAllTheirParts) {
  EXPECT_THAT(LookAt(PagesAt(kDesktop), kLookForNames), IsEmpty());
}

TEST_F(InBrowser, ValuesAreReadByPointerAndBySlider) {
  const std::string script = R"js(
function look(document, window) {
  const values = () => Array.from(document.querySelectorAll(".values li"), (item) => item.textContent).join(", ");
  const slider = document.querySelector("input");
  const found = [values()];
  const svg = document.querySelector("svg.wide");
  const box = svg.getBoundingClientRect();
  // The plot is 690 of 760 wide, and 2:05 of 4:00 nearest to 2:00.
  const x = box.left + (46 + 690 * 125 / 240) / 760 * box.width;
  svg.dispatchEvent(new window.PointerEvent("pointermove", { clientX: x, clientY: box.top + 50 }));
  found.push(values());
  found.push("line at " + svg.querySelector("line.moment").getAttribute("x1"));
  slider.value = 4;
  slider.dispatchEvent(new window.Event("input"));
  found.push(slider.getAttribute("aria-valuetext"));
  slider.value = 0;
  slider.dispatchEvent(new window.Event("input"));
  found.push(slider.getAttribute("aria-valuetext"));
  return found;
}
)js";
  EXPECT_THAT(
      LookAt({pages().front()}, script),
      ElementsAre(
          "run: Time0:00, Heart rateno reading, Paceno reading, Inclination0 %, Distance0 km",
          "run: Time2:00, Heart rate150 bpm, Pace5:20 min/km, Inclination1.5 %, Distance0.4 km",
          "run: line at 391",
          "run: 4:00, Heart rate 140 bpm, Pace 5:10 min/km, Inclination 1.5 %, Distance 0.6 km",
          "run: 0:00, Heart rate no reading, Pace no reading, Inclination 0 %, Distance 0 km"));
}

// A script that got into the page all the same would not run.
TEST_F(InBrowser, RunsNoOtherScript) {
  Viewed page = pages().front();
  const std::string injected =
      "<script>document.title='taken'</script><img src=\"x\" onerror=\"document.title='taken'\"/>";
  page.html = report::Replaced(page.html, "<main>", "<main>" + injected);
  EXPECT_THAT(LookAt({page}, "function look(document) { return [document.title]; }"),
              ElementsAre("run: Treadmill workout"));
}

TEST_F(Rendered, PagesAreValidHtml) {
  const test::TemporaryFolder folder;
  ASSERT_TRUE(std::filesystem::exists("/usr/bin/tidy")) << "script/bootstrap installs tidy";
  for (const Viewed& page : pages()) {
    const std::string file = folder.Write("page.html", page.html);
    const Ended tidy = RunProgram("/usr/bin/tidy", {"-quiet", "-errors", "-utf8", file});
    EXPECT_EQ(tidy.status, 0) << page.name << ": " << tidy.err;
    const Ended xml = RunProgram("/usr/bin/xmllint", {"--nonet", "--noout", file});
    EXPECT_EQ(xml.status, 0) << page.name << ": " << xml.err;
  }
}

}  // namespace
