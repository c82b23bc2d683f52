// mqlist: makes, dumps and describes list files from the command line, with the same code
// the program saves and loads them with.
#pragma once

#include <ostream>
#include <vector>

#include "platform/CodePage.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace mq::mqlist {

enum ExitCode { kOk = 0, kUndecodable = 1, kUsage = 2 };

struct Environment {
  FileSystem& files;
  const CodePage& codePage;
  std::ostream& out;
  std::ostream& err;
};

// args without the program name.
int Run(const std::vector<Text>& args, Environment& env);

}  // namespace mq::mqlist
