#include "listfiles/FileOperations.h"

#include <algorithm>

#include "listfiles/clsHuffman.h"
#include "listfiles/clsRC4.h"

namespace mq::FileOperations {

namespace {

constexpr size_t kMaxEntries = kClipSlots;

void Utf16LeBytes(TextView text, Bytes& out) {
  out.resize(text.size() * 2);
  char* o = out.data();
  for (char16_t c : text) {
    *o++ = static_cast<char>(c & 0xFF);
    *o++ = static_cast<char>(c >> 8);
  }
}

Text FromUtf16LeBytes(std::string_view bytes) {
  Text out(bytes.size() / 2, u'\0');
  for (size_t i = 0; i < out.size(); ++i)
    out[i] = static_cast<char16_t>(static_cast<uint8_t>(bytes[2 * i]) |
                                   static_cast<uint8_t>(bytes[2 * i + 1]) << 8);
  return out;
}

// The row's display text: a rich entry shows its plain text.
Text DisplayText(ListContext& context, const ClipEntry& entry) {
  if (!entry.IsRich()) return Text(TextView(entry.text).substr(0, kRowTextChars));
  context.richText.LoadRtf(entry.rtf);
  Text plain = context.richText.PlainText();
  context.richText.Clear();
  return plain;
}

}  // namespace

int16_t EntryTypeOfId(std::string_view id) {
  const Text wide = Widen(id);
  // Compared as read: "13.5" or a 30-digit number is no type, so it is plain text.
  const double value = LeadingNumber(TextView(wide).substr(std::min<size_t>(3, wide.size())));
  if (value == kFormatRich) return kFormatRich;
  if (value == kTypeUnicode) return kTypeUnicode;
  return kFormatPlain;
}

namespace {

// The file for entries given by address, so that a save copies no entry first. Each plain
// entry is converted once into a buffer of its own (blocks of an entry's size, which the
// heap reuses); the encoder reads the records where they lie, so no buffer the size of the
// whole resource file is filled only to be coded and freed.
Bytes EncodeEntries(const std::vector<const ClipEntry*>& entries, const CodePage& codePage,
                    bool isProtected, TextView password) {
  struct Record {
    std::string_view data;
    Bytes id;
  };
  std::vector<Record> records(entries.size());
  std::vector<Bytes> converted(entries.size());
  for (size_t p = 0; p < entries.size(); ++p) {
    const ClipEntry& e = *entries[p];
    int16_t type = e.format;
    if (e.IsRich()) {
      records[p].data = e.rtf;
    } else {
      type = kFormatPlain;
      // ANSI whenever nothing would be lost; otherwise the exact UTF-16 text.
      if (!codePage.ToAnsiExact(e.text, converted[p])) {
        type = kTypeUnicode;
        Utf16LeBytes(e.text, converted[p]);
      }
      records[p].data = converted[p];
    }
    records[p].id = Narrow(Format000(static_cast<long long>(p)) + ToDecimal(type));
  }
  Bytes file = clsHuffman::Encode([&](const clsHuffman::Put& put) {
    EVBResource::Writer store(static_cast<int32_t>(records.size()), put);
    for (const Record& r : records) store.addString(r.data, r.id);
  });
  if (!isProtected) return file;
  clsRC4 rc4;
  rc4.Key(password, codePage);
  rc4.ProtectInPlace(file);
  return file;
}

std::vector<const ClipEntry*> CurrentEntryAddresses(const ClipStore& store) {
  std::vector<const ClipEntry*> entries;
  entries.reserve(store.lstClip.Rows().size());
  for (const auto& row : store.lstClip.Rows()) {
    if (row.itemData < 0 || row.itemData >= kClipSlots) continue;
    entries.push_back(&store.Entry(row.itemData));
  }
  return entries;
}

}  // namespace

Bytes EncodeListFile(const std::vector<ClipEntry>& entries, const CodePage& codePage,
                     bool isProtected, TextView password) {
  std::vector<const ClipEntry*> addresses;
  addresses.reserve(entries.size());
  for (const ClipEntry& e : entries) addresses.push_back(&e);
  return EncodeEntries(addresses, codePage, isProtected, password);
}

namespace {
// The resource file inside a list file: decrypted into scratch when protected, else a view
// of the container as it is. False when a layer cannot be decoded.
bool OpenResourceBytes(std::string_view file, const CodePage& codePage, bool isProtected,
                       TextView password, Bytes& plain) {
  Bytes decrypted;
  if (isProtected) {
    clsRC4 rc4;
    rc4.Key(password, codePage);
    if (!rc4.Unprotect(file, decrypted)) return false;
    file = decrypted;
  }
  return clsHuffman::Decode(file, plain);
}
}  // namespace

bool OpenListResource(std::string_view file, const CodePage& codePage, bool isProtected,
                      TextView password, EVBResource& resource) {
  Bytes plain;
  return OpenResourceBytes(file, codePage, isProtected, password, plain) &&
         resource.loadFromBytes(plain);
}

namespace {
// A resource file decoded from its Huffman container as the records are read, into one
// buffer the size of the largest record rather than one the size of the whole file.
class DecodedSource final : public EVBResource::Source {
 public:
  explicit DecodedSource(clsHuffman::Reader& reader) : reader_(reader) {}
  size_t Left() const override { return reader_.Left(); }
  bool Take(size_t n, std::string_view& out) override {
    // A damaged length must not size the buffer: it is bounded by what the data holds.
    if (n > reader_.Left()) return false;
    if (n > buffer_.size()) buffer_.resize(n);
    if (!reader_.Read(buffer_.data(), n)) return false;
    out = std::string_view(buffer_.data(), n);
    return true;
  }

