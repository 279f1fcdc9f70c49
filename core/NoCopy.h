// Records that own raw arrays are neither copied nor assigned; deriving from
// NoCopy says so in one place.
#pragma once

namespace pictrace {

class NoCopy {
 public:
  NoCopy(const NoCopy&) = delete;
  NoCopy& operator=(const NoCopy&) = delete;

 protected:
  NoCopy() = default;
  ~NoCopy() = default;
};

}  // namespace pictrace
