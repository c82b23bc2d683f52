#include "ui/Png.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <queue>
#include <utility>
#include <vector>

namespace mq::png {

namespace {

constexpr int kWindow = 32768;
constexpr int kMinMatch = 3;
constexpr int kMaxMatch = 258;
constexpr int kMaxChain = 256;  // enough for icons; longer chains gain almost nothing

constexpr std::array<uint16_t, 29> kLengthBase = {3,  4,  5,  6,  7,  8,  9,  10,  11,  13,
                                                  15, 17, 19, 23, 27, 31, 35, 43,  51,  59,
                                                  67, 83, 99, 115, 131, 163, 195, 227, 258};
constexpr std::array<uint8_t, 29> kLengthExtra = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                                  2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr std::array<uint16_t, 30> kDistBase = {1,    2,    3,    4,     5,     7,     9,    13,
                                                17,   25,   33,   49,    65,    97,    129,  193,
                                                257,  385,  513,  769,   1025,  1537,  2049, 3073,
                                                4097, 6145, 8193, 12289, 16385, 24577};
constexpr std::array<uint8_t, 30> kDistExtra = {0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                                6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};
// The order in which the code-length code's own lengths are sent.
constexpr std::array<uint8_t, 19> kCodeLengthOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                      11, 4,  12, 3, 13, 2, 14, 1, 15};

// One LZ77 token: a literal byte (distance 0) or a match of `value` bytes `distance` back.
struct Token {
  uint16_t value;
  uint16_t distance;
};

// The largest index whose base is at most `v`.
template <size_t N>
int CodeOf(const std::array<uint16_t, N>& base, unsigned v) {
  return static_cast<int>(std::upper_bound(base.begin(), base.end(), v) - base.begin()) - 1;
}

std::vector<Token> FindMatches(std::string_view data) {
  const auto* d = reinterpret_cast<const uint8_t*>(data.data());
  const size_t n = data.size();
  std::vector<int32_t> head(kWindow, -1), prev(kWindow, -1);
  size_t inserted = 0;
  auto hash = [&](size_t i) { return ((d[i] << 10) ^ (d[i + 1] << 5) ^ d[i + 2]) & (kWindow - 1); };
  auto insertUpTo = [&](size_t end) {
    for (; inserted < end; ++inserted) {
      if (inserted + kMinMatch > n) continue;
      const unsigned h = hash(inserted);
      prev[inserted & (kWindow - 1)] = head[h];
      head[h] = static_cast<int32_t>(inserted);
    }
  };
  // The longest earlier match for position i (only positions before i are in the chains).
  auto find = [&](size_t i) -> std::pair<int, int> {
    if (i + kMinMatch > n) return {0, 0};
    const size_t limit = std::min<size_t>(kMaxMatch, n - i);
    int bestLength = 0, bestDistance = 0;
    int32_t p = head[hash(i)];
    for (int chain = 0; p >= 0 && chain < kMaxChain; ++chain) {
      const size_t distance = i - static_cast<size_t>(p);
      if (distance > kWindow) break;
      size_t length = 0;
      while (length < limit && d[p + length] == d[i + length]) ++length;
      if (static_cast<int>(length) > bestLength) {
        bestLength = static_cast<int>(length);
        bestDistance = static_cast<int>(distance);
        if (length == limit) break;
      }
      p = prev[p & (kWindow - 1)];
    }
    return bestLength >= kMinMatch ? std::pair{bestLength, bestDistance} : std::pair{0, 0};
  };

  std::vector<Token> tokens;
  size_t i = 0;
  while (i < n) {
    insertUpTo(i);
    auto [length, distance] = find(i);
    if (length && length < kMaxMatch && i + 1 < n) {
      // Lazy matching: a longer match one byte on is worth a literal here.
      insertUpTo(i + 1);
      if (find(i + 1).first > length) {
        tokens.push_back({d[i], 0});
        ++i;
        continue;
      }
    }
    if (length) {
      tokens.push_back({static_cast<uint16_t>(length), static_cast<uint16_t>(distance)});
      i += static_cast<size_t>(length);
    } else {
      tokens.push_back({d[i], 0});
      ++i;
    }
  }
  return tokens;
}

// Huffman code lengths for the frequencies, none longer than maxBits. At least two symbols
// get a code, so the code is always complete (a lone symbol gets a partner).
std::vector<uint8_t> CodeLengths(std::vector<uint32_t> freq, int maxBits) {
  int used = static_cast<int>(std::count_if(freq.begin(), freq.end(), [](uint32_t f) { return f; }));
  for (size_t s = 0; used < 2 && s < freq.size(); ++s)
    if (!freq[s]) freq[s] = 1, ++used;
  for (;;) {
    std::vector<int> parent;
    std::vector<int> leafOf(freq.size(), -1);
    using Item = std::pair<uint64_t, int>;  // weight, node; ties go to the older node
    std::priority_queue<Item, std::vector<Item>, std::greater<>> queue;
    for (size_t s = 0; s < freq.size(); ++s) {
      if (!freq[s]) continue;
      leafOf[s] = static_cast<int>(parent.size());
      queue.push({freq[s], static_cast<int>(parent.size())});
      parent.push_back(-1);
    }
    while (queue.size() > 1) {
      auto [wa, a] = queue.top();
      queue.pop();
      auto [wb, b] = queue.top();
      queue.pop();
      const int node = static_cast<int>(parent.size());
      parent.push_back(-1);
      parent[a] = parent[b] = node;
      queue.push({wa + wb, node});
    }
    // Parents come after their children, so one pass from the root down gives every depth.
    std::vector<int> depth(parent.size(), 0);
    for (int node = static_cast<int>(parent.size()) - 2; node >= 0; --node)
      depth[node] = depth[parent[node]] + 1;
    std::vector<uint8_t> lengths(freq.size(), 0);
    int longest = 0;
    for (size_t s = 0; s < freq.size(); ++s) {
      if (leafOf[s] < 0) continue;
      lengths[s] = static_cast<uint8_t>(depth[leafOf[s]]);
      longest = std::max(longest, depth[leafOf[s]]);
    }
    if (longest <= maxBits) return lengths;
    // Too deep: flatten the frequencies and build again.
    for (auto& f : freq)
      if (f) f = f / 2 + 1;
  }
}

// Canonical codes for the lengths, bit-reversed for the LSB-first bit stream.
std::vector<uint16_t> CanonicalCodes(const std::vector<uint8_t>& lengths) {
  std::array<int, 16> count{};
  for (uint8_t l : lengths)
    if (l) ++count[l];
  std::array<int, 16> next{};
  int code = 0;
  for (int bits = 1; bits < 16; ++bits) {
    code = (code + count[bits - 1]) << 1;
    next[bits] = code;
  }
  std::vector<uint16_t> codes(lengths.size(), 0);
  for (size_t s = 0; s < lengths.size(); ++s) {
    const int l = lengths[s];
    if (!l) continue;
    int c = next[l]++, reversed = 0;
    for (int b = 0; b < l; ++b) reversed |= ((c >> b) & 1) << (l - 1 - b);
    codes[s] = static_cast<uint16_t>(reversed);
  }
  return codes;
}

class BitWriter {
 public:
  void Put(uint32_t bits, int count) {
    buffer_ |= static_cast<uint64_t>(bits) << used_;
    used_ += count;
    while (used_ >= 8) {
      out_.push_back(static_cast<char>(buffer_ & 0xFF));
      buffer_ >>= 8;
      used_ -= 8;
    }
  }
  void Align() {
    if (used_) Put(0, 8 - used_);
  }
  void Bytes(std::string_view bytes) { out_.append(bytes); }
  std::string& Out() { return out_; }

