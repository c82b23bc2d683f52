#include "listfiles/clsRC4.h"

#include <utility>

namespace mq {

namespace {
constexpr std::string_view kEnvelopeMark{"M2P\r", 4};
}

clsRC4::clsRC4() { Schedule({}); }

void clsRC4::Key(TextView password, const CodePage& codePage) {
  if (hasPassword_ && password == password_) return;
  Bytes ansi;
  codePage.ToAnsi(password, ansi);  // unrepresentable characters become the default one
  // Key length = characters; a text whose conversion came out shorter (a surrogate pair
  // turned into one default character) uses what there is.
  if (ansi.size() > password.size()) ansi.resize(password.size());
  Schedule(ansi);
  password_ = Text(password);
  hasPassword_ = true;
}

void clsRC4::KeyBytes(std::string_view keyBytes) {
  Schedule(keyBytes);
  hasPassword_ = false;  // a later Key() must not be skipped as "unchanged"
}

void clsRC4::Schedule(std::string_view key) {
  for (int i = 0; i < 256; ++i) keyed_[i] = static_cast<uint8_t>(i);
  // An empty key is never given by the program (the password dialog refuses it); it
  // schedules as if every key byte were 0 rather than dividing by zero.
  uint8_t j = 0;
  for (size_t i = 0; i < 256; ++i) {
    uint8_t k = key.empty() ? 0 : static_cast<uint8_t>(key[i % key.size()]);
    j = static_cast<uint8_t>(j + keyed_[i] + k);
    std::swap(keyed_[i], keyed_[j]);
  }
}

void clsRC4::Crypt(char* data, size_t size) const {
  std::array<uint8_t, 256> s = keyed_;
  uint8_t i = 0, j = 0;
  for (char* p = data; p != data + size; ++p) {
    i = static_cast<uint8_t>(i + 1);
    const uint8_t si = s[i];
    j = static_cast<uint8_t>(j + si);
    const uint8_t sj = s[j];
    s[i] = sj;
    s[j] = si;
    *p = static_cast<char>(static_cast<uint8_t>(*p) ^ s[static_cast<uint8_t>(si + sj)]);
  }
}

void clsRC4::EncryptByte(Bytes& bytes) const { Crypt(bytes.data(), bytes.size()); }

Bytes clsRC4::Protect(std::string_view plain) const {
  // One buffer, encrypted where it lies: a list can be megabytes.
  Bytes out;
  out.reserve(kEnvelopeMark.size() + plain.size());
  out += kEnvelopeMark;
  out += plain;
  Crypt(out.data() + kEnvelopeMark.size(), plain.size());
  return out;
}

bool clsRC4::Unprotect(std::string_view envelope, Bytes& out) const {
  if (envelope.size() < kEnvelopeMark.size() || envelope.substr(0, 4) != kEnvelopeMark)
    return false;
  Bytes body(envelope.substr(4));
  EncryptByte(body);
  out = std::move(body);
  return true;
}

void clsRC4::ProtectInPlace(Bytes& data) const {
  data.insert(0, kEnvelopeMark);
  Crypt(data.data() + kEnvelopeMark.size(), data.size() - kEnvelopeMark.size());
}

bool clsRC4::UnprotectInPlace(Bytes& envelope) const {
  if (envelope.size() < kEnvelopeMark.size() || envelope.compare(0, 4, kEnvelopeMark) != 0)
    return false;
  envelope.erase(0, kEnvelopeMark.size());
  EncryptByte(envelope);
  return true;
}

}  // namespace mq
