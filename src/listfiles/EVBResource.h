// The keyed resource store inside every list file: a header, then string records, then
// long records. IDs are keys compared without regard to case; a repeated ID is ignored.
// List files are built and read in memory (no scratch files), so the store saves to and
// loads from bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/Text.h"

namespace mq {

class EVBResource {
 public:
  static constexpr size_t kFieldSize = 32;    // ResName, Author and every ID, space-padded
  static constexpr size_t kHeaderSize = 76;
  // A 16-bit length of -1 announces a 32-bit length after it (entries over 32,767 bytes).
  static constexpr int16_t kLongLengthMark = -1;

  struct StringRecord {
    Bytes id;  // without its padding
    Bytes data;
  };
  // A string record as it is read, without copying.
  struct StringRecordView {
    std::string_view id;  // without its padding
    std::string_view data;
  };
  struct LongRecord {
    Bytes id;
    int32_t value = 0;
  };

  Bytes ResName;  // at most 32 bytes are written
  Bytes Author;

  // False (nothing added) when the ID is empty, longer than 32 bytes or already taken.
  bool addString(std::string_view data, std::string_view id);
  bool addLong(int32_t value, std::string_view id);

  const std::vector<StringRecord>& strings() const { return strings_; }
  const std::vector<LongRecord>& longs() const { return longs_; }

  Bytes saveToBytes() const;

  // Hands a resource file of string records to put piece by piece (the header, then each
  // record's ID and length, then its data as given): a list of megabytes is never gathered
  // into one buffer. The pieces make the bytes saveToBytes gives for the same records, which
  // must all be announced and have valid, distinct IDs.
  class Writer {
   public:
    using Put = std::function<void(std::string_view)>;
    Writer(int32_t strings, const Put& put);
    void addString(std::string_view data, std::string_view id);

   private:
    const Put& put_;
    Bytes head_;  // reused for every record
  };
  // Replaces the content with the resource file in data. False when the data is damaged:
  // too short, a negative count, a count, length or ID running past the end. Picture
  // records have no layout that this program knows (list files never hold them), so a
  // non-zero picture count is refused; long records are read and kept.
  bool loadFromBytes(std::string_view data);
  // A resource file's bytes in order, handed out as they are needed (a list file's are
  // decoded as they are read).
  class Source {
   public:
    virtual ~Source() = default;
    virtual size_t Left() const = 0;  // bytes not taken yet
    // The next n bytes, valid until the next call; false past the end or when they cannot
    // be had.
    virtual bool Take(size_t n, std::string_view& out) = 0;
  };
  // The string records of a resource file as loadFromBytes would keep them (same checks,
  // a repeated or empty ID dropped), each handed over with views that last until the next.
  static bool readStrings(Source& data,
                          const std::function<void(const StringRecordView&)>& onString);
  static bool readStrings(std::string_view data,
                          const std::function<void(const StringRecordView&)>& onString);

 private:
  bool TakeId(std::string_view id, Bytes& key);

  std::vector<StringRecord> strings_;
  std::vector<LongRecord> longs_;
  std::unordered_set<Bytes> keys_;  // upper-cased IDs of both sections
};

}  // namespace mq
