// The indexed form against the reference model: random files and random calls, drawn from the
// pieces that the reading rules treat specially, must give the same bytes and the same reads
// through IndexedIni as through the plain parse and text edits of tests/reference.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/IndexedIni.h"
#include "reference/IniModel.h"

namespace tolvex::platform {
namespace {

using reference::EditProfileText;
using reference::IniDocument;
using reference::ReadProfileText;

// "@" and "`", "[x" and "{x" differ in the bit that case folding ignores; names and values
// longer than eight bytes hold the bytes that change a line past their first eight; the last
// name is longer than the names an ANSI file looks up without a string of their own.
const char* const kNames[] = {"s", "S", " s ", "", "k", "K2", "[x", "{x", "a]b", "=", ";c", "a=b",
                              "\x1a", "x\r\ny", "b  c", "\xC9", "@", "`", "LongerName12",
                              "LongerName=12", "LongerName12\n",
                              "LnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLn"
                              "LnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLnLn"};
const char* const kValues[] = {"1",   "",      "  v ", "\"q\"", "]",
                               "x]",  "a\nb",  "[t]",  "\xE9", "==", "a longer\r value"};
const char* const kLines[] = {"[s]", "[S]", "k=1", "K=2", "=e", "=f", "[]", "valueless", "[x",
                              "  k2 = v ", ";c=3", "", "   ", "[a]b]", "x="};
const char* const kBreaks[] = {"\r\n", "\n", "\r", "\n\r", "\r\n\r\n", ""};
const char* const kMarks[] = {"", "", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"};

// `text` after `mark`; after a UTF-16 mark, each byte of the text is one unit.
std::string Encoded(const std::string& mark, const std::string& text) {
  if (mark != "\xFF\xFE" && mark != "\xFE\xFF") return mark + text;
  std::string wide = mark;
  for (char byte : text)
    wide += mark[0] == '\xFF' ? std::string{byte, '\0'} : std::string{'\0', byte};
  return wide;
}

// A file of random lines.
std::string RandomFile(std::mt19937& random) {
  const std::string mark = kMarks[random() % std::size(kMarks)];
  std::string text;
  const int lines = static_cast<int>(random() % 10);
  for (int i = 0; i < lines; ++i) {
    const char* line = kLines[random() % std::size(kLines)];
    text += line;
    if (std::string_view(line) == "x=") text.append("\0y", 2);
    text += kBreaks[random() % std::size(kBreaks)];
  }
  return Encoded(mark, text);
}

std::string Result(uint32_t length, const char* buffer) {
  return std::to_string(length) + "|" + std::string(buffer, length + 2);
}

TEST(IndexedIniEdit, RandomCallsGiveTheBytesAndReadsOfTheTextEdits) {
  std::mt19937 random(20261123);
  for (int round = 0; round < 10000; ++round) {
    std::string bytes = RandomFile(random);
    IndexedIni indexed(bytes);
    ASSERT_EQ(indexed.Bytes(), bytes);
    for (int call = 0; call < 12; ++call) {
      const char* app = kNames[random() % std::size(kNames)];
      const char* key = kNames[random() % std::size(kNames)];
      const char* value = kValues[random() % std::size(kValues)];
      const int kind = static_cast<int>(random() % 10);
      if (kind == 0) key = nullptr;
      if (kind == 1) value = nullptr;
      SCOPED_TRACE(testing::Message() << "round " << round << " call " << call);
      if (kind == 5) {
        // Several keys of one section at once, as that many writes one after another.
        const char* keys[3];
        const char* values[3];
        const size_t count = 1 + random() % 3;
        size_t changes = 0;
        for (size_t i = 0; i < count; ++i) {
          keys[i] = kNames[random() % std::size(kNames)];
          values[i] = kValues[random() % std::size(kValues)];
          const IniDocument document(bytes);
          if (auto changed = EditProfileText(document, bytes, app, keys[i], values[i])) {
            bytes = *changed;
            ++changes;
          }
        }
        EXPECT_EQ(indexed.SetValues(app, keys, values, count), changes);
        ASSERT_EQ(indexed.Bytes(), bytes);
      } else if (kind < 6) {
        const IniDocument document(bytes);
        std::optional<std::string> changed = EditProfileText(document, bytes, app, key, value);
        EXPECT_EQ(indexed.Write(app, key, value), changed.has_value());
        if (changed) bytes = *changed;
        ASSERT_EQ(indexed.Bytes(), bytes);
        ASSERT_EQ(indexed.ByteSize(), bytes.size());
      } else {
        const uint32_t size = kind == 9 ? 3 : 64;
        char expected[80] = {}, got[80] = {};
        if (kind == 8) app = nullptr;
        if (kind == 7) key = nullptr;
        const IniDocument document(bytes);
        uint32_t lengthExpected = ReadProfileText(document, app, key, "dflt", expected, size);
        uint32_t lengthGot = indexed.Read(app, key, "dflt", got, size);
        ASSERT_EQ(Result(lengthGot, got), Result(lengthExpected, expected));
      }
    }
  }
}

// Long runs of changes to one file in each encoding, with values long enough that the units of
// replaced lines soon outweigh the file: the form stays the text edits' file byte for byte
// through every compaction, and its memory stays near the file's size.
TEST(IndexedIniEdit, LongRunsOfChangesAreCompactedWithoutChangingAByte) {
  std::mt19937 random(1124);
  for (const std::string mark : {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
    SCOPED_TRACE(testing::Message() << "mark of " << mark.size() << " bytes");
    std::string bytes = Encoded(mark, "  \r\n[s]\r\nk=0\r\n; note\r\n\r\n[t]\nx=1\n\n  y = 2");
    IndexedIni indexed(bytes);
    for (int call = 0; call < 1500; ++call) {
      SCOPED_TRACE(testing::Message() << "call " << call);
      const std::string value(50 + random() % 200, static_cast<char>('a' + call % 26));
      const std::string newKey = "n" + std::to_string(call);
      const char* app = call % 3 ? "s" : "t";
      const char* key = call % 7 == 0 ? newKey.c_str() : (call % 3 ? "k" : "y");
      const IniDocument document(bytes);
      std::optional<std::string> changed =
          EditProfileText(document, bytes, app, key, value.c_str());
      ASSERT_EQ(indexed.Write(app, key, value.c_str()), changed.has_value());
      if (changed) bytes = *changed;
      if (call % 50 == 0 || call > 1490) {
        ASSERT_EQ(indexed.Bytes(), bytes);
        char got[300] = {};
        ASSERT_EQ(indexed.Read(app, key, "", got, sizeof got), value.size());
        EXPECT_EQ(std::string(got), value);
      }
      ASSERT_EQ(indexed.ByteSize(), bytes.size());
      ASSERT_LT(indexed.MemoryUse(), 3 * bytes.size() + (16u << 10));
    }
  }
}

// A value read again is found without a lookup while its line is unchanged. After a
// compaction a changed line can take the place in the buffer of changed lines that it had
// before, with its line break at the same place ("k=ab" and "k=c "): it must read as changed.
TEST(IndexedIniEdit, AValueReadAgainAfterACompactionReadsItsChange) {
  IndexedIni indexed(std::string("[s]\r\nk=a\r\n"));
  char got[8] = {};
  indexed.Write("s", "k", "ab");
  ASSERT_EQ(indexed.Read("s", "k", "", got, sizeof got), 2u);
  const std::string large(8192, 'x');
  indexed.Write("s", "j", large.c_str());
  indexed.Write("s", "j", (large + "y").c_str());  // the first value's line is compacted away
  indexed.Write("s", "k", "c ");
  EXPECT_EQ(indexed.Read("s", "k", "", got, sizeof got), 1u);
  EXPECT_STREQ(got, "c");
}

// Files larger than a piece, with a line longer than one, in both widths: the pieces join to the
// file's bytes.
TEST(IndexedIniEdit, BytesInPiecesJoinToTheFile) {
  const std::string longValue(IndexedIni::kPieceBytes + 7, 'v');
  for (const std::string mark : {"", "\xFF\xFE"}) {
    IndexedIni indexed(mark);
    std::string text = "[s]\r\n";
    for (int i = 0; i < 9000; ++i) {
      const std::string key = "key" + std::to_string(i);
      const char* value = i == 4000 ? longValue.c_str() : "x";
      indexed.Write("s", key.c_str(), value);
      text += key + "=" + value + "\r\n";
    }
    const std::string whole = indexed.Bytes();
    ASSERT_EQ(whole, Encoded(mark, text));
    ASSERT_GT(whole.size(), 2 * IndexedIni::kPieceBytes);
    std::string joined;  // of three pieces at least, each no larger than kPieceBytes
    ASSERT_TRUE(indexed
                    .WriteBytes([&](std::string_view piece) {
                      EXPECT_LE(piece.size(), IndexedIni::kPieceBytes);
                      joined += piece;
                      return Status::Ok();
                    })
                    .ok());
    EXPECT_EQ(joined, whole);
  }
}

}  // namespace
}  // namespace tolvex::platform
