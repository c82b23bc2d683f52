// Libraries loaded on first use, and the large icon images stored as PNG loaded by the system,
// in process.
#include <windows.h>
#include <commdlg.h>
#include <objbase.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "clipboard/win32/RichEditBox.h"
#include "platform/win32/Handles.h"
#include "platform/win32/LateLibrary.h"
#include "ui/IconArt.h"

namespace mq::win32 {
namespace {

TEST(LateLibrary, ResolvesOnFirstCallAndReportsWhatIsMissing) {
  // hhctrl.ocx is loaded by nothing in this program but the help command.
  const bool before = GetModuleHandleW(L"hhctrl.ocx") != nullptr;
  LateFunction<HWND WINAPI(HWND, LPCWSTR, UINT, DWORD_PTR)> htmlHelp{L"hhctrl.ocx", "HtmlHelpW"};
  if (!before) {
    EXPECT_EQ(GetModuleHandleW(L"hhctrl.ocx"), nullptr) << "loaded before its first use";
  }
  ASSERT_TRUE(htmlHelp);
  EXPECT_NE(GetModuleHandleW(L"hhctrl.ocx"), nullptr);

  // A typed call goes through with its arguments and result.
  LateFunction<decltype(CommDlgExtendedError)> lastDialogError{L"comdlg32.dll", "CommDlgExtendedError"};
  ASSERT_TRUE(lastDialogError);
  EXPECT_EQ(lastDialogError(), 0u);
  LateFunction<decltype(lstrlenW)> length{L"kernel32.dll", "lstrlenW"};
  EXPECT_EQ(length(L"seven c"), 7);

  LateFunction<int WINAPI()> noLibrary{L"no-such-library-here.dll", "Anything"};
  EXPECT_FALSE(noLibrary);
  LateFunction<int WINAPI()> noFunction{L"kernel32.dll", "NoSuchFunctionHere"};
  EXPECT_FALSE(noFunction);
  EXPECT_EQ(LateProc(L"no-such-library-here.dll", "Anything"), nullptr);
  // Only the system folder is searched: a name that exists only elsewhere is not found.
  EXPECT_EQ(LoadLateLibrary(L"marquill.exe"), nullptr);
}

TEST(LateLibrary, OleApartmentIsEnteredOnceAndLeft) {
  ASSERT_TRUE(OleApartment::Enter());
  EXPECT_TRUE(OleApartment::Enter());  // again: free, and still in it
  // The thread is single-threaded: asking for the multi-threaded kind now is refused.
  LateFunction<decltype(CoInitializeEx)> coInitializeEx{L"ole32.dll", "CoInitializeEx"};
  LateFunction<decltype(CoUninitialize)> coUninitialize{L"ole32.dll", "CoUninitialize"};
  ASSERT_TRUE(coInitializeEx && coUninitialize);
  HRESULT hr = coInitializeEx(nullptr, COINIT_MULTITHREADED);
  EXPECT_EQ(hr, RPC_E_CHANGED_MODE);
  if (SUCCEEDED(hr)) coUninitialize();
  OleApartment::Leave();
  OleApartment::Leave();  // a second leave does nothing
  // Left for good: the thread may now choose the other kind.
  hr = coInitializeEx(nullptr, COINIT_MULTITHREADED);
  EXPECT_TRUE(SUCCEEDED(hr)) << std::hex << hr;
  if (SUCCEEDED(hr)) coUninitialize();
  EXPECT_TRUE(OleApartment::Enter());
}

std::wstring BesideThisProgram(const wchar_t* name) {
  wchar_t self[MAX_PATH];
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring path = self;
  return path.substr(0, path.find_last_of(L"\\/") + 1) + name;
}

// The icon's colour and alpha as the system renders them into a 32-bit DIB.
art::Image IconPixels(HICON icon, int size) {
  art::Image image{size, size, std::vector<uint8_t>(static_cast<size_t>(size) * size * 4)};
  ICONINFO info{};
  if (!GetIconInfo(icon, &info)) return art::Image{};
  HDC dc = GetDC(nullptr);
  BITMAPINFO bmi{};
  bmi.bmiHeader = {sizeof(BITMAPINFOHEADER), size, -size, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const int rows = info.hbmColor ? GetDIBits(dc, info.hbmColor, 0, size, image.rgba.data(), &bmi,
                                             DIB_RGB_COLORS)
                                 : 0;
  ReleaseDC(nullptr, dc);
  if (info.hbmColor) DeleteObject(info.hbmColor);
  if (info.hbmMask) DeleteObject(info.hbmMask);
  if (rows != size) return art::Image{};
  for (size_t i = 0; i < image.rgba.size(); i += 4) std::swap(image.rgba[i], image.rgba[i + 2]);
  return image;
}

TEST(IconResources, TheSystemLoadsThePngImagesAtEverySize) {
  UniqueModule module(LoadLibraryExW(BesideThisProgram(L"marquill.exe").c_str(), nullptr,
                                     LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
  ASSERT_TRUE(module) << "marquill.exe is built beside the test program";
  struct Case {
    int id;
    art::Art drawing;
    std::vector<int> sizes;  // the sizes stored as PNG
  };
  const std::vector<int> large = {48, 64, 72, 96, 128, 256}, menu = {28, 32, 40, 48, 64};
  const Case cases[] = {{art::kTrayEnabledIcon, art::Art::ClipEnabled, large},
                        {art::kTrayDisabledIcon, art::Art::ClipDisabled, large},
                        {art::kListWindowIcon, art::Art::ClipList, large},
                        {201, art::Art::ClipEnabled, menu},
                        {202, art::Art::ClipDisabled, menu},
                        {203, art::Art::Settings, menu},
                        {204, art::Art::About, menu},
                        {205, art::Art::Exit, menu},
                        {206, art::Art::ClipList, menu},
                        {207, art::Art::Help, menu}};
  for (const Case& c : cases) {
    for (int size : c.sizes) {
      SCOPED_TRACE(testing::Message() << "icon " << c.id << " size " << size);
      HICON icon = static_cast<HICON>(LoadImageW(module.Get(), MAKEINTRESOURCEW(c.id), IMAGE_ICON,
                                                 size, size, LR_DEFAULTCOLOR));
      ASSERT_NE(icon, nullptr);
      const art::Image shown = IconPixels(icon, size);
      DestroyIcon(icon);
      ASSERT_EQ(shown.rgba.size(), static_cast<size_t>(size) * size * 4);
      // The drawn image, pixel for pixel: colour where it shows, and the same alpha everywhere.
      const art::Image drawn = art::Render(c.drawing, size);
      int wrong = 0, opaque = 0;
      for (size_t i = 0; i < drawn.rgba.size(); i += 4) {
        const uint8_t alpha = drawn.rgba[i + 3];
        opaque += alpha == 255;
        bool same = std::abs(shown.rgba[i + 3] - alpha) <= 1;
        for (int ch = 0; ch < 3 && alpha; ++ch)
          same = same && std::abs(shown.rgba[i + ch] - drawn.rgba[i + ch]) <= 1;
        wrong += !same;
      }
      EXPECT_GT(opaque, size * size / 16);
      EXPECT_EQ(wrong, 0);
    }
  }
}

}  // namespace
}  // namespace mq::win32
