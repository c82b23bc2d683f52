#include "listfiles/ListFileCommands.h"

#include "listfiles/ListFileRules.h"
#include "settings/KeyTable.h"

namespace mq {

namespace {
using FileOperations::LoadMode;

constexpr TextView kProgramTitle = u"Marquill";
constexpr TextView kProtectedMark = u"M2P\r";

FileDialogRequest Prepare(ListFileServices& s, FileDialogKind kind) {
  const auto& rule = kind == FileDialogKind::Save ? settings::kSaveDialogRule
                                                  : settings::kLoadDialogRule;
  FileDialogRequest request;
  request.kind = kind;
  request.title = Text(kind == FileDialogKind::Save ? ListFileRules::kSaveTitle
                                                    : ListFileRules::kLoadTitle);
  request.filter = Text(kind == FileDialogKind::Save ? ListFileRules::kSaveFilter
                                                     : ListFileRules::kLoadFilter);
  request.filterIndex = settings::ReadFilterIndex(s.settings, rule);
  auto where = ListFileRules::InitialLocationFor(s.list.files, settings::ReadLastFile(s.settings, rule),
                                                 s.programFolder);
  request.initialFolder = std::move(where.folder);
  request.fileName = std::move(where.fileName);
  request.overwritePrompt = kind == FileDialogKind::Save;
  return request;
}
}  // namespace

void ListFileCommands::cmdFile_Click(int index) {
  if (index == 0)
    ShowSave();
  else if (index == 1)
    LoadButton();
}

void ListFileCommands::ShowSave() {
  if (s_.list.store.EntryCount() == 0) return;
  auto choice = s_.dialogs.Show(Prepare(s_, FileDialogKind::Save));
  if (!choice) return;
  const Text path = ListFileRules::WithListExtension(choice->path, choice->filterIndex);
  s_.settings.WriteSetting(settings::key::Cur_FF_S.name, ToDecimal(choice->filterIndex));
  s_.settings.WriteSetting(settings::key::Cur_FN_S.name, path);
  if (ListFileRules::IsProtectedName(path)) {
    pendingPath_ = path;
    s_.password.Show(PassMode::Save, *this);
    return;
  }
  Save(path, false, u"");
}

void ListFileCommands::Save(TextView path, bool isProtected, TextView password) {
  auto result = FileOperations::SaveListFile(s_.list, path, isProtected, password);
  if (!result.ok) s_.messages.Show(u"Error: " + result.error, kProgramTitle, MsgIcon::None);
}

void ListFileCommands::LoadButton() {
  s_.host.SetTop(false);  // so that no dialog opens behind the window
  if (s_.list.store.EntryCount() > 0)
    s_.popup.Show(s_.host.LoadButtonRect());
  else
    ShowLoad(LoadMode::OpenAsNew);
}

void ListFileCommands::cmdOpen_Click(int index) {
  s_.popup.LeaveTopmost();
  if (index >= 0 && index <= 2) ShowLoad(static_cast<LoadMode>(index));
  RestorePin();
  s_.popup.Unload();
}

void ListFileCommands::ShowLoad(LoadMode mode) {
  if (auto choice = s_.dialogs.Show(Prepare(s_, FileDialogKind::Open)))
    LoadChosen(choice->path, choice->filterIndex, mode);
  RestorePin();
}

void ListFileCommands::LoadChosen(TextView chosen, int filterIndex, LoadMode mode) {
  auto found = ListFileRules::FindLoadPath(s_.list.files, chosen);
  if (!found) {
    s_.messages.Show(u"File does not exist.", u"Error: File not found", MsgIcon::Information);
    return;
  }
  const Text& path = *found;
  s_.settings.WriteSetting(settings::key::Cur_FF_O.name, ToDecimal(filterIndex));
  s_.settings.WriteSetting(settings::key::Cur_FN_O.name, path);

  const Text mark = FileOperations::ReadFileMagic(s_.list.files, path);
  // The file went away or cannot be read since the dialog saw it: the load ends quietly.
  if (mark.empty()) return;
  const bool isList = FileOperations::IsListFileSize(s_.list.files, path);
  if (isList && mark == kProtectedMark) {
    pendingPath_ = path;
    pendingMode_ = mode;
    s_.password.Show(PassMode::Load, *this);
  } else if (isList && (mark == u"M2L\r" || mark == u"M2U\r")) {
    FileOperations::LoadListFile(s_.list, path, mode, false, u"");
  } else {
    s_.messages.Show(u"Either the file was not created by Marquill or the file has become corrupted.",
                     u"Error: Wrong file format", MsgIcon::Critical);
  }
}

void ListFileCommands::RestorePin() {
  if (s_.host.Pinned()) s_.host.SetTop(true);
}

PassVerdict ListFileCommands::UsePassword(PassMode mode, TextView password) {
  if (mode == PassMode::Save) {
    // A failed save is reported here as the Save command reports it; nothing is retried.
    Save(pendingPath_, true, password);
    return PassVerdict::Done;
  }
  auto result = FileOperations::LoadListFile(s_.list, pendingPath_, pendingMode_, true, password);
  return result.status == FileOperations::LoadStatus::NotDecoded ? PassVerdict::WrongPassword
                                                                 : PassVerdict::Done;
}

}  // namespace mq
