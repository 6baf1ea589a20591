// Resampling premultiplied 32-bit pixels (0xAARRGGBB words) to another size, for a drawing back
// end whose own scaling is not good enough: each output pixel is the average of the source area
// it covers when reducing (so that fine detail turns into its mean, not into a sample of it),
// and bilinear between the nearest source pixels when enlarging. Pure memory work; reentrant.
#ifndef TOLVEX_RENDERER_RESAMPLE_H
#define TOLVEX_RENDERER_RESAMPLE_H

#include <cstdint>
#include <vector>

namespace tolvex::render {

struct Pixels32 {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> words;  // row after row, no padding
};

// `source` resampled to `width` x `height` (both > 0).
Pixels32 ResamplePixels(const Pixels32& source, int width, int height);

}  // namespace tolvex::render

#endif  // TOLVEX_RENDERER_RESAMPLE_H
