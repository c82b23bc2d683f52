#include "clipboard/win32/RichEditBox.h"

#include <richedit.h>

#include <algorithm>
#include <cstring>

#include "clipboard/CaseOps.h"
#include "clipboard/RtfGroups.h"
#include "platform/win32/LateLibrary.h"

namespace mq::win32 {

namespace {

// Loaded once for the run; the windows of its class must be gone before it is freed, which
// holds at process exit. The control's clipboard and drag commands need the thread in an OLE
// apartment, entered here rather than at start-up, which plain text never needs.
struct RichEditLibrary {
  bool ole = OleApartment::Enter();
  UniqueModule module{LoadLibraryW(L"Msftedit.dll")};
  const wchar_t* className = L"RICHEDIT50W";

  RichEditLibrary() {
    if (module) return;
    module.Reset(LoadLibraryW(L"Riched20.dll"));
    className = L"RichEdit20W";
  }
};

const wchar_t* RichEditClass() {
  static const RichEditLibrary library;
  return library.module ? library.className : nullptr;
}

struct Source {
  const char* data;
  size_t left;
};

DWORD CALLBACK ReadFromSource(DWORD_PTR cookie, LPBYTE buffer, LONG capacity, LONG* done) {
  auto* source = reinterpret_cast<Source*>(cookie);
  size_t n = std::min(source->left, static_cast<size_t>(capacity));
  std::memcpy(buffer, source->data, n);
  source->data += n;
  source->left -= n;
  *done = static_cast<LONG>(n);
  return 0;
}

DWORD CALLBACK AppendToBytes(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* done) {
  reinterpret_cast<Bytes*>(cookie)->append(reinterpret_cast<const char*>(buffer), size);
  *done = size;
  return 0;
}

bool StreamIn(HWND box, WPARAM format, const void* data, size_t size) {
  // Wine: a document nested too deep crashes the control (see RtfGroups.h). Checked here so
  // that every box fed rich text, the viewer's too, is spared it.
  if ((format & SF_RTF) &&
      CheckRtfGroups(std::string_view(static_cast<const char*>(data), size)) != RtfGroups::Readable)
    return false;
  Source source{static_cast<const char*>(data), size};
  EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&source), 0, ReadFromSource};
  SendMessageW(box, EM_STREAMIN, format, reinterpret_cast<LPARAM>(&stream));
  return stream.dwError == 0;
}

}  // namespace

const wchar_t* RichEditWindowClass() { return RichEditClass(); }

void TakeLongText(HWND box) {
  SendMessageW(box, EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
  SendMessageW(box, EM_SETUNDOLIMIT, 0, 0);
}

bool StreamInto(HWND box, WPARAM format, const void* data, size_t size) {
  return StreamIn(box, format, data, size);
}

// The control (and so its library) is made when first needed: most clips are plain text,
// and a rich one with its plain text beside it needs no box either.
RichEditBox::RichEditBox(HWND parent) : parent_(parent) {}

bool RichEditBox::IsReady() {
  if (!box_) Renew();
  return static_cast<bool>(box_);
}

HWND RichEditBox::Handle() {
  IsReady();
  return box_.Get();
}

void RichEditBox::Renew() {
  box_.Reset();
  const wchar_t* cls = RichEditClass();
  if (!cls) return;
  DWORD style = WS_CHILD | ES_MULTILINE | ES_AUTOVSCROLL | ES_NOHIDESEL;
  box_.Reset(CreateWindowExW(0, cls, L"", style, 0, 0, 400, 300, parent_ ? parent_ : HWND_MESSAGE,
                             nullptr, GetModuleHandleW(nullptr), nullptr));
  if (!box_) return;
  TakeLongText(box_.Get());
  // No wrapping: a never-shown box needs no line layout.
  SendMessageW(box_.Get(), EM_SETTARGETDEVICE, 0, 1);
}

bool RichEditBox::LoadRtf(std::string_view rtf) {
  if (CheckRtfGroups(rtf) != RtfGroups::Readable) return false;
  Renew();
  return box_ && StreamIn(box_.Get(), SF_RTF, rtf.data(), rtf.size());
}

Text RichEditBox::PlainText() {
  if (!box_) return {};
  // The control ends paragraphs with a lone CR; GT_USECRLF gives CR LF as the clipboard has.
  GETTEXTLENGTHEX length{GTL_USECRLF | GTL_PRECISE | GTL_NUMCHARS, 1200};
  auto n = SendMessageW(box_.Get(), EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&length), 0);
  if (n <= 0) return {};
  Text text(static_cast<size_t>(n) + 1, u'\0');
  GETTEXTEX get{static_cast<DWORD>(text.size() * sizeof(char16_t)), GT_USECRLF, 1200, nullptr,
                nullptr};
  auto got = SendMessageW(box_.Get(), EM_GETTEXTEX, reinterpret_cast<WPARAM>(&get),
                          reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<size_t>(std::max<LRESULT>(got, 0)));
  return text;
}

void RichEditBox::SetPlainText(TextView text) {
  if (!box_) {
    // No old content: a fresh control's own formatting.
    Renew();
    if (box_)
      StreamIn(box_.Get(), SF_TEXT | SF_UNICODE | SFF_SELECTION, text.data(),
               text.size() * sizeof(char16_t));
    return;
  }
  // The new text takes the formatting at the start of the old content: its first
  // character's and its first paragraph's.
  SendMessageW(box_.Get(), EM_SETSEL, 0, 0);
  CHARFORMAT2W chars{};
  chars.cbSize = sizeof(chars);
  SendMessageW(box_.Get(), EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&chars));
  PARAFORMAT2 para{};
  para.cbSize = sizeof(para);
  SendMessageW(box_.Get(), EM_GETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&para));

  Renew();
  if (!box_) return;
  SendMessageW(box_.Get(), EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&chars));
  SendMessageW(box_.Get(), EM_SETCHARFORMAT, SCF_ALL, reinterpret_cast<LPARAM>(&chars));
  SendMessageW(box_.Get(), EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&para));
  // Streamed as text: a text that happens to begin with "{\rtf" is not read as rich text
  // (as WM_SETTEXT and EM_SETTEXTEX would do).
  StreamIn(box_.Get(), SF_TEXT | SF_UNICODE | SFF_SELECTION, text.data(),
           text.size() * sizeof(char16_t));
}

Bytes RichEditBox::Rtf() {
  Bytes out;
  if (!IsReady()) return out;  // an empty box still writes a document
  EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&out), 0, AppendToBytes};
  SendMessageW(box_.Get(), EM_STREAMOUT, SF_RTF, reinterpret_cast<LPARAM>(&stream));
  return out;
}

// Empty is no control at all; the next use makes a fresh one.
void RichEditBox::Clear() { box_.Reset(); }

}  // namespace mq::win32
