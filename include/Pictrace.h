// pictrace: the engine object a host loads to turn a bitmap into flat colour
// regions with outlines, centre lines of line art and previews.
//
// One CPictrace holds one image and its results. Every member runs on the
// caller's thread; long jobs report progress to m_pProgressWnd. Members
// return 1 for success and 0 for failure (usually: no image loaded).
//
// Each member is defined in the folder of its subsystem; the comment above
// each group names the file.
#pragma once

#include <list>

#include "AfxWin.h"
#include "PTResults.h"

struct sPoint;
class CConComponent;
class COutlineVector;
class COutlineRegion;
class COutlineThinline;
class CRegion;
class CNodeNeighbor;
struct CRegionSnapshot;
struct COwnCurves;
namespace pictrace {
class Progress;
}

// Progress messages sent to m_pProgressWnd.
#define WM_PICTRACE_PROGRESS_BEGIN 0x1401  // wParam 0, lParam 0
#define WM_PICTRACE_PROGRESS_RANGE 0x1402  // wParam 0, lParam 100
#define WM_PICTRACE_PROGRESS_POS 0x1403    // wParam position in percent
#define WM_PICTRACE_PROGRESS_END 0x1404    // wParam 1

// Weight of each stage of a job, in progress units. Kept apart so that one
// stage can be re-weighted without touching the others.
#define PT_WEIGHT_NOISE 20.0f     // noise reduction
#define PT_WEIGHT_BLOCK 20.0f     // block stage of the pyramid segmentation
#define PT_WEIGHT_PYRAMID 20.0f   // pyramid stage
#define PT_WEIGHT_CLUSTER 20.0f   // colour clustering with outlines
#define PT_WEIGHT_POLYGONS 20.0f  // output polygons

// The message box texts of image input.
#define PT_MSG_UNSUPPORTED "This type of bitmap is not supported"
#define PT_MSG_NO_MEMORY_24 "Not enough memory to support 24bit bitmap"
#define PT_MSG_NO_MEMORY_TEMPLATE "Error in alloc of template DIB data"

class PICTRACE_API CPictrace {
 public:
  // --- lifecycle, state and progress (engine/Lifecycle.cpp, engine/Progress.cpp)
  CPictrace();
  ~CPictrace();
  void ResetPictrace();
  void ClearStoredRegions();
  void CopyOutlines();
  int HasOutlines();
  void SetThinningFlag(int bThinning);
  int IsThinning();
  void SetSegmentationSensitivity(int nSensitivity);
  void SetImageRealRect(LONG left, LONG top, LONG right, LONG bottom);
  void GetImageRealRect(LONG& left, LONG& top, LONG& right, LONG& bottom);
  void GetOutputSize(CSize& size);
  void SetOutputLineType(int nType);
  void SetMASKData(int* pMask);
  int* GetMaskBuf();
  BITMAPINFOHEADER* GetBmpInfoHeader();
  void BeginProgress(int nKind);
  void EndProgress();
  // Guards for a host that cannot wait for ever (segment/BlockStage.cpp):
  // a segmentation still running dSeconds after this call stops at its next
  // check, saves no block regions and skips the later stages (0: no limit).
  void SetTimeLimit(double dSeconds);
  int IsStopped();             // the last segmentation stopped at the time limit
  int GetSeedRegionCount();    // regions the last block stage started from

  // --- image input and painting (engine/ImageInput.cpp, engine/ImagePaint.cpp)
  int SetDIBData(unsigned char* pDIB);
  int SetBMPData(unsigned char* pSrc, unsigned char*& pDIB, unsigned char*& pBits,
                 unsigned char*& pWorkDIB, unsigned char*& pWorkBits, BITMAPINFOHEADER* pHeader);
  void CopyBMPData(unsigned char** ppDest, unsigned char* pSrc);
  void CopyBMPData_DataToOriginal();
  void CopyBMPData_OriginalToData();
  int HasDIBData();
  int GetDIBSize(CSize& size);
  int DrawDIB(CDC* pDC, RECT* pDest, int bOriginal);

