// The owner-drawn menu engine, the icon resources and the notice window, in process.
#include <windows.h>

#include <gtest/gtest.h>

#include <utility>

#include "app/win32/FlashWindow.h"
#include "platform/MenuItem.h"
#include "platform/win32/Gdi.h"
#include "ui/IconArt.h"
#include "ui/modMenus.h"
#include "ui/win32/AlphaImage.h"
#include "ui/win32/cMenuItems.h"

#include "Support.h"

namespace mq::win32 {
namespace {

// The tray menu's shape: sidebar, raised label, commands, separators, a submenu. Every item
// but those and the submenu's head is a command, numbered in order.
struct Tray {
  MenuItem root, side, label, enable, mode, bar3, list, bar1, format, opHead, opNo, opSt, opUC,
      opLc, bar2, settings, help, about, exit;
  MenuStyle style;
  Tray() {
    const std::pair<MenuItem*, const char16_t*> items[] = {
        {&side, u"{Sidebar|Text:Marquill|Font:Tahoma|FSize:14|Bold|FColor:16777215|BColor:8405016"
                u"|GColor:14063196|Width:24|Align:Bot}"},
        {&label, u"-{Raised}[ENABLED]"}, {&enable, u"Disable Me{IMG:I1}"}, {&mode, u"To Single Mode"},
        {&bar3, u"-"}, {&list, u"Show Clip List{IMG:I6|DEFAULT}"}, {&bar1, u"-"},
        {&format, u"Purge Formatting"}, {&opHead, u"CaseChange (None)"}, {&opNo, u"(No Change)"},
        {&opSt, u"Standardize"}, {&opUC, u"UPPER CASE"}, {&opLc, u"lower case"}, {&bar2, u"-"},
        {&settings, u"Settings{IMG:I3}"}, {&help, u"Help{IMG:I7}"}, {&about, u"About{IMG:I4}"},
        {&exit, u"Exit{IMG:I5}"}};
    int id = 0;
    for (auto [item, caption] : items) {
      item->caption = caption;
      item->commandId = caption[0] == u'-' || caption[0] == u'{' || item == &opHead ? 0 : ++id;
    }
    opNo.checked = true;
    opHead.items = {&opNo, &opSt, &opUC, &opLc};
    root.items = {&side, &label, &enable, &mode, &bar3, &list, &bar1, &format, &opHead, &bar2,
                  &settings, &help, &about, &exit};
  }
};

TEST(cMenuItems, MeasuresScaleWithDpiAndFollowTheMarkUp) {
  Tray tray;
  cMenuItems menus(nullptr);
  const auto at96 = menus.MeasureMenu(tray.root, tray.style, 96);
  ASSERT_EQ(at96.size(), 13u);  // the sidebar is no item of its own
  for (UINT dpi : {144u, 192u}) {
    const auto scaled = menus.MeasureMenu(tray.root, tray.style, dpi);
    const double f = dpi / 96.0;
    ASSERT_EQ(scaled.size(), at96.size());
    for (size_t i = 0; i < at96.size(); ++i) {
      SCOPED_TRACE(testing::Message() << dpi << " DPI, item " << i);
      // Fonts do not scale exactly linearly; everything else does.
      EXPECT_NEAR(scaled[i].cy, at96[i].cy * f, 1 + f);
      EXPECT_NEAR(scaled[i].cx, at96[i].cx * f, at96[i].cx * (0.04 * f + 0.02));
    }
  }
  // A command row holds its image (16 px at 96 DPI, 32 at 192) with room to spare.
  EXPECT_GE(at96[1].cy, 16 + 4);
  EXPECT_GE(menus.MeasureMenu(tray.root, tray.style, 192)[1].cy, 32 + 8);
  // Separators are thin, the raised label taller than a separator.
  EXPECT_LT(at96[3].cy, at96[1].cy);
  EXPECT_GT(at96[0].cy, at96[3].cy);

  // The default item is drawn bold, so wider than the same caption plain; a sidebar takes
  // room beside every item, unless it is switched off.
  MenuItem root, plain, dflt, side;
  plain.caption = u"Show Clip List{IMG:I6}";
  dflt.caption = u"Show Clip List{IMG:I6|DEFAULT}";
  root.items = {&plain, &dflt};
  const auto sizes = menus.MeasureMenu(root, tray.style, 96);
  ASSERT_EQ(sizes.size(), 2u);
  EXPECT_GT(sizes[1].cx, sizes[0].cx);
  EXPECT_EQ(sizes[1].cy, sizes[0].cy);
  side.caption = modMenus::BuildSidebarCaption({});
  root.items.insert(root.items.begin(), &side);
  EXPECT_GE(menus.MeasureMenu(root, tray.style, 96)[0].cx - sizes[0].cx, 35);
  modMenus::SidebarOptions off;
  off.sidebarDisabled = true;
  side.caption = modMenus::BuildSidebarCaption(off);
  EXPECT_EQ(menus.MeasureMenu(root, tray.style, 96)[0].cx, sizes[0].cx);
}

// An open menu driven from inside its own loop: a timer posts the input one by one (a key as
// WM_KEYDOWN and WM_KEYUP, a letter as WM_CHAR), after a look at the menu.
using Input = std::pair<UINT, WPARAM>;
struct MenuRun {
  std::vector<Input> input;
  size_t next = 0;
  HWND owner = nullptr;
  int chosen = -1, itemCount = -1, defaultItem = -2;
  std::vector<UINT> states;  // GetMenuState of each item
};
MenuRun* current = nullptr;
cMenuItems* currentMenus = nullptr;

void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
  if (!current || current->next >= current->input.size()) return;
  HWND popup = FindWindowW(L"#32768", nullptr);
  auto menu = popup ? reinterpret_cast<HMENU>(SendMessageW(popup, MN_GETHMENU, 0, 0)) : nullptr;
  if (current->next == 0 && menu) {
    current->itemCount = GetMenuItemCount(menu);
    current->defaultItem = static_cast<int>(GetMenuDefaultItem(menu, TRUE, 0));
    for (int i = 0; i < current->itemCount; ++i)
      current->states.push_back(GetMenuState(menu, i, MF_BYPOSITION));
  }
  auto [message, key] = current->input[current->next++];
  PostMessageW(current->owner, message, key, 1);
  if (message == WM_KEYDOWN) PostMessageW(current->owner, WM_KEYUP, key, 0xC0000001);
}
LRESULT CALLBACK OwnerProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  if (currentMenus && currentMenus->HandleMenuMessage(hwnd, message, wParam, lParam, result))
    return result;
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

MenuRun RunMenu(cMenuItems& menus, const MenuItem& root, const MenuStyle& style, std::vector<Input> input) {
  WNDCLASSW wc{};
  wc.lpfnWndProc = OwnerProc;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"UiTestMenuOwner";
  RegisterClassW(&wc);  // refused after the first time, which is as good
  UniqueWindow owner(CreateWindowExW(WS_EX_TOOLWINDOW, wc.lpszClassName, L"", WS_POPUP, 0, 0, 1,
                                     1, nullptr, nullptr, wc.hInstance, nullptr));
  MenuRun run;
  run.input = std::move(input);
  run.owner = owner.Get();
  current = &run;
  currentMenus = &menus;
  UINT_PTR timer = SetTimer(nullptr, 0, 150, &Tick);
  run.chosen = menus.TrackPopup(owner.Get(), root, style, POINT{120, 120});
  KillTimer(nullptr, timer);
  current = nullptr;
  return run;
}

TEST(cMenuItems, TrackPopupReturnsTheChosenCommand) {
  Tray tray;
  cMenuItems menus(nullptr);
  auto pick = [&](std::vector<Input> in) { return RunMenu(menus, tray.root, tray.style, std::move(in)); };
  const Input down{WM_KEYDOWN, VK_DOWN}, enter{WM_KEYDOWN, VK_RETURN};

  // The raised label is never selected: two steps down land on the second command.
  MenuRun shown = pick({down, down, enter});
  EXPECT_EQ(shown.chosen, tray.mode.commandId);
  EXPECT_EQ(shown.itemCount, 13);
  EXPECT_EQ(shown.defaultItem, 4);  // "Show Clip List"
  ASSERT_EQ(shown.states.size(), 13u);
  EXPECT_FALSE(shown.states[6] & MF_GRAYED);  // "Purge Formatting"
  EXPECT_TRUE(shown.states[0] & MF_SEPARATOR);  // the raised label cannot be selected
  EXPECT_EQ(pick({{WM_KEYDOWN, VK_ESCAPE}}).chosen, 0);

  // Keys pick owner-drawn items by their first letter, in any case. (Letters that several
  // items share select in turn on Windows; Wine ignores such a selection, so no test here.)
  EXPECT_EQ(pick({{WM_CHAR, L'e'}}).chosen, tray.exit.commandId);
  EXPECT_EQ(pick({{WM_CHAR, L'H'}}).chosen, tray.help.commandId);
  // The case submenu opens by its letter; its second item is chosen.
  EXPECT_EQ(pick({{WM_CHAR, L'c'}, down, enter}).chosen, tray.opSt.commandId);

  // Disabled items are shown greyed; hidden items are not there at all.
  tray.format.enabled = false;
  tray.opHead.enabled = false;
  tray.list.visible = false;
  tray.bar1.visible = false;
  shown = pick({{WM_KEYDOWN, VK_UP}, enter});  // from the bottom: Exit
  EXPECT_EQ(shown.chosen, tray.exit.commandId);
  EXPECT_EQ(shown.itemCount, 11);
  EXPECT_EQ(shown.defaultItem, -1);
  ASSERT_EQ(shown.states.size(), 11u);
  EXPECT_TRUE(shown.states[4] & MF_GRAYED);  // "Purge Formatting"
  EXPECT_TRUE(shown.states[5] & MF_GRAYED);  // "CaseChange (None)"
  EXPECT_FALSE(shown.states[1] & MF_GRAYED);
}

// Small images are bitmaps that the program reads itself (for its menus, the notice and the
// About window); larger ones are PNG, which the program draws instead and the system loads.
TEST(IconResources, HoldTheDrawnImages) {
  // Found in the test program's own folder first.
  UniqueModule module(LoadLibraryExW(L"marquill.exe", nullptr,
                                     LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
  ASSERT_TRUE(module) << "marquill.exe is built beside the test program";
  HMODULE exe = module.Get();
  // (The pre-XP tray icons are the system's alone to load, and bitmaps the unit tests read.)
  const std::pair<int, art::Art> cases[] = {
      {101, art::Art::ClipEnabled}, {102, art::Art::ClipDisabled}, {105, art::Art::ClipList},
      {201, art::Art::ClipEnabled}, {202, art::Art::ClipDisabled}, {203, art::Art::Settings},
      {204, art::Art::About},       {205, art::Art::Exit},         {206, art::Art::ClipList},
      {207, art::Art::Help}};
  for (const auto& [id, drawing] : cases) {
    for (int size : {16, 24, 32, 48, 64}) {
      SCOPED_TRACE(testing::Message() << "icon " << id << " size " << size);
      art::Image image;
      const art::Image drawn = art::Render(drawing, size);
      if (size >= (id < art::kMenuImageFirst ? art::kIconPngFrom : art::kMenuPngFrom)) {
        EXPECT_FALSE(ReadIconResource(exe, id, size, image));
        EXPECT_TRUE(IconResourceImage(exe, id, size, drawing).rgba == drawn.rgba);
        // The system's own loader takes it (its pixels are the unit tests' to compare).
        HICON icon = static_cast<HICON>(
            LoadImageW(exe, MAKEINTRESOURCEW(id), IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
        EXPECT_NE(icon, nullptr);
        if (icon) DestroyIcon(icon);
        continue;
      }
      ASSERT_TRUE(ReadIconResource(exe, id, size, image));
      EXPECT_TRUE(image.rgba == drawn.rgba);
    }
  }
  // A size the resource lacks is drawn rather than scaled.
  art::Image odd;
  EXPECT_FALSE(ReadIconResource(exe, 201, 36, odd));
  EXPECT_TRUE(IconResourceImage(exe, 201, 36, art::Art::ClipEnabled).rgba ==
              art::Render(art::Art::ClipEnabled, 36).rgba);
  EXPECT_FALSE(ReadIconResource(exe, 299, 16, odd));
}

TEST(FlashWindow, EllipticTopmostNoticeThatTakesNoFocus) {
  FlashWindow flash;
  HWND before = GetForegroundWindow();
  flash.Show(FlashModel{{false, false}, u"UPPER CASE", true});
  ASSERT_TRUE(flash.IsLoaded());
  HWND hwnd = flash.hwnd();
  EXPECT_TRUE(IsWindowVisible(hwnd));
  const LONG_PTR ex = GetWindowLongPtrW(hwnd, GWL_EXSTYLE);
  EXPECT_TRUE(ex & WS_EX_TOPMOST);
  EXPECT_TRUE(ex & WS_EX_TOOLWINDOW);  // not in the taskbar
  EXPECT_TRUE(ex & WS_EX_NOACTIVATE);
  EXPECT_EQ(GetForegroundWindow(), before);

  // The region is the ellipse inscribed in the window's rectangle.
  RECT rc;
  GetWindowRect(hwnd, &rc);
  const int w = rc.right - rc.left, h = rc.bottom - rc.top;
  EXPECT_GT(w, h);
  UniqueRegion region(CreateRectRgn(0, 0, 0, 0));
  ASSERT_NE(GetWindowRgn(hwnd, region.Get()), ERROR);
  // Inside: the centre, the middles of the edges, and just inside the ellipse on a diagonal
  // (x²/a² + y²/b² = 1 at 0.707); outside: the corners and just outside on the diagonal.
  const double a = w / 2.0, b = h / 2.0;
  for (POINT in : {POINT{w / 2, h / 2}, POINT{w / 2, 2}, POINT{w / 2, h - 3}, POINT{2, h / 2},
                   POINT{w - 3, h / 2}, POINT{static_cast<int>(a - a * 0.68), static_cast<int>(b - b * 0.68)}})
    EXPECT_TRUE(PtInRegion(region.Get(), in.x, in.y)) << in.x << "," << in.y;
  for (POINT out : {POINT{1, 1}, POINT{w - 2, 1}, POINT{1, h - 2}, POINT{w - 2, h - 2},
                    POINT{static_cast<int>(a - a * 0.76), static_cast<int>(b - b * 0.76)}})
    EXPECT_FALSE(PtInRegion(region.Get(), out.x, out.y)) << out.x << "," << out.y;
}

TEST(FlashWindow, SecondNoticeReusesTheWindowAndKeepsTheFirstTimer) {
  const UINT lifetime = 3000;
  FlashWindow flash(nullptr, lifetime);
  flash.Show(FlashModel{{true, false}, u"(No Change)", false});
  HWND first = flash.hwnd();
  const DWORD loaded = GetTickCount();
  PumpUntil([&] { return GetTickCount() - loaded >= 1200; }, 5000);
  ASSERT_TRUE(flash.IsLoaded());
  flash.Show(FlashModel{{false, false}, u"Single", true});
  const DWORD second = GetTickCount();
  EXPECT_EQ(flash.hwnd(), first);
  ASSERT_TRUE(PumpUntil([&] { return !flash.IsLoaded(); }, 20000));
  // A restarted timer could not fire before a whole lifetime after the second notice.
  EXPECT_LT(GetTickCount() - second, lifetime - 300);
}

}  // namespace
}  // namespace mq::win32