 private:
  std::string out_;
  uint64_t buffer_ = 0;
  int used_ = 0;
};

// The code-length alphabet's run-length form of the concatenated lengths: (symbol, extra).
std::vector<std::pair<uint8_t, uint8_t>> RunLengths(const std::vector<uint8_t>& lengths) {
  std::vector<std::pair<uint8_t, uint8_t>> out;
  for (size_t i = 0; i < lengths.size();) {
    const uint8_t v = lengths[i];
    size_t run = 1;
    while (i + run < lengths.size() && lengths[i + run] == v) ++run;
    i += run;
    if (v == 0) {
      while (run >= 11) {
        const size_t take = std::min<size_t>(run, 138);
        out.push_back({18, static_cast<uint8_t>(take - 11)});
        run -= take;
      }
      if (run >= 3) {
        out.push_back({17, static_cast<uint8_t>(run - 3)});
        run = 0;
      }
      for (; run; --run) out.push_back({0, 0});
    } else {
      out.push_back({v, 0});
      --run;
      while (run >= 3) {
        const size_t take = std::min<size_t>(run, 6);
        out.push_back({16, static_cast<uint8_t>(take - 3)});
        run -= take;
      }
      for (; run; --run) out.push_back({v, 0});
    }
  }
  return out;
}

void WriteDynamicBlock(BitWriter& bits, const std::vector<Token>& tokens) {
  std::vector<uint32_t> litFreq(286, 0), distFreq(30, 0);
  for (const Token& t : tokens) {
    if (!t.distance) {
      ++litFreq[t.value];
    } else {
      ++litFreq[257 + CodeOf(kLengthBase, t.value)];
      ++distFreq[CodeOf(kDistBase, t.distance)];
    }
  }
  litFreq[256] = 1;  // end of block
  const auto litLengths = CodeLengths(litFreq, 15);
  const auto distLengths = CodeLengths(distFreq, 15);
  const auto litCodes = CanonicalCodes(litLengths);
  const auto distCodes = CanonicalCodes(distLengths);

  size_t litCount = 286, distCount = 30;
  while (litCount > 257 && !litLengths[litCount - 1]) --litCount;
  while (distCount > 1 && !distLengths[distCount - 1]) --distCount;
  std::vector<uint8_t> all(litLengths.begin(), litLengths.begin() + litCount);
  all.insert(all.end(), distLengths.begin(), distLengths.begin() + distCount);
  const auto runs = RunLengths(all);
  std::vector<uint32_t> clFreq(19, 0);
  for (const auto& r : runs) ++clFreq[r.first];
  const auto clLengths = CodeLengths(clFreq, 7);
  const auto clCodes = CanonicalCodes(clLengths);
  size_t clCount = 19;
  while (clCount > 4 && !clLengths[kCodeLengthOrder[clCount - 1]]) --clCount;

  bits.Put(1, 1);  // the last block
  bits.Put(2, 2);  // dynamic Huffman codes
  bits.Put(static_cast<uint32_t>(litCount - 257), 5);
  bits.Put(static_cast<uint32_t>(distCount - 1), 5);
  bits.Put(static_cast<uint32_t>(clCount - 4), 4);
  for (size_t i = 0; i < clCount; ++i) bits.Put(clLengths[kCodeLengthOrder[i]], 3);
  static constexpr int kRunExtraBits[3] = {2, 3, 7};
  for (const auto& [symbol, extra] : runs) {
    bits.Put(clCodes[symbol], clLengths[symbol]);
    if (symbol >= 16) bits.Put(extra, kRunExtraBits[symbol - 16]);
  }
  for (const Token& t : tokens) {
    if (!t.distance) {
      bits.Put(litCodes[t.value], litLengths[t.value]);
      continue;
    }
    const int lc = CodeOf(kLengthBase, t.value);
    bits.Put(litCodes[257 + lc], litLengths[257 + lc]);
    bits.Put(t.value - kLengthBase[lc], kLengthExtra[lc]);
    const int dc = CodeOf(kDistBase, t.distance);
    bits.Put(distCodes[dc], distLengths[dc]);
    bits.Put(t.distance - kDistBase[dc], kDistExtra[dc]);
  }
  bits.Put(litCodes[256], litLengths[256]);
}

void WriteStoredBlocks(BitWriter& bits, std::string_view data) {
  size_t at = 0;
  do {
    const size_t take = std::min<size_t>(data.size() - at, 65535);
    const bool last = at + take == data.size();
    bits.Put(last ? 1 : 0, 1);
    bits.Put(0, 2);
    bits.Align();
    bits.Put(static_cast<uint32_t>(take), 16);
    bits.Put(static_cast<uint32_t>(~take & 0xFFFF), 16);
    bits.Bytes(data.substr(at, take));
    at += take;
  } while (at < data.size());
}

void PutBigEndian32(std::string& out, uint32_t v) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<char>((v >> shift) & 0xFF));
}

