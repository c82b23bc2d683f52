// RC4 exactly as published (no key-stream bytes dropped), and the protected envelope: "M2P"
// CR followed by the RC4 encryption of the whole Huffman container. The envelope has no
// checksum of its own: a wrong password shows up as an undecodable container inside.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/CodePage.h"
#include "platform/Text.h"

namespace mq {

class clsRC4 {
 public:
  clsRC4();

  // Sets the password. Its key bytes are its ANSI bytes; the key length is its number of
  // characters, so with a multi-byte code page only that many leading bytes take part.
  // Setting the same text again keeps the schedule as it is.
  void Key(TextView password, const CodePage& codePage);
  // Key scheduling straight from key bytes (all of them take part).
  void KeyBytes(std::string_view keyBytes);

  // XORs bytes in place with the key stream, which starts afresh for every call.
  void EncryptByte(Bytes& bytes) const;
  void DecryptByte(Bytes& bytes) const { EncryptByte(bytes); }

  // "M2P" CR + the encryption of plain.
  Bytes Protect(std::string_view plain) const;
  // False (out untouched) when envelope does not start with "M2P" CR; otherwise out holds
  // the decrypted remainder. A wrong password is not detected here.
  bool Unprotect(std::string_view envelope, Bytes& out) const;
  // The same, in the caller's buffer: a list of megabytes is not copied for it.
  void ProtectInPlace(Bytes& data) const;
  bool UnprotectInPlace(Bytes& envelope) const;

 private:
  void Schedule(std::string_view keyBytes);
  void Crypt(char* data, size_t size) const;

  std::array<uint8_t, 256> keyed_{};
  Text password_;
  bool hasPassword_ = false;
};

}  // namespace mq
