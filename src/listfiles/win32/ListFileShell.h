// Everything the clip list window's Save and Load buttons need on Windows, put together:
// the commands, the common dialogs, frmPass and frmOpenContext, all owned by the clip list
// window. The window implements ListFileHost and forwards its button clicks:
//   ListFileShell files({store, rtbFormat, codePage, fileSystem}, settings, *this, programFolder);
//   cmdFile(i) clicked -> files.commands.cmdFile_Click(i)
#pragma once

#include "listfiles/ListFileCommands.h"
#include "listfiles/win32/OpenContextWindow.h"
#include "listfiles/win32/OwnedMessageBoxes.h"
#include "listfiles/win32/PasswordWindow.h"
#include "listfiles/win32/Win32FileDialogs.h"

namespace mq::win32 {

class ListFileShell {
 public:
  ListFileShell(ListContext list, Settings& settings, ListFileHost& host, Text programFolder);
  ListFileShell(const ListFileShell&) = delete;
  ListFileShell& operator=(const ListFileShell&) = delete;

  ListContext list;
  OwnedMessageBoxes listMessages;  // owned by the clip list window
  OwnedMessageBoxes passMessages;  // owned by the password dialog
  Win32FileDialogs dialogs;
  frmPass pass{passMessages};
  PasswordWindow passWindow;
  OpenContextWindow openContext;
  ListFileCommands commands;
};

}  // namespace mq::win32
