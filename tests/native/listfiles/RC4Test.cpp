#include "listfiles/clsRC4.h"

#include <gtest/gtest.h>

#include <random>

namespace mq {
namespace {

Bytes Hex(std::initializer_list<int> bytes) {
  Bytes out;
  for (int b : bytes) out.push_back(static_cast<char>(b));
  return out;
}

Bytes KeyStream(const clsRC4& rc4, size_t offset, size_t count) {
  Bytes zeros(offset + count, '\0');
  rc4.EncryptByte(zeros);
  return zeros.substr(offset);
}

TEST(RC4, PublishedVectorsAndTheAnsiKey) {
  const Windows1252 cp;
  clsRC4 rc4;
  rc4.Key(u"Key", cp);
  Bytes text = "Plaintext";
  rc4.EncryptByte(text);
  EXPECT_EQ(text, Hex({0xBB, 0xF3, 0x16, 0xE8, 0xD9, 0x40, 0xAF, 0x0A, 0xD3}));
  rc4.DecryptByte(text);  // every buffer starts a fresh key stream
  EXPECT_EQ(text, "Plaintext");

  // Key-stream rows of the RFC 6229 tables (40-bit and 128-bit keys).
  rc4.KeyBytes(Hex({1, 2, 3, 4, 5}));
  EXPECT_EQ(KeyStream(rc4, 0, 16), Hex({0xb2, 0x39, 0x63, 0x05, 0xf0, 0x3d, 0xc0, 0x27, 0xcc,
                                        0xc3, 0x52, 0x4a, 0x0a, 0x11, 0x18, 0xa8}));
  EXPECT_EQ(KeyStream(rc4, 240, 16), Hex({0x28, 0xcb, 0x11, 0x32, 0xc9, 0x6c, 0xe2, 0x86, 0x42,
                                          0x1d, 0xca, 0xad, 0xb8, 0xb6, 0x9e, 0xae}));
  rc4.KeyBytes(Hex({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
  EXPECT_EQ(KeyStream(rc4, 16, 16), Hex({0x52, 0x48, 0xc4, 0x95, 0x90, 0x14, 0x12, 0x6a, 0x6e,
                                         0x8a, 0x84, 0xf1, 0x1d, 0x1a, 0x9e, 0x1c}));

  // The key is the password's ANSI bytes; a character the code page lacks becomes "?".
  clsRC4 fromText, fromBytes;
  fromText.Key(u"caf\u00E9 \u20AC", cp);
  fromBytes.KeyBytes("caf\xE9 \x80");
  EXPECT_EQ(KeyStream(fromText, 0, 64), KeyStream(fromBytes, 0, 64));
  fromText.Key(u"\u03A9x", cp);
  fromBytes.KeyBytes("?x");
  EXPECT_EQ(KeyStream(fromText, 0, 64), KeyStream(fromBytes, 0, 64));
  fromBytes.KeyBytes("Wx");
  EXPECT_NE(KeyStream(fromText, 0, 64), KeyStream(fromBytes, 0, 64));
}

TEST(RC4, ProtectedEnvelope) {
  const Windows1252 cp;
  clsRC4 rc4;
  rc4.Key(u"secret", cp);
  EXPECT_EQ(rc4.Protect(""), "M2P\r");
  std::mt19937 rng(5);
  for (size_t size : {0u, 1u, 255u, 256u, 257u, 100000u}) {
    Bytes plain(size, '\0');
    for (auto& c : plain) c = static_cast<char>(rng());
    Bytes sealed = rc4.Protect(plain);
    // The header is not encrypted; the stream starts after it.
    Bytes body = sealed.substr(4);
    rc4.EncryptByte(body);
    EXPECT_EQ(sealed.substr(0, 4) + body, "M2P\r" + plain);
    Bytes opened = "untouched";
    ASSERT_TRUE(rc4.Unprotect(sealed, opened));
    EXPECT_EQ(opened, plain);
  }
  for (const char* refused : {"M2L\rabc", "M2P", "", "m2p\rabc", "M2P\nabc"}) {
    Bytes out = "untouched";
    EXPECT_FALSE(rc4.Unprotect(refused, out)) << refused;
    EXPECT_EQ(out, "untouched");
  }
}

}  // namespace
}  // namespace mq