 private:
  clsHuffman::Reader& reader_;
  Bytes buffer_;
};

// The entries of a Huffman container (a list file, decrypted when it was protected), each
// converted from its record as that is decoded.
bool DecodeContainer(std::string_view container, const CodePage& codePage,
                     std::vector<ClipEntry>& entries) {
  clsHuffman::Reader reader;
  if (!reader.Open(container)) return false;
  DecodedSource source(reader);
  std::vector<ClipEntry> out;
  bool damaged = false;
  const bool read = EVBResource::readStrings(source, [&](const auto& record) {
    if (damaged) return;
    ClipEntry entry;
    const int16_t type = EntryTypeOfId(record.id);
    if (type == kFormatRich) {
      entry = ClipEntry::Rich(Bytes(record.data));
    } else if (type == kTypeUnicode) {
      if (record.data.size() % 2 != 0) {  // half a character: damaged
        damaged = true;
        return;
      }
      entry.text = FromUtf16LeBytes(record.data);
    } else {
      // Type 1, and any other or damaged type, is plain ANSI text.
      entry.text = codePage.FromAnsi(record.data);
    }
    if (!entry.Empty()) out.push_back(std::move(entry));
  });
  // The whole container must be sound, also past the last record.
  if (!read || damaged || !reader.Finish()) return false;
  entries = std::move(out);
  return true;
}
}  // namespace

bool DecodeListFile(std::string_view file, const CodePage& codePage, bool isProtected,
                    TextView password, std::vector<ClipEntry>& entries) {
  if (!isProtected) return DecodeContainer(file, codePage, entries);
  Bytes container;
  clsRC4 rc4;
  rc4.Key(password, codePage);
  return rc4.Unprotect(file, container) && DecodeContainer(container, codePage, entries);
}

std::vector<ClipEntry> CurrentEntries(const ClipStore& store) {
  std::vector<ClipEntry> entries;
  for (const auto& row : store.lstClip.Rows()) {
    if (row.itemData < 0 || row.itemData >= kClipSlots) continue;
    entries.push_back(store.Entry(row.itemData));
  }
  return entries;
}

SaveResult SaveListFile(ListContext& context, TextView path, bool isProtected,
                        TextView password) {
  Bytes file = EncodeEntries(CurrentEntryAddresses(context.store), context.codePage,
                            isProtected, password);
  SaveResult result;
  result.ok = context.files.WriteAllAtomic(path, file, result.error);
  return result;
}

void MergeEntries(ListContext& context, std::vector<ClipEntry> loaded, LoadMode mode) {
  ClipStore& store = context.store;
  using Placed = std::pair<ClipEntry, Text>;  // an entry and its row's display text
  std::vector<const ListRow*> rows;
  for (const auto& row : store.lstClip.Rows())
    if (row.itemData >= 0 && row.itemData < kClipSlots) rows.push_back(&row);
  const int keptIndex = store.lstClip.ListIndex();
  const size_t cnt = loaded.size(), have = rows.size();

  // Counts as the load modes define them; the store is then rebuilt compactly, so every
  // row's item data is fresh and no slot is left behind without a row.
  size_t start = 0, kept = 0;
  if (mode == LoadMode::InsertBeforeCurrent) {
    kept = cnt >= kMaxEntries ? 0 : std::min(have, kMaxEntries - cnt);
  } else if (mode == LoadMode::AppendAfterCurrent) {
    start = std::min(have, kMaxEntries);
    kept = start;
  }
  const size_t n = std::min(cnt, kMaxEntries - start);

  // Only the entries that stay are copied out of the store.
  auto keep = [&](std::vector<Placed>& to) {
    for (size_t k = 0; k < kept; ++k) {
      const ClipEntry& entry = store.Entry(rows[k]->itemData);
      TextView prefix = entry.IsRich() ? kRichRowPrefix : kPlainRowPrefix;
      TextView text = rows[k]->text;
      to.emplace_back(entry, Text(StartsWith(text, prefix) ? text.substr(prefix.size()) : text));
    }
  };
  std::vector<Placed> result;
  result.reserve(n + kept);
  if (mode == LoadMode::AppendAfterCurrent) keep(result);
  for (size_t j = 0; j < n; ++j) {
    Text display = DisplayText(context, loaded[j]);
    result.emplace_back(std::move(loaded[j]), std::move(display));
  }
  if (mode == LoadMode::InsertBeforeCurrent) keep(result);

  store.Replace(std::move(result));
  // Appending leaves the window's lines (and so its selection) where they were.
  if (mode == LoadMode::AppendAfterCurrent && keptIndex >= 0 &&
      keptIndex < static_cast<int>(kept))
    store.lstClip.SetListIndex(keptIndex);
}

LoadResult LoadListFile(ListContext& context, TextView path, LoadMode mode, bool isProtected,
                        TextView password) {
  LoadResult result;
  // Larger than any list can be: not one of ours, and not worth reading into memory.
  if (context.files.Length(path).value_or(0) > kMaxListFileBytes) {
    result.status = LoadStatus::NotDecoded;
    return result;
  }
  Bytes file;
  if (!context.files.ReadAll(path, file, result.error)) {
    result.status = LoadStatus::FileError;
    return result;
  }
  std::vector<ClipEntry> loaded;
  // The file's own buffer is decrypted where it lies.
  bool decoded;
  if (isProtected) {
    clsRC4 rc4;
    rc4.Key(password, context.codePage);
    decoded = rc4.UnprotectInPlace(file) && DecodeContainer(file, context.codePage, loaded);
  } else {
    decoded = DecodeContainer(file, context.codePage, loaded);
  }
  if (!decoded) {
    result.status = LoadStatus::NotDecoded;
    return result;
  }
  MergeEntries(context, std::move(loaded), mode);
  result.status = LoadStatus::Loaded;
  return result;
}

Text ReadFileMagic(FileSystem& files, TextView path) {
  Bytes data;
  Text error;
  if (!files.Length(path) || !files.ReadHead(path, 4, data, error)) return Text();
  Text mark;
  for (size_t i = 0; i < 4; ++i) {
    const auto b = i < data.size() ? static_cast<uint8_t>(data[i]) : uint8_t{0};
    mark.push_back(b == 13 || (b >= 48 && b <= 90) ? static_cast<char16_t>(b) : u'x');
  }
  return mark;
}

bool FileExists(FileSystem& files, TextView path) { return files.Length(path).has_value(); }

bool IsListFileSize(FileSystem& files, TextView path) {
  return files.Length(path).value_or(0) <= kMaxListFileBytes;
}

Text FileNameOnly(TextView path) {
  const size_t slash = path.rfind(u'\\');
  if (slash == TextView::npos) return Text();
  return Text(path.substr(slash + 1));
}

}  // namespace mq::FileOperations
