// The whole read path of a list file (envelope, container, resource store, merge) on
// arbitrary bytes. The first byte picks the load mode, whether the file is read as
// protected, and how many entries the clip list already holds. Afterwards the clip store
// must be consistent, and what was loaded must save and load back unchanged.
#include <cstdint>
#include <cstdlib>

#include "../tests/native/fakes/FakeRichTextBox.h"
#include "../tests/native/fakes/MemoryDisk.h"
#include "listfiles/FileOperations.h"

using namespace mq;

// Undefined behaviour counts as a finding, not a note in the log.
extern "C" const char* __ubsan_default_options() { return "halt_on_error=1:print_stacktrace=1"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const uint8_t control = data[0];
  const auto mode = static_cast<FileOperations::LoadMode>(control % 3);
  const bool isProtected = (control & 4) != 0;
  const int existing = (control >> 3) * 4;  // 0..124, capped by the store at 100

  ListModel rows;
  ClipStore store(rows);
  test::FakeRichTextBox rtb;
  Windows1252 cp;
  test::MemoryDisk files;
  ListContext context{store, rtb, cp, files};
  for (int k = 0; k < existing; ++k) {
    Text text = u"old" + ToDecimal(k);
    store.Append(k % 5 ? ClipEntry::Plain(text) : ClipEntry::Rich(Narrow(text)), text);
  }
  const auto before = FileOperations::CurrentEntries(store);

  files.files[u"in"] = Bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  const auto result = FileOperations::LoadListFile(context, u"in", mode, isProtected, u"pw");
  if (!store.InvariantsHold() || rows.ListCount() > kClipSlots) std::abort();
  if (!result.Loaded()) {
    if (FileOperations::CurrentEntries(store) != before) std::abort();
    return 0;
  }

  const auto loaded = FileOperations::CurrentEntries(store);
  if (!FileOperations::SaveListFile(context, u"out", isProtected, u"pw").ok) std::abort();
  store.ClearAll();
  if (!FileOperations::LoadListFile(context, u"out", FileOperations::LoadMode::OpenAsNew,
                                    isProtected, u"pw")
           .Loaded() ||
      FileOperations::CurrentEntries(store) != loaded)
    std::abort();
  FileOperations::ReadFileMagic(files, u"in");
  return 0;
}
