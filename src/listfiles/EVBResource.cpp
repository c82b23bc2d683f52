#include "listfiles/EVBResource.h"

#include <algorithm>
#include <array>
#include <limits>

namespace mq {

namespace {

std::string_view TrimRightSpaces(std::string_view s) {
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

void PutField(Bytes& out, std::string_view text) {
  text = text.substr(0, EVBResource::kFieldSize);
  out += text;
  out.append(EVBResource::kFieldSize - text.size(), ' ');
}

void PutI32(Bytes& out, int32_t v) {
  auto u = static_cast<uint32_t>(v);
  for (int k = 0; k < 4; ++k) out.push_back(static_cast<char>(u >> (8 * k)));
}

void PutI16(Bytes& out, int16_t v) {
  auto u = static_cast<uint16_t>(v);
  out.push_back(static_cast<char>(u));
  out.push_back(static_cast<char>(u >> 8));
}

// A resource file held whole.
class ViewSource final : public EVBResource::Source {
 public:
  explicit ViewSource(std::string_view data) : data_(data) {}
  size_t Left() const override { return data_.size() - pos_; }
  bool Take(size_t n, std::string_view& out) override {
    if (n > Left()) return false;
    out = data_.substr(pos_, n);
    pos_ += n;
    return true;
  }

 private:
  std::string_view data_;
  size_t pos_ = 0;
};

// A little-endian field; false past the end.
bool TakeI32(EVBResource::Source& r, int32_t& v) {
  std::string_view b;
  if (!r.Take(4, b)) return false;
  uint32_t u = 0;
  for (int k = 0; k < 4; ++k) u |= uint32_t{static_cast<uint8_t>(b[k])} << (8 * k);
  v = static_cast<int32_t>(u);
  return true;
}

// The upper-cased key of an ID; false for an empty or too long one.
bool KeyOf(std::string_view id, Bytes& key) {
  id = TrimRightSpaces(id);
  if (id.empty() || id.size() > EVBResource::kFieldSize) return false;
  key.assign(id);
  for (char& c : key)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return true;
}

// Walks a resource file's records, handing each to its callback as views that last until
// the next one. False when the data is damaged (see loadFromBytes).
template <typename OnHeader, typename OnString, typename OnLong>
bool Walk(EVBResource::Source& r, OnHeader onHeader, OnString onString, OnLong onLong) {
  constexpr size_t kField = EVBResource::kFieldSize;
  // The header's two names are needed only after its counts, which would replace them.
  std::string_view fields;
  Bytes name, author;
  int32_t stringCount = 0, longCount = 0, pictureCount = 0;
  if (!r.Take(2 * kField, fields)) return false;
  name.assign(fields.substr(0, kField));
  author.assign(fields.substr(kField));
  if (!TakeI32(r, stringCount) || !TakeI32(r, longCount) || !TakeI32(r, pictureCount))
    return false;
  if (stringCount < 0 || longCount < 0 || pictureCount != 0) return false;
  // Cheap plausibility check before any work: every record needs its ID and a length.
  if (static_cast<uint64_t>(stringCount) * (kField + 2) +
          static_cast<uint64_t>(longCount) * (kField + 4) >
      r.Left())
    return false;
  onHeader(std::string_view(name), std::string_view(author), stringCount);

  std::array<char, kField> id;
  for (int32_t k = 0; k < stringCount; ++k) {
    std::string_view head, text;
    int16_t shortLength = 0;
    int32_t length = 0;
    // The ID is kept aside: the next reads may replace the bytes its view shows.
    if (!r.Take(kField + 2, head)) return false;
    std::copy(head.begin(), head.begin() + kField, id.begin());
    shortLength = static_cast<int16_t>(static_cast<uint8_t>(head[kField]) |
                                       static_cast<uint8_t>(head[kField + 1]) << 8);
    if (shortLength == EVBResource::kLongLengthMark) {
      if (!TakeI32(r, length) || length < 0) return false;
    } else if (shortLength < 0) {
      return false;
    } else {
      length = shortLength;
    }
    if (!r.Take(static_cast<size_t>(length), text)) return false;
    onString(std::string_view(id.data(), kField), text);
  }
  for (int32_t k = 0; k < longCount; ++k) {
    std::string_view record;
    if (!r.Take(kField + 4, record)) return false;
    uint32_t value = 0;
    for (int b = 0; b < 4; ++b)
      value |= uint32_t{static_cast<uint8_t>(record[kField + b])} << (8 * b);
    onLong(record.substr(0, kField), static_cast<int32_t>(value));
  }
  return true;
}

}  // namespace

bool EVBResource::TakeId(std::string_view id, Bytes& key) {
  return KeyOf(id, key) && keys_.insert(key).second;
}

bool EVBResource::addString(std::string_view data, std::string_view id) {
  Bytes key;
  if (!TakeId(id, key)) return false;
  strings_.push_back({Bytes(TrimRightSpaces(id)), Bytes(data)});
  return true;
}

bool EVBResource::addLong(int32_t value, std::string_view id) {
  Bytes key;
  if (!TakeId(id, key)) return false;
  longs_.push_back({Bytes(TrimRightSpaces(id)), value});
  return true;
}

namespace {
void PutHeader(Bytes& out, std::string_view name, std::string_view author, size_t strings,
               size_t longs) {
  PutField(out, name);
  PutField(out, author);
  PutI32(out, static_cast<int32_t>(strings));
  PutI32(out, static_cast<int32_t>(longs));
  PutI32(out, 0);  // picture records
}

// A string record's ID and length; its data follows.
void PutStringHead(Bytes& out, std::string_view id, size_t size) {
  PutField(out, id);
  if (size <= static_cast<size_t>(std::numeric_limits<int16_t>::max())) {
    // The documented layout, byte for byte.
    PutI16(out, static_cast<int16_t>(size));
  } else {
    PutI16(out, EVBResource::kLongLengthMark);
    PutI32(out, static_cast<int32_t>(size));
  }
}
}  // namespace

Bytes EVBResource::saveToBytes() const {
  size_t size = kHeaderSize;
  for (const auto& s : strings_) size += kFieldSize + 6 + s.data.size();
  size += longs_.size() * (kFieldSize + 4);
  Bytes out;
  out.reserve(size);
  PutHeader(out, ResName, Author, strings_.size(), longs_.size());
  for (const auto& s : strings_) {
    PutStringHead(out, s.id, s.data.size());
    out += s.data;
  }
  for (const auto& l : longs_) {
    PutField(out, l.id);
    PutI32(out, l.value);
  }
  return out;
}

EVBResource::Writer::Writer(int32_t strings, const Put& put) : put_(put) {
  PutHeader(head_, {}, {}, static_cast<size_t>(strings), 0);
  put_(head_);
}

void EVBResource::Writer::addString(std::string_view data, std::string_view id) {
  head_.clear();
  PutStringHead(head_, TrimRightSpaces(id), data.size());
  put_(head_);
  put_(data);
}

bool EVBResource::loadFromBytes(std::string_view data) {
  *this = EVBResource();
  ViewSource source(data);
  return Walk(
      source,
      [&](std::string_view name, std::string_view author, int32_t strings) {
        ResName = Bytes(TrimRightSpaces(name));
        Author = Bytes(TrimRightSpaces(author));
        strings_.reserve(static_cast<size_t>(strings));
      },
      // A repeated (or empty) ID is ignored, as the format says.
      [&](std::string_view id, std::string_view text) { addString(text, id); },
      [&](std::string_view id, int32_t value) { addLong(value, id); });
}

bool EVBResource::readStrings(Source& data,
                              const std::function<void(const StringRecordView&)>& onString) {
  std::unordered_set<Bytes> keys;
  Bytes key;
  // Long records' IDs take their keys too, but they come after every string record.
  return Walk(
      data, [](std::string_view, std::string_view, int32_t) {},
      [&](std::string_view id, std::string_view text) {
        if (KeyOf(id, key) && keys.insert(key).second) onString({TrimRightSpaces(id), text});
      },
      [](std::string_view, int32_t) {});
}

bool EVBResource::readStrings(std::string_view data,
                              const std::function<void(const StringRecordView&)>& onString) {
  ViewSource source(data);
  return readStrings(source, onString);
}

}  // namespace mq
