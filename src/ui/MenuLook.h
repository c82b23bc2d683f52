// What the menu engine draws for a caption: the mark-up of modMenus read into plain values
// (item kind, image number, sidebar font and colours), and the sidebar's line breaking.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/Text.h"
#include "ui/modMenus.h"

namespace mq {

struct ItemLook {
  enum class Kind { Command, Separator, RaisedLabel, Sidebar };
  Kind kind = Kind::Command;
  Text text;         // for a raised label without its leading "-"
  Text accelerator;
  int image = 0;     // n of the image token "In" (any case); 0 for none
  bool isDefault = false;
  bool bold = false;
  bool italic = false;
  bool underline = false;
};

ItemLook ReadItemLook(TextView caption);

struct SidebarLook {
  enum class Align { Centre, Top, Bottom };
  Text text;
  Text fontName;
  double fontSize = 11;     // points, 7..24
  double minFontSize = 5;   // points, 5..fontSize
  bool bold = false;
  bool underline = false;
  bool italic = false;
  bool disabled = false;    // "SBDisabled": the menu is shown without its sidebar
  uint32_t textColour = 0;
  bool systemBackColour = true;  // the system menu colour instead of backColour
  uint32_t backColour = 0;
  bool gradient = false;
  uint32_t gradientColour = 0;
  int width = 35;           // at 96 DPI
  Align align = Align::Centre;
  Text tip;
};

bool IsSidebarCaption(TextView caption);
SidebarLook ReadSidebarLook(TextView caption, const modMenus::SystemColourFn& systemColour);

// Sidebar text as lines. "<br!>" always breaks. Without wrapping, "<br>" and "<br0>" are one
// space. With wrapping, every "<br>" breaks too, and a line whose width + 6 exceeds
// `available` is split at the space nearest its middle (the earlier one on a tie).
using LineMeasure = std::function<int(TextView line)>;
std::vector<Text> SidebarLines(TextView text, bool wrap, int available, const LineMeasure& measure);

// The sidebar text laid out along `available` pixels: the largest size from fontSize down to
// minFontSize at which the unbroken lines fit; failing that, the wrapped lines at the largest
// size at which they fit, or at minFontSize when nothing fits.
struct SidebarTextLayout {
  std::vector<Text> lines;
  double pointSize = 0;
  bool wrapped = false;
};
using SizedMeasure = std::function<int(TextView line, double pointSize)>;
SidebarTextLayout LayOutSidebarText(const SidebarLook& look, int available,
                                    const SizedMeasure& measure);

}  // namespace mq
