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

}  // namespace cli
}  // namespace pictrace
