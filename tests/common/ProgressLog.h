// A progress window that records the positions it is sent.
#pragma once

#include <vector>

#include "Pictrace.h"

namespace testimg {

struct ProgressLog : CWnd {
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM) override {
    if (message == WM_PICTRACE_PROGRESS_POS) positions.push_back(static_cast<int>(wParam));
    return 0;
  }
  std::vector<int> positions;
};

}  // namespace testimg
