// Reader of the golden case files.
#include "platform/CaseFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace tolvex::test {
namespace {

// Characters above 0xFFFF are written as two \u escapes, so a character is one UTF-16 unit.
void AppendCodePoint(std::string& out, uint32_t c, const std::string& encoding) {
  if (encoding == "utf16le" || encoding == "utf16be") {
    char low = static_cast<char>(c & 0xFF), high = static_cast<char>(c >> 8);
    out += encoding == "utf16le" ? std::string{low, high} : std::string{high, low};
  } else if (encoding == "utf8" && c >= 0x80) {
    if (c >= 0x800) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    } else {
      out += static_cast<char>(0xC0 | (c >> 6));
    }
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    EXPECT_LT(c, 0x100u) << "not a byte in an ansi case";
    out += static_cast<char>(c);
  }
}

// Splits at unescaped '|'.
std::vector<std::string> SplitFields(const std::string& text) {
  std::vector<std::string> fields(1);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      fields.back() += text.substr(i, 2);
      ++i;
    } else if (text[i] == '|') {
      fields.emplace_back();
    } else {
      fields.back() += text[i];
    }
  }
  return fields;
}

std::optional<std::string> Bytes(const std::string& field, const std::string& encoding) {
  if (field == "<null>" || field == "<missing>") return std::nullopt;
  return Unescape(field, encoding);
}

}  // namespace

std::string Unescape(const std::string& text, const std::string& encoding) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    uint32_t c = static_cast<unsigned char>(text[i]);
    if (c == '\\' && i + 1 < text.size()) {
      char kind = text[++i];
      switch (kind) {
        case 'r': c = '\r'; break;
        case 'n': c = '\n'; break;
        case 't': c = '\t'; break;
        case '0': c = 0; break;
        case 's': c = ' '; break;
        case 'x':
          c = static_cast<uint32_t>(std::stoul(text.substr(i + 1, 2), nullptr, 16));
          i += 2;
          break;
        case 'u':
          c = static_cast<uint32_t>(std::stoul(text.substr(i + 1, 4), nullptr, 16));
          i += 4;
          break;
        default: c = static_cast<unsigned char>(kind); break;
      }
    }
    AppendCodePoint(out, c, encoding);
  }
  return out;
}

std::vector<ProfileCase> LoadCases(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".cases") files.push_back(entry.path().string());
  std::sort(files.begin(), files.end());

  std::vector<ProfileCase> cases;
  for (const std::string& file : files) {
    std::ifstream in(file);
    std::string line, encoding = "ansi";
    int number = 0;
    while (std::getline(in, line)) {
      ++number;
      if (line.empty() || line[0] == '#') continue;
      if (line.rfind("== ", 0) == 0) {
        cases.push_back({});
        cases.back().name = line.substr(3);
        cases.back().source = std::filesystem::path(file).filename().string() + ":" +
                              std::to_string(number);
        encoding = "ansi";
        continue;
      }
      size_t colon = line.find(": ");
      if (cases.empty() || colon == std::string::npos) {
        ADD_FAILURE() << file << ":" << number << ": cannot read \"" << line << "\"";
        continue;
      }
      std::string field = line.substr(0, colon), value = line.substr(colon + 2);
      ProfileCase& current = cases.back();
      if (field == "encoding") {
        encoding = value;
      } else if (field == "before") {
        current.before = Bytes(value, encoding);
      } else if (field == "after") {
        current.after = Bytes(value, encoding);
      } else if (field == "call") {
        ProfileCall call;
        for (const std::string& arg : SplitFields(value)) call.args.push_back(Bytes(arg, "ansi"));
        current.calls.push_back(call);
      } else if (field == "expect" && !current.calls.empty()) {
        std::vector<std::string> parts = SplitFields(value);
        std::string expected = parts[0];
        if (parts.size() > 1) expected += "|" + Unescape(parts[1], "ansi");
        current.calls.back().expected = expected;
      } else {
        ADD_FAILURE() << file << ":" << number << ": unknown field " << field;
      }
    }
  }
  return cases;
}

}  // namespace tolvex::test
