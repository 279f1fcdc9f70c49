#include "segment/NodePool.h"

#include <new>

NodePool::NodePool(std::size_t nodeSize, std::size_t nodesPerChunk)
    : m_nNodeSize((nodeSize + alignof(void*) - 1) / alignof(void*) * alignof(void*)),
      m_nPerChunk(nodesPerChunk) {
  if (m_nNodeSize < sizeof(FreeNode)) m_nNodeSize = sizeof(FreeNode);
}

NodePool::~NodePool() { ReleaseChunks(); }

void* NodePool::Allocate() {
  std::lock_guard<SpinLock> guard(m_lock);
  m_nLive++;
  if (m_pFree) {
    FreeNode* node = m_pFree;
    m_pFree = node->m_pNext;
    return node;
  }
  if (m_nUnused == 0) Grow();
  void* node = m_pBump;
  m_pBump += m_nNodeSize;
  m_nUnused--;
  return node;
}

void NodePool::Release(void* p) {
  std::lock_guard<SpinLock> guard(m_lock);
  FreeNode* node = static_cast<FreeNode*>(p);
  node->m_pNext = m_pFree;
  m_pFree = node;
  if (--m_nLive == 0) KeepFirstChunk();
}

// Fresh nodes are cut from the newest chunk in address order, so that a new
// graph is laid out in memory in the order it is built, and a chunk's pages
// are touched only as its nodes are used.
void NodePool::Grow() {
  m_pBump = static_cast<char*>(::operator new(m_nNodeSize * m_nPerChunk));
  m_chunks.push_back(m_pBump);
  m_nUnused = m_nPerChunk;
}

// With no node live, all chunks but one go back to the allocator; keeping
// one avoids churning a chunk when a single node comes and goes. The free
// list is dropped too, so that the next graph is cut in address order from
// the start of the kept chunk (a repacked region graph relies on this for
// its locality, not for its correctness).
void NodePool::KeepFirstChunk() {
  for (std::size_t i = 1; i < m_chunks.size(); i++) ::operator delete(m_chunks[i]);
  m_chunks.resize(1);
  m_chunks.shrink_to_fit();
  m_pFree = nullptr;
  m_pBump = m_chunks[0];
  m_nUnused = m_nPerChunk;
}

void NodePool::ReleaseChunks() {
  for (char* chunk : m_chunks) ::operator delete(chunk);
  m_chunks.clear();
  m_chunks.shrink_to_fit();
  m_pFree = nullptr;
  m_pBump = nullptr;
  m_nUnused = 0;
}
