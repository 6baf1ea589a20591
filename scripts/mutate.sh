#!/usr/bin/env bash
# Mutation check of the test suite: puts each named fault of the table below into a scratch
# copy of the working tree, one at a time, builds the test binaries that should catch it, runs
# them and prints whether the fault was caught or missed. The working tree is never changed.
# Not part of CI: run it before a large change to the tests or the code they guard.
#
#   bash scripts/mutate.sh                      # every fault, in a fresh copy under /tmp
#   bash scripts/mutate.sh NAME...              # only these faults
#   bash scripts/mutate.sh --scratch DIR ...    # copy into DIR and keep it (faster reruns)
#
# A row: name | file | exact text | its replacement | test binaries. The text must occur
# exactly once in the file, or the row is reported as "not applied" (the code moved on: fix
# the row). "\n" in the text or replacement stands for a line break.
# cached-music-not-kept changes only a copy CMenuTemplate keeps of a value and no public method
# reads: nothing outside the object can see it, so it is expected to be missed (a test that
# caught it would have to read private members).
set -euo pipefail

MUTANTS='
name-fold-Z | platform/NameIndex.h | unit <= '"'Z'"' ? | unit < '"'Z'"' ? | platform_tests
xdg-relative-accepted | platform/posix/ProfileFolder.cpp | config && config[0] == '"'/'"' | config && config[0] | platform_tests
read-memo-outlives-compaction | platform/IndexedIni.cpp | recent.compactions == m_compactions && | | platform_tests
plain-entry-screen-blind | platform/IndexedIni.cpp | return SomeByteBelow(word, 0x0E) \|\| | return false && SomeByteBelow(word, 0x0E) && | platform_tests
racy-time-rule-dropped | platform/ParseCache.cpp | stamp.takenNs - std::max(stamp.modifiedNs, stamp.changedNs) > kRacyNs | true | platform_tests
edit-ignores-outside-change | platform/ProfileEdit.cpp | status.ok() && !Unchanged(session) | status.ok() && !Unchanged(session) && false | platform_tests
replace-drops-mode | platform/posix/PosixReplace.cpp | ::fchmod(fd, old->st_mode & 07777); | ; | platform_tests
record-frame-rgb-ignored | records/MenuButton.cpp | m_FrameRGB = rgb; | (void)rgb; | records_test
write-goes-on-after-failure | platform/ProfileStore.cpp | values[*written], file);\n    if (!status.ok()) return status; | values[*written], file);\n    (void)status; | ACCESSORS
read-fills-partly | template/ProfileAccess.h | return ReadAll(family | return ReadEachOf(family | ACCESSORS
flag-lowercase-true-refused | template/ProfileAccess.cpp | \|\| std::strcmp(text, "true") == 0 | | ACCESSORS
integer-sign-dropped | template/ProfileAccess.cpp | if (value < 0) *--at = '"'-'"'; | | ACCESSORS
default-not-missing | template/ProfileAccess.cpp | return std::strcmp(text, kMissingValue) != 0; | return true; | ACCESSORS
cached-music-not-kept | background/BackgroundSettings.cpp | ReadKept(kMusic, &m_strMusicFileName, name) | Read(kMusic, name) | ACCESSORS
button-title-long-read | keys/ButtonKeys.h | {{"ButtonTitle%d"}, Encoding::Text, kShortRead} | {{"ButtonTitle%d"}, Encoding::Text, kLongRead} | ACCESSORS
nav-edges-swapped | keys/NavButtonKeys.h | "Button%sButtonPosition_right", "Button%sButtonPosition_top" | "Button%sButtonPosition_top", "Button%sButtonPosition_right" | ACCESSORS
btn-navinfo-1-to-prev | buttons/LayoutLookup.cpp | if (index == 1) section = KeyParts{navbuttons::kNext.section, {}, {}}; | if (index == 1) section = KeyParts{navbuttons::kPrevious.section, {}, {}}; | ACCESSORS
nav-selector-fails | navbuttons/NavButtonKeys.h | return KeyTarget::Inert(); | return KeyTarget::Unusable(); | ACCESSORS
getnavinfo-all-or-nothing | navbuttons/NavButtons.cpp | .ReadEach(kNavInfo, r, c) | .Read(kNavInfo, r, c) | ACCESSORS
layout-error-count-used | buttons/LayoutLookup.cpp | if (room[0] == kNoCount[0] && std::strcmp(room, kNoCount) == 0) return false; | | ACCESSORS
ring-cap-odd | renderer/Page.h | (side + 1) / 2 | side / 2 | renderer_tests
template-size-limit-raised | renderer/TemplateReader.cpp | "template", kMaxTemplateBytes, | "template", kMaxPictureBytes, | renderer_tests
render-ignores-edit | renderer/TemplateReader.cpp | return TolvexReadProfileEdit(templatePath.c_str(), take, bytes) != FALSE; | return TolvexReadProfileEdit(templatePath.c_str(), take, bytes) && false; | renderer_tests
output-guard-off | renderer/OutputGuard.cpp | !IsOurBmp(reinterpret_cast<const unsigned char*>(header.data()), stamp.size) | (false && !IsOurBmp(reinterpret_cast<const unsigned char*>(header.data()), stamp.size)) | renderer_tests
arrow-points-wrong-way | renderer/MenuPainter.cpp | button.role == ButtonRole::kPrevious ? -1 : 1 | button.role == ButtonRole::kPrevious ? 1 : -1 | renderer_tests
title-size-in-points | renderer/cairo/PangoText.cpp | pango_font_description_set_absolute_size(font, | pango_font_description_set_size(font, | renderer_tests
flag-mixed-case-true | renderer/TemplateReader.cpp | *text == "TRUE" \|\| *text == "true" | *text == "TRUE" \|\| *text == "true" \|\| *text == "True" | renderer_tests
reader-short-values | renderer/TemplateReader.cpp | kValueBuffer = kLongRead; | kValueBuffer = kShortRead; | renderer_tests
bmp-rows-unpadded | renderer/BmpWriter.cpp | * 3 + 3) & ~uint64_t{3} | * 3) | renderer_tests
mask-outline-always-on-frame | renderer/MaskPainter.cpp | Free(marked, i, Strip(r, side, w), canvas) ? w : 0 | Free(marked, i, Strip(r, side, w), canvas) ? 0 : 0 | renderer_tests
mask-outline-one-pixel | renderer/MaskPainter.cpp | std::clamp(thickness, kMinMaskRing, kMaxMaskHalo) | std::clamp(thickness, 1, kMaxMaskHalo) | renderer_tests
mask-neighbours-not-trimmed | renderer/MaskPainter.cpp | if (Touch(marked[i].rect, marked[j].rect)) TrimApart | if (false) TrimApart | renderer_tests
mask-corner-rule-off | renderer/MaskPainter.cpp | canvas)) out[upright] = 0; | canvas)) (void)out[upright]; | renderer_tests
input-special-file-read | platform/posix/PosixFiles.cpp | if (error == 0 && !S_ISREG(info.st_mode)) error = EINVAL; | ; | renderer_tests
picture-data-lie-decoded | renderer/Picture.cpp | if (!header.dataProblem.empty()) { | if (false) { | renderer_tests
picture-rows-not-counted | renderer/cairo/PixbufPicture.cpp | \|\| request.rows < gdk_pixbuf_get_height(picture)) | ) | renderer_tests menutemplate_tool_test
picture-rgb-red-lost | renderer/Picture.cpp | to[0] = in[red]; | to[0] = 0; | renderer_tests
picture-png-blue-lost | renderer/cairo/PixbufPicture.cpp | (uint32_t{p[1]} << 8) \| p[2]; | (uint32_t{p[1]} << 8); | renderer_tests
output-over-template | renderer/OutputGuard.cpp | if (*self == Identity{file.device(), file.inode(), std::string()}) { | if (false && *self == Identity{file.device(), file.inode(), std::string()}) { | renderer_tests
output-over-other-output | renderer/OutputGuard.cpp | if (Identify(otherOutput) == self) { | if (false) { | renderer_tests
reason-not-cleared | renderer/MenuBmp.cpp | ClearFailure(); | ; | renderer_tests
set-accepts-lone-cr | tools/page/Values.cpp | std::string("\\r\\n\\0", 3) | std::string("\\n\\0", 2) | menutemplate_tool_test
check-odd-bottom-ignored | tools/commands/CmdCheck.cpp | r.top % 2 \|\| r.bottom % 2 | r.top % 2 | menutemplate_tool_test
apply-depth-limit-off | tools/commands/CmdApply.cpp | NestingDepth(text, kMaxDepth) > kMaxDepth | NestingDepth(text, kMaxDepth) > kMaxDepth + 1 | menutemplate_tool_test
indexed-never-compacted | platform/IndexedIni.cpp | if (held - m_units * m_width <= (m_units / 2 + 2048) * m_width) return; | if (held \|\| true) return; | platform_tests
batch-keeps-stale-section | platform/IndexedIni.cpp |       found = FindTrimmedSection(app);\n | | platform_tests
cp1252-0x81-lost | platform/Cp1252.cpp | 0x20AC, 0x0081, | 0x20AC, 0x003F, | platform_tests
stamp-ignores-change-time | platform/Os.h | modifiedNs == other.modifiedNs && changedNs == other.changedNs | modifiedNs == other.modifiedNs | platform_tests
copy-overwrites-when-told-not | platform/posix/PosixFiles.cpp | if (exists && failIfExists) return | if (exists && failIfExists && false) return | platform_tests
set-warns-at-the-limit | tools/page/Properties.cpp | if (values[0].text.size() <= kept) return | if (values[0].text.size() < kept) return | menutemplate_tool_test
check-absolute-output-not-warned | tools/commands/CmdCheck.cpp | if (relative.has_root_path() \|\| (!relative.empty() | if ((!relative.empty() | menutemplate_tool_test
echo-escape-unnamed | tools/cli/Echo.cpp | case 0x1B: | case 0x1C: | menutemplate_tool_test
author-area-is-the-rectangle | tools/author/ButtonAreas.cpp | areas[pair.button] = mask.pieces[pair.band]; | (void)areas; | menutemplate_author_test
author-letterbox-unsaid | tools/author/VideoPlan.cpp | if (plan.pictureHeight < plan.frameHeight) to += " letterboxed"; | ; | menutemplate_author_unit_test menutemplate_author_test
author-wide-dvd-file-converted | tools/author/VideoPlan.cpp | (wide && fullWidth) | (false && wide && fullWidth) | menutemplate_author_unit_test menutemplate_author_test
author-mono-made-stereo | tools/author/VideoPlan.cpp | std::clamp(channels, 1, 6) | std::clamp(channels, 2, 6) | menutemplate_author_unit_test menutemplate_author_test
author-titleset-ignores-aspect | tools/author/VideoPlan.cpp | std::string(AspectName(plan.aspect)) + " " + std::to_string(plan.frameWidth) | std::string(" ") + std::to_string(plan.frameWidth) | menutemplate_author_unit_test menutemplate_author_test
author-one-way-links-reachable | tools/author/Navigation.cpp | reversed ? next[to].push_back(i) : next[i].push_back(to); | reversed ? next[i].push_back(to) : next[i].push_back(to); | menutemplate_author_unit_test menutemplate_author_test
author-bitrate-below-lowest | tools/author/Capacity.cpp | tenths >= lowest; | tenths >= lowest - 5; | menutemplate_author_unit_test menutemplate_author_test
author-left-over-unnamed | tools/author/Assignment.cpp | summary + ": left over:" + over | summary + ": left over:" | menutemplate_author_unit_test menutemplate_author_test
author-second-run-not-refused | tools/author/DiscOutput.cpp | if (held && StartsWith(entryName, prefix)) { | if (false && held && StartsWith(entryName, prefix)) { | menutemplate_author_test
author-highlight-ignores-frames | tools/author/Colours.cpp | colours.highlight = Furthest(avoid); | colours.highlight = Furthest({}); | menutemplate_author_unit_test
'
# The binaries of the accessor tests.
ACCESSORS="template_tests"

root=$(cd "$(dirname "$0")/.." && pwd)
scratch="" only=()
while (($#)); do
  case $1 in
    --scratch) scratch=$2; shift 2 ;;
    -h|--help) sed -n '2,14p' "$0"; exit 0 ;;
    *) only+=("$1"); shift ;;
  esac
done
keep=1
if [ -z "$scratch" ]; then scratch=$(mktemp -d /tmp/tolvex-mutate.XXXXXX); keep=0; fi
case $scratch in /tmp/*) ;; *) echo "the scratch copy must be under /tmp" >&2; exit 2 ;; esac
src=$scratch/src build=$scratch/src/build
cleanup() { if [ "$keep" = 0 ]; then rm -rf "$scratch"; fi; }
trap cleanup EXIT

# The copy: every file git knows of or would add, as the working tree holds it (uncommitted
# changes included). The build folder sits inside it as in the working tree, so that ccache
# (base_dir) finds the objects of the working tree's own build.
mkdir -p "$src"
(cd "$root" && git ls-files -z --cached --others --exclude-standard |
   tar --null --ignore-failed-read -T - -cf -) 2>/dev/null | tar -xmf - -C "$src"
export CCACHE_BASEDIR=$src
cmake -S "$src" -B "$build" -DTOLVEX_BUILD_BENCHMARKS=OFF -DTOLVEX_LTO=OFF \
  -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache >/dev/null

rows=()
while IFS= read -r line; do
  [ -n "${line// }" ] || continue
  name=$(sed 's/ *|.*//' <<<"$line")
  if ((${#only[@]})) && [[ ! " ${only[*]} " =~ " $name " ]]; then continue; fi
  rows+=("$line")
done <<<"$(sed 's/\\|/\x01/g' <<<"$MUTANTS")"
((${#rows[@]})) || { echo "no such fault" >&2; exit 2; }

field() { cut -d'|' -f"$2" <<<"$1" | sed 's/^ //; s/ $//; s/\x01/|/g'; }
binaries() { local b; b=$(field "$1" 5); echo "${b//ACCESSORS/$ACCESSORS}"; }

# Runs the test binaries named; the first failing test of the first failing binary, or "".
run() {
  local bin path out
  for bin in "$@"; do
    path=$(find "$build/tests" -name "$bin" -type f -perm -u+x | head -1)
    [ -n "$path" ] || { echo "$bin: not built"; return; }
    if ! out=$(cd "$(dirname "$path")" && TOLVEX_SOURCE_DIR=$src timeout 900 "$path" --gtest_brief=1 2>&1); then
      echo "$bin: $(grep -m1 -o '\[  FAILED  \] [A-Za-z0-9_./]*' <<<"$out" | cut -c14- || true)"
      return
    fi
  done
}

all=$(for row in "${rows[@]}"; do binaries "$row"; done | tr ' ' '\n' | sort -u | tr '\n' ' ')
echo "building $all in $build" >&2
cmake --build "$build" -j2 --target $all >"$scratch/build.log" 2>&1 ||
  { tail -30 "$scratch/build.log"; exit 1; }
baseline=$(run $all)
[ -z "$baseline" ] || { echo "fails without any fault: $baseline" >&2; exit 1; }

printf '%-30s %-8s %s\n' fault result "first failing test"
caught=0 missed=0
for row in "${rows[@]}"; do
  name=$(field "$row" 1) file=$(field "$row" 2)
  cp -p "$src/$file" "$scratch/original"
  count=$(FROM=$(field "$row" 3) TO=$(field "$row" 4) perl -0 -i -pe '
      my ($from, $to) = map { s/(?<!\\)\\n/\n/gr =~ s/\\\\/\\/gr } ($ENV{FROM}, $ENV{TO});
      $n = () = /\Q$from\E/g; s/\Q$from\E/$to/ if $n == 1;
      END { open my $f, ">", "/dev/fd/3"; print $f $n }' "$src/$file" 3>&1 >/dev/null)
  if [ "$count" != 1 ]; then
    printf '%-30s %-8s %s\n' "$name" "n/a" "not applied: the text occurs $count times in $file"
    cp -p "$scratch/original" "$src/$file"; continue
  fi
  # shellcheck disable=SC2046
  if ! cmake --build "$build" -j2 --target $(binaries "$row") >"$scratch/build.log" 2>&1; then
    printf '%-30s %-8s %s\n' "$name" "n/a" "does not compile (fix the row): $scratch/build.log"
    cp "$scratch/original" "$src/$file"; continue
  fi
  failing=$(run $(binaries "$row"))
  if [ -n "$failing" ]; then
    result=caught caught=$((caught + 1))
  else
    result=MISSED missed=$((missed + 1))
  fi
  printf '%-30s %-8s %s\n' "$name" "$result" "$failing"
  cp "$scratch/original" "$src/$file"
done
echo "caught $caught, missed $missed"
# The originals are back; rebuild so that a kept scratch copy is not left with a fault built in.
if [ "$keep" = 1 ]; then cmake --build "$build" -j2 --target $all >/dev/null 2>&1 || true; fi
