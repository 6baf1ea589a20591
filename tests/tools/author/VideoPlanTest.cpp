#include "tools/author/VideoPlan.h"

#include <gtest/gtest.h>

namespace menutool::author {
namespace {

VideoFacts Dvd(int width, int height, double fps, double flagged, std::vector<Sound> sounds) {
  VideoFacts video;
  video.container = "mpeg";
  video.codec = "mpeg2video";
  video.width = width;
  video.height = height;
  video.fps = fps;
  video.flaggedAspect = flagged;
  video.sounds = std::move(sounds);
  video.seconds = 10;
  return video;
}

VideoFacts Clip(int width, int height, double pixel = 1, int rotation = 0) {
  VideoFacts video;
  video.container = "mov,mp4,m4a,3gp,3g2,mj2";
  video.codec = "h264";
  video.width = width;
  video.height = height;
  video.fps = 30;
  video.pixelAspect = pixel;
  video.rotation = rotation;
  video.sounds = {{"aac", 44100, 2}};
  video.seconds = 10;
  return video;
}

constexpr double kNtscRate = 30000.0 / 1001;
const Sound kAc3 = {"ac3", 48000, 2};

TEST(VideoPlan, OnlyAFileReadyForTheDiscsStandardAndAspectIsUsedAsItIs) {
  const struct {
    const char* what;
    VideoFacts video;
    Standard standard;
    AspectChoice choice;
    Treatment treatment;
    Aspect aspect;
  } cases[] = {
      {"NTSC 4:3", Dvd(720, 480, kNtscRate, 4.0 / 3, {kAc3}), Standard::kNtsc, AspectChoice::kAuto,
       Treatment::kAsItIs, Aspect::k4x3},
      {"PAL file on an NTSC disc", Dvd(720, 576, 25, 16.0 / 9, {kAc3}), Standard::kNtsc,
       AspectChoice::kAuto, Treatment::kConvert, Aspect::k16x9},
      {"16:9 on a disc of 4:3 titles", Dvd(720, 480, kNtscRate, 16.0 / 9, {kAc3}),
       Standard::kNtsc, AspectChoice::k4x3, Treatment::kConvert, Aspect::k4x3},
      {"16:9 only at full width", Dvd(352, 480, kNtscRate, 16.0 / 9, {kAc3}), Standard::kNtsc,
       AspectChoice::kAuto, Treatment::kConvert, Aspect::k16x9},
      {"no sound", Dvd(720, 576, 25, 16.0 / 9, {}), Standard::kPal, AspectChoice::kAuto,
       Treatment::kNewSound, Aspect::k16x9},
  };
  for (const auto& c : cases) {
    const VideoPlan plan = PlanVideo(c.video, c.standard, c.choice);
    EXPECT_EQ(plan.treatment, c.treatment) << c.what;
    EXPECT_EQ(plan.aspect, c.aspect) << c.what;
  }
  VideoFacts inMp4 = Dvd(720, 480, kNtscRate, 4.0 / 3, {kAc3});
  inMp4.container = "mov,mp4,m4a,3gp,3g2,mj2";
  EXPECT_EQ(PlanVideo(inMp4, Standard::kNtsc, AspectChoice::kAuto).treatment,
            Treatment::kConvert);
}

TEST(VideoPlan, EveryShapeFitsWholeIntoItsTitleUnstretched) {
  const struct {
    const char* what;
    VideoFacts video;
    Standard standard;
    AspectChoice choice;
    Aspect aspect;
    int width, height;  // of the picture inside the 720-wide frame
  } cases[] = {
      {"720p", Clip(1280, 720), Standard::kNtsc, AspectChoice::kAuto, Aspect::k16x9, 720, 480},
      {"portrait phone clip, recorded on its side", Clip(1920, 1080, 1, 90), Standard::kNtsc,
       AspectChoice::kAuto, Aspect::k4x3, 304, 480},
      {"cinema 2.39:1", Clip(1920, 804), Standard::kPal, AspectChoice::kAuto, Aspect::k16x9, 720,
       428},
      {"wide into a 4:3 disc", Clip(1280, 720), Standard::kNtsc, AspectChoice::k4x3,
       Aspect::k4x3, 720, 360},
      {"4:3 into a 16:9 disc", Clip(640, 480), Standard::kNtsc, AspectChoice::k16x9,
       Aspect::k16x9, 540, 480},
  };
  for (const auto& c : cases) {
    const VideoPlan plan = PlanVideo(c.video, c.standard, c.choice);
    EXPECT_EQ(plan.treatment, Treatment::kConvert) << c.what;
    EXPECT_EQ(plan.aspect, c.aspect) << c.what;
    EXPECT_EQ(plan.frameWidth, 720) << c.what;
    EXPECT_EQ(plan.frameHeight, c.standard == Standard::kNtsc ? 480 : 576) << c.what;
    EXPECT_EQ(plan.pictureWidth, c.width) << c.what;
    EXPECT_EQ(plan.pictureHeight, c.height) << c.what;
  }
}

TEST(VideoPlan, SoundKeepsItsChannelsUpToFivePointOneAndSilenceFillsATitleWithout) {
  VideoFacts clip = Clip(640, 480);
  const struct {
    std::vector<Sound> sounds;
    int channels;
    bool silent;
    int bitrate;
  } cases[] = {{{{"aac", 48000, 6}, {"aac", 48000, 2}}, 6, false, 448000},
               {{{"flac", 96000, 8}}, 6, false, 448000},
               {{{"mp3", 44100, 1}}, 1, false, 192000},
               {{}, 2, true, 192000}};
  for (const auto& c : cases) {
    clip.sounds = c.sounds;
    const VideoPlan plan = PlanVideo(clip, Standard::kPal, AspectChoice::kAuto);
    EXPECT_EQ(plan.channels, c.channels) << c.sounds.size();
    EXPECT_EQ(plan.silent, c.silent) << c.sounds.size();
    EXPECT_EQ(plan.soundBitrate, c.bitrate) << c.sounds.size();
  }
}

TEST(VideoPlan, TitlesShareATitlesetOnlyWithTheSamePictureAndSoundAttributes) {
  auto key = [](const VideoFacts& video, AspectChoice choice = AspectChoice::kAuto) {
    return TitleSetKey(video, PlanVideo(video, Standard::kNtsc, choice));
  };
  VideoFacts mono = Clip(320, 240);
  mono.sounds = {{"mp3", 44100, 1}};
  const VideoFacts ready = Dvd(720, 480, kNtscRate, 4.0 / 3, {kAc3});
  EXPECT_EQ(key(Clip(640, 480)), key(Clip(1920, 1440)));
  EXPECT_EQ(key(Clip(640, 480)), key(ready));
  EXPECT_NE(key(Clip(640, 480)), key(mono));
  EXPECT_NE(key(ready), key(Dvd(352, 240, kNtscRate, 4.0 / 3, {kAc3})));
  EXPECT_NE(key(Clip(1280, 720)), key(Clip(640, 480)));
  EXPECT_EQ(key(Clip(1280, 720), AspectChoice::k4x3), key(Clip(640, 480)));
}

TEST(VideoPlan, TheLineSaysWhatBecomesOfTheVideo) {
  VideoFacts wide = Clip(1280, 720);
  wide.sounds = {{"aac", 44100, 1}};
  EXPECT_EQ(DescribePlan("w.mp4", wide, PlanVideo(wide, Standard::kPal, AspectChoice::k4x3)),
            "w.mp4: 1280x720 30 fps H.264, AAC mono 44.1 kHz → PAL 4:3 letterboxed, 25 fps, "
            "AC-3 mono");
  const VideoFacts ready = Dvd(720, 480, kNtscRate, 4.0 / 3, {kAc3});
  EXPECT_EQ(DescribePlan("d.mpg", ready, PlanVideo(ready, Standard::kNtsc, AspectChoice::kAuto)),
            "d.mpg: DVD MPEG-2 NTSC 4:3, used as it is");
}

}  // namespace
}  // namespace menutool::author
