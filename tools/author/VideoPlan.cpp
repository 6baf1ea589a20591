// The plan for one video of a disc (see VideoPlan.h).
#include "tools/author/VideoPlan.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <set>

namespace menutool::author {
namespace {

bool Near(double a, double b, double within) { return std::fabs(a - b) <= within; }

double FrameRate(Standard standard) { return standard == Standard::kNtsc ? 30000.0 / 1001 : 25; }
int FrameHeight(Standard standard) { return standard == Standard::kNtsc ? 480 : 576; }
double AspectValue(Aspect aspect) { return aspect == Aspect::k4x3 ? 4.0 / 3 : 16.0 / 9; }

bool Turned(const VideoFacts& video) { return video.rotation == 90 || video.rotation == 270; }

// A number of pixels, rounded to an even one (MPEG-2 chroma is subsampled in both directions).
int Even(double pixels) { return std::max(2, 2 * static_cast<int>(std::lround(pixels / 2))); }

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", value);
  std::string out = text;
  out.erase(out.find_last_not_of('0') + 1);
  if (out.back() == '.') out.pop_back();
  return out;
}

std::string PictureCodecName(const std::string& codec) {
  if (codec == "h264") return "H.264";
  if (codec == "hevc") return "H.265";
  if (codec == "mpeg4") return "MPEG-4";
  if (codec == "mpeg2video") return "MPEG-2";
  if (codec == "mpeg1video") return "MPEG-1";
  std::string upper = codec;
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return upper;
}

std::string SoundCodecName(const std::string& codec) {
  if (codec == "ac3") return "AC-3";
  if (codec == "eac3") return "E-AC-3";
  if (codec == "mp2") return "MP2";
  if (codec == "mp3") return "MP3";
  if (codec == "aac") return "AAC";
  if (codec == "opus") return "Opus";
  if (codec == "vorbis") return "Vorbis";
  if (codec == "flac") return "FLAC";
  if (codec == "dts") return "DTS";
  if (codec.rfind("pcm_", 0) == 0) return "PCM";
  return codec;
}

std::string Channels(int channels) {
  switch (channels) {
    case 1: return "mono";
    case 2: return "stereo";
    case 6: return "5.1";
    default: return std::to_string(channels) + " channels";
  }
}

std::string SoundOf(const VideoFacts& video) {
  if (video.sounds.empty()) return "no sound";
  const Sound& first = video.sounds.front();
  std::string text = SoundCodecName(first.codec) + " " + Channels(first.channels);
  if (first.rate && first.rate != 48000) text += " " + Number(first.rate / 1000.0) + " kHz";
  return text;
}

std::string WrittenSound(const VideoPlan& plan) {
  return plan.silent ? "silent AC-3 stereo" : "AC-3 " + Channels(plan.channels);
}

}  // namespace

const char* AspectName(Aspect aspect) { return aspect == Aspect::k4x3 ? "4:3" : "16:9"; }

AspectChoice AspectChoiceNamed(const std::string& name) {
  if (name == "4:3") return AspectChoice::k4x3;
  if (name == "16:9") return AspectChoice::k16x9;
  return AspectChoice::kAuto;
}

double ShownAspect(const VideoFacts& video) {
  if (video.width <= 0 || video.height <= 0) return 0;
  const double stored = video.flaggedAspect > 0
                            ? video.flaggedAspect
                            : video.width * video.pixelAspect / video.height;
  return Turned(video) ? 1 / stored : stored;
}

bool DvdReadyPicture(const VideoFacts& video, Standard standard) {
  if (video.container != "mpeg" || video.codec != "mpeg2video" || video.rotation != 0 ||
      !Near(video.fps, FrameRate(standard), 0.01))
    return false;
  const int full = FrameHeight(standard);
  const bool fullWidth = video.width == 720 || video.width == 704;
  const bool size = (fullWidth && video.height == full) ||
                    (video.width == 352 && (video.height == full || video.height == full / 2));
  const bool wide = Near(video.flaggedAspect, 16.0 / 9, 0.01);
  return size && (Near(video.flaggedAspect, 4.0 / 3, 0.01) || (wide && fullWidth));
}

