// SPDX-License-Identifier: MIT
// ipodctl report, run as a program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "documents.h"
#include "support/json_lines.h"
#include "support/process.h"
#include "support/temporary_folder.h"

namespace fs = std::filesystem;
using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using test::Process;
using test::RunProgram;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

class ReportCommand : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.path(name); }

  std::string Write(const std::string& name, const std::string& content) const {
    return folder_.Write(name, content);
  }

  static std::string Content(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
  }

  static void ExpectSentence(const Ended& ended, int status, const std::string& sentence) {
    EXPECT_EQ(ended.status, status);
    EXPECT_EQ(ended.err, "ipodctl: " + sentence + ".\n");
  }

  static void ExpectRefused(const Ended& ended, int status, const std::string& sentence) {
    ExpectSentence(ended, status, sentence);
    EXPECT_EQ(ended.out, "");
  }

 private:
  test::TemporaryFolder folder_;
};

TEST_F(ReportCommand, WritesThePageBesideTheDocument) {
  const std::string document = Write("run.xml", report::kRun);
  const Ended ended = Ipodctl({"report", document});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(ended.out, "Wrote " + Path("run.html") + ": Treadmill, 4:00, 0.61 km, 5 intervals.\n");
  EXPECT_THAT(Content(Path("run.html")),
              AllOf(StartsWith("<!DOCTYPE html>"), EndsWith("</html>\n")));
  EXPECT_EQ(Content(document), report::kRun);
}

TEST_F(ReportCommand, WritesThePageWhereItIsTold) {
  const std::string document = Write("run.xml", report::kRun);
  EXPECT_EQ(Ipodctl({"report", document, "-o", Path("other")}).status, 0);
  EXPECT_THAT(Content(Path("other")), StartsWith("<!DOCTYPE html>"));
  EXPECT_FALSE(fs::exists(Path("run.html")));
  EXPECT_EQ(Ipodctl({"report", document, "--output", Path("third")}).status, 0);
  EXPECT_EQ(Content(Path("third")), Content(Path("other")));
}

TEST_F(ReportCommand, MakesPagesThatAreWellFormed) {
  const std::string hostile =
      "<equipmentInfo><type>&lt;b&gt;</type><model>]]&gt;\"'&amp;\xC2\x85"
      "</model></equipmentInfo>";
  const std::string documents[] = {report::kRun, report::kOlderRide, report::Document(""),
                                   report::Document(hostile), report::RunUpTo("<sec>120</sec>")};
  for (const std::string& text : documents) {
    Ipodctl({"report", Write("w.xml", text)});
    const Ended checked = RunProgram("/usr/bin/xmllint", {"--nonet", "--noout", Path("w.html")});
    EXPECT_EQ(checked.status, 0) << checked.err;
  }
}

// Any other script, such as one that a document brought in, has another sum and is not run.
TEST_F(ReportCommand, AllowsOnlyThePagesOwnScript) {
  Ipodctl({"report", Write("run.xml", report::kRun)});
  const std::string page = Content(Path("run.html"));
  const std::string tag = "<script>";
  const std::size_t from = page.find(tag) + tag.size();
  const std::string script = page.substr(from, page.find("</script>") - from);
  const Ended sum =
      RunProgram("/usr/bin/python3",
                 {"-c",
                  "import base64, hashlib, sys\n"
                  "text = open(sys.argv[1], 'rb').read()\n"
                  "print(base64.b64encode(hashlib.sha256(text).digest()).decode(), end='')",
                  Write("script", script)});
  ASSERT_EQ(sum.status, 0) << sum.err;
  EXPECT_THAT(page, HasSubstr("content=\"default-src 'none'; "));
  EXPECT_THAT(page, HasSubstr("script-src 'sha256-" + sum.out + "'\"/>"));
}

