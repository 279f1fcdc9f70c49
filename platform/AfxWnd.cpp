#include "AfxWnd.h"

#include <cstdio>

LRESULT CWnd::SendMessage(UINT, WPARAM, LPARAM) { return 0; }

namespace {
CWinApp* g_pApp = nullptr;
AFX_MSGBOX_HOOK g_msgBoxHook = nullptr;
}  // namespace

CWinApp::CWinApp(const char* pszAppName) : m_pszAppName(pszAppName) { g_pApp = this; }

CWinApp::~CWinApp() {
  if (g_pApp == this) g_pApp = nullptr;
}

BOOL CWinApp::InitInstance() { return TRUE; }

int CWinApp::ExitInstance() { return 0; }

CWinApp* AfxGetApp() { return g_pApp; }

AFX_MSGBOX_HOOK AfxSetMessageBoxHook(AFX_MSGBOX_HOOK hook) {
  AFX_MSGBOX_HOOK old = g_msgBoxHook;
  g_msgBoxHook = hook;
  return old;
}

int AfxMessageBox(const char* text, UINT type, UINT helpId) {
  if (g_msgBoxHook) return g_msgBoxHook(text, type, helpId);
  std::fprintf(stderr, "%s\n", text ? text : "");
  return IDOK;
}
