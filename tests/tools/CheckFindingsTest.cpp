// check prints one line a finding, with its severity, and exits with the worst one; it is
// tried on a page spoiled in every way a DVD maker meets: what the renderer draws wrongly
// (titles cut off or over a neighbour, measured as the renderer lays them out), what a
// television shows badly (outside the title-safe area, odd lines, thin frames), and files that
// cannot be used (a FIFO that must not be opened, an empty picture, a folder, an output folder
// that is missing; the renderer's tests try the ways a picture can be spoiled). render refuses
// such a page unless forced.
// Templates are untrusted: outputs outside the template's folder are pointed out, names are
// echoed escaped, and an oversized page is refused unread.
#include "ToolRunner.h"

#include "support/IdleFifo.h"
#include "support/SystemFeatures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>
#include <sstream>

namespace tolvex::test {
namespace {

std::string Button(int index, int left, int top, int right, int bottom) {
  std::string keys;
  for (const auto& [edge, v] : {std::pair<const char*, int>{"left", left}, {"right", right},
                                {"top", top}, {"bottom", bottom}})
    keys += "ButtonPosition" + std::to_string(index) + "_" + edge + "=" + std::to_string(v) + "\n";
  return keys;
}

std::string Title(int index, const std::string& text, int x, int y) {
  const std::string i = std::to_string(index);
  return "ButtonTitle" + i + "=" + text + "\nButtonTitlePosition" + i + "_x=" + std::to_string(x) +
         "\nButtonTitlePosition" + i + "_y=" + std::to_string(y) + "\nButtonTitleFont_Size" + i +
         "=20\n";
}

// check prints each problem on one line with its severity; the exit status is the worst one.
// Buttons are named by their tool number (library index - 1); others by their library index.
TEST(CheckCommand, ReportsErrorsAndWarningsOneLineEach) {
  TempDir dir;
  const std::string file = dir.File("menu.ini"), at = file + ": ";
  WriteFile(dir.File("here.png"), ReadFile(ExamplePicture("button.png")));
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"[Background]\nNTSC=TRUE\nMaximumNumberOfButton=2\nCurrentNumberOfButton=3\n"
       "BackgroundBmp=gone.png\nBackgroundTitle=" + std::string(100, 'T') + "\n"
       "BackgroundTitleFont_Size=1\nAddPrevButton=FALSE\nAddNextButton=FALSE\n[NumOfButton1]\n" +
       Button(2, 100, 100, 140, 140) + "[NumOfButton2]\n" + Button(2, 100, 100, 140, 140) +
       Button(3, 130, 130, 180, 180) + "ButtonBmp2=here.png\nButtonFrameBmp3=default\n"
       "[NumOfButton3]\n" + Button(2, 100, 100, 140, 140) + Button(3, 700, 400, 760, 470) +
       Button(4, 190, 100, 180, 140),
       {"2", "warning: buttons.current: 3 is above the maximum 2",
        "error: background: 'gone.png' does not exist (looked for " +
            std::filesystem::path(dir.File("gone.png")).make_preferred().string() + ")",
        "warning: title: 100 characters, of which only the first 79 are read back",
        "error: layout 2, button 2: overlaps the button 1",
        "warning: layout 2, button 2, frame.picture: ButtonFrameBmp3 holds \"default\", which "
        "reads as missing",
        "error: layout 3, button 2: rectangle 700 400 760 470 reaches outside the 720x480 canvas",
        "error: layout 3, button 3: rectangle 190 100 180 140 is empty or inverted"}},
      {"[Background]\nNTSC=FALSE\nMaximumNumberOfButton=1\nCurrentNumberOfButton=1\n"
       "AddPrevButton=FALSE\nAddNextButton=FALSE\n[NumOfButton1]\n" +
       Button(0, 100, 240, 200, 300) + "ButtonTitle0=default\n",
       {"1", "warning: layout 1, library index 0, title: ButtonTitle0 holds \"default\", which "
        "reads as missing",
        "warning: layout 1, library index 0: the tool numbers buttons from library index 2 (an "
        "earlier menutemplate or another program wrote this one); the navigation values of "
        "index 0 and 1 do not read back"}}};
  for (const auto& [text, expected] : cases) {
    WriteFile(file, text);
    const ToolResult checked = RunTool({"check", file});
    EXPECT_EQ(std::to_string(checked.status), expected[0]) << checked.out;
    std::multiset<std::string> printed, wanted;  // in any order; here.png exists: not named
    std::istringstream out(checked.out);
    for (std::string line; std::getline(out, line);) printed.insert(line);
    for (size_t i = 1; i < expected.size(); ++i) wanted.insert(at + expected[i]);
    EXPECT_EQ(printed, wanted);
  }
}

