#include "platform/win32/Win32Ports.h"

#include "platform/win32/Strings.h"

namespace mq::win32 {

namespace {

INPUT Key(WORD vk, bool up) {
  INPUT in{};
  in.type = INPUT_KEYBOARD;
  in.ki.wVk = vk;
  // Some programs read the scan code rather than the virtual key.
  in.ki.wScan = static_cast<WORD>(MapVirtualKeyW(vk, MAPVK_VK_TO_VSC));
  in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  return in;
}

Text MapSegment(TextView text, DWORD flags) {
  auto length = static_cast<int>(text.size());
  const wchar_t* source = WV(text).data();
  int n = LCMapStringEx(LOCALE_NAME_USER_DEFAULT, flags | LCMAP_LINGUISTIC_CASING, source, length,
                        nullptr, 0, nullptr, nullptr, 0);
  if (n <= 0) return Text(text);
  Text out(static_cast<size_t>(n), u'\0');
  n = LCMapStringEx(LOCALE_NAME_USER_DEFAULT, flags | LCMAP_LINGUISTIC_CASING, source, length,
                    reinterpret_cast<wchar_t*>(out.data()), n, nullptr, nullptr, 0);
  if (n <= 0) return Text(text);
  out.resize(static_cast<size_t>(n));
  return out;
}

// Wine: LCMapStringEx ends its output at an embedded NUL, so NUL-separated pieces are mapped
// one by one (the NULs themselves have no case).
Text MapCase(TextView text, DWORD flags) {
  Text out;
  out.reserve(text.size());
  for (size_t from = 0;;) {
    size_t nul = text.find(u'\0', from);
    TextView piece = text.substr(from, nul == TextView::npos ? TextView::npos : nul - from);
    if (!piece.empty()) out += MapSegment(piece, flags);
    if (nul == TextView::npos) break;
    out.push_back(u'\0');
    from = nul + 1;
  }
  return out;
}

UINT BuildPaste(bool ctrlHeld, INPUT (&inputs)[4]) {
  UINT n = 0;
  if (!ctrlHeld) inputs[n++] = Key(VK_CONTROL, false);
  inputs[n++] = Key('V', false);
  inputs[n++] = Key('V', true);
  if (!ctrlHeld) inputs[n++] = Key(VK_CONTROL, true);
  return n;
}

}  // namespace

void SendInputKeySender::SendPaste() {
  bool ctrlHeld = (GetAsyncKeyState(VK_CONTROL) & 0x8000) != 0;
  INPUT inputs[4];
  UINT n = BuildPaste(ctrlHeld, inputs);
  UINT sent = SendInput(n, inputs, sizeof(INPUT));
  if (sent == n || sent == 0) return;
  // Only part of the sequence went in (the input stream was blocked meanwhile): release
  // every key it left down, last pressed first, so no key stays logically held.
  INPUT release[4];
  UINT r = 0;
  for (UINT i = sent; i-- > 0;) {
    if (inputs[i].ki.dwFlags & KEYEVENTF_KEYUP) continue;
    bool releasedLater = false;
    for (UINT k = i + 1; k < sent; ++k)
      releasedLater |= inputs[k].ki.wVk == inputs[i].ki.wVk && (inputs[k].ki.dwFlags & KEYEVENTF_KEYUP);
    if (!releasedLater) release[r++] = Key(inputs[i].ki.wVk, true);
  }
  if (r) SendInput(r, release, sizeof(INPUT));
}

Text LocaleCaseMapper::Upper(TextView text) const { return MapCase(text, LCMAP_UPPERCASE); }
Text LocaleCaseMapper::Lower(TextView text) const { return MapCase(text, LCMAP_LOWERCASE); }

}  // namespace mq::win32
