#include "listfiles/clsHuffman.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstddef>
#include <cstring>
#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace mq {

namespace {

constexpr char kMark0 = 'M', kMark1 = '2', kCompressed = 'L', kStored = 'U', kCR = 0x0D;
constexpr size_t kHeaderSize = 11;  // mark, checksum, length, value count

inline uint64_t Load64(const uint8_t* p) {
  uint64_t v;
  std::memcpy(&v, p, 8);
  if constexpr (std::endian::native == std::endian::big) v = __builtin_bswap64(v);
  return v;
}
inline void Store64(uint8_t* p, uint64_t v) {
  if constexpr (std::endian::native == std::endian::big) v = __builtin_bswap64(v);
  std::memcpy(p, &v, 8);
}

// ---- Encoder --------------------------------------------------------------------------

struct Code {
  uint64_t bits = 0;  // first (root) bit in bit 0, as the container packs them
  int length = 0;
};

// Builds the tree exactly as the format defines it (its tie-breaks decide every code) and
// returns each used value's code.
std::array<Code, 256> BuildCodes(const std::array<uint64_t, 256>& counts) {
  struct Node {
    int16_t parent = -1, left = -1, right = -1, value = -1;
    uint64_t weight = 0;
  };
  std::array<Node, clsHuffman::kMaxNodes> nodes;
  int count = 0;
  for (int v = 0; v < 256; ++v)
    if (counts[v]) nodes[count++] = Node{-1, -1, -1, static_cast<int16_t>(v), counts[v]};
  const int leaves = count;
  for (int round = 1; round < leaves; ++round) {
    int a = -1, b = -1;
    for (int i = 0; i < count; ++i) {
      if (nodes[i].parent != -1) continue;
      if (a < 0) { a = i; continue; }
      if (b < 0) { b = i; continue; }
      uint64_t w = nodes[i].weight, wa = nodes[a].weight, wb = nodes[b].weight;
      if (w < wa) {
        if (w < wb && wa < wb) b = i; else a = i;
      } else if (w < wb) {
        b = i;
      }
    }
    nodes[count] = Node{-1, static_cast<int16_t>(a), static_cast<int16_t>(b), -1,
                        nodes[a].weight + nodes[b].weight};
    nodes[a].parent = nodes[b].parent = static_cast<int16_t>(count);
    ++count;
  }
  std::array<Code, 256> codes{};
  // Depth-first from the root, left (bit 0) before right (bit 1).
  struct Visit { int node; Code path; };
  std::vector<Visit> stack{{count - 1, {}}};
  while (!stack.empty()) {
    Visit at = stack.back();
    stack.pop_back();
    const Node& n = nodes[at.node];
    if (n.value >= 0) { codes[n.value] = at.path; continue; }
    // Depth stays below 64 for any input the length field can describe (see Encode).
    Code right{at.path.bits | (uint64_t{1} << at.path.length), at.path.length + 1};
    Code left{at.path.bits, at.path.length + 1};
    stack.push_back({n.right, right});
    stack.push_back({n.left, left});
  }
  return codes;
}

// Appends codes LSB-first, carrying the unfinished byte from one piece to the next. Each
// step writes 8 bytes and advances by the whole bytes filled, so the destination needs 8
// bytes of slack.
struct Packer {
  uint8_t* out;
  uint64_t buf = 0;
  unsigned n = 0;

