#include "ui/win32/cMenuItems.h"

#include <algorithm>

#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"
#include "ui/win32/MenuPainter.h"

namespace mq::win32 {
namespace {

uint32_t SystemColour(int index) { return GetSysColor(index); }  // 0xBBGGRR, as the mark-up

wchar_t Upper(char16_t c) {
  wchar_t s[2] = {static_cast<wchar_t>(c), 0};
  CharUpperBuffW(s, 1);
  return s[0];
}

// The item's "&x" mnemonic, or else its first character, in upper case.
wchar_t MnemonicOf(const Text& text) {
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&') continue;
    if (text[i + 1] != u'&') return Upper(text[i + 1]);
    ++i;  // "&&" is a literal ampersand
  }
  return text.empty() ? 0 : Upper(text[0]);
}

}  // namespace

struct cMenuItems::Session {
  Session(HMODULE resources, const MenuStyle& style, UINT dpi) : painter(resources, style, dpi) {}

  // Builds the pane of parent's visible items (and, with `build`, its HMENU), recursively.
  MenuPane* AddPane(const MenuItem& parent, bool build) {
    panes.push_back(std::make_unique<MenuPane>());
    MenuPane* pane = panes.back().get();
    if (build) pane->menu = CreatePopupMenu();
    UINT position = 0;
    for (const MenuItem* child : parent.items) {
      if (!child || !child->visible) continue;
      ItemLook look = ReadItemLook(child->caption);
      if (look.kind == ItemLook::Kind::Sidebar) {
        SidebarLook sidebar = ReadSidebarLook(child->caption, SystemColour);
        if (!sidebar.disabled && !pane->hasSidebar) {
          pane->hasSidebar = true;
          pane->sidebar = std::move(sidebar);
        }
        continue;
      }
      nodes.push_back(std::make_unique<MenuNode>());
      MenuNode* node = nodes.back().get();
      node->look = std::move(look);
      node->enabled = child->enabled;
      node->checked = child->checked;
      node->pane = pane;
      node->hasSubmenu = node->look.kind == ItemLook::Kind::Command && !child->items.empty();
      pane->nodes.push_back(node);
      MenuPane* sub = node->hasSubmenu ? AddPane(*child, build) : nullptr;
      if (build) Insert(*pane, position++, *child, *node, sub);
    }
    return pane;
  }

  void Insert(MenuPane& pane, UINT position, const MenuItem& item, MenuNode& node, MenuPane* sub) {
    MENUITEMINFOW mii{};
    mii.cbSize = sizeof(mii);
    mii.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_DATA;
    // Labels and separators are owner-drawn separators: the menu never selects them.
    mii.fType = MFT_OWNERDRAW | (node.look.kind == ItemLook::Kind::Command ? 0 : MFT_SEPARATOR);
    mii.fState = (item.checked ? MFS_CHECKED : 0) | (item.enabled ? 0 : MFS_DISABLED) |
                 (node.look.isDefault ? MFS_DEFAULT : 0);
    mii.wID = static_cast<UINT>(item.commandId);
    mii.dwItemData = reinterpret_cast<ULONG_PTR>(&node);
    if (sub) {
      mii.fMask |= MIIM_SUBMENU;
      mii.hSubMenu = sub->menu;
    }
    // A submenu the parent did not take would be left over: it is freed here.
    UniqueMenu submenu(sub ? sub->menu : nullptr);
    if (InsertMenuItemW(pane.menu, position, TRUE, &mii))
      submenu.Release();  // the parent destroys it with itself
    else if (sub)
      sub->menu = nullptr;
  }

  MenuNode* Find(ULONG_PTR data) const {
    for (const auto& node : nodes)
      if (reinterpret_cast<ULONG_PTR>(node.get()) == data) return node.get();
    return nullptr;
  }

  MenuPane* PaneOf(HMENU menu) const {
    for (const auto& pane : panes)
      if (pane->menu && pane->menu == menu) return pane.get();
    return nullptr;
  }

  MenuPainter painter;
  std::vector<std::unique_ptr<MenuNode>> nodes;
  std::vector<std::unique_ptr<MenuPane>> panes;
};

