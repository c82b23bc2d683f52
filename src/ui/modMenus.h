// Menu caption mark-up. One caption string describes an owner-drawn menu item completely:
// its visible text, an accelerator text after a tab, and a property block in braces, e.g.
// "About{IMG:I4}", "-{Raised}[DISABLED]" or "{Sidebar|Text:...}". These routines split,
// read and rewrite that mark-up; the menu engine (ui/win32/cMenuItems) draws from it.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/Text.h"

namespace mq::modMenus {

struct CaptionParts {
  Text text;         // visible text, block removed, surrounding spaces trimmed
  Text accelerator;  // everything after the first tab
  Text properties;   // "{" + items, each ending in "|" ("" when there is no block)
};

CaptionParts SplitCaption(TextView caption);

// The value of the named item ("IMG:", "Default", ...) in a property list from SplitCaption.
// Absent gives ""; a bare flag gives "True"; any other item present without a value gives "0".
Text ReadProperty(TextView properties, TextView name);

// Indexes of SetItemProperty, which is also the order in which the block is rebuilt.
enum ItemProperty : int {
  kText = 0, kImage = 1, kDefault = 2, kTip = 3, kListBox = 4, kComboBox = 5,
  kImageBackground = 6, kHotKey = 7, kFiles = 8,
};

// The caption with one item property changed (index 0..8); the accelerator is dropped.
// Flags (2, 6) take "True"/"False" or a number; an empty value means "False".
Text SetItemProperty(TextView caption, int index, TextView value = {});

struct SidebarOptions {
  Text text;
  Text faceName;
  double fontSize = 11;
  double minFontSize = 0;
  bool bold = false;
  bool underline = false;
  bool italic = false;
  long long textColour = 0;
  long long backColour = 1;      // 1: the system menu colour
  long long gradientColour = 1;  // 1: no gradient
  int width = 35;
  int alignment = 0;  // 0 centred, 1 top, 2 bottom
  bool noScroll = false;
  Text tip;
  bool sidebarDisabled = false;
};

Text BuildSidebarCaption(const SidebarOptions& options);

// The current system colour (0xBBGGRR) with a GetSysColor index.
using SystemColourFn = std::function<uint32_t(int index)>;

// A colour value: decimal number, colour name ("vbRed", "vbHighlight", any case) or "&H" hex.
// Negative numbers (high bit set) name system colours by their low byte. Anything else, or a
// system colour without a source, gives `defaultColour`.
uint32_t ParseColour(TextView value, uint32_t defaultColour, const SystemColourFn& systemColour);

}  // namespace mq::modMenus
