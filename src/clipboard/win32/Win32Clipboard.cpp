#include "clipboard/win32/Win32Clipboard.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <vector>

namespace mq::win32 {

namespace {

struct Formats {
  UINT rich = RegisterClipboardFormatW(L"Rich Text Format");
  UINT exclude = RegisterClipboardFormatW(L"ExcludeClipboardContentFromMonitorProcessing");
  UINT viewerIgnore = RegisterClipboardFormatW(L"Clipboard Viewer Ignore");
  UINT canInclude = RegisterClipboardFormatW(L"CanIncludeInClipboardHistory");
  UINT canUpload = RegisterClipboardFormatW(L"CanUploadToCloudClipboard");
};

const Formats& F() {
  static const Formats formats;
  return formats;
}

// The formats on offer, asked once: every question about one format is a round trip to the
// system (Wine: to its server), and a capture would ask half a dozen of them.
std::vector<UINT> OfferedFormats() {
  std::vector<UINT> formats(32);
  UINT n = 0;
  while (!GetUpdatedClipboardFormats(formats.data(), static_cast<UINT>(formats.size()), &n)) {
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER || n <= formats.size()) {
      formats.clear();
      for (UINT f = EnumClipboardFormats(0); f; f = EnumClipboardFormats(f)) formats.push_back(f);
      return formats;
    }
    formats.resize(n);
  }
  formats.resize(n);
  return formats;
}

bool Offers(const std::vector<UINT>& formats, UINT format) {
  return std::find(formats.begin(), formats.end(), format) != formats.end();
}

// "CanIncludeInClipboardHistory" and "CanUploadToCloudClipboard" are DWORD flags; only an
// explicit 0 marks the content private.
bool HoldsDwordZero(const ClipboardSession& session, const std::vector<UINT>& offered,
                    UINT format) {
  if (!Offers(offered, format)) return false;
  GlobalView view(session.Data(format));
  if (!view || view.Size() < sizeof(DWORD)) return false;
  DWORD value;
  std::memcpy(&value, view.Data(), sizeof(value));
  return value == 0;
}

bool IsPrivateOffer(const ClipboardSession& session, const std::vector<UINT>& offered) {
  const Formats& f = F();
  return Offers(offered, f.exclude) || Offers(offered, f.viewerIgnore) ||
         HoldsDwordZero(session, offered, f.canInclude) ||
         HoldsDwordZero(session, offered, f.canUpload);
}

// Anything besides the text with its synthesised siblings and the rich text.
bool HoldsOtherFormats(const Formats& f, const std::vector<UINT>& offered) {
  for (UINT format : offered) {
    switch (format) {
      case CF_UNICODETEXT: case CF_TEXT: case CF_OEMTEXT: case CF_LOCALE:
        continue;
      default:
        if (format == f.rich) continue;
        return true;
    }
  }
  return false;
}

}  // namespace

Win32Clipboard::Win32Clipboard() : owner_(CreatePlainWindow(nullptr, L"Win32Clipboard")) {}

UINT Win32Clipboard::RichTextFormat() { return F().rich; }

bool Win32Clipboard::IsPrivate(const ClipboardSession& session) {
  return IsPrivateOffer(session, OfferedFormats());
}

bool Win32Clipboard::Read(ClipRead mode, ClipboardData& out) {
  out = ClipboardData{};
  ClipboardSession session(owner_.Get());
  lastAttempts_ = session.Attempts();
  if (!session.IsOpen()) return false;

  const std::vector<UINT> offered = OfferedFormats();
  // Asked of the system itself: it offers Unicode text made from ANSI text too.
  out.hasText = IsClipboardFormatAvailable(CF_UNICODETEXT);
  out.hasRich = Offers(offered, F().rich);
  if (IsPrivateOffer(session, offered)) {
    out.isPrivate = true;  // nothing of the content is copied into the program
    return true;
  }
  out.hasOther = HoldsOtherFormats(F(), offered);

  auto readText = [&] {
    GlobalView view(session.Data(CF_UNICODETEXT));
    if (!view) return false;
    auto chars = static_cast<const wchar_t*>(view.Data());
    size_t capacity = view.Size() / sizeof(wchar_t);
    const wchar_t* nul = std::wmemchr(chars, L'\0', capacity);
    size_t n = nul ? static_cast<size_t>(nul - chars) : capacity;
    out.text.assign(reinterpret_cast<const char16_t*>(chars), n);
    return true;
  };
  if (mode != ClipRead::PlainOnly && out.hasRich) {
    GlobalView view(session.Data(F().rich));
    if (!view) return false;
    auto bytes = static_cast<const char*>(view.Data());
    const void* nul = std::memchr(bytes, 0, view.Size());
    size_t n = nul ? static_cast<const char*>(nul) - bytes : view.Size();
    out.rtf.assign(bytes, n);
    out.format = kFormatRich;
    // The text beside is a bonus: without it the rich text alone is a whole read.
    if (mode == ClipRead::RichAndText && out.hasText) readText();
    return true;
  }
  if (out.hasText) {
    if (!readText()) return false;
    out.format = kFormatPlain;
  }
  return true;
}

bool Win32Clipboard::Write(UINT format, UniqueGlobal memory) {
  if (!memory) return false;
  ClipboardSession session(owner_.Get());
  lastAttempts_ = session.Attempts();
  return session.Empty() && session.Put(format, memory);
}

bool Win32Clipboard::WriteText(TextView text) {
  return Write(CF_UNICODETEXT,
               CopyToGlobal(text.data(), text.size() * sizeof(char16_t), sizeof(char16_t)));
}

bool Win32Clipboard::WriteRich(std::string_view rtf) {
  return Write(F().rich, CopyToGlobal(rtf.data(), rtf.size(), 1));
}

}  // namespace mq::win32
