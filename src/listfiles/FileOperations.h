// Saving and loading the clip list as list files. Everything runs in memory: decrypted or
// uncompressed data never touches the disk, and a save replaces the target only once the
// new file is complete.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "clipboard/ClipStore.h"
#include "listfiles/EVBResource.h"
#include "platform/CodePage.h"
#include "platform/FileSystem.h"
#include "platform/RichTextBox.h"
#include "platform/Text.h"

namespace mq {

// What the list routines work on, passed in by the caller.
struct ListContext {
  ClipStore& store;
  RichTextBox& richText;  // gives a rich-text entry's plain text for its row
  const CodePage& codePage;
  FileSystem& files;
};


namespace FileOperations {

// Entry type of a text that the ANSI code page cannot hold: its UTF-16LE bytes are stored.
constexpr int16_t kTypeUnicode = 13;

// The largest file a list can be. The Huffman container records its resource file's length
// as a signed 32-bit number and stores rather than codes whatever would grow, so no list
// file exceeds 2 GiB by more than its marks and code table (far less than 64 KiB).
constexpr uint64_t kMaxListFileBytes = 0x7FFFFFFFull + 64 * 1024;

enum class LoadMode { OpenAsNew = 0, InsertBeforeCurrent = 1, AppendAfterCurrent = 2 };

struct SaveResult {
  bool ok = false;
  Text error;  // the system's description of a file-system failure
};

enum class LoadStatus {
  Loaded,
  NotDecoded,  // wrong password, damaged or foreign data; the clip list is unchanged
  FileError,   // the file could not be read; see error
};

struct LoadResult {
  LoadStatus status = LoadStatus::NotDecoded;
  Text error;
  bool Loaded() const { return status == LoadStatus::Loaded; }
};

// The whole file for these entries, as SaveListFile writes it.
Bytes EncodeListFile(const std::vector<ClipEntry>& entries, const CodePage& codePage,
                     bool isProtected, TextView password);
// The entry type an ID names, from the numeric value of its fourth character on:
// kFormatRich, kTypeUnicode, or kFormatPlain for 1 and every other (or damaged) value.
int16_t EntryTypeOfId(std::string_view id);
// Unwraps a list file down to its resource store; false when a layer cannot be decoded.
bool OpenListResource(std::string_view file, const CodePage& codePage, bool isProtected,
                      TextView password, EVBResource& resource);
// The entries of a list file in file order; false when it cannot be decoded. Records with
// an empty text are dropped: an empty slot means a free one in the clip store.
bool DecodeListFile(std::string_view file, const CodePage& codePage, bool isProtected,
                    TextView password, std::vector<ClipEntry>& entries);

// The clip list in queue order.
std::vector<ClipEntry> CurrentEntries(const ClipStore& store);

SaveResult SaveListFile(ListContext& context, TextView path, bool isProtected,
                        TextView password);
LoadResult LoadListFile(ListContext& context, TextView path, LoadMode mode,
                        bool isProtected, TextView password);

// Merges decoded entries into the clip list the way a load does (capacity 100).
void MergeEntries(ListContext& context, std::vector<ClipEntry> loaded, LoadMode mode);

// The first four bytes with CR and "0".."Z" kept and every other byte (also a missing one)
// as "x"; an empty text when the file cannot be read. Only those bytes are read.
Text ReadFileMagic(FileSystem& files, TextView path);
bool FileExists(FileSystem& files, TextView path);
// False for a file larger than kMaxListFileBytes: whatever its first bytes say, it is no list.
bool IsListFileSize(FileSystem& files, TextView path);
// The text after the last backslash; empty when there is none.
Text FileNameOnly(TextView path);

}  // namespace FileOperations
}  // namespace mq
