#include "ui/MenuLook.h"

#include <algorithm>

namespace mq {
namespace {

using modMenus::ReadProperty;

bool FlagSet(TextView properties, TextView name) {
  Text v = ReadProperty(properties, name);
  return !v.empty() && !EqualsNoCase(v, u"False") && v != u"0";
}

int ImageNumber(TextView token) {
  Text t = Trim(token);
  if (t.size() < 2 || (t[0] != u'I' && t[0] != u'i')) return 0;
  int n = 0;
  for (size_t i = 1; i < t.size(); ++i) {
    if (t[i] < u'0' || t[i] > u'9' || n > 9999) return 0;
    n = n * 10 + (t[i] - u'0');
  }
  return n;
}

char16_t Fold(char16_t c) { return (c >= u'a' && c <= u'z') ? c - 32 : c; }

Text ReplaceNoCase(TextView text, TextView what, TextView with) {
  Text out;
  size_t i = 0;
  while (i < text.size()) {
    bool match = i + what.size() <= text.size();
    for (size_t k = 0; match && k < what.size(); ++k) match = Fold(text[i + k]) == Fold(what[k]);
    if (match) {
      out += with;
      i += what.size();
    } else {
      out += text[i++];
    }
  }
  return out;
}

std::vector<Text> SplitOn(TextView text, TextView separator) {
  std::vector<Text> parts;
  Text marked = ReplaceNoCase(text, separator, u"\n");
  size_t from = 0;
  for (size_t at; (at = marked.find(u'\n', from)) != Text::npos; from = at + 1)
    parts.push_back(marked.substr(from, at - from));
  parts.push_back(marked.substr(from));
  return parts;
}

// Splits `line` at the space nearest its middle until every piece fits or has no space left.
void SplitToFit(const Text& line, int available, const LineMeasure& measure,
                std::vector<Text>& out) {
  if (measure(line) + 6 <= available) {
    out.push_back(line);
    return;
  }
  size_t best = Text::npos;
  long long bestDistance = 0;
  const long long n = static_cast<long long>(line.size());
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] != u' ') continue;
    long long d = 2 * static_cast<long long>(i) + 1 - n;  // twice the distance to the middle
    if (d < 0) d = -d;
    if (best == Text::npos || d < bestDistance) {  // strict: the earlier space wins a tie
      best = i;
      bestDistance = d;
    }
  }
  if (best == Text::npos) {
    out.push_back(line);
    return;
  }
  SplitToFit(Trim(TextView(line).substr(0, best)), available, measure, out);
  SplitToFit(Trim(TextView(line).substr(best + 1)), available, measure, out);
}

bool AllFit(const std::vector<Text>& lines, int available, const LineMeasure& measure) {
  return std::all_of(lines.begin(), lines.end(),
                     [&](const Text& l) { return measure(l) + 6 <= available; });
}

}  // namespace

ItemLook ReadItemLook(TextView caption) {
  ItemLook look;
  auto parts = modMenus::SplitCaption(caption);
  look.text = parts.text;
  look.accelerator = parts.accelerator;
  const Text& p = parts.properties;
  if (IsSidebarCaption(caption)) {
    look.kind = ItemLook::Kind::Sidebar;
    return look;
  }
  if (!look.text.empty() && look.text[0] == u'-') {
    if (FlagSet(p, u"Raised")) {
      look.kind = ItemLook::Kind::RaisedLabel;
      look.text = Trim(TextView(look.text).substr(1));
    } else if (look.text == u"-") {
      look.kind = ItemLook::Kind::Separator;
    }
  }
  look.image = ImageNumber(ReadProperty(p, u"IMG:"));
  look.isDefault = FlagSet(p, u"Default");
  look.bold = FlagSet(p, u"Bold");
  look.italic = FlagSet(p, u"Italic");
  look.underline = FlagSet(p, u"Underline");
  return look;
}

bool IsSidebarCaption(TextView caption) {
  auto p = modMenus::SplitCaption(caption).properties;
  return p.size() >= 8 && EqualsNoCase(TextView(p).substr(1, 7), u"Sidebar");
}

SidebarLook ReadSidebarLook(TextView caption, const modMenus::SystemColourFn& systemColour) {
  SidebarLook s;
  const Text p = modMenus::SplitCaption(caption).properties;
  auto read = [&](TextView name) { return ReadProperty(p, name); };

  s.text = read(u"Text:");
  if (s.text.empty()) s.text = u"Brasca<br>Menus";
  s.fontName = read(u"Font:");
  if (s.fontName.empty()) s.fontName = u"Arial";
  s.tip = read(u"Tip:");

  Text size = read(u"FSize:");
  s.fontSize = size.empty() ? 11 : std::clamp(LeadingNumber(size), 7.0, 24.0);
  s.minFontSize = std::max(LeadingNumber(read(u"MinFSize:")), 5.0);
  if (s.minFontSize > s.fontSize) s.minFontSize = s.fontSize;

  s.bold = FlagSet(p, u"Bold");
  s.underline = FlagSet(p, u"Underline");
  s.italic = FlagSet(p, u"Italic");
  s.disabled = FlagSet(p, u"SBDisabled");

  s.textColour = modMenus::ParseColour(read(u"FColor:"), 0, systemColour);
  uint32_t back = modMenus::ParseColour(read(u"BColor:"), 1, systemColour);
  s.systemBackColour = back == 1;
  s.backColour = s.systemBackColour ? 0 : back;
  uint32_t gradient = modMenus::ParseColour(read(u"GColor:"), 1, systemColour);
  s.gradient = gradient != 1;
  s.gradientColour = s.gradient ? gradient : 0;

  s.width = static_cast<int>(std::max(LeadingNumber(read(u"Width:")), 35.0));
  Text align = read(u"Align:");
  s.align = EqualsNoCase(align, u"Bot")   ? SidebarLook::Align::Bottom
            : EqualsNoCase(align, u"Top") ? SidebarLook::Align::Top
                                          : SidebarLook::Align::Centre;
  return s;
}

std::vector<Text> SidebarLines(TextView text, bool wrap, int available,
                               const LineMeasure& measure) {
  std::vector<Text> lines;
  for (Text& forced : SplitOn(text, u"<br!>")) {
    forced = ReplaceNoCase(forced, u"<br0>", u" ");
    if (!wrap) {
      lines.push_back(ReplaceNoCase(forced, u"<br>", u" "));
      continue;
    }
    for (Text& piece : SplitOn(forced, u"<br>")) SplitToFit(Trim(piece), available, measure, lines);
  }
  return lines;
}

SidebarTextLayout LayOutSidebarText(const SidebarLook& look, int available,
                                    const SizedMeasure& measure) {
  SidebarTextLayout layout;
  for (bool wrap : {false, true}) {
    // Whole points from the chosen size down; the minimum is always tried last.
    for (double size = look.fontSize;; size = std::max(size - 1, look.minFontSize)) {
      LineMeasure at = [&](TextView line) { return measure(line, size); };
      auto lines = SidebarLines(look.text, wrap, available, at);
      if (AllFit(lines, available, at)) return {std::move(lines), size, wrap};
      if (size <= look.minFontSize) break;
    }
  }
  LineMeasure atMin = [&](TextView line) { return measure(line, look.minFontSize); };
  return {SidebarLines(look.text, true, available, atMin), look.minFontSize, true};
}

}  // namespace mq
