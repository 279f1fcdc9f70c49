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
  explicit NodePool(std::size_t nodeSize);
  ~NodePool();

  void* Allocate();
  // Gives a node of nodeSize bytes back to the pool that handed it out,
  // whichever thread calls.
  static void Release(void* p, std::size_t nodeSize);

  // The thread owning this pool ends: the pool goes once its last node is
  // released (at once when none is live).
  void Orphan();

 private:
  struct FreeNode {
    FreeNode* m_pNext;
  };
  // A chunk starts with a header that names its pool and is aligned to the
  // power of two that holds it, so that a node finds its pool by masking its
  // own address. Its nodes follow one another without a gap: lists of
  // regions cut from one chunk are looked up by address range.
  struct ChunkHeader {
    NodePool* m_pOwner;
  };
  static const std::size_t kHeaderBytes = 64;  // nodes start on a fresh cache line
  static const std::size_t kNodesPerChunk = 32768;
  static std::size_t RoundedSize(std::size_t nodeSize);
  static std::size_t ChunkAlign(std::size_t roundedSize);

  void ReleaseOwn(void* p);
  void Grow();
  void FreeChunk(char* chunk);
  void KeepFirstChunk();
  void ReleaseChunks();

  std::size_t m_nNodeSize;
  std::size_t m_nChunkAlign;
  FreeNode* m_pFree = nullptr;  // released nodes, reused first
  char* m_pBump = nullptr;       // next never-used node of the newest chunk
  std::size_t m_nUnused = 0;     // never-used nodes left there
  std::size_t m_nLive = 0;
  bool m_bOrphan = false;
  std::vector<char*> m_chunks;
  // Each thread allocates from its own pool, so that engines on different
  // threads neither wait for each other nor share cache lines; only a node
  // released on another thread than the one that allocated it takes a lock
  // that someone else may hold. Uncontended, a flag taken with one atomic
  // exchange and given back with a plain release store costs less than a
  // mutex.
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

// The calling thread's pool for nodes of N bytes. It outlives the thread
// while any of its nodes is live, so that an engine freed on another thread,
// or during static destruction, can still give its nodes back.
template <std::size_t N>
NodePool& PoolOfSize() {
  struct ThreadPool {
    NodePool* m_pPool = new NodePool(N);
    ~ThreadPool() { m_pPool->Orphan(); }
  };
  thread_local ThreadPool t_pool;
  return *t_pool.m_pPool;
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
      NodePool::Release(p, sizeof(T));                                       \
    else                                                                     \
      ::operator delete(p);                                                  \
  }
#endif
