#include "ui/modMenus.h"

#include "platform/ShortestDecimal.h"

#include <array>
#include <limits>

namespace mq::modMenus {
namespace {

constexpr size_t npos = Text::npos;

char16_t Fold(char16_t c) { return (c >= u'a' && c <= u'z') ? c - 32 : c; }

// Names and blocks match without regard to case.
size_t FindNoCase(TextView haystack, TextView needle, size_t from = 0) {
  if (needle.size() > haystack.size()) return npos;
  for (size_t i = from; i + needle.size() <= haystack.size(); ++i) {
    size_t k = 0;
    while (k < needle.size() && Fold(haystack[i + k]) == Fold(needle[k])) ++k;
    if (k == needle.size()) return i;
  }
  return npos;
}

Text RemoveAllNoCase(TextView text, TextView what) {
  Text out;
  size_t from = 0;
  for (size_t at; !what.empty() && (at = FindNoCase(text, what, from)) != npos;) {
    out.append(text.substr(from, at - from));
    from = at + what.size();
  }
  out.append(text.substr(from));
  return out;
}

bool IsFlagName(TextView name) {
  static constexpr std::array<TextView, 10> kFlags = {
      u"Raised", u"Bold", u"Italic", u"Underline", u"NoScroll",
      u"Transparent", u"ImgBkg", u"Default", u"Sidebar", u"SBDisabled"};
  for (auto flag : kFlags)
    if (EqualsNoCase(flag, name)) return true;
  return false;
}

// "True"/"False" in any case, or a number (non-zero is true); anything else is false.
bool IsTrue(TextView value) {
  Text v = Trim(value);
  if (EqualsNoCase(v, u"True")) return true;
  if (IsNumeric(v)) return LeadingNumber(v) != 0;
  return false;
}

Text ShortestDecimal(double value) { return Widen(ShortestRoundTrip(value)); }

// Item names in rebuild order; index 0 is the visible text.
constexpr std::array<TextView, 9> kItemNames = {
    u"", u"IMG:", u"Default", u"Tip:", u"LB:", u"CB:", u"IMGBKG", u"HotKey:", u"Files:"};

uint32_t FromNumber(long long n, uint32_t defaultColour, const SystemColourFn& systemColour) {
  if (n < std::numeric_limits<int32_t>::min() || n > std::numeric_limits<uint32_t>::max())
    return defaultColour;
  if (n < 0 || n > std::numeric_limits<int32_t>::max()) {
    if (!systemColour) return defaultColour;
    return systemColour(static_cast<int>(static_cast<uint32_t>(n) & 0xFF));
  }
  return static_cast<uint32_t>(n);
}

struct NamedColour {
  TextView name;
  uint32_t value;
};

constexpr std::array<NamedColour, 23> kFixedColours = {{
    {u"vbWhite", 0xFFFFFF},   {u"vbBlack", 0x000000},   {u"vbBlue", 0xFF0000},
    {u"vbGreen", 0x00FF00},   {u"vbRed", 0x0000FF},     {u"vbMagenta", 0xFF00FF},
    {u"vbYellow", 0x00FFFF},  {u"vbCyan", 0xFFFF00},    {u"vbMaroon", 0x000080},
    {u"vbOlive", 0x008080},   {u"vbNavy", 0x800000},    {u"vbPurple", 0x800080},
    {u"vbTeal", 0x808000},    {u"vbGray", 0x808080},    {u"vbSilver", 0xC0C0C0},
    {u"vbViolet", 0x9020D0},  {u"vbOrange", 0x00A5FF},  {u"vbGold", 0x00AACC},
    {u"vbIvory", 0xF0FFFF},   {u"vbPeach", 0xB9DAFF},   {u"vbTurquoise", 0xD1CE00},
    {u"vbTan", 0x8CB4D2},     {u"vbBrown", 0x004466},
}};

struct SystemColourName {
  TextView name;
  int index;
};

constexpr std::array<SystemColourName, 27> kSystemColours = {{
    {u"vbScrollBars", 0},        {u"vbDesktop", 1},           {u"vbActiveTitleBar", 2},
    {u"vbInactiveTitleBar", 3},  {u"vbMenuBar", 4},           {u"vbWindowBackground", 5},
    {u"vbWindowFrame", 6},       {u"vbMenuText", 7},          {u"vbWindowText", 8},
    {u"vbTitleBarText", 9},      {u"vbActiveBorder", 10},     {u"vbInactiveBorder", 11},
    {u"vbApplicationWorkspace", 12}, {u"vbHighlight", 13},    {u"vbHighlightText", 14},
    {u"vbButtonFace", 15},       {u"vbButtonShadow", 16},     {u"vbGrayText", 17},
    {u"vbButtonText", 18},       {u"vbInactiveCaptionText", 19}, {u"vb3DHighlight", 20},
    {u"vb3DDKShadow", 21},       {u"vb3DLight", 22},          {u"vb3DFace", 15},
    {u"vb3Dshadow", 16},         {u"vbInfoText", 23},         {u"vbInfoBackground", 24},
}};

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  c = Fold(c);
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

}  // namespace

CaptionParts SplitCaption(TextView caption) {
  CaptionParts parts;
  Text rest(caption);
  if (size_t tab = rest.find(u'\t'); tab != npos) {
    parts.accelerator = rest.substr(tab + 1);
    rest.resize(tab);
  }
  parts.text = Trim(rest);
  size_t open = rest.find(u'{');
  if (open == npos) return parts;
  size_t close = rest.find(u'}', open);
  if (close == npos) return parts;
  Text block = rest.substr(open, close - open + 1);
  parts.text = Trim(RemoveAllNoCase(rest, block));
  block.back() = u'|';
  parts.properties = std::move(block);
  return parts;
}

Text ReadProperty(TextView properties, TextView name) {
  if (properties.size() < 3 || name.empty()) return {};

  // The tip is free text and may hold any other item's name, so it is found first and kept
  // out of the search for every other item.
  size_t tipStart = npos, tipEnd = npos;
  size_t tip = FindNoCase(properties, u"|Tip:");
  if (tip == npos) tip = FindNoCase(properties, u"{Tip:");
  if (tip != npos) {
    tipStart = tip + 1;
    tipEnd = properties.find(u'|', tipStart);
    if (tipEnd == npos) tipEnd = properties.find(u'}', tipStart);
    if (tipEnd == npos) tipEnd = properties.size();
  }

  Text item;
  if (EqualsNoCase(name, u"Tip:")) {
    if (tipStart == npos) return {};
    item = Text(properties.substr(tipStart, tipEnd - tipStart));
  } else {
    Text work(properties);
    if (tipStart != npos) work.erase(tipStart, tipEnd - tipStart);
    size_t at = npos;
    for (char16_t lead : {u'|', u'{', u':'}) {
      at = FindNoCase(work, Text(1, lead) + Text(name));
      if (at != npos) break;
    }
    if (at == npos) return {};
    size_t end = work.find(u'|', at + 2);
    if (end == npos) end = work.find(u'}', at + 2);
    if (end == npos) return {};
    item = work.substr(at + 1, end - at - 1);
  }
  // Names match as prefixes: "DefaultTrue" reads as "True" under "Default".
  Text result = item.size() > name.size() ? item.substr(name.size()) : Text();
  if (result.empty()) return IsFlagName(name) ? Text(u"True") : Text(u"0");
  return result;
}

Text SetItemProperty(TextView caption, int index, TextView value) {
  if (index < 0 || index > 8) return Text(caption);
  CaptionParts parts = SplitCaption(caption);
  std::array<Text, 9> items;
  for (int i = 1; i <= 8; ++i) {
    Text current = ReadProperty(parts.properties, kItemNames[i]);
    if (!current.empty()) items[i] = Text(kItemNames[i]) + current + u"|";
  }
  auto setValued = [&](int i) {
    items[i] = value.empty() ? Text() : Text(kItemNames[i]) + Text(value) + u"|";
  };
  switch (index) {
    case kText: parts.text = Text(value); break;
    case kDefault: items[kDefault] = IsTrue(value) ? u"Default|" : u""; break;
    case kImageBackground: items[kImageBackground] = IsTrue(value) ? u"ImgBkg|" : u""; break;
    case kListBox: setValued(kListBox); items[kComboBox].clear(); break;
    case kComboBox: setValued(kComboBox); items[kListBox].clear(); break;
    default: setValued(index); break;  // image, tip, hot key, files
  }
  Text block;
  for (int i = 1; i <= 8; ++i) block += items[i];
  if (!block.empty()) {
    block.back() = u'}';
    block.insert(block.begin(), u'{');
  }
  return parts.text + block;
}

Text BuildSidebarCaption(const SidebarOptions& o) {
  static constexpr std::array<TextView, 3> kAlign = {u"Ctr", u"Top", u"Bot"};
  Text s = u"{Sidebar|Text:";
  s += o.text.empty() ? Text(u" ") : o.text;
  s += u"|Font:";
  s += o.faceName.empty() ? Text(u"Arial") : o.faceName;
  if (!o.tip.empty()) s += u"|Tip:" + o.tip;
  s += u"|FSize:" + ShortestDecimal(o.fontSize >= 9 ? o.fontSize : 9);
  if (o.minFontSize > 0) s += u"|MinFSize:" + ShortestDecimal(o.minFontSize);
  if (o.bold) s += u"|Bold";
  if (o.underline) s += u"|Underline";
  if (o.italic) s += u"|Italic";
  if (o.sidebarDisabled) s += u"|SBDisabled";
  s += u"|FColor:" + ToDecimal(o.textColour);
  s += u"|BColor:" + ToDecimal(o.backColour);
  if (o.gradientColour != 1) s += u"|GColor:" + ToDecimal(o.gradientColour);
  s += u"|Width:" + ToDecimal(o.width < 16 ? 16 : o.width);
  s += u"|Align:";
  s += (o.alignment >= 0 && o.alignment <= 2) ? kAlign[o.alignment] : kAlign[0];
  if (o.noScroll) s += u"|NoScroll";
  s += u"}";
  return s;
}

uint32_t ParseColour(TextView value, uint32_t defaultColour, const SystemColourFn& systemColour) {
  Text v = Trim(value);
  if (IsNumeric(v)) return FromNumber(RoundHalfAway(LeadingNumber(v)), defaultColour, systemColour);
  for (const auto& c : kFixedColours)
    if (EqualsNoCase(v, c.name)) return c.value;
  for (const auto& c : kSystemColours) {
    if (EqualsNoCase(v, c.name))
      return systemColour ? systemColour(c.index) : defaultColour;
  }
  if (v.size() > 2 && v[0] == u'&' && Fold(v[1]) == u'H') {
    TextView digits = TextView(v).substr(2);
    if (!digits.empty() && digits.back() == u'&') digits.remove_suffix(1);  // Long suffix
    if (digits.empty() || digits.size() > 8) return defaultColour;
    uint32_t n = 0;
    for (char16_t c : digits) {
      int d = HexDigit(c);
      if (d < 0) return defaultColour;
      n = (n << 4) | static_cast<uint32_t>(d);
    }
    return FromNumber(n, defaultColour, systemColour);
  }
  return defaultColour;
}

}  // namespace mq::modMenus
