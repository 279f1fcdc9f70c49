// The library's application object.
#include "Pictrace.h"

CPictraceApp::CPictraceApp() : CWinApp("pictrace") {}

BOOL CPictraceApp::InitInstance() {
  CWinApp::InitInstance();
  return TRUE;
}

CPictraceApp theApp;
