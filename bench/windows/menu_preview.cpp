// Shows the tray menu (enabled or disabled, optionally with the case submenu open) or the
// notice window, so that they can be photographed; scripts/screenshot-ui runs it under Wine
// at several DPIs.
//
//   menu_preview [--disabled] [--submenu] [--select N] [--notice TEXT | --notice-image 0|1]
//                [--sidebar TEXT] [--ready FILE] [--hold MS] [--resources EXE]
//
// --sidebar replaces the sidebar's text (to look at line breaks and wrapping).
//
// The images come from marquill.exe's resources (beside this program's folder, or --resources).
// Once the menu or notice is up, FILE receives the screen rectangle to photograph
// ("left top right bottom"); after --hold milliseconds the program closes and ends.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "app/MenuCaptions.h"
#include "app/win32/FlashWindow.h"
#include "platform/MenuItem.h"
#include "ui/modMenus.h"
#include "ui/win32/cMenuItems.h"

using namespace mq;
using mq::win32::cMenuItems;
// Qualified: the Win32 API has a FlashWindow function too.
using Flash = mq::win32::FlashWindow;

namespace {

struct Options {
  bool disabled = false;
  bool submenu = false;
  int select = 0;  // items to move down before the photograph
  bool notice = false;
  FlashModel flash;
  std::wstring ready;
  UINT hold = 2500;
  std::wstring resources;
  std::wstring sidebar;
};

// The tray menu as the main form defines it, in display order.
struct TrayMenu {
  MenuItem mnuPopUp, mnuSide, mnuEnVal, mnuEnable, mnuMode, mnuBar3, mnuList, mnuBar1, mnuFormat,
      mnuOpHead, mnuOp_No, mnuOp_St, mnuOp_UC, mnuOp_lc, mnuBar2, mnuSettings, mnuHelp, mnuAbout,
      mnuExit;
  MenuStyle style;

  TrayMenu() {
    int id = 100;
    auto item = [&id](MenuItem& m, const char16_t* caption, bool command = true) {
      m.caption = caption;
      m.commandId = command ? ++id : 0;
    };
    item(mnuSide, u"sidebar", false);
    item(mnuEnVal, u"-{Raised}[ENABLED]", false);
    item(mnuEnable, u"Disable Me{IMG:I1}");
    item(mnuMode, u"To Single Mode");
    item(mnuBar3, u"-", false);
    item(mnuList, u"Show Clip List{IMG:I6|DEFAULT}");
    item(mnuBar1, u"-", false);
    item(mnuFormat, u"Purge Formatting");
    item(mnuOpHead, u"CaseChange (None)", false);
    item(mnuOp_No, u"(No Change)");
    item(mnuOp_St, u"Standardize");
    item(mnuOp_UC, u"UPPER CASE");
    item(mnuOp_lc, u"lower case");
    item(mnuBar2, u"-", false);
    item(mnuSettings, u"Settings{IMG:I3}");
    item(mnuHelp, u"Help{IMG:I7}");
    item(mnuAbout, u"About{IMG:I4}");
    item(mnuExit, u"Exit{IMG:I5}");
    mnuSide.caption = SidebarCaption();
    mnuOp_No.checked = true;
    mnuFormat.checked = true;
    mnuOpHead.items = {&mnuOp_No, &mnuOp_St, &mnuOp_UC, &mnuOp_lc};
    mnuPopUp.items = {&mnuSide,   &mnuEnVal,    &mnuEnable, &mnuMode,  &mnuBar3,
                      &mnuList,   &mnuBar1,     &mnuFormat, &mnuOpHead, &mnuBar2,
                      &mnuSettings, &mnuHelp,   &mnuAbout,  &mnuExit};
  }

