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
  rc4.EncryptByte(text);  // every buffer starts a fresh key stream
  EXPECT_EQ(text, "Plaintext");
  // A key-stream row of the RFC 6229 tables (40-bit key, offset 240).
  rc4.KeyBytes(Hex({1, 2, 3, 4, 5}));
  EXPECT_EQ(KeyStream(rc4, 240, 16), Hex({0x28, 0xcb, 0x11, 0x32, 0xc9, 0x6c, 0xe2, 0x86, 0x42,
                                          0x1d, 0xca, 0xad, 0xb8, 0xb6, 0x9e, 0xae}));

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
  Bytes plain(1000, '\0');
  std::mt19937 rng(5);
  for (auto& c : plain) c = static_cast<char>(rng());
  // The mark is not encrypted; the key stream starts after it.
  Bytes sealed = plain, body = plain;
  rc4.ProtectInPlace(sealed);
  rc4.EncryptByte(body);
  EXPECT_EQ(sealed, "M2P\r" + body);
  Bytes opened = "untouched";
  ASSERT_TRUE(rc4.Unprotect(sealed, opened));
  EXPECT_EQ(opened, plain);
  ASSERT_TRUE(rc4.UnprotectInPlace(sealed));
  EXPECT_EQ(sealed, plain);
  for (const char* refused : {"M2L\rabc", "M2P", "", "m2p\rabc", "M2P\nabc"}) {
    Bytes out = "untouched", inPlace = refused;
    EXPECT_FALSE(rc4.Unprotect(refused, out) || rc4.UnprotectInPlace(inPlace)) << refused;
    EXPECT_EQ(out + "|" + inPlace, "untouched|" + Bytes(refused));
  }
}

}  // namespace
}  // namespace mq