bool DvdReadySound(const VideoFacts& video) {
  static const std::set<std::string> kDvdSound = {"ac3", "mp2", "pcm_dvd"};
  if (video.sounds.empty()) return false;
  for (const Sound& sound : video.sounds)
    if (!kDvdSound.count(sound.codec) || sound.rate != 48000) return false;
  return true;
}

VideoPlan PlanVideo(const VideoFacts& video, Standard standard, AspectChoice choice) {
  VideoPlan plan;
  plan.standard = standard;
  const double shown = ShownAspect(video);
  const bool readyPicture = DvdReadyPicture(video, standard);
  if (choice == AspectChoice::kAuto)
    plan.aspect = (readyPicture ? video.flaggedAspect : shown) >= kWideFrom ? Aspect::k16x9
                                                                            : Aspect::k4x3;
  else
    plan.aspect = choice == AspectChoice::k4x3 ? Aspect::k4x3 : Aspect::k16x9;

  const bool keepPicture =
      readyPicture && Near(video.flaggedAspect, AspectValue(plan.aspect), 0.01);
  if (keepPicture) {
    plan.treatment = DvdReadySound(video) ? Treatment::kAsItIs : Treatment::kNewSound;
    plan.frameWidth = plan.pictureWidth = video.width;
    plan.frameHeight = plan.pictureHeight = video.height;
  } else {
    plan.treatment = Treatment::kConvert;
    plan.frameWidth = 720;
    plan.frameHeight = FrameHeight(standard);
    // The whole picture, undistorted, inside the frame: full width with bars above and below
    // when it is wider than the title, full height with bars at the sides when narrower.
    const double frame = AspectValue(plan.aspect);
    plan.pictureWidth = plan.frameWidth;
    plan.pictureHeight = plan.frameHeight;
    if (shown > frame * 1.01)
      plan.pictureHeight = std::min(plan.frameHeight, Even(plan.frameHeight * frame / shown));
    else if (shown > 0 && shown < frame / 1.01)
      plan.pictureWidth = std::min(plan.frameWidth, Even(plan.frameWidth * shown / frame));
  }
  if (plan.treatment != Treatment::kAsItIs) {
    plan.silent = video.sounds.empty();
    const int channels = plan.silent ? 2 : video.sounds.front().channels;
    // AC-3 carries up to 5.1; more channels are mixed down to it.
    plan.channels = std::clamp(channels, 1, 6);
    // Enough for clean stereo; 5.1 gets the rate DVDs commonly use for it.
    plan.soundBitrate = plan.channels <= 2 ? 192000 : 448000;
  }
  return plan;
}

std::string TitleSetKey(const VideoFacts& video, const VideoPlan& plan) {
  std::string key = std::string(AspectName(plan.aspect)) + " " + std::to_string(plan.frameWidth) +
                    "x" + std::to_string(plan.frameHeight);
  if (plan.treatment == Treatment::kAsItIs) {
    for (const Sound& sound : video.sounds)
      key += " " + sound.codec + "/" + std::to_string(sound.channels);
  } else {
    key += " ac3/" + std::to_string(plan.channels);
  }
  return key;
}

std::string DescribePlan(const std::string& name, const VideoFacts& video,
                         const VideoPlan& plan) {
  const std::string target = std::string(StandardName(plan.standard)) + " " +
                             AspectName(plan.aspect);
  if (plan.treatment == Treatment::kAsItIs)
    return name + ": DVD MPEG-2 " + target + ", used as it is";
  if (plan.treatment == Treatment::kNewSound)
    return name + ": DVD MPEG-2 " + target + ", " + SoundOf(video) + " → picture used as it is, " +
           WrittenSound(plan);

  std::string from = std::to_string(video.width) + "x" + std::to_string(video.height);
  if (video.rotation) from += " turned " + std::to_string(video.rotation) + "°";
  if (video.fps > 0) from += " " + Number(video.fps) + " fps";
  from += " " + PictureCodecName(video.codec);
  std::string to = target;
  if (plan.pictureHeight < plan.frameHeight) to += " letterboxed";
  if (plan.pictureWidth < plan.frameWidth) to += " pillarboxed";
  to += ", " + Number(FrameRate(plan.standard)) + " fps";
  return name + ": " + from + ", " + SoundOf(video) + " → " + to + ", " + WrittenSound(plan);
}

}  // namespace menutool::author
