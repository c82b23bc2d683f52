#include "hotkeys/VBHotKey.h"

#include <algorithm>

namespace mq {

namespace {
constexpr TextView kRegisterSource = u"ApiHotkey:Register";
constexpr uint32_t kFourModifiers = MOD_ALT_BIT | MOD_CONTROL_BIT | MOD_SHIFT_BIT | MOD_WIN_BIT;
}  // namespace

// ApiHotkey -------------------------------------------------------------------------------

ApiHotkey::~ApiHotkey() { Unregister(); }

Text ApiHotkey::UniqueAtomName() const {
  Text name;
  if (WinKey()) name += u"WIN+";
  if (ShiftKey()) name += u"SHIFT+";
  if (ControlKey()) name += u"CONTROL+";
  if (AltKey()) name += u"ALT+";
  return name + Format000(VKey);
}

Text ApiHotkey::UniqueKey() const { return u"hwnd:" + ToDecimal(hwnd); }

void ApiHotkey::Register() {
  if (hAtom != 0) system_.DeleteAtom(static_cast<uint16_t>(hAtom));
  hAtom = system_.AddAtom(UniqueAtomName());
  uint32_t lastError = 0;
  bool ok = system_.RegisterHotKey(hwnd, hAtom, static_cast<uint32_t>(MODIFIER),
                                   static_cast<uint32_t>(VKey), lastError);
  hKey = ok ? 1 : 0;
  if (lastError > 0 && controls_ != nullptr) {
    // At start-up the control joins HotkeyControls only after this call, so a refusal
    // then stays silent.
    if (VBHotKey* control = controls_->Find(UniqueKey()))
      control->RaiseError(system_.ErrorText(lastError), kRegisterSource);
  }
}

void ApiHotkey::Unregister() {
  if (hAtom == 0) return;
  system_.UnregisterHotKey(hwnd, hAtom);
  system_.DeleteAtom(static_cast<uint16_t>(hAtom));
  hAtom = 0;
  hKey = 0;
}

bool ApiHotkey::MatchedKey(const ApiHotkey& other) const {
  return ((MODIFIER ^ other.MODIFIER) & kFourModifiers) == 0 && VKey == other.VKey;
}

void ApiHotkey::ReadFromAtom(uint16_t atom) {
  Text name = system_.AtomName(atom);
  if (Contains(name, u"WIN+")) SetWinKey(true);
  if (Contains(name, u"SHIFT+")) SetShiftKey(true);
  if (Contains(name, u"CONTROL+")) SetControlKey(true);
  if (Contains(name, u"ALT+")) SetAltKey(true);
  Text digits(1, u'0');
  digits += TextView(name).substr(name.size() > 3 ? name.size() - 3 : 0);
  if (IsNumeric(digits)) VKey = static_cast<int32_t>(RoundHalfAway(LeadingNumber(digits)));
}

// VBHotKey --------------------------------------------------------------------------------

VBHotKey::VBHotKey(HotkeySystem& system, HotkeyControls& controls, Design design)
    : system_(system),
      controls_(controls),
      design_(design),
      hotkey_(std::make_unique<ApiHotkey>(system, &controls)) {}

VBHotKey::~VBHotKey() {
  StopHotkey();
  controls_.Remove(this);
}

void VBHotKey::Start() {
  if (!hotkey_ || window_ != 0) return;
  window_ = system_.CreateHotkeyWindow();
  if (window_ <= 0) {
    window_ = 0;
    return;
  }
  hotkey_->hwnd = window_;
  CopyToApi();
  hotkey_->Register();
  controls_.Add(this);
}

void VBHotKey::StopHotkey() {
  if (window_ != 0) {
    system_.ReleaseHotkeyWindow(window_);
    controls_.RemoveWindow(window_);
  }
  if (hotkey_) {
    hotkey_->Unregister();
    hotkey_.reset();
  }
  if (window_ != 0) system_.DestroyHotkeyWindow(window_);
  window_ = 0;
  stopped_ = true;
}

void VBHotKey::CopyToApi() {
  hotkey_->SetAltKey(design_.AltKey);
  hotkey_->SetShiftKey(design_.ShiftKey);
  hotkey_->SetControlKey(design_.CtrlKey);
  hotkey_->SetWinKey(design_.WinKey);
  hotkey_->VKey = design_.VKey;
}

bool VBHotKey::HoldsAtom() const { return hotkey_ && hotkey_->hAtom != 0; }

void VBHotKey::Changed() {
  if (!HoldsAtom()) return;  // idle or stopped: only the stored value changes
  hotkey_->Unregister();
  CopyToApi();
  hotkey_->Register();
}

namespace {
template <typename T>
bool Store(T& field, T value) {
  if (field == value) return false;
  field = value;
  return true;
}
}  // namespace

void VBHotKey::SetAltKey(bool on) {
  if (Store(design_.AltKey, on)) Changed();
}
void VBHotKey::SetShiftKey(bool on) {
  if (Store(design_.ShiftKey, on)) Changed();
}
void VBHotKey::SetCtrlKey(bool on) {
  if (Store(design_.CtrlKey, on)) Changed();
}
void VBHotKey::SetWinKey(bool on) {
  if (Store(design_.WinKey, on)) Changed();
}
void VBHotKey::SetVKey(int32_t vkey) {
  if (Store(design_.VKey, vkey)) Changed();
}

void VBHotKey::SetVKeys(const std::vector<std::pair<VBHotKey*, int32_t>>& changes) {
  // Two controls trading keys would each collide with the other's old registration if they
  // were re-registered one by one, so every affected control lets go first.
  std::vector<VBHotKey*> affected;
  for (const auto& [control, vkey] : changes) {
    if (!Store(control->design_.VKey, vkey) || !control->HoldsAtom()) continue;
    if (std::find(affected.begin(), affected.end(), control) == affected.end())
      affected.push_back(control);
  }
  for (VBHotKey* control : affected) control->hotkey_->Unregister();
  for (VBHotKey* control : affected) {
    control->CopyToApi();
    control->hotkey_->Register();
  }
}

intptr_t VBHotKey::hwnd() const { return hotkey_ ? hotkey_->hwnd : 0; }
int32_t VBHotKey::hAtom() const { return hotkey_ ? hotkey_->hAtom : 0; }
int32_t VBHotKey::hKey() const { return hotkey_ ? hotkey_->hKey : 0; }
Text VBHotKey::UniqueKey() const { return hotkey_ ? hotkey_->UniqueKey() : Text(u"hwnd:0"); }

void VBHotKey::RaiseKeyPressEvent(int32_t vkey, int32_t modifiers) {
  if (!hotkey_) return;
  ApiHotkey pressed(system_, nullptr);
  pressed.MODIFIER = modifiers;
  pressed.VKey = vkey;
  if (pressed.MatchedKey(*hotkey_) && HotkeyPressed) HotkeyPressed();
}

void VBHotKey::RaiseError(TextView message, TextView source) {
  if (ErrorOccured) ErrorOccured(message, source);
}

// HotkeyControls ---------------------------------------------------------------------------

void HotkeyControls::Add(VBHotKey* control) {
  if (control == nullptr || Find(control->UniqueKey()) != nullptr) return;
  controls_.push_back(control);
}

VBHotKey* HotkeyControls::Find(TextView uniqueKey) const {
  for (VBHotKey* control : controls_)
    if (control->UniqueKey() == uniqueKey) return control;
  return nullptr;
}

void HotkeyControls::RemoveWindow(intptr_t hwnd) {
  Text key = u"hwnd:" + ToDecimal(hwnd);
  std::erase_if(controls_, [&](VBHotKey* c) { return c->UniqueKey() == key; });
}

void HotkeyControls::Remove(VBHotKey* control) { std::erase(controls_, control); }

void HotkeyControls::DispatchHotkey(intptr_t hwnd, uint32_t lParam) {
  auto key = static_cast<int32_t>(lParam >> 16);
  auto modifiers = static_cast<int32_t>(lParam & 0xFFFF);
  // A handler may stop or destroy controls (Exit does), so walk a copy and skip any control
  // that has left meanwhile.
  std::vector<VBHotKey*> snapshot = controls_;
  for (VBHotKey* control : snapshot) {
    if (std::find(controls_.begin(), controls_.end(), control) == controls_.end()) continue;
    if (control->hwnd() == hwnd) control->RaiseKeyPressEvent(key, modifiers);
  }
}

}  // namespace mq