TEST_F(ReportCommand, MakesPagesInAnotherLanguageAndOtherUnits) {
  const std::string document = Write("run.xml", report::kRun);
  const Ended ended = Ipodctl({"report", document, "--language", "es", "--units", "imperial"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out, "Wrote " + Path("run.html") + ": Treadmill, 4:00, 0.38 mi, 5 intervals.\n");
  EXPECT_THAT(Content(Path("run.html")),
              AllOf(HasSubstr("<html lang=\"es\""), HasSubstr("Entrenamiento en cinta de correr"),
                    HasSubstr("<b>0,38</b> <span class=\"unit\">mi</span>"),
                    HasSubstr("<b>8:11</b> <span class=\"unit\">min/mi</span>"),
                    HasSubstr("<bdi>159,8 lb</bdi>")));
}

TEST_F(ReportCommand, ShowsHeartRateZonesOfAKnownMaximum) {
  const std::string document = Write("run.xml", report::kRun);
  Ipodctl({"report", document});
  EXPECT_THAT(Content(Path("run.html")), Not(HasSubstr("zones</h2>")));
  EXPECT_EQ(Ipodctl({"report", document, "--max-heart-rate", "200"}).status, 0);
  // 120 bpm from 1:00 to 2:00; 100 from 3:00 to 4:00.
  EXPECT_THAT(Content(Path("run.html")),
              AllOf(HasSubstr("<h2>Time in heart-rate zones</h2>"),
                    HasSubstr("Zone 2, light</th><td>120–139</td><td>1:00</td><td>50\u00A0%</td>"),
                    HasSubstr("Zone 1, very light</th><td>100–119</td><td>1:00</td>"),
                    HasSubstr("Zone 5, maximum</th><td>180–200</td><td>0:00</td>"),
                    HasSubstr("For a maximum heart rate of 200 bpm.")));
}

TEST_F(ReportCommand, ShowsSplits) {
  const std::string run = report::Document(report::KmAt(0, "0") + report::KmAt(330, "1.00") +
                                           report::KmAt(495, "1.50"));
  Ipodctl({"report", Write("run.xml", run)});
  EXPECT_THAT(Content(Path("run.html")),
              AllOf(HasSubstr("<h2>Splits</h2>"),
                    HasSubstr("<th scope=\"row\">1</th><td>5:30</td><td>5:30</td>"),
                    HasSubstr("<th scope=\"row\">1.5</th><td>2:45</td><td>5:30</td>")));
}

TEST_F(ReportCommand, PrintsTheFiguresForMachines) {
  const Ended ended = Ipodctl({"report", Write("run.xml", report::kRun), "--json"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(std::count(ended.out.begin(), ended.out.end(), '\n'), 1);
  const json figures = json::parse(ended.out);
  EXPECT_EQ(figures.at("km"), 0.61);
  EXPECT_EQ(figures.at("intervals"), 5);
  EXPECT_EQ(figures.at("complete"), true);
  EXPECT_EQ(figures.at("page"), Path("run.html"));
  EXPECT_TRUE(fs::exists(Path("run.html")));
}

TEST_F(ReportCommand, ShowsADamagedDocumentAndSaysWhereItEnds) {
  const std::string cut = Write("cut.xml", report::RunUpTo("<sec>120</sec>\n"));
  const Ended ended = Ipodctl({"report", cut});
  ExpectSentence(ended, 65,
                 cut + " is cut short at line 36, column 1; " + Path("cut.html") +
                     " shows what comes before that place");
  EXPECT_EQ(ended.out, "Wrote " + Path("cut.html") + ": Treadmill, 2:00, 0.20 km, 3 intervals.\n");
  EXPECT_THAT(Content(Path("cut.html")), HasSubstr("is cut short at line 36, column 1."));

  const std::string bad = Write("bad.xml", "<gymData>\n<interval></km></gymData>");
  const Ended malformed = Ipodctl({"report", bad, "--json"});
  ExpectSentence(malformed, 65,
                 bad + " is malformed at line 2, column 13 (mismatched tag); " + Path("bad.html") +
                     " shows what comes before that place");
  const std::vector<json> told = test::Objects(malformed.out);
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[0].at("problem").at("line"), 2);
  EXPECT_EQ(told[1].at("error"), "damaged");
  EXPECT_EQ(told[1].at("status"), 65);
}

TEST_F(ReportCommand, RefusesWhatIsNoWorkoutDocument) {
  const auto refused = [this](const std::string& content, const std::string& why) {
    const std::string file = Write("file.xml", content);
    ExpectRefused(Ipodctl({"report", file}), 66, file + " is not a workout document: " + why);
    EXPECT_FALSE(fs::exists(Path("file.html")));
  };
  refused("", "it is empty");
  refused("<html></html>", "its first element is not gymData (line 1, column 1)");
  refused("<?xml version=\"1.0\"?>\n<gym", "it ends before the first element (line 2, column 1)");
  refused("hello", "syntax error (line 1, column 1)");
}

TEST_F(ReportCommand, RefusesFilesThatItCannotRead) {
  const std::string none = Path("none.xml");
  ExpectRefused(Ipodctl({"report", none}), 66,
                "cannot read " + none + ": No such file or directory");
}

TEST_F(ReportCommand, RefusesToOverwriteTheDocument) {
  const std::string document = Write("run.xml", report::kRun);
  ExpectRefused(Ipodctl({"report", document, "-o", document}), 64,
                document + " is the workout document itself; name another file with -o");
  fs::create_symlink(document, Path("link"));
  ExpectRefused(Ipodctl({"report", document, "-o", Path("link")}), 64,
                Path("link") + " is the workout document itself; name another file with -o");
  EXPECT_EQ(Content(document), report::kRun);

  const std::string misnamed = Write("run.html", report::kRun);
  EXPECT_EQ(Ipodctl({"report", misnamed}).status, 0);
  EXPECT_EQ(Content(misnamed), report::kRun);
  EXPECT_THAT(Content(Path("run.html.html")), StartsWith("<!DOCTYPE html>"));
}

TEST_F(ReportCommand, RefusesPlacesThatItCannotWriteTo) {
  const std::string document = Write("run.xml", report::kRun);
  const std::string nowhere = Path("none/page.html");
  ExpectRefused(Ipodctl({"report", document, "-o", nowhere}), 1,
                "cannot write " + nowhere + ": No such file or directory");
  fs::create_directory(Path("folder"));
  ExpectRefused(Ipodctl({"report", document, "-o", Path("folder")}), 1,
                "cannot write " + Path("folder") + ": Is a directory");
  ExpectRefused(Ipodctl({"report", document, "-o", "/dev/full"}), 1,
                "cannot write /dev/full: No space left on device");
  fs::permissions(Path("folder"), fs::perms::owner_read | fs::perms::owner_exec);
  Process stranger(IPODCTL_PROGRAM, {"report", document, "-o", Path("folder/page")},
                   Process::Setting::kBoundByFileModes);
  ExpectRefused(stranger.Wait(), 1, "cannot write " + Path("folder/page") + ": Permission denied");
}

TEST_F(ReportCommand, RefusesWrongArguments) {
  const auto refused = [](const std::vector<std::string>& arguments, const std::string& part) {
    const Ended ended = Ipodctl(arguments);
    EXPECT_EQ(ended.status, 64);
    EXPECT_THAT(ended.err, AllOf(StartsWith("ipodctl: "), HasSubstr(part),
                                 EndsWith("see 'ipodctl report --help'.\n")));
  };
  refused({"report"}, "FILE is required");
  refused({"report", ""}, "FILE needs the name of a workout document");
  refused({"report", "a", "b"}, "b");
  refused({"report", "a", "-o", ""}, "--output needs the name of a file");
  refused({"report", "a", "--language", "xx"}, "--language");
  refused({"report", "a", "--units", "furlongs"}, "--units");
  for (const char* rate : {"59", "251", "-1", "nan", "1e2", ""}) {
    refused({"report", "a", "--max-heart-rate", rate}, "--max-heart-rate");
  }
}

TEST_F(ReportCommand, NeedsNoIpod) {
  const std::string document = Write("run.xml", report::kRun);
  EXPECT_EQ(Ipodctl({"--port", "/dev/no-such-dock", "report", document}).status, 0);
  EXPECT_EQ(Ipodctl({"--simulated", "--library", Path("none.json"), "report", document}).status, 0);
}

TEST_F(ReportCommand, ExplainsItself) {
  const Ended help = Ipodctl({"report", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, AllOf(HasSubstr("Usage: ipodctl report FILE|FOLDER [OPTIONS]"),
                              HasSubstr("Examples:\n"), HasSubstr("65")));
  EXPECT_THAT(Ipodctl({"--help"}).out, AllOf(HasSubstr("\n  report "), HasSubstr("\n  65  ")));
  EXPECT_THAT(Ipodctl({"--complete", "report", "--o"}).out,
              "none\n--output\tWrite the page there (-: to standard output)\n");
}

}  // namespace
