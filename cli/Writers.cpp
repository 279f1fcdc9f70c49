#include "cli/Writers.h"

#include <exception>

#include "cli/ImageFile.h"

namespace pictrace {

bool CheckOutputPaths(const std::vector<std::string>& paths, std::string& error) {
  const char* first = nullptr;
  for (size_t i = 0; i < paths.size() && i < OutputFormats().size(); i++) {
    if (paths[i] != "-") continue;
    if (first) {
      error = std::string("the ") + first + " and the " + OutputFormats()[i].name +
              " cannot both go to standard output";
      return false;
    }
    first = OutputFormats()[i].name;
  }
  return true;
}

bool WriteOutputs(const OutputDocument& doc, CPictrace& engine, const std::vector<std::string>& paths,
                  std::string& error) {
  for (size_t i = 0; i < paths.size() && i < OutputFormats().size(); i++) {
    if (paths[i].empty()) continue;
    std::string bytes;
    try {
      bytes = OutputFormats()[i].format(doc, engine);
    } catch (const std::exception& e) {
      error = paths[i] + ": " + e.what();
      return false;
    }
    if (!WriteFileBytes(paths[i], bytes, error)) return false;
  }
  return true;
}

}  // namespace pictrace