void PutChunk(std::string& out, const char* type, std::string_view data) {
  PutBigEndian32(out, static_cast<uint32_t>(data.size()));
  std::string body(type, 4);
  body.append(data);
  out += body;
  PutBigEndian32(out, Crc32(body));
}

uint8_t Paeth(int a, int b, int c) {
  const int p = a + b - c, pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
  if (pa <= pb && pa <= pc) return static_cast<uint8_t>(a);
  return static_cast<uint8_t>(pb <= pc ? b : c);
}

}  // namespace

uint32_t Crc32(std::string_view data) {
  static const auto table = [] {
    std::array<uint32_t, 256> t{};
    for (uint32_t n = 0; n < 256; ++n) {
      uint32_t c = n;
      for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
      t[n] = c;
    }
    return t;
  }();
  uint32_t c = 0xFFFFFFFFu;
  for (unsigned char b : data) c = table[(c ^ b) & 0xFF] ^ (c >> 8);
  return c ^ 0xFFFFFFFFu;
}

uint32_t Adler32(std::string_view data) {
  constexpr uint32_t kMod = 65521;
  uint32_t a = 1, b = 0;
  for (size_t at = 0; at < data.size();) {
    // 5552 bytes is the most that cannot overflow 32 bits before the modulo.
    const size_t end = std::min(data.size(), at + 5552);
    for (; at < end; ++at) {
      a += static_cast<unsigned char>(data[at]);
      b += a;
    }
    a %= kMod;
    b %= kMod;
  }
  return (b << 16) | a;
}

