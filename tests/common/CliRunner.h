// Runs the built pictrace program and collects its exit code and output;
// writes test files into a private temporary folder.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace clitest {

inline std::string ProgramPath() { return std::string(PICTRACE_BINARY_DIR) + "/cli/pictrace"; }

inline std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

struct RunResult {
  int exitCode = -1;  // -1 when the program did not exit normally (a crash)
  std::string out;
  std::string err;
};

// A temporary folder removed with its files at the end of the test.
class TempDir {
 public:
  TempDir() {
    char pattern[] = "/tmp/pictrace_cli_XXXXXX";
    const char* dir = mkdtemp(pattern);
    m_path = dir ? dir : "/tmp";
  }
  ~TempDir() {
    std::string command = "rm -rf '" + m_path + "'";
    if (std::system(command.c_str()) != 0) return;  // a folder left behind does no harm
  }
  const std::string& Path() const { return m_path; }
  std::string File(const std::string& name) const { return m_path + "/" + name; }
  std::string Write(const std::string& name, const std::vector<unsigned char>& bytes) const {
    std::string path = File(name);
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path;
  }

 private:
  std::string m_path;
};

// Runs "pictrace <args>", args being a command line for the shell.
inline RunResult RunPictraceLine(const TempDir& dir, const std::string& args) {
  std::string out = dir.File("stdout.txt"), err = dir.File("stderr.txt");
  std::string command = "'" + ProgramPath() + "' " + args + " >'" + out + "' 2>'" + err + "'";
  int status = std::system(command.c_str());
  RunResult r;
  if (status != -1 && WIFEXITED(status)) r.exitCode = WEXITSTATUS(status);
  r.out = ReadText(out);
  r.err = ReadText(err);
  return r;
}

}  // namespace clitest
