// Fakes of the save and load commands' ports: file dialogs that answer with a prepared
// choice, the clip list window's pin, the load-mode popup and the password dialog's window.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "listfiles/frmPass.h"
#include "platform/ListFilePorts.h"

namespace mq::test {

class FakeFileDialogs : public FileDialogs {
 public:
  std::optional<FileChoice> Show(const FileDialogRequest& request) override {
    requests.push_back(request);
    if (whileOpen) whileOpen();
    if (answers.empty()) return std::nullopt;  // cancelled
    auto answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void Answer(TextView path, int filterIndex) { answers.push_back(FileChoice{Text(path), filterIndex}); }
  void Cancel() { answers.push_back(std::nullopt); }

  std::vector<FileDialogRequest> requests;
  std::deque<std::optional<FileChoice>> answers;
  std::function<void()> whileOpen;
};

class FakeHost : public ListFileHost {
 public:
  bool Pinned() override { return pinned; }
  void SetTop(bool top) override {
    topmost = top;
    setTopCalls.push_back(top);
  }
  ScreenRect LoadButtonRect() override { return button; }
  std::uintptr_t NativeWindow() override { return 0; }

  bool pinned = false, topmost = false;
  std::vector<bool> setTopCalls;
  ScreenRect button{100, 200, 124, 224};
};

class FakePopup : public LoadModePopup {
 public:
  void Show(const ScreenRect& loadButton) override {
    shown = true;
    topmost = true;
    at = loadButton;
  }
  void LeaveTopmost() override { topmost = false; }
  void Unload() override { shown = false; }
  bool shown = false, topmost = false;
  ScreenRect at;
};

// The dialog's boxes; Unload wipes them as the real window does.
class FakePasswordView : public PasswordView {
 public:
  explicit FakePasswordView(frmPass& form) : form_(form) {}
  void Show(bool confirmationVisible) override {
    shown = true;
    ++shows;
    confirmation = confirmationVisible;
    box[0].clear();
    box[1].clear();
  }
  Text BoxText(int index) override { return box[index]; }
  void ClearBox(int index) override { box[index].clear(); }
  void FocusBox(int index) override { focus = index; }
  void Unload() override {
    shown = false;
    box[0].clear();
    box[1].clear();
    form_.Form_Unload();
  }
  // Types into a box and presses Enter there.
  void Enter(int index, TextView text) {
    box[index] = Text(text);
    form_.txtPW_KeyPress(index, frmPass::Key::Enter);
  }

  bool shown = false, confirmation = false;
  int shows = 0, focus = -1;
  Text box[2];

 private:
  frmPass& form_;
};

}  // namespace mq::test
