#include "segment/NodePool.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

namespace {

// Mapped straight from the system and aligned by trimming a larger mapping;
// only the pages nodes are cut from become resident.
char* MapAligned(std::size_t bytes, std::size_t align) {
  const std::size_t span = bytes + align;
  void* p = mmap(nullptr, span, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED) throw std::bad_alloc();
  const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(p);
  const std::uintptr_t aligned = (start + align - 1) & ~(align - 1);
  if (aligned > start) munmap(p, aligned - start);
  if (start + span > aligned + bytes) munmap(reinterpret_cast<char*>(aligned + bytes), start + span - aligned - bytes);
  return reinterpret_cast<char*>(aligned);
}

}  // namespace

std::size_t NodePool::RoundedSize(std::size_t nodeSize) {
  const std::size_t size = (nodeSize + alignof(void*) - 1) / alignof(void*) * alignof(void*);
  return size < sizeof(FreeNode) ? sizeof(FreeNode) : size;
}

std::size_t NodePool::ChunkAlign(std::size_t roundedSize) {
  std::size_t align = 1;
  while (align < kHeaderBytes + roundedSize * kNodesPerChunk) align *= 2;
  return align;
}

NodePool::NodePool(std::size_t nodeSize)
    : m_nNodeSize(RoundedSize(nodeSize)), m_nChunkAlign(ChunkAlign(m_nNodeSize)) {}

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

void NodePool::Release(void* p, std::size_t nodeSize) {
  const std::uintptr_t chunk = reinterpret_cast<std::uintptr_t>(p) & ~(ChunkAlign(RoundedSize(nodeSize)) - 1);
  reinterpret_cast<ChunkHeader*>(chunk)->m_pOwner->ReleaseOwn(p);
}

void NodePool::ReleaseOwn(void* p) {
  m_lock.lock();
  FreeNode* node = static_cast<FreeNode*>(p);
  node->m_pNext = m_pFree;
  m_pFree = node;
  const bool bLast = --m_nLive == 0;
  if (bLast && !m_bOrphan) KeepFirstChunk();
  m_lock.unlock();
  // An orphan is reached only through its nodes, and this was the last.
  if (bLast && m_bOrphan) delete this;
}

void NodePool::Orphan() {
  m_lock.lock();
  m_bOrphan = true;
  const bool bIdle = m_nLive == 0;
  m_lock.unlock();
  if (bIdle) delete this;
}

// Fresh nodes are cut from the newest chunk in address order, so that a new
// graph is laid out in memory in the order it is built, and a chunk's pages
// are touched only as its nodes are used.
void NodePool::Grow() {
  char* chunk = MapAligned(kHeaderBytes + m_nNodeSize * kNodesPerChunk, m_nChunkAlign);
  reinterpret_cast<ChunkHeader*>(chunk)->m_pOwner = this;
  m_chunks.push_back(chunk);
  m_pBump = chunk + kHeaderBytes;
  m_nUnused = kNodesPerChunk;
}

void NodePool::FreeChunk(char* chunk) { munmap(chunk, kHeaderBytes + m_nNodeSize * kNodesPerChunk); }

// With no node live, all chunks but one go back to the system; keeping one
// avoids churning a chunk when a single node comes and goes. The free list
// is dropped too, so that the next graph is cut in address order from the
// start of the kept chunk (a repacked region graph relies on this for its
// locality, not for its correctness).
void NodePool::KeepFirstChunk() {
  for (std::size_t i = 1; i < m_chunks.size(); i++) FreeChunk(m_chunks[i]);
  m_chunks.resize(1);
  m_chunks.shrink_to_fit();
  m_pFree = nullptr;
  m_pBump = m_chunks[0] + kHeaderBytes;
  m_nUnused = kNodesPerChunk;
}

void NodePool::ReleaseChunks() {
  for (char* chunk : m_chunks) FreeChunk(chunk);
  m_chunks.clear();
  m_chunks.shrink_to_fit();
  m_pFree = nullptr;
  m_pBump = nullptr;
  m_nUnused = 0;
}