  // --- segmentation driver (engine/Segmentation.cpp)
  void DoSegmentation(int nColors, CDWordArray* pColors, double dParam, int bNoRetry,
                      unsigned char** ppMask);

  // --- noise reduction (segment/NoiseReduction.cpp)
  void NoiseReduction(double dLambda);

  // --- region output (engine/RegionOutput.cpp)
  void GetRegions(CPTRegions* pRegions, int nLineType);

  // --- background regions (engine/Background.cpp)
  // ExtractBackground finds the background colour as MarkBackground chooses
  // it and builds m_listBackgroundRegions: the frame-touching regions of that
  // colour, traced again (tolerance m_dSegmentParam) on a picture where every
  // other pixel is one foreground colour, so that they come out as few large
  // regions whose holes are where the other regions lie; sorted, indexed into
  // m_arrColorList, polygons built. It needs a segmentation and leaves the
  // current regions, working image, colour list, mask and progress as they
  // were. Returns 1 when background regions were found; 0 (list empty) with
  // no image, no regions or no region touching the frame.
  // GetBackgroundRegions hands them to the host like GetRegions does, with
  // polygons rebuilt in nLineType; an empty list gives 0 regions.
  int ExtractBackground();
  void GetBackgroundRegions(CPTRegions* pRegions, int nLineType);

  // --- Bezier conversion of a host's straight outlines (curve/ConvertToBezier.cpp)
  // Replaces the lines of the polygon (or polygon line) in place by fitted
  // cubic Bezier lines (type 1): the old array is freed and a new one of the
  // fitted count is stored; a polygon line keeps its attributes. The chain is
  // the first line's start and every line's end (a line's start too where it
  // leaves a gap); a polygon is always fitted closed, a polygon line only when
  // its last end meets its first start. Sharp vertices (turns over about 55
  // degrees) stay corners; elsewhere the curve keeps its tangent. The lines'
  // path stays within m_dCurveTolerance pixels of the curve: in output units
  // the tolerance is scaled by the smaller GetRegions scale (unscaled with no
  // image or a zero output rectangle). A polygon that is one of the current
  // outlines as GetRegions hands it out in straight lines gets that
  // outline's curve from the curve output instead, so that neighbouring
  // regions converted one by one still share their borders. Returns 1 on success; 0 for a null
  // object, no lines, or lines without two distinct points (left unchanged).
  // SetCurveTolerance ignores values that are not positive.
  int ConvertToBezier(CPTPolygon* pPolygon);
  int ConvertToBezier(CPTPolygonLine* pLine);
  void SetCurveTolerance(double dTolerance);

  // --- preview drawing (engine/PreviewDrawing.cpp)
  void DrawPolygon(CDC* pDC, CRect rcDest, int bOutlineOnly, int bStored);

  // --- interactive marking (engine/Marking.cpp)
  int MarkRegion(int x, int y, int bStored);
  int MarkLine(int x, int y);
  void MarkRegions(DWORD color, int nValue, int bStored);
  void MarkLines(DWORD color, int nValue);
  void MarkBackground();

  // --- colours and thread colours (segment/ColorCount.cpp, segment/ThreadColors.cpp)
  void ConvRGB2HSV(int r, int g, int b, int& x, int& y, int& v);
  void GetNearestThreadColor(DWORD& color, int nMode, int* pUsed);
  void SetNearestThreadColorList(int nMode);
  void GetNearestThreadColorFromList(DWORD& color);
  void GetColorList(short* pnCount, DWORD** ppColors, unsigned char nType);
  short SetLineColorList();
  void SetNearestThreadLineColorList(int nMode);
  void GetNearestThreadLineColorFromList(DWORD& color);
  void GetLineColorList(short* pnCount, DWORD** ppColors, int nType);