  // What the enable command does to the menu when capturing is switched off.
  void Disable() {
    mnuFormat.enabled = false;
    mnuOpHead.enabled = false;
    mnuEnable.caption = modMenus::SetItemProperty(mnuEnable.caption, modMenus::kImage, u"i2");
    mnuEnable.caption = modMenus::SetItemProperty(mnuEnable.caption, modMenus::kText, u"Enable Me");
    style.raisedLabelColor = Rgb(208, 0, 0);
    mnuEnVal.caption = u"-{Raised}[DISABLED]";
  }
};

Options g_options;
cMenuItems* g_menus = nullptr;
HWND g_owner = nullptr;
Flash* g_flash = nullptr;
int g_step = 0;
DWORD g_readyAt = 0;

void WriteReady(RECT rc) {
  if (g_options.ready.empty()) return;
  FILE* f = _wfopen(g_options.ready.c_str(), L"wb");  // no CR for the shell to trip on
  if (!f) return;
  std::fprintf(f, "%ld %ld %ld %ld\n", rc.left, rc.top, rc.right, rc.bottom);
  std::fclose(f);
}

// The union of every visible menu window ("#32768") and the notice window.
RECT ShownRect() {
  RECT all{0, 0, 0, 0};
  auto add = [&all](HWND w) {
    RECT rc;
    if (!IsWindowVisible(w) || !GetWindowRect(w, &rc)) return;
    if (IsRectEmpty(&all)) all = rc;
    else UnionRect(&all, &all, &rc);
  };
  for (HWND w = FindWindowExW(nullptr, nullptr, L"#32768", nullptr); w;
       w = FindWindowExW(nullptr, w, L"#32768", nullptr))
    add(w);
  if (g_flash && g_flash->IsLoaded()) add(g_flash->hwnd());
  return all;
}

void PostKey(UINT vk) {
  PostMessageW(g_owner, WM_KEYDOWN, vk, 1);
  PostMessageW(g_owner, WM_KEYUP, vk, 0xC0000001);
}

// Runs inside the menu's own message loop: moves the selection, opens the submenu, reports
// the rectangle once everything has been drawn, and closes the menu when the hold is over.
void CALLBACK Step(HWND, UINT, UINT_PTR, DWORD) {
  const int moves = g_options.select;
  if (g_step < moves) {
    PostKey(VK_DOWN);
  } else if (g_step == moves && g_options.submenu) {
    PostMessageW(g_owner, WM_CHAR, L'c', 1);  // the case submenu by its first letter
  } else if (g_step == moves + 2) {
    WriteReady(ShownRect());
    g_readyAt = GetTickCount();
  } else if (g_step > moves + 2 && GetTickCount() - g_readyAt >= g_options.hold) {
    if (g_flash) {
      PostQuitMessage(0);
    } else {
      PostKey(VK_ESCAPE);
      PostKey(VK_ESCAPE);
    }
  }
  ++g_step;
}

LRESULT CALLBACK OwnerProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  if (g_menus && g_menus->HandleMenuMessage(hwnd, message, wParam, lParam, result)) return result;
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

bool ParseOptions(int argc, wchar_t** argv) {
  for (int i = 1; i < argc; ++i) {
    std::wstring a = argv[i];
    auto next = [&]() -> std::wstring { return i + 1 < argc ? argv[++i] : L""; };
    if (a == L"--disabled") g_options.disabled = true;
    else if (a == L"--submenu") g_options.submenu = true;
    else if (a == L"--select") g_options.select = _wtoi(next().c_str());
    else if (a == L"--ready") g_options.ready = next();
    else if (a == L"--hold") g_options.hold = static_cast<UINT>(_wtoi(next().c_str()));
    else if (a == L"--resources") g_options.resources = next();
    else if (a == L"--sidebar") g_options.sidebar = next();
    else if (a == L"--notice") {
      g_options.notice = true;
      std::wstring text = next();
      g_options.flash = FlashModel{{false, false}, Text(text.begin(), text.end()), true};
    } else if (a == L"--notice-image") {
      g_options.notice = true;
      const bool off = next() == L"1";
      g_options.flash = FlashModel{{!off, off}, u"(No Change)", false};
    } else {
      std::fwprintf(stderr, L"menu_preview: unknown option %ls\n", a.c_str());
      return false;
    }
  }
  return true;
}

HMODULE LoadResources() {
  std::wstring path = g_options.resources;
  if (path.empty()) {
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    path = self;
    path = path.substr(0, path.find_last_of(L"\\/"));       // bench
    path = path.substr(0, path.find_last_of(L"\\/")) + L"\\marquill.exe";
  }
  HMODULE module = LoadLibraryExW(path.c_str(), nullptr,
                                  LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
  if (!module) std::fwprintf(stderr, L"menu_preview: no resources in %ls; drawing the images\n", path.c_str());
  return module;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (!ParseOptions(argc, argv)) return 2;
  // marquill.exe declares per-monitor (v2) awareness in its manifest; this program asks in code.
  using SetContext = BOOL(WINAPI*)(DPI_AWARENESS_CONTEXT);
  if (auto set = reinterpret_cast<SetContext>(reinterpret_cast<void*>(
          GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetProcessDpiAwarenessContext"))))
    set(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);

  HMODULE resources = LoadResources();
  WNDCLASSW wc{};
  wc.lpfnWndProc = OwnerProc;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"MenuPreviewOwner";
  RegisterClassW(&wc);
  g_owner = CreateWindowExW(WS_EX_TOOLWINDOW, wc.lpszClassName, L"Menu preview", WS_POPUP, 0, 0,
                            1, 1, nullptr, nullptr, wc.hInstance, nullptr);
  cMenuItems menus(resources);
  g_menus = &menus;

  SetTimer(nullptr, 0, 250, Step);
  if (g_options.notice) {
    // Long enough to be photographed; the program's own notice lives 750 ms.
    Flash flash(resources, g_options.hold + 5000);
    g_flash = &flash;
    flash.Show(g_options.flash);
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) DispatchMessageW(&msg);
    g_flash = nullptr;
  } else {
    TrayMenu tray;
    if (g_options.disabled) tray.Disable();
    if (!g_options.sidebar.empty()) {
      modMenus::SidebarOptions sidebar;
      sidebar.text = Text(g_options.sidebar.begin(), g_options.sidebar.end());
      sidebar.faceName = u"Tahoma";
      sidebar.fontSize = 14;
      sidebar.minFontSize = 12;
      sidebar.bold = true;
      sidebar.textColour = Rgb(255, 255, 255);
      sidebar.backColour = Rgb(24, 64, 128);
      sidebar.gradientColour = Rgb(92, 150, 214);
      sidebar.alignment = 1;
      tray.mnuSide.caption = modMenus::BuildSidebarCaption(sidebar);
    }
    const int x = GetSystemMetrics(SM_CXSCREEN) / 8, y = GetSystemMetrics(SM_CYSCREEN) / 12;
    const int chosen = menus.TrackPopup(g_owner, tray.mnuPopUp, tray.style, POINT{x, y});
    std::printf("chosen command: %d\n", chosen);
  }
  DestroyWindow(g_owner);
  if (resources) FreeLibrary(resources);
  return 0;
}