const char kSpoiled[] =
    "[Background]\nNTSC=FALSE\nMaximumNumberOfButton=3\nCurrentNumberOfButton=3\n"
    "BackgroundBmp=fifo.png\nBackgroundMusic=folder\nOutputBmp=nofolder/menu.bmp\n"
    "BackgroundTitle=A title far too long for the page\nBackgroundTitlePosition_x=400\n"
    "BackgroundTitlePosition_y=60\nBackgroundTitleFont_Size=40\n"
    "BackgroundTitleFont_Name=\x1b[2J\x1b]0;x\x07\nBackgroundTitleFont_R=300\n"
    "BackgroundTitleFont_G=0\nBackgroundTitleFont_B=0\nAddPrevButton=TRUE\nAddNextButton=FALSE\n";

TEST(CheckFindings, ASpoiledPageIsReportedOneLineAFindingAndRenderRefusesIt) {
  TempDir dir;
  // Where the system has no FIFOs, the background is a picture that is not there.
  const bool fifos = MissingFeature(Feature::kFifos) == nullptr;
  const std::unique_ptr<IdleFifo> fifo(fifos ? new IdleFifo(dir.File("fifo.png")) : nullptr);
  ASSERT_TRUE(std::filesystem::create_directory(dir.File("folder")));
  WriteFile(dir.File("empty.png"), "");
  TempDir elsewhere;
  const std::string file = dir.File("menu.ini"), mask = elsewhere.File("mask.bmp");
  WriteFile(file, std::string(kSpoiled) + "OutMask=" + mask + "\n[NumOfButton3]\n" +
                      Button(2, 40, 100, 200, 190) + "ButtonFrameThickness2=1\n" +
                      Title(2, "Chapter one", 230, 300) +
                      Button(3, 280, 100, 440, 190) + "ButtonFrameThickness3=40\n" +
                      "ButtonBmp3=empty.png\n" + Title(3, "The second chapter title", 300, 300) +
                      Button(4, 480, 300, 640, 391) + "ButtonFrameThickness4=4\n");

  const ToolResult checked = RunTool({"check", file});
  EXPECT_EQ(checked.status, 2);
  const std::vector<std::string> expected{
      fifos ? "error: background: 'fifo.png' is a named pipe (FIFO)"
            : "error: background: 'fifo.png' does not exist",
      "error: music: 'folder' is a folder",
      "error: output: 'nofolder/menu.bmp' cannot be written: its folder",
      "warning: mask: '" + mask + "' lies outside the template's folder",
      "warning: title.font.rgb: red 300 above 255, drawn as 255",
      "warning: title: font '\\e[2J\\e]0;x\\x07' is not installed;",  // escaped
      "error: title: cut off at the right edge",
      "error: previous button: shown on the page but has no rectangle",
      "warning: layout 1: no buttons",
      "warning: layout 2: no buttons",
      "warning: layout 3, button 1: rectangle 40 100 200 190 lies outside the title-safe area "
      "72 57 648 519",
      "warning: layout 3, button 1, frame.size: 1 px: a frame thinner than 2 lines flickers",
      "error: layout 3, button 2, picture: 'empty.png' is empty",
      "warning: layout 3, button 2, frame.size: 40 px leaves 80x10 of the 160x90 button",
      "warning: layout 3, button 3: top 300 and bottom 391: an edge on an odd line flickers",
      "error: layout 3, button 1, title: runs over the title of button 2",
      "error: layout 3, button 2, title: runs over the button 3",
      "warning: mode: the buttons end at line 391 of 576: the layout looks sized for NTSC"};
  std::vector<std::string> lines;
  std::istringstream out(checked.out);
  for (std::string line; std::getline(out, line);) lines.push_back(line);
  for (const std::string& want : expected) {
    const auto hit = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
      return line.rfind(file + ": " + want, 0) == 0;
    });
    EXPECT_NE(hit, lines.end()) << want << "\n" << checked.out;
  }
  EXPECT_EQ(lines.size(), expected.size()) << checked.out;
  EXPECT_EQ(checked.out.find('\x1b'), std::string::npos);

  const std::string before = ReadFile(file);
  const ToolResult rendered = RunTool({"render", file});
  EXPECT_EQ(rendered.status, 2);
  EXPECT_NE(rendered.out.find("error: title: cut off"), std::string::npos) << rendered.out;
  EXPECT_NE(rendered.err.find(file + ": 8 errors found by check; not rendered (--force renders all "
                              "the same)"),
            std::string::npos)
      << rendered.err;
  EXPECT_EQ(ReadFile(file), before);
}

// Larger than the renderer reads: refused by check and by render's check before parsing.
TEST(CheckFindings, AnOversizedPageIsRefusedUnread) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  WriteFile(file, "[Background]\nNTSC=TRUE\n" + std::string(17 << 20, ';'));
  for (const char* command : {"check", "render"}) {
    const ToolResult refused = RunTool({command, file}, "", 120);
    EXPECT_EQ(refused.status, 2) << command;
    EXPECT_NE(refused.err.find("is 17 MB, more than the 16 MB a template may have for the "
                               "renderer; not checked"),
              std::string::npos)
        << command << ": " << refused.err;
    EXPECT_EQ(refused.out, "") << command;
  }
}

}  // namespace
}  // namespace tolvex::test
