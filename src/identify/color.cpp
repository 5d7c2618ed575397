// SPDX-License-Identifier: MIT
// CIpodComm: the docked iPod's colour, looked up by order number.
#include <algorithm>
#include <string_view>

#include "ipodcomm/CIpodComm.h"

namespace {

constexpr std::size_t kNumberLength = 5;

struct ColorGroup {
  tagIPOD_COLOR color;
  const char* order_numbers;  // with a space between two
};

// Searched in this order, so it decides when a model text holds several numbers. Colour 7 stands in
// two groups and 10 before 9; kept so.
constexpr ColorGroup kGroups[] = {
    {IPOD_COLOR_2,
     "M9160 P9160 M9800 P9800 M9801 P9801 M9973 M9974 MA426 PA426 PA427 MA477 PA477 PA478 "
     "MB029 PB029 PB031 MB145 PB145 PB146 MA978 PA978 PA979 MB245 MA980 PA980 PA981 MB247 "
     "MB598 MB599 MB903 MB904 MB920 PB903 PB904 PB920"},
    {IPOD_COLOR_3,
     "M9434 P9434 M9806 P9806 M9807 P9807 MA487 PA487 PA488 MB253 PB253 PB254 MB255 MB745 "
     "PB745 PB746 MB913 MB914 MB925 PB913 PB914 PB925"},
    {IPOD_COLOR_4,
     "M9435 P9435 M9804 P9804 M9805 P9805 MA489 PA489 PA490 MB453 PB453 PB454 MB455 MB456 "
     "MB735 PB735 PB736 MB907 MB908 MB922 PB907 PB908 PB922"},
    {IPOD_COLOR_5,
     "M9436 P9436 M9802 P9802 M9803 P9803 MA428 PA428 PA429 MB249 PB249 PB250 MB251 MB732 "
     "PB732 PB733 MB905 MB906 MB921 PB905 PB906 PB921"},
    {IPOD_COLOR_6, "M9437 P9437"},
    {IPOD_COLOR_7, "M9787"},
    {IPOD_COLOR_7,
     "MA099 PA099 PA100 MA107 PA107 PA108 MA127 MA146 PA146 PA149 MA446 PA446 MA147 PA147 "
     "PA151 MA305 MA352 PA352 PA353 MA450 PA450 PA451 MA452 MA664 MA497 PA497 PA498 MB046 "
     "MB048 MB147 PB147 PB148 MB150 PB150 PB151 MB261 PB261 PB262 MB263 MB754 PB754 PB755 "
     "PB889 MB918 MB919 MB927 PB918 PB919 PB927"},
    {IPOD_COLOR_1,
     "MA002 PA002 PA148 PA323 MA444 PA444 MA003 PA003 PA150 MA004 PA004 PA115 MA005 PA005 "
     "PA116 MA253 MA350 PA350 PA351 MA448 PA448 PA449 PS492 MB499"},
    {IPOD_COLOR_8, "MA725 PA725 MA899 PA899 MB751 MB753 PB751 MB917 PB917"},
    {IPOD_COLOR_10, "MB739 PB739 PB740 MB909 MB910 MB923 PB909 PB910 PB923"},
    {IPOD_COLOR_9, "MB742 PB742 PB743 MB911 MB912 MB924 PB911 PB912 PB924"},
    {IPOD_COLOR_11, "MB748 PB748 PB749 MB915 MB916 MB926 PB915 PB916 PB926"},
};

bool Holds(std::wstring_view model, std::string_view number) {
  return std::search(model.begin(), model.end(), number.begin(), number.end(),
                     [](wchar_t in_model, char in_number) {
                       return in_model == static_cast<wchar_t>(in_number);
                     }) != model.end();
}

bool HoldsOneOf(std::wstring_view model, std::string_view numbers) {
  for (std::size_t next = 0; next < numbers.size(); next += kNumberLength + 1) {
    if (Holds(model, numbers.substr(next, kNumberLength))) return true;
  }
  return false;
}

}  // namespace

tagIPOD_COLOR CIpodComm::ColorOfModel(const wchar_t* model) {
  for (const ColorGroup& group : kGroups) {
    if (HoldsOneOf(model, group.order_numbers)) return group.color;
  }
  return IPOD_COLOR_NONE;
}

int CIpodComm::GetIPodColor(tagIPOD_COLOR* color) {
  constexpr unsigned long kModelCharacters = 20;
  *color = IPOD_COLOR_NONE;
  wchar_t model[kModelCharacters] = {};
  if (Command_RequestIpodModelNum(nullptr, model, kModelCharacters) == 0) return 0;
  *color = ColorOfModel(model);
  return 1;
}
