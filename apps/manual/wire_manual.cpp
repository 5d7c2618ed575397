// SPDX-License-Identifier: MIT
#include "wire_manual.h"

#include <algorithm>

#include "usage/roff.h"
#include "wire/pages/pages.h"

namespace {

using usage::Roff;
using usage::RoffBold;

class ManualPage : public ipodwire::PageWriter {
 public:
  void Title(const std::string& text) override {
    text_ = usage::RoffTitle("ipodcomm-wire", 7, "Miscellaneous") +
            ".SH NAME\nipodcomm\\-wire \\- " + Roff(text) + "\n.SH DESCRIPTION\n";
  }
  void Lingo(const std::string& text) override { text_ += ".SH " + Roff(text) + "\n"; }
  void Command(const std::string& text) override {
    text_ += ".SS " + Roff(text) + "\n";
    below_heading_ = true;
  }
  void Paragraph(const std::string& text) override {
    if (!below_heading_) text_ += ".PP\n";
    below_heading_ = false;
    AddTyped(text);
    text_ += "\n";
  }
  void Verbatim(const std::string& text) override {
    text_ += ".PP\n.nf\n" + Roff(text) + "\n.fi\n";
  }
  void BeginFields() override {}
  void Field(const std::string& name, const std::string& bytes,
             const std::string& meaning) override {
    const std::string size = bytes.empty() ? "" : bytes + (bytes == "1" ? " byte" : " bytes");
    const std::string comma = size.empty() || meaning.empty() ? "" : ", ";
    text_ += ".TP\n" + RoffBold(name) + "\n" + Roff(size + comma + meaning) + "\n";
  }
  std::string text() const {
    return text_ + ".SH SEE ALSO\n.BR ipodctl\\-decode (1),\n.BR ipodcomm (3)\n";
  }

 private:
  // What stands between backquotes is bold.
  void AddTyped(const std::string& text) {
    bool typed = false;
    for (std::size_t begin = 0; begin <= text.size(); typed = !typed) {
      const std::size_t end = std::min(text.find('`', begin), text.size());
      const std::string part = text.substr(begin, end - begin);
      text_ += typed ? RoffBold(part) : Roff(part);
      begin = end + 1;
    }
  }

  std::string text_;
  bool below_heading_ = true;
};

}  // namespace

std::string WireManualPage() {
  ManualPage page;
  ipodwire::WriteWirePage(&page);
  return page.text();
}
