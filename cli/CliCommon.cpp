#include <iostream>

#include "cli/Commands.h"
#include "cli/ImageFile.h"

namespace pictrace {
namespace cli {

int Fail(const std::string& message) {
  std::cerr << "pictrace: " << message << "\n";
  return kExitFailure;
}

bool LoadIntoEngine(CPictrace& engine, const std::string& path, std::vector<unsigned char>& dib) {
  std::string error;
  if (!LoadImageFile(path, dib, error)) {
    Fail(error);
    return false;
  }
  // The engine explains a refusal itself through the message box hook.
  if (!engine.SetDIBData(dib.data())) {
    Fail(path + ": the engine refused the picture");
    return false;
  }
  return true;
}

void AddPictureAndSvgOptions(CLI::App* app, std::string& input, std::string& output) {
  app->add_option("file", input, "PNG, JPEG or BMP picture")->required();
  app->add_option("-o,--output", output, "SVG file to write (default: standard output)");
}

std::ostream& SummaryStream(const std::string& output) {
  return output == "-" ? std::cerr : std::cout;
}

}  // namespace cli
}  // namespace pictrace