  void Put(const Code& c) {
    buf |= c.bits << n;
    n += static_cast<unsigned>(c.length);
    Flush();
  }
  void Flush() {
    Store64(out, buf);
    out += n >> 3;
    buf >>= (n & ~7u);
    n &= 7;
  }
  uint8_t* Finish() {
    if (n) *out++ = static_cast<uint8_t>(buf);
    return out;
  }
};

// PerFlush codes fit the 64-bit buffer together, beside the up to 7 bits carried over.
// Works on a copy of the packer: stores through the byte pointer could otherwise alias its
// fields and keep them out of registers.
template <int PerFlush>
void PackData(const uint8_t* in, const uint8_t* end, Packer& packer,
              const std::array<Code, 256>& codes) {
  Packer p = packer;
  while (end - in >= PerFlush) {
    for (int k = 0; k < PerFlush; ++k) {
      const Code& c = codes[in[k]];
      p.buf |= c.bits << p.n;
      p.n += static_cast<unsigned>(c.length);
    }
    in += PerFlush;
    p.Flush();
  }
  for (; in < end; ++in) p.Put(codes[*in]);
  packer = p;
}

// ---- Decoder --------------------------------------------------------------------------

// Lookup tables on the next 9 to 11 bits. A multi entry holds up to three whole symbols
// (as many as fit the table's width); a single entry holds the first only. bits 0 means the
// code is longer than the table (rare: the rarest values), and the first two bytes name the
// tree node where the table's bits end; node 0 (the root, never that deep) means the bits
// lead to a missing child. How many symbols a multi entry holds is kept beside the table.
constexpr int kTableBits = 11;
constexpr uint32_t kTableSize = 1u << kTableBits;

// Shorter data gets a narrower table, which is cheaper to build than it would pay back.
int TableBitsFor(int32_t length) {
  return length >= 24 * 1024 ? 11 : length >= 6 * 1024 ? 10 : 9;
}

struct Entry {
  uint8_t symbols[3];
  uint8_t bits;  // bits used by all of them
};
static_assert(sizeof(Entry) == 4);

struct Tables {
  std::array<Entry, kTableSize> single;
  std::array<Entry, kTableSize> multi;
  std::array<uint8_t, kTableSize> count;
};

struct Tree {
  std::array<std::array<int16_t, 2>, clsHuffman::kMaxNodes> child;
  std::array<int16_t, clsHuffman::kMaxNodes> value;
  int count = 1;
};

class BitSource {
 public:
  BitSource(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  uint64_t TotalBits() const { return uint64_t{size_} * 8; }
  // Bits past the end read as 0; callers compare lengths with TotalBits.
  uint32_t Peek(uint64_t pos, uint32_t mask) const {
    uint32_t v = 0;
    size_t byte = static_cast<size_t>(pos >> 3);
    for (int k = 0; k < 3; ++k)
      if (byte + k < size_) v |= uint32_t{data_[byte + k]} << (8 * k);
    return (v >> (pos & 7)) & mask;
  }
  int Bit(uint64_t pos) const { return (data_[pos >> 3] >> (pos & 7)) & 1; }

 private:
  const uint8_t* data_;
  size_t size_;
};

void FillSingle(const Tree& t, int node, int depth, uint32_t path, int width, Tables& tables) {
  if (t.value[node] >= 0) {
    const Entry e{{static_cast<uint8_t>(t.value[node]), 0, 0}, static_cast<uint8_t>(depth)};
    for (uint32_t i = path; i < (1u << width); i += 1u << depth) tables.single[i] = e;
    return;
  }
  if (depth == width) {  // longer code: the walk goes on from this node
    const auto low = static_cast<uint8_t>(node), high = static_cast<uint8_t>(node >> 8);
    tables.single[path] = Entry{{low, high, 0}, 0};
    return;
  }
  for (int bit = 0; bit < 2; ++bit)
    if (t.child[node][bit] >= 0)
      FillSingle(t, t.child[node][bit], depth + 1, path | (uint32_t(bit) << depth), width,
                 tables);
}

void BuildTables(const Tree& t, int width, Tables& tables) {
  const uint32_t size = 1u << width;
  std::fill_n(tables.single.begin(), size, Entry{{0, 0, 0}, 0});
  FillSingle(t, 0, 0, 0, width, tables);
  // Branch-free: the next symbol is taken only when it is whole within the table's width.
  // A bits-0 first entry makes every step fail (i >> 0 finds the same bits-0 entry).
  for (uint32_t i = 0; i < size; ++i) {
    const Entry first = tables.single[i];
    const uint32_t b1 = first.bits;
    const Entry second = tables.single[i >> b1];
    const uint32_t take2 = (b1 != 0) & (second.bits != 0) & (b1 + second.bits <= uint32_t(width));
    const uint32_t b2 = b1 + (take2 ? second.bits : 0u);
    const Entry third = tables.single[i >> b2];
    const uint32_t take3 = take2 & (third.bits != 0) & (b2 + third.bits <= uint32_t(width));
    const uint32_t b3 = b2 + (take3 ? third.bits : 0u);
    const Entry multi{{first.symbols[0], second.symbols[0], third.symbols[0]},
                      static_cast<uint8_t>(b3)};
    tables.multi[i] = b1 ? multi : first;  // a long code keeps its node
    tables.count[i] = static_cast<uint8_t>((b1 != 0) + take2 + take3);
  }
}

int NodeOf(const Entry& e) { return e.symbols[0] | e.symbols[1] << 8; }

// Finishes a code longer than the table: skips the table's bits to the node the entry names
// and walks on bit by bit. -1 when the data ends first or a child is missing.
int WalkTree(const Tree& t, const BitSource& src, const Entry& e, int width, uint64_t& pos) {
  int node = NodeOf(e);
  const uint64_t total = src.TotalBits();
  if (node == 0 || pos + static_cast<uint64_t>(width) > total) return -1;
  pos += static_cast<uint64_t>(width);
  while (t.value[node] < 0) {
    if (pos >= total) return -1;
    node = t.child[node][src.Bit(pos++)];
    if (node < 0) return -1;
  }
  return t.value[node];
}

// Decodes the symbols for [out, outEnd) from bit pos on, and leaves pos after them.
bool DecodeData(const Tree& t, const Tables& tables, int width, const uint8_t* data,
                size_t size, uint64_t& pos, uint8_t* out, uint8_t* outEnd) {
  const uint32_t mask = (1u << width) - 1;
  const Entry* multi = tables.multi.data();
  const uint8_t* count = tables.count.data();
  const BitSource src(data, size);
  const uint8_t* const inEnd = data + size;
  // The buffer starts at bit pos with its byte's remaining bits. (Kept in locals: stores
  // through out could alias the caller's position.)
  const uint8_t* in = data + (pos >> 3);
  uint64_t bits = 0;
  unsigned avail = 0;
  if ((pos & 7) != 0) {  // then in is inside the data: pos never passes its end
    bits = *in++ >> (pos & 7);
    avail = 8 - static_cast<unsigned>(pos & 7);
  }
  // Fast loop. A refill loads eight bytes whose address was known since the previous one
  // and leaves at least 56 bits buffered: enough for five entries of at most 11 bits. Each
  // entry stores four bytes and keeps up to three, so sixteen bytes of room are needed.
  uint8_t* const outLimit = outEnd - std::min<ptrdiff_t>(outEnd - out, 16);
  while (inEnd - in >= 8 && out < outLimit) {
    bits |= Load64(in) << avail;
    in += (63 - avail) >> 3;
    avail |= 56;
    for (int k = 0; k < 5; ++k) {
      const uint32_t index = bits & mask;
      std::memcpy(out, &multi[index], 4);
      out += count[index];
      const unsigned used = multi[index].bits;
      bits >>= used;
      avail -= used;
    }    // A bits-0 entry uses no bits, so once hit it repeats to the end of the group and is
    // found here. Fewer than 11 buffered bits may remain, so the index can be a false
    // alarm; the slow path reads the data again.
    if (multi[bits & mask].bits == 0) {
      uint64_t at = static_cast<uint64_t>(in - data) * 8 - avail;
      const Entry& e = tables.single[src.Peek(at, mask)];
      if (e.bits == 0) {
        const int v = WalkTree(t, src, e, width, at);
        if (v < 0) return false;
        *out++ = static_cast<uint8_t>(v);
        // Restart the buffer at the new position.
        in = data + (at >> 3);
        bits = 0;
        avail = 0;
        if (in < inEnd) {
          bits = *in++ >> (at & 7);
          avail = 8 - static_cast<unsigned>(at & 7);
        }
      }
    }
  }
  uint64_t at = static_cast<uint64_t>(in - data) * 8 - avail;
  // Tail: one symbol at a time with every bound checked.
  const uint64_t total = src.TotalBits();
  while (out < outEnd) {
    const Entry e = tables.single[src.Peek(at, mask)];
    if (e.bits == 0) {
      const int v = WalkTree(t, src, e, width, at);
      if (v < 0) return false;
      *out++ = static_cast<uint8_t>(v);
      continue;
    }
    if (at + e.bits > total) return false;
    *out++ = e.symbols[0];
    at += e.bits;
  }
  pos = at;
  return true;
}

uint8_t XorAll(const uint8_t* p, size_t n) {
  uint64_t acc = 0;
  size_t i = 0;
  for (; i + 8 <= n; i += 8) acc ^= Load64(p + i);
  for (; i < n; ++i) acc ^= p[i];
  acc ^= acc >> 32;
  acc ^= acc >> 16;
  acc ^= acc >> 8;
  return static_cast<uint8_t>(acc);
}

}  // namespace

Bytes clsHuffman::Encode(std::string_view input) {
  return Encode([input](const Put& put) { put(input); });
}

Bytes clsHuffman::Encode(const Pieces& pieces) {
  // Four interleaved histograms keep the counting pass free of store-to-load stalls.
  std::array<std::array<uint32_t, 256>, 4> h{};
  uint64_t n = 0;
  pieces([&](std::string_view piece) {
    const auto* in = reinterpret_cast<const uint8_t*>(piece.data());
    const size_t size = piece.size();
    size_t i = 0;
    for (; i + 4 <= size; i += 4) {
      ++h[0][in[i]];
      ++h[1][in[i + 1]];
      ++h[2][in[i + 2]];
      ++h[3][in[i + 3]];
    }
    for (; i < size; ++i) ++h[0][in[i]];
    n += size;
  });
  auto stored = [&] {
    Bytes out;
    out.reserve(4 + n);
    out += {kMark0, kMark1, kStored, kCR};
    pieces([&](std::string_view piece) { out += piece; });
    return out;
  };
  // The length field is signed 32-bit; anything longer can only be stored. This bound
  // also keeps every code under 46 bits (a leaf at depth d needs a total weight of at
  // least the (d+2)-th Fibonacci number), so a code always fits the 64-bit packer.
  if (n == 0 || n > static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) return stored();

  std::array<uint64_t, 256> counts{};
  int used = 0;
  uint8_t checksum = 0;
  for (int v = 0; v < 256; ++v) {
    counts[v] = uint64_t{h[0][v]} + h[1][v] + h[2][v] + h[3][v];
    if (counts[v]) ++used;
    if (counts[v] & 1) checksum ^= static_cast<uint8_t>(v);  // XOR of all bytes
  }
  if (used < 2) return stored();

  const std::array<Code, 256> codes = BuildCodes(counts);
  uint64_t dataBits = 0, codeBits = 0;
  int maxLength = 0;
  for (int v = 0; v < 256; ++v) {
    if (!counts[v]) continue;
    dataBits += counts[v] * static_cast<uint64_t>(codes[v].length);
    codeBits += static_cast<uint64_t>(codes[v].length);
    if (codes[v].length > maxLength) maxLength = codes[v].length;
  }
  const uint64_t dataBytes = (dataBits + 7) / 8;
  if (dataBytes > n || maxLength > 56) return stored();

  const size_t tableBytes = static_cast<size_t>(2 * used);
  const size_t codeBytes = static_cast<size_t>((codeBits + 7) / 8);
  const size_t total = kHeaderSize + tableBytes + codeBytes + static_cast<size_t>(dataBytes);
  Bytes out(total + 8, '\0');  // slack for the packer's 8-byte stores
  auto* o = reinterpret_cast<uint8_t*>(out.data());
  o[0] = kMark0; o[1] = kMark1; o[2] = kCompressed; o[3] = kCR;
  o[4] = checksum;
  const auto length = static_cast<uint32_t>(n);
  for (int k = 0; k < 4; ++k) o[5 + k] = static_cast<uint8_t>(length >> (8 * k));
  o[9] = static_cast<uint8_t>(used);
  o[10] = static_cast<uint8_t>(used >> 8);
  uint8_t* p = o + kHeaderSize;
  for (int v = 0; v < 256; ++v) {
    if (!counts[v]) continue;
    *p++ = static_cast<uint8_t>(v);
    *p++ = static_cast<uint8_t>(codes[v].length);
  }
  // The codes of the used values, ascending, packed continuously; the data starts on the
  // next whole byte.
  Packer packer{p};
  for (int v = 0; v < 256; ++v)
    if (counts[v]) packer.Put(codes[v]);
  Packer data{packer.Finish()};
  // With up to 7 bits carried over, PerFlush codes of at most L bits need 7 + PerFlush * L
  // <= 64.
  pieces([&](std::string_view piece) {
    const auto* in = reinterpret_cast<const uint8_t*>(piece.data());
    const uint8_t* end = in + piece.size();
    if (maxLength <= 14) PackData<4>(in, end, data, codes);
    else if (maxLength <= 18) PackData<3>(in, end, data, codes);
    else if (maxLength <= 28) PackData<2>(in, end, data, codes);
    else PackData<1>(in, end, data, codes);
  });
  data.Finish();
  out.resize(total);
  return out;
}

struct clsHuffman::Reader::Coded {
  Tree tree;
  Tables tables;
  int width = 0;
  uint8_t checksum = 0;  // as the container gives it
};

clsHuffman::Reader::Reader() = default;
clsHuffman::Reader::~Reader() = default;

bool clsHuffman::Reader::Open(std::string_view container) {
  coded_.reset();
  data_ = {};
  pos_ = 0;
  left_ = 0;
  xor_ = 0;
  const auto* c = reinterpret_cast<const uint8_t*>(container.data());
  const size_t size = container.size();
  if (size < 4 || c[0] != kMark0 || c[1] != kMark1 || c[3] != kCR) return false;
  if (c[2] == kStored) {
    data_ = container.substr(4);
    left_ = data_.size();
    return true;
  }
  if (c[2] != kCompressed || size < kHeaderSize) return false;

  const uint8_t checksum = c[4];
  const auto length = static_cast<int32_t>(uint32_t{c[5]} | uint32_t{c[6]} << 8 |
                                           uint32_t{c[7]} << 16 | uint32_t{c[8]} << 24);
  const auto used = static_cast<int16_t>(c[9] | c[10] << 8);
  if (length <= 0 || used < 1 || used > 256) return false;
  const size_t tableEnd = kHeaderSize + 2 * static_cast<size_t>(used);
  if (size < tableEnd) return false;

  uint64_t codeBits = 0;
  for (int k = 0; k < used; ++k) {
    const uint8_t value = c[kHeaderSize + 2 * k], bitsLong = c[kHeaderSize + 2 * k + 1];
    if (bitsLong == 0) return false;
    // Values come in ascending order; anything else is a damaged table.
    if (k > 0 && value <= c[kHeaderSize + 2 * (k - 1)]) return false;
    codeBits += bitsLong;
  }
  const size_t codeEnd = tableEnd + static_cast<size_t>((codeBits + 7) / 8);
  if (size < codeEnd) return false;

  // Rebuild the tree from the codes, refusing anything that is not a prefix code.
  // Default-initialised: the tables are filled below, zeroing them first would be wasted.
  std::unique_ptr<Coded> coded(new Coded);
  Tree& tree = coded->tree;
  for (auto& ch : tree.child) ch = {-1, -1};
  tree.value.fill(-1);
  const BitSource codeSrc(c + tableEnd, codeEnd - tableEnd);
  uint64_t bitPos = 0;
  for (int k = 0; k < used; ++k) {
    const int len = c[kHeaderSize + 2 * k + 1];
    int node = 0;
    for (int step = 0; step < len; ++step) {
      if (tree.value[node] >= 0) return false;  // passes through another value's leaf
      const int bit = codeSrc.Bit(bitPos++);
      if (tree.child[node][bit] < 0) {
        if (tree.count == kMaxNodes) return false;
        tree.child[node][bit] = static_cast<int16_t>(tree.count++);
      }
      node = tree.child[node][bit];
    }
    if (tree.value[node] >= 0 || tree.child[node][0] >= 0 || tree.child[node][1] >= 0)
      return false;  // same code twice, or a code that is a prefix of an earlier one
    tree.value[node] = c[kHeaderSize + 2 * k];
  }

  // Every code is at least one bit long, so a length beyond the data's bits is damaged;
  // checking it first also keeps a forged length from allocating gigabytes.
  const size_t dataSize = size - codeEnd;
  if (static_cast<uint64_t>(length) > uint64_t{dataSize} * 8) return false;
  coded->width = TableBitsFor(length);
  coded->checksum = checksum;
  BuildTables(tree, coded->width, coded->tables);
  coded_ = std::move(coded);
  data_ = container.substr(codeEnd);
  left_ = static_cast<size_t>(length);
  return true;
}

bool clsHuffman::Reader::Read(char* out, size_t n) {
  if (n > left_) return false;
  auto* o = reinterpret_cast<uint8_t*>(out);
  if (!coded_) {
    std::memcpy(o, data_.data() + pos_, n);
    pos_ += n;
  } else {
    if (!DecodeData(coded_->tree, coded_->tables, coded_->width,
                    reinterpret_cast<const uint8_t*>(data_.data()), data_.size(), pos_, o,
                    o + n))
      return false;
    xor_ ^= XorAll(o, n);
  }
  left_ -= n;
  return true;
}

bool clsHuffman::Reader::Finish() {
  // Whatever the caller did not need still takes part in the checksum.
  char rest[4096];
  while (left_ > 0)
    if (!Read(rest, std::min(left_, sizeof rest))) return false;
  return !coded_ || xor_ == coded_->checksum;
}

bool clsHuffman::Decode(std::string_view container, Bytes& out) {
  Reader reader;
  if (!reader.Open(container)) return false;
  Bytes result(reader.Left(), '\0');
  if (!reader.Read(result.data(), result.size()) || !reader.Finish()) return false;
  out = std::move(result);
  return true;
}

}  // namespace mq
