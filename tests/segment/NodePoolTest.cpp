// The node pool: reuse of released nodes and return of chunks.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

#include "segment/NodePool.h"

namespace {

TEST(NodePool, ReusesReleasedNodesAndReturnsSpareChunks) {
  NodePool pool(24, 4);
  std::vector<void*> nodes;
  for (int i = 0; i < 9; i++) {
    nodes.push_back(pool.Allocate());
    std::memset(nodes.back(), 0xAB, 24);  // the whole node is usable
  }
  EXPECT_EQ(std::set<void*>(nodes.begin(), nodes.end()).size(), 9u);
  EXPECT_EQ(pool.LiveNodes(), 9u);
  EXPECT_EQ(pool.Chunks(), 3u);

  void* freed = nodes[4];
  pool.Release(freed);
  EXPECT_EQ(pool.Allocate(), freed);  // a released node comes back first
  EXPECT_EQ(pool.Chunks(), 3u);

  for (void* p : nodes) pool.Release(p);
  EXPECT_EQ(pool.LiveNodes(), 0u);
  EXPECT_EQ(pool.Chunks(), 1u);  // one chunk is kept for the next graph
  void* again = pool.Allocate();
  EXPECT_EQ(again, nodes[0]);  // cut afresh from the kept chunk
  pool.Release(again);
  EXPECT_EQ(pool.Chunks(), 1u);
}

TEST(NodePool, RoundsTheNodeSizeToPointerAlignment) {
  NodePool pool(3, 8);
  char* a = static_cast<char*>(pool.Allocate());
  char* b = static_cast<char*>(pool.Allocate());
  EXPECT_EQ(static_cast<size_t>(b - a), sizeof(void*));
  pool.Release(a);
  pool.Release(b);
}

}  // namespace

namespace {

// Once nothing is live, fresh nodes come from the start of the kept chunk
// in address order again, whatever order the nodes were released in.
TEST(NodePool, StartsOverInAddressOrderWhenEmpty) {
  NodePool pool(24, 8);
  std::vector<void*> nodes;
  for (int i = 0; i < 3; i++) nodes.push_back(pool.Allocate());
  for (void* p : nodes) pool.Release(p);
  EXPECT_EQ(pool.Chunks(), 1u);
  for (int i = 0; i < 3; i++) EXPECT_EQ(pool.Allocate(), nodes[static_cast<size_t>(i)]);
}

}  // namespace
