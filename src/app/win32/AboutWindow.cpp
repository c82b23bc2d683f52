#include "app/win32/AboutWindow.h"

#include "platform/win32/Strings.h"
#include "version.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillAbout";
constexpr wchar_t kTitle[] = L"About Marquill";
constexpr int kWidth = 380, kSplashHeight = 190, kFullHeight = 250;  // at 96 DPI
constexpr COLORREF kAccent = RGB(24, 64, 128);
constexpr UINT kSplashMs = 2000;
constexpr int kOkId = 1;
}  // namespace

AboutWindow::~AboutWindow() { Destroy(); }

bool AboutWindow::Open(Mode mode) {
  // The splash has no frame; the full form is an ordinary small window. A change of form
  // means a fresh window.
  if (hwnd() && mode_ == mode) return true;
  Destroy();
  mode_ = mode;
  RegisterClassOnce(kClassName, 0, nullptr, nullptr);
  UINT dpi = DpiOfSystem();
  int width = ScaleToDpi(kWidth, dpi);
  int height = ScaleToDpi(mode == Mode::Splash ? kSplashHeight : kFullHeight, dpi);
  DWORD style = mode == Mode::Splash ? WS_POPUP | WS_BORDER : WS_POPUP | WS_CAPTION | WS_SYSMENU;
  DWORD ex = mode == Mode::Splash ? WS_EX_TOOLWINDOW | WS_EX_TOPMOST : WS_EX_DLGMODALFRAME;
  RECT frame{0, 0, width, height};
  AdjustWindowRectEx(&frame, style, FALSE, ex);
  width = frame.right - frame.left;
  height = frame.bottom - frame.top;
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  if (!Create(kClassName, kTitle, style, ex, work.left + (work.right - work.left - width) / 2,
              work.top + (work.bottom - work.top - height) / 2, width, height))
    return false;
  dpi_ = DpiOfWindow(hwnd());
  // Fonts and the image are made when the window first paints: the splash is shown during
  // start-up but paints from the message loop, after the program is ready.
  if (mode == Mode::Full) {
    MakePaintTools();
    ok_ = CreateWindowExW(0, L"Button", L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON,
                          0, 0, 0, 0, hwnd(), reinterpret_cast<HMENU>(kOkId),
                          GetModuleHandleW(nullptr), nullptr);
    SendMessageW(ok_, WM_SETFONT, reinterpret_cast<WPARAM>(textFont_.Get()), FALSE);
    Layout();
  }
  return true;
}

void AboutWindow::MakePaintTools() {
  if (!titleFont_) titleFont_ = CreateProgramFont(dpi_, 20, FW_BOLD);
  if (!textFont_) textFont_ = CreateProgramFont(dpi_, 9);
  // The enabled tray image, drawn at the window's size from the program's own art (the
  // resource's image where it is a bitmap), never scaled.
  if (image_.Empty())
    image_ = AlphaImage(IconResourceImage(GetModuleHandleW(nullptr), art::kTrayEnabledIcon,
                                          ScaleToDpi(64, dpi_), art::Art::ClipEnabled));
}

void AboutWindow::Layout() {
  if (!ok_) return;
  RECT client{};
  GetClientRect(hwnd(), &client);
  int w = ScaleToDpi(80, dpi_), h = ScaleToDpi(26, dpi_), pad = ScaleToDpi(14, dpi_);
  MoveWindow(ok_, client.right - w - pad, client.bottom - h - pad, w, h, TRUE);
}

void AboutWindow::ShowSplash() {
  if (!Open(Mode::Splash)) return;
  // Shown now, painted when the message loop runs: no UpdateWindow here.
  ShowWindow(hwnd(), SW_SHOWNOACTIVATE);
  SetTimer(hwnd(), kSplashTimer, kSplashMs, nullptr);
}

void AboutWindow::ShowFull(TextView osVersionText) {
  versionText_ = Text(osVersionText);
  if (!Open(Mode::Full)) return;
  KillTimer(hwnd(), kSplashTimer);
  InvalidateRect(hwnd(), nullptr, TRUE);
  ShowWindow(hwnd(), SW_SHOW);
  SetForegroundWindow(hwnd());
  SetFocus(ok_);
}

void AboutWindow::Paint() {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(hwnd(), &ps);
  MakePaintTools();
  RECT client{};
  GetClientRect(hwnd(), &client);
  FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
  int band = ScaleToDpi(6, dpi_);
  RECT top{client.left, client.top, client.right, client.top + band};
  UniqueBrush accent(CreateSolidBrush(kAccent));
  FillRect(dc, &top, accent.Get());

  int pad = ScaleToDpi(20, dpi_), iconSize = ScaleToDpi(64, dpi_);
  image_.Draw(dc, pad, pad + band);
  SetBkMode(dc, TRANSPARENT);
  int x = pad * 2 + iconSize;
  RECT text{x, pad + band, client.right - pad, client.bottom};
  HGDIOBJ old = SelectObject(dc, titleFont_.Get());
  SetTextColor(dc, kAccent);
  DrawTextW(dc, L"Marquill", -1, &text, DT_LEFT | DT_TOP | DT_SINGLELINE | DT_NOPREFIX);
  TEXTMETRICW tm{};
  GetTextMetricsW(dc, &tm);
  text.top += tm.tmHeight + ScaleToDpi(4, dpi_);
  SelectObject(dc, textFont_.Get());
  SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
  std::wstring lines = L"Version " MARQUILL_VERSION_TEXT_W
                       L"\nThe extended clipboard: copy many, paste in order.\n\n"
                       L"Copyright \u00A9 2026 Olvenar";
  DrawTextW(dc, lines.c_str(), -1, &text, DT_LEFT | DT_TOP | DT_NOPREFIX | DT_WORDBREAK);
  if (mode_ == Mode::Full) {
    // lblWinVer
    RECT ver{pad, client.bottom - ScaleToDpi(80, dpi_), client.right - pad, client.bottom};
    SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
    DrawTextW(dc, W(versionText_), -1, &ver, DT_LEFT | DT_TOP | DT_NOPREFIX | DT_WORDBREAK);
  }
  SelectObject(dc, old);
  EndPaint(hwnd(), &ps);
}

LRESULT AboutWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_TIMER:
      if (wParam == kSplashTimer) Destroy();
      return 0;
    case WM_COMMAND:
      if (LOWORD(wParam) == kOkId || LOWORD(wParam) == IDCANCEL) Destroy();
      return 0;
    case WM_LBUTTONDOWN:
      if (mode_ == Mode::Splash) Destroy();
      return 0;
    case WM_KEYDOWN:
      if (wParam == VK_ESCAPE || wParam == VK_RETURN) Destroy();
      return 0;
    case WM_CLOSE:
      Destroy();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace mq::win32
