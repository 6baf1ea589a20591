// How much of a disc its titles take, worked out before any video is converted: the video
// bitrate that lets them fit, from the best one down to the lowest one worth watching, or the
// figures that show they cannot. Pure arithmetic on the titles' lengths and sizes.
#ifndef TOLVEX_TOOLS_AUTHOR_CAPACITY_H
#define TOLVEX_TOOLS_AUTHOR_CAPACITY_H

#include "tools/author/VideoPlan.h"

#include <string>
#include <vector>

namespace menutool::author {

constexpr double kSingleLayer = 4.7e9;  // bytes of a DVD-5
constexpr double kDualLayer = 8.5e9;    // bytes of a DVD-9
constexpr double kBestVideoBitrate = 6e6;    // bits a second of an encoded picture by default
constexpr double kLowestVideoBitrate = 2e6;  // below it MPEG-2 at DVD size turns to blocks

// What one title puts on the disc.
struct TitleLoad {
  double seconds = 0;
  double keptBytes = 0;     // bytes copied from the video as they are (a kept picture or file)
  bool encoded = false;     // its picture is encoded at the disc's video bitrate
  double soundBitrate = 0;  // bits a second of the sound written, 0 when none is
};

// The load of `video` handled as `plan` says.
TitleLoad LoadOf(const VideoFacts& video, const VideoPlan& plan);

struct DiscFit {
  bool fits = false;
  bool anyEncoded = false;
  double videoBitrate = 0;  // for the encoded pictures (the lowest when it does not fit)
  double bytes = 0;         // the titles' estimated share of the disc at that bitrate
  double capacity = 0;
  double seconds = 0;       // all titles together
};

// The best bitrate, in steps of 0.1 Mbit/s from kBestVideoBitrate down to kLowestVideoBitrate,
// at which `titles` fit in `capacity` bytes, counting the program stream's packet headers and a
// share of the disc for the menus, navigation files and file system.
DiscFit FitDisc(const std::vector<TitleLoad>& titles, double capacity);

// "disc: 3.1 GB of 4.7 GB at 6.0 Mbit/s" ("..., lowered from 6.0 to fit" when lowered; a
// disc under 1 GB in MB).
std::string DescribeFit(const DiscFit& fit);

// Why a disc that does not fit is refused: its length and size at the lowest bitrate, against
// the capacity (and the dual-layer one when the disc was single-layer).
std::string DescribeOverflow(const DiscFit& fit);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_CAPACITY_H
