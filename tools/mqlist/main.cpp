// Entry points: UTF-8 arguments natively; on Windows wide arguments, the system's ANSI code
// page and the Win32 file system, exactly as marquill.exe saves and loads.
#include <iostream>

#include "MqList.h"

#ifdef _WIN32
#include "platform/win32/Strings.h"
#include "platform/win32/SystemCodePage.h"
#include "platform/win32/Win32FileSystem.h"

int wmain(int argc, wchar_t** argv) {
  std::vector<mq::Text> args;
  for (int k = 1; k < argc; ++k) args.push_back(mq::win32::FromW(argv[k]));
  mq::win32::Win32FileSystem files;
  mq::win32::SystemCodePage codePage;
  mq::mqlist::Environment env{files, codePage, std::cout, std::cerr};
  return mq::mqlist::Run(args, env);
}
#else
#include "platform/StdFileSystem.h"

int main(int argc, char** argv) {
  std::vector<mq::Text> args;
  for (int k = 1; k < argc; ++k) args.push_back(mq::FromUtf8(argv[k]));
  mq::StdFileSystem files;
  mq::Windows1252 codePage;
  mq::mqlist::Environment env{files, codePage, std::cout, std::cerr};
  return mq::mqlist::Run(args, env);
}
#endif
