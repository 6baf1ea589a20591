// What becomes of one video on a disc, decided from the facts ffprobe gives: used as it is, its
// picture kept and its sound replaced, or converted; the aspect of its title and where its
// picture sits in the title's frame; and the line that tells the user. Pure decisions; Video.cpp
// carries them out with ffmpeg.
#ifndef TOLVEX_TOOLS_AUTHOR_VIDEOPLAN_H
#define TOLVEX_TOOLS_AUTHOR_VIDEOPLAN_H

#include "tools/author/Video.h"

#include <string>

namespace menutool::author {

enum class Aspect { k4x3, k16x9 };
enum class AspectChoice { kAuto, k4x3, k16x9 };

const char* AspectName(Aspect aspect);  // "4:3" or "16:9"

// "auto", "4:3" or "16:9" as the command line gives it; anything else is auto.
AspectChoice AspectChoiceNamed(const std::string& name);

// A picture at least this wide for its height becomes a 16:9 title when the aspect is chosen
// automatically: the middle (geometric mean) of 4:3 and 16:9, where either frame loses the same
// share of the screen to bars.
constexpr double kWideFrom = 1.5396;

// The shape of the picture as it is shown: its stored size times the pixel shape (or the aspect
// the stream flags), turned by the rotation a phone records. 0 when the size is unknown.
double ShownAspect(const VideoFacts& video);

// Whether the picture, or the sound, can go onto a disc of `standard` as they are: MPEG-2 in an
// MPEG program stream, at the standard's frame rate and one of its DVD sizes (720, 704 or 352
// wide), flagged 4:3 or 16:9 (16:9 only at full width); sound present, all of it AC-3, MPEG
// audio or DVD PCM at 48 kHz.
bool DvdReadyPicture(const VideoFacts& video, Standard standard);
bool DvdReadySound(const VideoFacts& video);

enum class Treatment {
  kAsItIs,    // the file goes onto the disc untouched
  kNewSound,  // its picture is copied, its sound replaced (missing or not DVD sound)
  kConvert,   // picture and sound encoded anew
};

struct VideoPlan {
  Treatment treatment = Treatment::kConvert;
  Standard standard = Standard::kNtsc;
  Aspect aspect = Aspect::k4x3;
  int frameWidth = 0, frameHeight = 0;      // the title's picture in stored pixels
  int pictureWidth = 0, pictureHeight = 0;  // the video scaled into it, centred; bars around
  int channels = 0;       // sound written (AC-3); 0 when the sound is kept
  bool silent = false;    // the video has no sound: the title gets a silent track
  int soundBitrate = 0;   // bits a second of the sound written; 0 when kept
};

// The plan for `video` on a disc of `standard`. With kAuto the title is 16:9 when the shown
// picture is kWideFrom or wider and 4:3 otherwise; a DVD-ready file keeps the aspect it is
// flagged with. A picture of another shape is fitted whole inside the frame, bars filling the
// rest (within 1% it fills the frame). The sound keeps its channels, up to 5.1.
VideoPlan PlanVideo(const VideoFacts& video, Standard standard, AspectChoice choice);

// What dvdauthor takes as one titleset's video and audio attributes for the title: titles that
// share it can share a titleset. "16:9 720x480 ac3/2".
std::string TitleSetKey(const VideoFacts& video, const VideoPlan& plan);

// The line that tells the user what is done with `video`, named `name`:
//   "v.mp4: 1280x720 25 fps H.264, AAC stereo → NTSC 16:9, 29.97 fps, AC-3 stereo"
//   "dvd.mpg: DVD MPEG-2 NTSC 4:3, used as it is"
std::string DescribePlan(const std::string& name, const VideoFacts& video,
                         const VideoPlan& plan);

}  // namespace menutool::author

#endif  // TOLVEX_TOOLS_AUTHOR_VIDEOPLAN_H
