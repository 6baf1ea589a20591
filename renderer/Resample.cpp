// Separable resampling: the weights of each output column (and row) over the source columns
// (rows) are worked out once, then applied across and down.
#include "renderer/Resample.h"

#include <algorithm>
#include <cmath>

namespace tolvex::render {
namespace {

struct Tap {
  int index;
  float weight;
};

// For each of `to` output positions, the source positions among `from` it takes and how much.
std::vector<std::vector<Tap>> Weights(int from, int to) {
  std::vector<std::vector<Tap>> taps(static_cast<size_t>(to));
  const double scale = static_cast<double>(from) / to;
  for (int i = 0; i < to; ++i) {
    std::vector<Tap>& tap = taps[static_cast<size_t>(i)];
    if (scale > 1) {
      // Reducing: the source interval [start, end) this pixel covers, each source pixel
      // weighted by how much of it lies inside.
      const double start = i * scale;
      const double end = start + scale;
      for (int s = static_cast<int>(start); s < from && s < end; ++s) {
        const double overlap = std::min<double>(s + 1, end) - std::max<double>(s, start);
        if (overlap > 0) tap.push_back(Tap{s, static_cast<float>(overlap / scale)});
      }
    } else {
      // Enlarging (or the same size): between the two source pixels whose centres are nearest.
      const double centre = std::clamp((i + 0.5) * scale - 0.5, 0.0, from - 1.0);
      const int low = static_cast<int>(centre);
      const double high = centre - low;
      tap.push_back(Tap{low, static_cast<float>(1 - high)});
      if (high > 0 && low + 1 < from) tap.push_back(Tap{low + 1, static_cast<float>(high)});
    }
  }
  return taps;
}

// One channel of a word, and a channel value rounded back into its place.
float Channel(uint32_t word, int shift) { return static_cast<float>((word >> shift) & 0xff); }
uint32_t Place(float value, int shift) {
  const long rounded = std::lround(value);
  return static_cast<uint32_t>(std::clamp(rounded, 0L, 255L)) << shift;
}

}  // namespace

Pixels32 ResamplePixels(const Pixels32& source, int width, int height) {
  const auto across = Weights(source.width, width);
  const auto down = Weights(source.height, height);
  constexpr int kShifts[] = {0, 8, 16, 24};

  // Across: source.height rows of `width` pixels, four float channels each.
  std::vector<float> rows(static_cast<size_t>(source.height) * width * 4, 0.0f);
  for (int y = 0; y < source.height; ++y) {
    const uint32_t* in = source.words.data() + static_cast<size_t>(y) * source.width;
    float* out = rows.data() + static_cast<size_t>(y) * width * 4;
    for (int x = 0; x < width; ++x, out += 4) {
      for (const Tap& tap : across[static_cast<size_t>(x)]) {
        for (int c = 0; c < 4; ++c) out[c] += tap.weight * Channel(in[tap.index], kShifts[c]);
      }
    }
  }
  // Down.
  Pixels32 result{width, height, std::vector<uint32_t>(static_cast<size_t>(width) * height)};
  std::vector<float> sum(static_cast<size_t>(width) * 4);
  for (int y = 0; y < height; ++y) {
    std::fill(sum.begin(), sum.end(), 0.0f);
    for (const Tap& tap : down[static_cast<size_t>(y)]) {
      const float* in = rows.data() + static_cast<size_t>(tap.index) * width * 4;
      for (size_t i = 0; i < sum.size(); ++i) sum[i] += tap.weight * in[i];
    }
    uint32_t* out = result.words.data() + static_cast<size_t>(y) * width;
    for (int x = 0; x < width; ++x) {
      const float* px = sum.data() + static_cast<size_t>(x) * 4;
      // Premultiplied: no channel may exceed alpha after rounding.
      const uint32_t alpha = Place(px[3], 24);
      uint32_t word = alpha;
      for (int c = 0; c < 3; ++c) {
        word |= Place(std::min(px[c], static_cast<float>(alpha >> 24)), kShifts[c]);
      }
      out[x] = word;
    }
  }
  return result;
}

}  // namespace tolvex::render
