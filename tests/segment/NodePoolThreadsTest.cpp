// Each thread cuts graph nodes from its own pools; a node goes back to the
// pool it came from, which outlives its thread while any node of it is live.
#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "SegEngine.h"

namespace {

TEST(NodePools, AnEngineSegmentedOnAThreadThatEndedIsUsedAndFreedOnAnother) {
  const std::vector<unsigned char> dib = testimg::LoadDib(testimg::ExamplePath("monkey_face.png"));
  SegEngine alone;
  alone.Load(dib);
  alone.PyramidAlgo();
  auto moved = std::make_unique<SegEngine>();
  std::thread([&] {
    moved->Load(dib);
    moved->PyramidAlgo();
  }).join();
  EXPECT_EQ(Signature(*moved), Signature(alone));
  // Segmenting again frees the ended thread's graph from this thread.
  moved->Load(dib);
  moved->PyramidAlgo();
  EXPECT_EQ(Signature(*moved), Signature(alone));
  moved.reset();
  SegEngine after;
  after.Load(dib);
  after.PyramidAlgo();
  EXPECT_EQ(Signature(after), Signature(alone));
}

}  // namespace
