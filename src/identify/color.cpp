// SPDX-License-Identifier: MIT
// CIpodComm: the docked iPod's colour, looked up by order number.
#include <cwchar>

#include "ipodcomm/CIpodComm.h"

namespace {

struct ColorGroup {
  tagIPOD_COLOR color;
  const wchar_t* const* order_numbers;  // up to a null
};

constexpr const wchar_t* kGroup1[] = {
    L"M9160", L"P9160", L"M9800", L"P9800", L"M9801", L"P9801", L"M9973", L"M9974",
    L"MA426", L"PA426", L"PA427", L"MA477", L"PA477", L"PA478", L"MB029", L"PB029",
    L"PB031", L"MB145", L"PB145", L"PB146", L"MA978", L"PA978", L"PA979", L"MB245",
    L"MA980", L"PA980", L"PA981", L"MB247", L"MB598", L"MB599", L"MB903", L"MB904",
    L"MB920", L"PB903", L"PB904", L"PB920", nullptr,
};
constexpr const wchar_t* kGroup2[] = {
    L"M9434", L"P9434", L"M9806", L"P9806", L"M9807", L"P9807", L"MA487", L"PA487",
    L"PA488", L"MB253", L"PB253", L"PB254", L"MB255", L"MB745", L"PB745", L"PB746",
    L"MB913", L"MB914", L"MB925", L"PB913", L"PB914", L"PB925", nullptr,
};
constexpr const wchar_t* kGroup3[] = {
    L"M9435", L"P9435", L"M9804", L"P9804", L"M9805", L"P9805", L"MA489", L"PA489",
    L"PA490", L"MB453", L"PB453", L"PB454", L"MB455", L"MB456", L"MB735", L"PB735",
    L"PB736", L"MB907", L"MB908", L"MB922", L"PB907", L"PB908", L"PB922", nullptr,
};
constexpr const wchar_t* kGroup4[] = {
    L"M9436", L"P9436", L"M9802", L"P9802", L"M9803", L"P9803", L"MA428", L"PA428",
    L"PA429", L"MB249", L"PB249", L"PB250", L"MB251", L"MB732", L"PB732", L"PB733",
    L"MB905", L"MB906", L"MB921", L"PB905", L"PB906", L"PB921", nullptr,
};
constexpr const wchar_t* kGroup5[] = {
    L"M9437",
    L"P9437",
    nullptr,
};
constexpr const wchar_t* kGroup6[] = {
    L"M9787",
    nullptr,
};
constexpr const wchar_t* kGroup7[] = {
    L"MA099", L"PA099", L"PA100", L"MA107", L"PA107", L"PA108", L"MA127", L"MA146", L"PA146",
    L"PA149", L"MA446", L"PA446", L"MA147", L"PA147", L"PA151", L"MA305", L"MA352", L"PA352",
    L"PA353", L"MA450", L"PA450", L"PA451", L"MA452", L"MA664", L"MA497", L"PA497", L"PA498",
    L"MB046", L"MB048", L"MB147", L"PB147", L"PB148", L"MB150", L"PB150", L"PB151", L"MB261",
    L"PB261", L"PB262", L"MB263", L"MB754", L"PB754", L"PB755", L"PB889", L"MB918", L"MB919",
    L"MB927", L"PB918", L"PB919", L"PB927", nullptr,
};
constexpr const wchar_t* kGroup8[] = {
    L"MA002", L"PA002", L"PA148", L"PA323", L"MA444", L"PA444", L"MA003", L"PA003", L"PA150",
    L"MA004", L"PA004", L"PA115", L"MA005", L"PA005", L"PA116", L"MA253", L"MA350", L"PA350",
    L"PA351", L"MA448", L"PA448", L"PA449", L"PS492", L"MB499", nullptr,
};
constexpr const wchar_t* kGroup9[] = {
    L"MA725", L"PA725", L"MA899", L"PA899", L"MB751",
    L"MB753", L"PB751", L"MB917", L"PB917", nullptr,
};
constexpr const wchar_t* kGroup10[] = {
    L"MB739", L"PB739", L"PB740", L"MB909", L"MB910",
    L"MB923", L"PB909", L"PB910", L"PB923", nullptr,
};
constexpr const wchar_t* kGroup11[] = {
    L"MB742", L"PB742", L"PB743", L"MB911", L"MB912",
    L"MB924", L"PB911", L"PB912", L"PB924", nullptr,
};
constexpr const wchar_t* kGroup12[] = {
    L"MB748", L"PB748", L"PB749", L"MB915", L"MB916",
    L"MB926", L"PB915", L"PB916", L"PB926", nullptr,
};

// Searched in this order, so it decides when a model text holds several numbers. Colour 7 stands in
// two groups and 10 before 9; kept so.
constexpr ColorGroup kGroups[] = {
    {IPOD_COLOR_2, kGroup1},   {IPOD_COLOR_3, kGroup2},  {IPOD_COLOR_4, kGroup3},
    {IPOD_COLOR_5, kGroup4},   {IPOD_COLOR_6, kGroup5},  {IPOD_COLOR_7, kGroup6},
    {IPOD_COLOR_7, kGroup7},   {IPOD_COLOR_1, kGroup8},  {IPOD_COLOR_8, kGroup9},
    {IPOD_COLOR_10, kGroup10}, {IPOD_COLOR_9, kGroup11}, {IPOD_COLOR_11, kGroup12},
};

bool Holds(const wchar_t* model, const ColorGroup& group) {
  for (const wchar_t* const* number = group.order_numbers; *number != nullptr; ++number) {
    if (std::wcsstr(model, *number) != nullptr) return true;
  }
  return false;
}

}  // namespace

tagIPOD_COLOR CIpodComm::ColorOfModel(const wchar_t* model) {
  for (const ColorGroup& group : kGroups) {
    if (Holds(model, group)) return group.color;
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