  // --- thinning (thinline/Thinning.cpp)
  void StoreRegionsOnlyThinningFlag(CWordArray* pFlags);
  void SetRegionsOnlyThinningFlag(CWordArray* pFlags);
  unsigned char* MakeThinningTmpBitmap(unsigned char** ppMask);
  int ThinningAndFat(unsigned char* pDIB, unsigned char* pMask, DWORD lineColor, DWORD fillColor);
  DWORD GetNeighborColor(unsigned char* pBits, unsigned char* pMask, DWORD stride, int x, int y,
                         int width, int height);
  int Cross(int* pNeighbors);

  // --- line tracing (thinline/LineTracing.cpp)
  void DoTraceThinningLine(unsigned char* pMask, unsigned char* pDIB, double dSmooth);
  int TraceLine(unsigned char* pMask, unsigned char* pBits, int x, int y, DWORD color,
                int nBufSize, CArray<short*, short*>& arrPoints, CArray<int, int>& arrCounts,
                CArray<int, int>& arrIDs, int& nCounter, CArray<int, int>& arrParents,
                int nParent, CArray<int, int>& arrFlags, int nFlag, double dMinLength,
                int bHasStart, int xStart, int yStart);

  // --- thin-line output and drawing (thinline/ThinLineOutput.cpp)
  void CreateOutputThinLine();
  void GetThinLines(CPTThinLines* pThinLines);
  void DrawThinLine(CDC* pDC, CRect rcDest);

  // --- fields, in their exported order
  CWnd* m_pProgressWnd;
  DWORD* m_pThreadColors;
  int m_nThreadColorCount;
  int m_nThreadColorMode;
  CDWordArray m_arrNearestColors;
  CDWordArray m_arrLineColors;
  CDWordArray m_arrNearestLineColors;
  CDWordArray m_arrStoredColorList;
  int m_bThinning;
  float m_fProgressTotal;
  float m_fProgressPos;
  int m_nProgressShown;
  int m_nUnused1;
  CRect m_rcImageReal;
  double m_dSegmentParam;
  int m_nOutputLineType;
  double m_dSatinWidth;
  double m_dUnusedParam1;
  double m_dUnusedParam2;
  double m_dUnusedParam3;
  CDWordArray m_arrColorList;
  float m_fLightness[256];
  CRegionSnapshot* m_pBlockRegions;
  std::list<COutlineRegion*> m_listOutlineRegions;
  std::list<COutlineRegion*> m_listStoredRegions;
  std::list<COutlineThinline*> m_listThinLines;
  std::list<double*> m_listWorkBuffers;
  int m_nColorRadius;
  int m_nSegmentThreshold;
  CRegion* m_pRegionHead;
  BITMAPINFOHEADER m_bmiHeader;
  unsigned char* m_pDIB;
  unsigned char* m_pDIBBits;
  unsigned char* m_pWorkDIB;
  unsigned char* m_pWorkBits;
  int* m_pMask;
  unsigned char* m_pOriginalDIB;
  // Additions of this platform, after the exported layout.
  std::list<COutlineRegion*> m_listBackgroundRegions;  // built by ExtractBackground
  double m_dCurveTolerance;                            // curve fitting tolerance, pixels (1.0)
  double m_dStopTime;      // steady-clock seconds at which a segmentation stops; 0: never
  int m_bStopped;          // the last segmentation stopped there
  int m_nSeedRegions;      // seed regions of the last block stage
  COwnCurves* m_pOwnCurves;  // the current outlines' curves for ConvertToBezier; null until asked

 protected:
  // --- lifecycle and progress
  void UnloadData();
  void SetSatinWidth(double dWidth);
  void ShowProgress(int nPos);
  pictrace::Progress JobProgress();  // the job's position and total, shown through ShowProgress
  void DeriveSatinWidth();  // the satin width rule shared by the rectangle and image input
  bool TimeIsUp();  // reads the clock; sets m_bStopped once the time limit has passed

  // --- image input and painting
  int ConvertTo24(unsigned char* pSrc, unsigned char*& pDIB, unsigned char*& pBits,
                  BITMAPINFOHEADER* pHeader);
  int PaintDIB(HDC hDC, RECT* pDest, unsigned char* pDIB, RECT* pSrc);

