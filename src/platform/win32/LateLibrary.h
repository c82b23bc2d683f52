// System libraries that start-up does not need, loaded by their first user and kept for the
// rest of the run. Linking them at load time would make every start pay for mapping them and
// for what they load in turn (the common dialogs pull in the shell's and COM's machinery).
//
//   static LateFunction<decltype(GetSaveFileNameW)> getSaveFileName{L"comdlg32.dll",
//                                                                    "GetSaveFileNameW"};
//   if (getSaveFileName) getSaveFileName(&ofn);
#pragma once

#include <windows.h>

#include <utility>

namespace mq::win32 {

// The library's module, loaded on the first call (from the system folder only, so a file of
// the same name beside the program is never picked up); null when the system lacks it.
// Kept loaded: functions and window classes taken from it stay valid.
HMODULE LoadLateLibrary(const wchar_t* name);

// The entry point, or null when the library or the function is missing.
FARPROC LateProc(const wchar_t* library, const char* name);

// One typed entry point of a late library; resolved on first use, then a plain call.
template <typename Fn>
class LateFunction {
 public:
  constexpr LateFunction(const wchar_t* library, const char* name)
      : library_(library), name_(name) {}

  // False when the library or the function is missing (then calling is not allowed).
  explicit operator bool() const { return Resolve() != nullptr; }

  template <typename... Args>
  auto operator()(Args&&... args) const {
    return Resolve()(std::forward<Args>(args)...);
  }

 private:
  Fn* Resolve() const {
    if (!resolved_) {
      fn_ = reinterpret_cast<Fn*>(reinterpret_cast<void*>(LateProc(library_, name_)));
      resolved_ = true;
    }
    return fn_;
  }

  const wchar_t* library_;
  const char* name_;
  // Filled on first use: resolving is not a change anyone can see.
  mutable Fn* fn_ = nullptr;
  mutable bool resolved_ = false;
};

// The thread's single-threaded OLE apartment, which the common dialogs, the shell link object
// and the rich-text box want. Entered (loading ole32) by the first of them to need it and
// left at the end of the run; entering again is free.
class OleApartment {
 public:
  // True when the thread is in an apartment (entered now, or before).
  static bool Enter();
  // Leaves, when Enter entered it on this thread; for the end of wWinMain.
  static void Leave();
};

}  // namespace mq::win32
