// pictrace: turns pictures into flat colour regions and outlines from the
// command line. Run "pictrace --help" for the subcommands.
#include <exception>
#include <new>
#include <iostream>

#include "cli/Commands.h"

namespace {

// Engine messages (which a desktop host shows in a dialog) go to stderr, or
// to the record of the picture the thread runs in a batch.
int PrintMessage(const char* text, UINT, UINT) {
  pictrace::cli::ErrorStream() << "pictrace: " << text << "\n";
  return IDOK;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace pictrace::cli;
  AfxSetMessageBoxHook(PrintMessage);

  CLI::App app{"pictrace: vectorizes pictures for embroidery"};
  app.require_subcommand(1);
  // One line per subcommand.
  const std::vector<Command> commands = {
      AddInfoCommand(app),
      AddPreviewCommand(app),
      AddTraceCommand(app),
      AddLinesCommand(app),
  };

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e);
  }
  try {
    for (const Command& command : commands)
      if (command.app->parsed()) {
        const int status = command.run();
        // A summary or a listing that could not reach standard output is a
        // failure too (a full disk, a closed pipe).
        if (!std::cout.flush()) return Fail("cannot write to standard output");
        return status;
      }
  } catch (const std::bad_alloc&) {
    for (const Command& command : commands)
      if (command.app->parsed()) return Fail("out of memory while running '" + command.app->get_name() + "'");
    return Fail("out of memory");
  } catch (const std::exception& e) {
    return Fail(e.what());
  }
  return Fail("no subcommand given");
}
