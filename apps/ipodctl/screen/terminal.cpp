// SPDX-License-Identifier: MIT
// The screen on ncurses, in wide characters.
#define NCURSES_NOMACROS 1
#define NCURSES_WIDECHAR 1
#include "screen/terminal.h"

#include <ncurses.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "console/failure.h"
#include "console/text.h"
#include "screen/cells.h"
#include "screen/keys.h"

namespace ipodctl::screen {

namespace {

constexpr mmask_t kMouseEvents = BUTTON1_PRESSED | BUTTON4_PRESSED | BUTTON5_PRESSED;

struct StyleLook {
  attr_t attributes;
  short color;  // -1: the terminal's own
};

// In the order of Style. It can be read without colours, too.
constexpr std::array<StyleLook, 9> kLooks = {{{A_NORMAL, -1},
                                              {A_DIM, -1},
                                              {A_BOLD, -1},
                                              {A_DIM, -1},
                                              {A_REVERSE, -1},
                                              {A_BOLD, COLOR_CYAN},
                                              {A_BOLD, COLOR_GREEN},
                                              {A_BOLD, COLOR_RED},
                                              {A_BOLD, COLOR_YELLOW}}};

struct KeyCode {
  wint_t code;
  char32_t key;
};

constexpr KeyCode kKeyCodes[] = {
    {KEY_UP, kKeyUp},
    {KEY_DOWN, kKeyDown},
    {KEY_LEFT, kKeyLeft},
    {KEY_RIGHT, kKeyRight},
    {KEY_PPAGE, kKeyPageUp},
    {KEY_NPAGE, kKeyPageDown},
    {KEY_HOME, kKeyHome},
    {KEY_END, kKeyEnd},
    {KEY_ENTER, kKeyEnter},
    {KEY_F(1), kKeyF1},
    {KEY_BACKSPACE, kKeyBackspace},
};

std::optional<char32_t> KeyOf(wint_t code) {
  for (const KeyCode& known : kKeyCodes) {
    if (known.code == code) return known.key;
  }
  return std::nullopt;
}

char32_t KeyOfCharacter(wint_t character) {
  switch (character) {
    case L'\r':
    case L'\n':
      return kKeyEnter;
    case L'\b':
    case 0x7F:
      return kKeyBackspace;
    case 0x1B:
      return kKeyEscape;
    default:
      return static_cast<char32_t>(character);
  }
}

Input ReadMouse() {
  Input input;
  MEVENT event = {};
  if (::getmouse(&event) != OK) return input;
  if ((event.bstate & BUTTON1_PRESSED) != 0) input.click = {event.y, event.x};
  if ((event.bstate & BUTTON4_PRESSED) != 0) input.wheel_down = false;
  if ((event.bstate & BUTTON5_PRESSED) != 0) input.wheel_down = true;
  return input;
}

[[noreturn]] void FailToShow() {
  const char* const type = std::getenv("TERM");
  throw CommandFailure(
      kUsage, std::string("the terminal '") + (type == nullptr ? "" : Printable(type)) +
                  "' (TERM) cannot show a screen; 'ipodctl now --follow' and 'ipodctl workout' "
                  "print lines");
}

}  // namespace

struct Terminal::Curses {
  SCREEN* screen;
};

Terminal::Terminal(std::FILE* output) : curses_(nullptr) {
  UseUtf8();
  SCREEN* const screen = ::newterm(nullptr, output, stdin);
  if (screen == nullptr) FailToShow();
  if (::tigetstr("cup") == nullptr) {
    ::endwin();
    ::delscreen(screen);
    FailToShow();
  }
  curses_ = new Curses{screen};
  ::cbreak();
  ::noecho();
  ::nonl();
  ::keypad(::stdscr, TRUE);
  ::set_escdelay(25);
  ::curs_set(0);
  ::mouseinterval(0);
  ::mousemask(kMouseEvents, nullptr);
  TakeStyles();
}

Terminal::~Terminal() {
  ::endwin();
  ::delscreen(curses_->screen);
  delete curses_;
}

void Terminal::TakeStyles() {
  if (!::has_colors() || std::getenv("NO_COLOR") != nullptr) return;
  ::start_color();
  ::use_default_colors();
  for (const StyleLook& look : kLooks) {
    if (look.color >= 0) ::init_pair(static_cast<short>(look.color + 1), look.color, -1);
  }
}

int Terminal::rows() const { return ::getmaxy(::stdscr); }

int Terminal::columns() const { return ::getmaxx(::stdscr); }

Input Terminal::Read(std::chrono::milliseconds patience) {
  ::wtimeout(::stdscr, static_cast<int>(patience.count()));
  wint_t read = 0;
  const int kind = ::wget_wch(::stdscr, &read);
  if (kind == ERR) return {};
  if (kind == KEY_CODE_YES && read == KEY_MOUSE) return ReadMouse();
  Input input;
  input.key = kind == KEY_CODE_YES ? KeyOf(read) : KeyOfCharacter(read);
  return input;
}

void Terminal::Show(const Frame& frame) {
  ::werase(::stdscr);
  for (const Piece& piece : frame.pieces()) {
    const StyleLook& look = kLooks[static_cast<std::size_t>(piece.style)];
    ::wattr_set(::stdscr, look.attributes, static_cast<short>(look.color + 1), nullptr);
    ::mvwaddwstr(::stdscr, piece.row, piece.column, Wide(piece.text).c_str());
  }
  ::wrefresh(::stdscr);
}

bool Terminal::is_there() const { return ::isatty(STDIN_FILENO) != 0; }

}  // namespace ipodctl::screen
