// SPDX-License-Identifier: MIT
// Writes docs/wire.md.
#include "wire/pages/pages.h"

namespace ipodwire {
namespace {

class MarkdownPage : public PageWriter {
 public:
  void Title(const std::string& text) override {
    text_ =
        "# " + text +
        "\n<!-- SPDX-License-Identifier: MIT -->\n"
        "<!-- Made from the table in wire/ by the target write_wire_pages. Change the table. -->\n";
  }
  void Lingo(const std::string& text) override { text_ += "\n## " + text + "\n"; }
  void Command(const std::string& text) override { text_ += "\n### " + text + "\n"; }
  void Paragraph(const std::string& text) override { text_ += "\n" + text + "\n"; }
  void Verbatim(const std::string& text) override { text_ += "\n```\n" + text + "\n```\n"; }
  void BeginFields() override { text_ += "\n| field | bytes | meaning |\n|---|---|---|\n"; }
  void Field(const std::string& name, const std::string& bytes,
             const std::string& meaning) override {
    text_ += "| " + name + " | " + bytes + " | " + meaning + " |\n";
  }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace

std::string WirePage() {
  MarkdownPage page;
  WriteWirePage(&page);
  return page.text();
}

}  // namespace ipodwire
