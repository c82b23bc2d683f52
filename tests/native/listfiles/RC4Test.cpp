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

Bytes KeyStream(std::string_view key, size_t offset, size_t count) {
  clsRC4 rc4;
  rc4.KeyBytes(key);
  Bytes zeros(offset + count, '\0');
  rc4.EncryptByte(zeros);
  return zeros.substr(offset);
}

TEST(RC4, PublishedVectors) {
  const Windows1252 cp;
  clsRC4 rc4;
  rc4.Key(u"Key", cp);
  Bytes text = "Plaintext";
  rc4.EncryptByte(text);
  EXPECT_EQ(text, Hex({0xBB, 0xF3, 0x16, 0xE8, 0xD9, 0x40, 0xAF, 0x0A, 0xD3}));
  rc4.Key(u"Secret", cp);
  text = "Attack at dawn";
  rc4.EncryptByte(text);
  EXPECT_EQ(text, Hex({0x45, 0xA0, 0x1F, 0x64, 0x5F, 0xC3, 0x5B, 0x38, 0x35, 0x52, 0x54, 0x4B,
                       0x9B, 0xF5}));

  // Key-stream rows of the RFC 6229 tables (40-bit and 128-bit keys).
  const Bytes k40 = Hex({1, 2, 3, 4, 5});
  EXPECT_EQ(KeyStream(k40, 0, 16), Hex({0xb2, 0x39, 0x63, 0x05, 0xf0, 0x3d, 0xc0, 0x27, 0xcc,
                                        0xc3, 0x52, 0x4a, 0x0a, 0x11, 0x18, 0xa8}));
  EXPECT_EQ(KeyStream(k40, 16, 16), Hex({0x69, 0x82, 0x94, 0x4f, 0x18, 0xfc, 0x82, 0xd5, 0x89,
                                         0xc4, 0x03, 0xa4, 0x7a, 0x0d, 0x09, 0x19}));
  EXPECT_EQ(KeyStream(k40, 240, 16), Hex({0x28, 0xcb, 0x11, 0x32, 0xc9, 0x6c, 0xe2, 0x86, 0x42,
                                          0x1d, 0xca, 0xad, 0xb8, 0xb6, 0x9e, 0xae}));
  const Bytes k128 = Hex({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
  EXPECT_EQ(KeyStream(k128, 0, 16), Hex({0x9a, 0xc7, 0xcc, 0x9a, 0x60, 0x9d, 0x1e, 0xf7, 0xb2,
                                         0x93, 0x28, 0x99, 0xcd, 0xe4, 0x1b, 0x97}));
  EXPECT_EQ(KeyStream(k128, 16, 16), Hex({0x52, 0x48, 0xc4, 0x95, 0x90, 0x14, 0x12, 0x6a, 0x6e,
                                          0x8a, 0x84, 0xf1, 0x1d, 0x1a, 0x9e, 0x1c}));
}

TEST(RC4, KeyIsTheAnsiBytesOfThePassword) {
  const Windows1252 cp;
  auto same = [](const clsRC4& a, const clsRC4& b) {
    Bytes x(64, '\0'), y(64, '\0');
    a.EncryptByte(x);
    b.EncryptByte(y);
    return x == y;
  };
  clsRC4 fromText, fromBytes;
  fromText.Key(u"caf\u00E9 \u20AC", cp);  // é and € are single bytes in Windows-1252
  fromBytes.KeyBytes("caf\xE9 \x80");
  EXPECT_TRUE(same(fromText, fromBytes));
  // A character the code page lacks becomes its default character.
  fromText.Key(u"\u03A9x", cp);
  fromBytes.KeyBytes("?x");
  EXPECT_TRUE(same(fromText, fromBytes));
  fromBytes.KeyBytes("Wx");
  EXPECT_FALSE(same(fromText, fromBytes));
}

TEST(RC4, EveryBufferStartsAFreshKeyStream) {
  const Windows1252 cp;
  clsRC4 rc4;
  rc4.Key(u"pass", cp);
  Bytes a = "same text", b = "same text";
  rc4.EncryptByte(a);
  rc4.Key(u"pass", cp);  // setting the same key again changes nothing
  rc4.EncryptByte(b);
  EXPECT_EQ(a, b);
  rc4.DecryptByte(a);
  EXPECT_EQ(a, "same text");
}

TEST(RC4, ProtectedEnvelope) {
  const Windows1252 cp;
  clsRC4 rc4;
  rc4.Key(u"secret", cp);
  EXPECT_EQ(rc4.Protect(""), "M2P\r");
  Bytes out = "untouched";
  EXPECT_TRUE(rc4.Unprotect("M2P\r", out));
  EXPECT_EQ(out, "");

  std::mt19937 rng(5);
  for (size_t size : {1u, 2u, 255u, 256u, 257u, 5000u, 100000u}) {
    Bytes plain(size, '\0');
    for (auto& c : plain) c = static_cast<char>(rng());
    Bytes sealed = rc4.Protect(plain);
    ASSERT_EQ(sealed.size(), size + 4);
    EXPECT_EQ(sealed.substr(0, 4), "M2P\r");
    Bytes body = sealed.substr(4);
    rc4.EncryptByte(body);
    EXPECT_EQ(body, plain);  // the header is not encrypted; the stream starts after it
    Bytes opened;
    ASSERT_TRUE(rc4.Unprotect(sealed, opened));
    EXPECT_EQ(opened, plain);
  }
  for (const char* refused : {"M2L\rabc", "M2P", "", "m2p\rabc", "M2P\nabc"}) {
    out = "untouched";
    EXPECT_FALSE(rc4.Unprotect(refused, out)) << refused;
    EXPECT_EQ(out, "untouched");
  }
}

}  // namespace
}  // namespace mq
