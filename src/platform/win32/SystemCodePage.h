// The CodePage port over the system's ANSI code page (or any other one, for tests).
#pragma once

#include <windows.h>

#include "platform/CodePage.h"

namespace mq::win32 {

class SystemCodePage final : public CodePage {
 public:
  explicit SystemCodePage(UINT codePage = CP_ACP) : codePage_(codePage) {}
  bool ToAnsi(TextView text, Bytes& out) const override;
  Text FromAnsi(std::string_view bytes) const override;

 private:
  UINT codePage_;
};

}  // namespace mq::win32