cMenuItems::cMenuItems(HMODULE resources) : resources_(resources) {}
cMenuItems::~cMenuItems() = default;

int cMenuItems::TrackPopup(HWND owner, const MenuItem& root, const MenuStyle& style,
                           POINT screenPt) {
  if (current_) return 0;  // a menu is already up (a message from its own loop asked again)
  Session session(resources_, style, DpiOfWindow(owner));
  MenuPane* pane = session.AddPane(root, true);
  UniqueMenu menu(pane->menu);  // destroys the submenus with it
  if (!menu) return 0;

  // Windows: a notification-area menu only closes on a click elsewhere when its owner is the
  // foreground window, and only opens again reliably after the owner got a message.
  SetForegroundWindow(owner);
  current_ = &session;
  const UINT align = GetSystemMetrics(SM_MENUDROPALIGNMENT) ? TPM_RIGHTALIGN : TPM_LEFTALIGN;
  const int command = static_cast<int>(TrackPopupMenuEx(
      menu.Get(), TPM_RETURNCMD | TPM_RIGHTBUTTON | align, screenPt.x, screenPt.y, owner, nullptr));
  current_ = nullptr;
  PostMessageW(owner, WM_NULL, 0, 0);
  return command;
}

bool cMenuItems::HandleMenuMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam,
                                   LRESULT& result) {
  Session* session = current_;
  if (!session) return false;
  switch (message) {
    case WM_MEASUREITEM: {
      auto* mis = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
      MenuNode* node = mis->CtlType == ODT_MENU ? session->Find(mis->itemData) : nullptr;
      if (!node) return false;
      session->painter.LayOut(*node->pane);
      mis->itemWidth = static_cast<UINT>(node->size.cx);
      mis->itemHeight = static_cast<UINT>(node->size.cy);
      result = TRUE;
      return true;
    }
    case WM_DRAWITEM: {
      auto* dis = reinterpret_cast<DRAWITEMSTRUCT*>(lParam);
      MenuNode* node = dis->CtlType == ODT_MENU ? session->Find(dis->itemData) : nullptr;
      if (!node) return false;
      session->painter.LayOut(*node->pane);
      session->painter.Draw(*dis, *node);
      result = TRUE;
      return true;
    }
    case WM_MENUCHAR: {
      // Owner-drawn items have no text for the system to match keys against.
      MenuPane* pane = session->PaneOf(reinterpret_cast<HMENU>(lParam));
      if (!pane) return false;
      const wchar_t key = Upper(static_cast<char16_t>(LOWORD(wParam)));
      std::vector<int> matches;
      int selected = -1;
      for (int i = 0; i < static_cast<int>(pane->nodes.size()); ++i) {
        const MenuNode& node = *pane->nodes[i];
        if (node.look.kind == ItemLook::Kind::Command && node.enabled &&
            MnemonicOf(node.look.text) == key)
          matches.push_back(i);
        MENUITEMINFOW mii{};
        mii.cbSize = sizeof(mii);
        mii.fMask = MIIM_STATE;
        if (GetMenuItemInfoW(pane->menu, static_cast<UINT>(i), TRUE, &mii) &&
            (mii.fState & MFS_HILITE))
          selected = i;
      }
      if (matches.empty()) {
        result = MAKELRESULT(0, MNC_IGNORE);
      } else if (matches.size() == 1) {
        result = MAKELRESULT(matches[0], MNC_EXECUTE);
      } else {
        // Several items share the key: each press moves on to the next one.
        auto next = std::upper_bound(matches.begin(), matches.end(), selected);
        result = MAKELRESULT(next == matches.end() ? matches[0] : *next, MNC_SELECT);
      }
      return true;
    }
    default: return false;
  }
}

std::vector<SIZE> cMenuItems::MeasureMenu(const MenuItem& root, const MenuStyle& style, UINT dpi) {
  Session session(resources_, style, dpi);
  MenuPane* pane = session.AddPane(root, false);
  session.painter.LayOut(*pane);
  std::vector<SIZE> sizes;
  for (const MenuNode* node : pane->nodes) sizes.push_back(node->size);
  return sizes;
}

}  // namespace mq::win32
