// The portable Win32/MFC layer in one include, as a Windows build gets it
// from <afxwin.h>.
#pragma once

#include "AfxCollections.h"
#include "AfxGdi.h"
#include "AfxGeometry.h"
#include "AfxWnd.h"
#include "WinTypes.h"