  // --- region output
  void CreateOutputPolygon(int nLineType);

  // --- marking
  int IsPointInRegion(sPoint& pt, COutlineRegion* pRegion);
  int IsPointInLine(sPoint& pt, COutlineThinline* pLine);
  int IsPointInOutline(sPoint& pt, sPoint* pPoints, int nPoints);

  // --- pyramid segmentation (segment/PyramidSegmentation.cpp, segment/RegionGraph.cpp)
  void PyramidAlgo();
  int GetBlockRegions();
  int CopyBlockRegions(int bSave);
  int SetupGraph(unsigned char* pBits, double* pEdge);
  void RemovingDecrease(double dFactor);
  void UpdateRemovingDecrease(CRegion* pRegion, double dFactor);
  double CombineRegion(CRegion* pRegion);
  float CombineDec(CRegion* pRegion, CNodeNeighbor* pLink, double dFactor);

  // --- mean shift (segment/MeanShift.cpp)
  void MeanShift(int nWanted, CDWordArray* pList);
  void MeanShiftProcess(double* pR, double* pG, double* pB, int* pWeight, int n, double dRadius,
                        double* pModeR, double* pModeG, double* pModeB, int& nModes);
  void MeanF(unsigned char* pVisited, double* pR, double* pG, double* pB, int* pWeight, int n,
             double dRadius, double& dCR, double& dCG, double& dCB);
  int InCentroid(double r, double g, double b, double cr, double cg, double cb, double dRadius);

  // --- colour counting (segment/ColorCount.cpp)
  int GetColorNumber(int& nColors, CDWordArray* pList);
  void GetColorListFromRegion(int& nColors, CDWordArray* pList);
  int IsGrayValued();

  // --- noise reduction (segment/NoiseReduction.cpp)
  void MumfordAlgo(double dLambda);
  void GetValues();
  int FiniteDifferenceLasMumfordU(double** ppPlanes, int nPlanes, double dLambda);

  // --- connected components (outline/ConnectedComponents.cpp)
  int GetCompList(std::list<CConComponent*>& listComp, unsigned char* pMask);
  int BeCross24(int* pLabels, int nHeight, int nWidth, int nRow, int nCol);
  int BeCross13(int* pLabels, int nHeight, int nWidth, int nRow, int nCol);
  int RemoveSmallRegions(std::list<CConComponent*>& listComp, double dMinArea,
                         unsigned char* pMask);
  int DeflateComponent(CConComponent* pComp, sPoint* pOffsets, int nOffsets, int nWidth,
                       int nHeight, unsigned char* pScratch);

  // --- contour tracing (outline/ContourTracing.cpp)
  int contour_order(int* pLabels, int x, int y);
  void find_next_step(int* pLabels, int nLabel, int& x, int& y, int& nDir);
  int GetOutlineList(std::list<COutlineVector*>& listPieces, std::list<CConComponent*>& listComp,
                     double dParam);
  int FindAnotherOutline(COutlineVector** ppPieces, int nPieces, sPoint& ptCur, sPoint* pChainA,
                         int& nChainA, sPoint* pChainB, int& nChainB, int nRegion);

  // --- smoothing (outline/OutlineSmoothing.cpp)
  void SmoothOutlineVector(std::list<COutlineVector*>& listPieces, double dParam);
  int RemoveExtraPoint(sPoint* pPoints, int& nPoints);
  int SmoothOutline(sPoint* pPoints, int& nPoints, float fTolerance);

  // --- outline regions and their order (outline/OutlineRegions.cpp, outline/RegionOrder.cpp)
  int GetOutline4Cartoon2(double dParam, unsigned char** ppMask);
  int SortRegionSeq(std::list<COutlineRegion*>& listRegions);
  void SetOutlineColorIndex(std::list<COutlineRegion*>& listRegions);
};

// The library's application object, kept so that the source has the shape a
// Windows build needs.
class PICTRACE_API CPictraceApp : public CWinApp {
 public:
  CPictraceApp();
  BOOL InitInstance() override;
};
