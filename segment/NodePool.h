// A free-list pool for the small, numerous nodes of the region graph (pixel
// nodes, links, regions, snapshot records). Photographs create millions of
// them; the pool packs them without per-block allocator headers and hands
// back whole chunks once every node of its size is freed.
#pragma once

#include <atomic>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

#include "core/NoCopy.h"

class NodePool : private pictrace::NoCopy {
 public:
  explicit NodePool(std::size_t nodeSize, std::size_t nodesPerChunk = 32768);
  ~NodePool();

  void* Allocate();
  void Release(void* p);

 private:
  struct FreeNode {
    FreeNode* m_pNext;
  };
  void Grow();
  void KeepFirstChunk();
  void ReleaseChunks();

  std::size_t m_nNodeSize;
  std::size_t m_nPerChunk;
  FreeNode* m_pFree = nullptr;  // released nodes, reused first
  char* m_pBump = nullptr;       // next never-used node of the newest chunk
  std::size_t m_nUnused = 0;     // never-used nodes left there
  std::size_t m_nLive = 0;
  std::vector<char*> m_chunks;
  // Engines on different threads may share the pool. The lock is not
  // contended in the engine's own single-threaded use, where it is taken
  // millions of times per picture: a flag taken with one atomic exchange
  // and given back with a plain release store costs less than a mutex.
  class SpinLock {
   public:
    void lock() {
      while (m_taken.exchange(true, std::memory_order_acquire))
        while (m_taken.load(std::memory_order_relaxed)) std::this_thread::yield();
    }
    void unlock() { m_taken.store(false, std::memory_order_release); }

   private:
    std::atomic<bool> m_taken{false};
  };
  SpinLock m_lock;
};

// The pool for nodes of N bytes. It is never destroyed, so that an engine
// destroyed during static destruction can still free its nodes; its chunks
// are returned as soon as no node is live.
template <std::size_t N>
NodePool& PoolOfSize() {
  static NodePool* s_pPool = new NodePool(N);
  return *s_pPool;
}

// Class-specific allocation through the pool of the class's size; the
// record layouts stay exactly as declared. Under AddressSanitizer the nodes
// come from the ordinary allocator, so that it sees every node's lifetime.
#if defined(__SANITIZE_ADDRESS__)
#define PICTRACE_POOLED_NODE(T)
#else
#define PICTRACE_POOLED_NODE(T)                                              \
  static void* operator new(std::size_t size) {                              \
    return size == sizeof(T) ? PoolOfSize<sizeof(T)>().Allocate()            \
                             : ::operator new(size);                         \
  }                                                                          \
  static void operator delete(void* p, std::size_t size) {                   \
    if (!p) return;                                                          \
    if (size == sizeof(T))                                                   \
      PoolOfSize<sizeof(T)>().Release(p);                                    \
    else                                                                     \
      ::operator delete(p);                                                  \
  }
#endif