std::string ZlibCompress(std::string_view data) {
  BitWriter dynamic;
  WriteDynamicBlock(dynamic, FindMatches(data));
  dynamic.Align();
  const size_t storedSize = data.size() + 5 * std::max<size_t>(1, (data.size() + 65534) / 65535);
  std::string out = "\x78\x9C";  // deflate, 32 KB window, default level; a multiple of 31
  if (dynamic.Out().size() <= storedSize) {
    out += dynamic.Out();
  } else {
    BitWriter stored;
    WriteStoredBlocks(stored, data);
    out += stored.Out();
  }
  PutBigEndian32(out, Adler32(data));
  return out;
}

std::string EncodePng(const art::Image& image) {
  const size_t stride = static_cast<size_t>(image.width) * 4;
  std::string raw;
  raw.reserve((stride + 1) * static_cast<size_t>(image.height));
  std::vector<uint8_t> above(stride, 0), best, trial(stride);
  for (int y = 0; y < image.height; ++y) {
    const uint8_t* row = image.rgba.data() + static_cast<size_t>(y) * stride;
    long bestScore = -1;
    int bestFilter = 0;
    for (int filter = 0; filter < 5; ++filter) {
      long score = 0;
      for (size_t i = 0; i < stride; ++i) {
        const int a = i >= 4 ? row[i - 4] : 0, b = above[i], c = i >= 4 ? above[i - 4] : 0;
        int predicted = 0;
        switch (filter) {
          case 1: predicted = a; break;
          case 2: predicted = b; break;
          case 3: predicted = (a + b) / 2; break;
          case 4: predicted = Paeth(a, b, c); break;
          default: break;
        }
        trial[i] = static_cast<uint8_t>(row[i] - predicted);
        score += std::abs(static_cast<int8_t>(trial[i]));
      }
      if (bestScore < 0 || score < bestScore) {
        bestScore = score;
        bestFilter = filter;
        best = trial;
      }
    }
    raw.push_back(static_cast<char>(bestFilter));
    raw.append(reinterpret_cast<const char*>(best.data()), stride);
    above.assign(row, row + stride);
  }

  std::string out = "\x89PNG\r\n\x1a\n";
  std::string header;
  PutBigEndian32(header, static_cast<uint32_t>(image.width));
  PutBigEndian32(header, static_cast<uint32_t>(image.height));
  header += std::string("\x08\x06\x00\x00\x00", 5);  // 8 bits, RGBA, deflate, adaptive, none
  PutChunk(out, "IHDR", header);
  PutChunk(out, "IDAT", ZlibCompress(raw));
  PutChunk(out, "IEND", "");
  return out;
}

}  // namespace mq::png
