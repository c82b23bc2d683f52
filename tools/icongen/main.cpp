// Writes the program's icons (tray, window and menu images) as .ico files into a folder,
// normally res/icons, where the resource script picks them up by their leading number.
#include <cstdio>
#include <fstream>
#include <string>

#include "ui/IconArt.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: icongen OUTPUT_FOLDER\n");
    return 2;
  }
  const std::string folder = argv[1];
  for (const auto& file : mq::art::RenderIconFiles()) {
    const std::string path = folder + "/" + file.name;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(file.bytes.data(), static_cast<std::streamsize>(file.bytes.size()));
    if (!out) {
      std::fprintf(stderr, "icongen: cannot write %s\n", path.c_str());
      return 1;
    }
    std::printf("%s (%zu bytes)\n", path.c_str(), file.bytes.size());
  }
  return 0;
}
