// Windows and the application object: CWnd with a virtual SendMessage so that
// a host (or a test) receives messages by subclassing, CWinApp, and
// AfxMessageBox with a hook that replaces the dialog.
#pragma once

#include "WinTypes.h"

class PICTRACE_API CWnd {
 public:
  CWnd() = default;
  virtual ~CWnd() = default;
  // The default window swallows every message.
  virtual LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
};

class PICTRACE_API CWinApp {
 public:
  explicit CWinApp(const char* pszAppName = nullptr);
  virtual ~CWinApp();
  virtual BOOL InitInstance();
  virtual int ExitInstance();
  const char* m_pszAppName;
};

// Returns the running application object (the last CWinApp constructed).
PICTRACE_API CWinApp* AfxGetApp();

typedef int (*AFX_MSGBOX_HOOK)(const char* text, UINT type, UINT helpId);

// Installs the function that shows message boxes; returns the previous one.
// With no hook the text goes to standard error and the result is IDOK.
PICTRACE_API AFX_MSGBOX_HOOK AfxSetMessageBoxHook(AFX_MSGBOX_HOOK hook);
PICTRACE_API int AfxMessageBox(const char* text, UINT type = MB_OK, UINT helpId = 0);
