#include "tools/author/Capacity.h"

#include <gtest/gtest.h>

namespace menutool::author {
namespace {

TitleLoad Encoded(double hours, double sound = 192000) {
  TitleLoad title;
  title.seconds = hours * 3600;
  title.encoded = true;
  title.soundBitrate = sound;
  return title;
}

TitleLoad Kept(double bytes, double hours) {
  TitleLoad title;
  title.seconds = hours * 3600;
  title.keptBytes = bytes;
  return title;
}

TEST(Capacity, AShortDiscKeepsTheBestBitrate) {
  const DiscFit fit = FitDisc({Encoded(0.5), Kept(400e6, 0.2)}, kSingleLayer);
  ASSERT_TRUE(fit.fits);
  EXPECT_EQ(fit.videoBitrate, kBestVideoBitrate);
  // 30 min of 6.192 Mbit/s with the program stream's packets, and the kept file.
  EXPECT_NEAR(fit.bytes, 1.4348e9 + 400e6, 20e6);
  EXPECT_EQ(DescribeFit(fit), "disc: 1.8 GB of 4.7 GB at 6.0 Mbit/s");
}

TEST(Capacity, ALongDiscIsFittedByLoweringTheVideoBitrateDownToTheLowest) {
  // Two hours fit at 4.8 Mbit/s (4.99 Mbit/s of picture and sound in all), not at 4.9.
  const DiscFit twoHours = FitDisc({Encoded(1), Encoded(0.5), Encoded(0.5)}, kSingleLayer);
  ASSERT_TRUE(twoHours.fits);
  EXPECT_DOUBLE_EQ(twoHours.videoBitrate, 4.8e6);
  EXPECT_LE(twoHours.bytes, kSingleLayer);
  EXPECT_EQ(DescribeFit(twoHours), "disc: 4.6 GB of 4.7 GB at 4.8 Mbit/s, lowered from 6.0 to fit");

  const DiscFit tooMuch = FitDisc({Encoded(9), Kept(1e9, 1)}, kDualLayer);
  EXPECT_FALSE(tooMuch.fits);
  EXPECT_NE(DescribeOverflow(tooMuch).find("of a dual-layer disc"), std::string::npos);
}

TEST(Capacity, FilesUsedAsTheyAreCountWhatTheyWeigh) {
  const DiscFit fit = FitDisc({Kept(3e9, 1), Kept(2e9, 1)}, kSingleLayer);
  EXPECT_FALSE(fit.fits);
  EXPECT_EQ(DescribeOverflow(fit),
            "the videos last 2 h 00 min and take 5.0 GB as they are: more than the 4.7 GB of a "
            "single-layer disc (--dvd9: 8.5 GB)");
}

}  // namespace
}  // namespace menutool::author
