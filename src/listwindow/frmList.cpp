#include "listwindow/frmList.h"

#include <cmath>
#include <limits>

#include "settings/KeyTable.h"

namespace mq {

namespace {
using namespace settings;

constexpr TextView kTopSuffix = u" (Top)";

struct GeometryKeys {
  const Key& left;
  const Key& top;
  const Key& width;
  const Key& height;
};
const GeometryKeys kExpandedKeys{key::Cur_Lt_Lg, key::Cur_Tp_Lg, key::Cur_Wd_Lg, key::Cur_Hi_Lg};
const GeometryKeys kCondensedKeys{key::Cur_Lt_Sm, key::Cur_Tp_Sm, key::Cur_Wd_Sm, key::Cur_Hi_Sm};

const GeometryKeys& KeysOf(bool condensed) { return condensed ? kCondensedKeys : kExpandedKeys; }

void WriteGeometry(Settings& settings, const GeometryKeys& keys, const Rect& window) {
  settings.WriteSetting(keys.left.name, ToDecimal(window.left));
  settings.WriteSetting(keys.top.name, ToDecimal(window.top));
  settings.WriteSetting(keys.width.name, ToDecimal(window.width));
  settings.WriteSetting(keys.height.name, ToDecimal(window.height));
}

// A stored geometry value: its number when numeric, 0 otherwise.
int ReadGeometryValue(Settings& settings, const Key& k, int current) {
  Text value = settings.ReadSetting(k.name, ToDecimal(current));
  if (!IsNumeric(value)) return 0;
  double number = std::round(LeadingNumber(value));
  constexpr double kMax = std::numeric_limits<int>::max() / 2;
  return static_cast<int>(std::fmax(-kMax, std::fmin(kMax, number)));
}
}  // namespace

void frmList::EnsureLoaded() {
  if (loaded_) return;
  loaded_ = true;
  loadCaption_ = Caption;
  LoadOptions();
}

void frmList::LoadOptions() {
  Text cur = settings_.ReadSetting(key::Cur_LO.name, u"x");
  if (cur != u"0" && cur != u"1" && cur != u"2")
    settings_.WriteSetting(key::Cur_LO.name, key::Cur_LO.defaultValue);

  WindowOption caseBox = ReadWindowOption(settings_, kListCaseRule);
  if (caseBox.set == u"0") {
    cbOpIndex = static_cast<int>(LeadingNumber(caseBox.cur));
    if (cbOpIndex < 0 || cbOpIndex > 2) cbOpIndex = 0;
  } else {
    cbOpIndex = static_cast<int>(LeadingNumber(caseBox.set)) - 1;
  }

  WindowOption onPaste = ReadWindowOption(settings_, kDeleteOnPasteRule);
  if (onPaste.set == u"1" || (onPaste.set == u"0" && onPaste.cur == u"1")) {
    DeleteOnPaste = true;
    chkMenu[1] = true;
    chkMenuTip[1] = u"On paste, move pasted item to end of queue";
  }

  WindowOption view = ReadWindowOption(settings_, kViewRule);
  if (view.set == u"2" || (view.set == u"0" && view.cur == u"1")) {
    chkMenu[0] = true;
    // Starting condensed keeps the expanded geometry that was saved last.
    SwitchView(false);
  }

  WindowOption pin = ReadWindowOption(settings_, kPinRule);
  if (pin.set == u"2" || (pin.set == u"0" && pin.cur == u"1")) {
    chkMenu[2] = true;
    chkMenuTip[2] = u"Allow window to be hidden by other windows";
    SetTop(true);
    settings_.WriteSetting(key::Cur_Pn.name, u"1");
  }
  if (!Condensed()) RestoreGeometry();
  Notify();
}

void frmList::SwitchView(bool saveGeometry) {
  Text value;
  if (chkMenu[0]) {
    if (saveGeometry) WriteGeometry(settings_, kExpandedKeys, layout.window);
    layout.Condense();
    chkMenuTip[0] = u"Expanded view";
    value = u"1";
  } else {
    if (saveGeometry) WriteGeometry(settings_, kCondensedKeys, layout.window);
    layout.Expand();
    chkMenuTip[0] = u"Condensed view";
    value = u"0";
  }
  settings_.WriteSetting(key::Cur_Vu.name, value);
  RestoreGeometry();
}

void frmList::RestoreGeometry() {
  if (settings_.ReadSetting(key::Set_Sz.name, u"1") != u"1") return;
  const GeometryKeys& keys = KeysOf(layout.condensed);
  Rect& w = layout.window;
  w.left = ReadGeometryValue(settings_, keys.left, w.left);
  w.top = ReadGeometryValue(settings_, keys.top, w.top);
  w.width = ReadGeometryValue(settings_, keys.width, w.width);
  w.height = ReadGeometryValue(settings_, keys.height, w.height);
  // Setting the size runs the resize handling, which keeps the view's minimum size.
  layout.Resized(false);
}

void frmList::SaveGeometry() { WriteGeometry(settings_, KeysOf(layout.condensed), layout.window); }

void frmList::WindowMoved(int left, int top) {
  layout.window.left = left;
  layout.window.top = top;
}

void frmList::WindowResized(const Rect& window, bool minimized) {
  layout.window = window;
  layout.Resized(minimized);
  Notify();
}

void frmList::SetTop(bool pin) {
  Caption = pin ? loadCaption_ + Text(kTopSuffix) : loadCaption_;
  // The pin itself is the pressed state of chkMenu(2), which the view renders; the Load
  // command drops it while its dialog is open without touching the button.
  pinnedNow_ = pin;
  Notify();
}

void frmList::Show(bool fade) {
  EnsureLoaded();
  visible_ = true;
  if (view_) view_->Show(fade);
}

void frmList::Hide(bool fade) {
  visible_ = false;
  if (view_) view_->Hide(fade);
}

void frmList::ProgramEnding(bool fade) {
  ending_ = true;
  if (loaded_) {
    SetTop(false);
    SaveGeometry();
    if (visible_) Hide(fade);
  }
  if (view_) view_->AllowClose();
}

void frmList::SetFader(const FaderSettings& fader) {
  EnsureLoaded();
  Fader1 = fader;
  Notify();
}

void frmList::Notify() {
  if (view_) view_->StateChanged();
}

}  // namespace mq
