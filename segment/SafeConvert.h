// Float-to-int conversions that cannot be undefined: values no int can
// hold (or NaN) give 0. Results of the engine's own arithmetic never hit
// that case; the guard keeps host-written fields from causing harm.
#pragma once

// Low byte of a colour value truncated toward zero. Values that no int can
// hold give 0 instead of an undefined conversion; colour means never do.
inline int TruncLowByte(double v) {
  if (!(v > -2147483649.0 && v < 2147483648.0)) return 0;
  return static_cast<int>(v) & 0xFF;
}

