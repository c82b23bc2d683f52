// The Save and Load buttons of the clip list window (cmdFile(0), cmdFile(1)), ShowLoad, the
// buttons of the load-mode popup frmOpenContext, and the completion of a protected save or
// load for the password dialog. The window calls in here; everything it needs of the system
// comes through the ports.
#pragma once

#include "listfiles/FileOperations.h"
#include "listfiles/frmPass.h"
#include "platform/ListFilePorts.h"
#include "platform/Ports.h"
#include "settings/SettingsStore.h"

namespace mq {

struct ListFileServices {
  ListContext& list;
  Settings& settings;
  MessageBoxes& messages;  // owned by the clip list window
  FileDialogs& dialogs;
  ListFileHost& host;
  LoadModePopup& popup;
  frmPass& password;
  Text programFolder;  // without a trailing backslash
};

class ListFileCommands final : public PasswordConsumer {
 public:
  explicit ListFileCommands(ListFileServices services) : s_(std::move(services)) {}

  // cmdFile(0) Save, cmdFile(1) the Load button.
  void cmdFile_Click(int index);
  void ShowSave();
  void LoadButton();
  // The load itself, with load mode 0..2.
  void ShowLoad(FileOperations::LoadMode mode);
  // frmOpenContext's cmdOp(0..2) load in that mode; cmdOp(3) only cancels.
  void cmdOpen_Click(int index);

  PassVerdict UsePassword(PassMode mode, TextView password) override;

 private:
  // Save: writes the list and reports a failure with the system's description.
  void Save(TextView path, bool isProtected, TextView password);
  void LoadChosen(TextView chosen, int filterIndex, FileOperations::LoadMode mode);
  void RestorePin();

  ListFileServices s_;
  Text pendingPath_;
  FileOperations::LoadMode pendingMode_ = FileOperations::LoadMode::OpenAsNew;
};

}  // namespace mq
