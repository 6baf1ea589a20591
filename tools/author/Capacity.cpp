// The disc's size before converting (see Capacity.h).
#include "tools/author/Capacity.h"

#include <cmath>
#include <cstdio>

namespace menutool::author {
namespace {

// A DVD program stream wraps its streams in 2048-byte packs with pack and packet headers, and
// adds two navigation packs for every half second or so: about 3% on top of the streams.
constexpr double kMuxOverhead = 1.03;
// Kept free for the menus (stills, with their music), the IFO and BUP files and the file system.
constexpr double kReserved = 50e6;

double Bytes(const std::vector<TitleLoad>& titles, double videoBitrate) {
  double bytes = 0;
  for (const TitleLoad& title : titles)
    bytes += title.keptBytes + title.seconds *
                                   ((title.encoded ? videoBitrate : 0) + title.soundBitrate) /
                                   8 * kMuxOverhead;
  return bytes;
}

std::string Figure(const char* format, double value) {
  char text[32];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string Gigabytes(double bytes) {
  return bytes < 1e9 ? Figure("%.0f MB", bytes / 1e6) : Figure("%.1f GB", bytes / 1e9);
}
std::string Megabits(double bits) { return Figure("%.1f", bits / 1e6); }

std::string Length(double seconds) {
  const long minutes = std::lround(seconds / 60);
  if (minutes >= 60)
    return std::to_string(minutes / 60) + " h " + Figure("%02.0f", minutes % 60) + " min";
  if (minutes > 0) return std::to_string(minutes) + " min";
  return std::to_string(std::lround(seconds)) + " s";
}

}  // namespace

TitleLoad LoadOf(const VideoFacts& video, const VideoPlan& plan) {
  TitleLoad load;
  load.seconds = video.seconds;
  load.encoded = plan.treatment == Treatment::kConvert;
  load.keptBytes = load.encoded ? 0 : static_cast<double>(video.bytes);
  load.soundBitrate = plan.soundBitrate;
  return load;
}

DiscFit FitDisc(const std::vector<TitleLoad>& titles, double capacity) {
  DiscFit fit;
  fit.capacity = capacity;
  for (const TitleLoad& title : titles) {
    fit.seconds += title.seconds;
    fit.anyEncoded = fit.anyEncoded || title.encoded;
  }
  const double usable = capacity - kReserved;
  // Whole tenths of a megabit, the best first.
  const long best = std::lround(kBestVideoBitrate / 1e5);
  const long lowest = std::lround(kLowestVideoBitrate / 1e5);
  for (long tenths = best; tenths >= lowest; --tenths) {
    fit.videoBitrate = fit.anyEncoded ? tenths * 1e5 : 0;
    fit.bytes = Bytes(titles, fit.videoBitrate);
    fit.fits = fit.bytes <= usable;
    if (fit.fits || !fit.anyEncoded) break;
  }
  return fit;
}

std::string DescribeFit(const DiscFit& fit) {
  std::string line = "disc: " + Gigabytes(fit.bytes) + " of " + Gigabytes(fit.capacity);
  if (fit.anyEncoded) {
    line += " at " + Megabits(fit.videoBitrate) + " Mbit/s";
    if (fit.videoBitrate < kBestVideoBitrate)
      line += ", lowered from " + Megabits(kBestVideoBitrate) + " to fit";
  }
  return line;
}

std::string DescribeOverflow(const DiscFit& fit) {
  std::string text = "the videos last " + Length(fit.seconds) + " and take " +
                     Gigabytes(fit.bytes) +
                     (fit.anyEncoded ? " even at " + Megabits(fit.videoBitrate) +
                                           " Mbit/s, the lowest video bitrate"
                                     : " as they are");
  if (fit.capacity < kDualLayer)
    return text + ": more than the " + Gigabytes(fit.capacity) +
           " of a single-layer disc (--dvd9: " + Gigabytes(kDualLayer) + ")";
  return text + ": more than the " + Gigabytes(fit.capacity) + " of a dual-layer disc";
}

}  // namespace menutool::author
