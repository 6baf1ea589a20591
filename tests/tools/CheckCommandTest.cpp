// check: each problem is one line with its severity, and the exit status is the worst one.
#include "ToolRunner.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

using tolvex::test::RunTool;
using tolvex::test::TempDir;
using tolvex::test::ToolResult;
using tolvex::test::WriteFile;

namespace {

std::string Button(int i, int left, int top, int right, int bottom) {
  auto key = [&](const char* edge, int v) {
    return "ButtonPosition" + std::to_string(i) + "_" + edge + "=" + std::to_string(v) + "\n";
  };
  return key("left", left) + key("right", right) + key("top", top) + key("bottom", bottom);
}

bool HasLine(const std::string& out, const std::string& line) {
  return out.find(line + "\n") != std::string::npos;
}

}  // namespace

TEST(CheckCommand, ReportsErrorsAndWarningsOneLineEach) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  WriteFile(dir.File("here.png"), "");
  WriteFile(file, "[Background]\nNTSC=TRUE\nMaximumNumberOfButton=2\nCurrentNumberOfButton=3\n"
                  "BackgroundBmp=gone.png\nBackgroundTitle=" + std::string(100, 'T') + "\n"
                  "AddPrevButton=FALSE\nAddNextButton=FALSE\n"
                  "[NumOfButton1]\n" + Button(1, 10, 10, 50, 50) +
                  "[NumOfButton2]\n" + Button(1, 10, 10, 50, 50) + Button(2, 40, 40, 90, 90) +
                  "ButtonBmp1=here.png\nButtonFrameBmp2=default\n"
                  "[NumOfButton3]\n" + Button(1, 10, 10, 50, 50) + Button(2, 700, 400, 760, 470) +
                  Button(3, 90, 10, 80, 50));
  ToolResult checked = RunTool({"check", file});
  EXPECT_EQ(checked.status, 2);
  const std::string& out = checked.out;
  const std::string at = file + ": ";
  EXPECT_TRUE(HasLine(out, at + "warning: buttons.current: 3 is above the maximum 2")) << out;
  EXPECT_TRUE(HasLine(out, at + "error: background: 'gone.png' does not exist (looked for " +
                               dir.File("gone.png") + ")")) << out;
  EXPECT_TRUE(HasLine(out, at + "warning: title: 100 characters, of which only the first 79 "
                               "are read back")) << out;
  EXPECT_TRUE(HasLine(out, at + "error: layout 2, button 2: overlaps the button 1")) << out;
  EXPECT_TRUE(HasLine(out, at + "warning: layout 2, button 2, frame.picture: ButtonFrameBmp2 "
                               "holds \"default\", which reads as missing")) << out;
  EXPECT_TRUE(HasLine(out, at + "error: layout 3, button 2: rectangle 700 400 760 470 reaches "
                               "outside the 720x480 canvas")) << out;
  EXPECT_TRUE(HasLine(out, at + "error: layout 3, button 3: rectangle 90 10 80 50 is empty or "
                               "inverted")) << out;
  EXPECT_EQ(out.find("here.png"), std::string::npos) << out;  // that picture exists
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 7) << out;
}

TEST(CheckCommand, WarningsAloneExitOneAndAMissingLayoutIsAnError) {
  TempDir dir;
  const std::string file = dir.File("menu.ini");
  WriteFile(file, "[Background]\nNTSC=FALSE\nMaximumNumberOfButton=1\nCurrentNumberOfButton=1\n"
                  "AddPrevButton=FALSE\nAddNextButton=FALSE\n"
                  "[NumOfButton1]\n" + Button(0, 100, 500, 200, 560) + "ButtonTitle0=default\n");
  ToolResult checked = RunTool({"check", file});
  EXPECT_EQ(checked.status, 1) << checked.out;  // 500..560 fits the PAL canvas
  EXPECT_TRUE(HasLine(checked.out, file + ": warning: layout 1, button 0, title: ButtonTitle0 "
                                          "holds \"default\", which reads as missing"))
      << checked.out;

  WriteFile(file, "[Background]\nNTSC=TRUE\nMaximumNumberOfButton=2\nCurrentNumberOfButton=2\n"
                  "AddPrevButton=TRUE\nAddNextButton=FALSE\n[NumOfButton1]\n" +
                      Button(0, 10, 10, 50, 50));
  checked = RunTool({"check", file});
  EXPECT_EQ(checked.status, 2);
  EXPECT_TRUE(HasLine(checked.out, file + ": error: layout 2: no buttons in the layout in use"))
      << checked.out;
  EXPECT_TRUE(HasLine(checked.out, file + ": error: previous button: shown on the page but has "
                                          "no rectangle"))
      << checked.out;
}
