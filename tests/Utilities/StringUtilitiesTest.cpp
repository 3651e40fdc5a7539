// RTE::toDouble/toFloat and the RTE::String helpers.
#include <Core/Common/Utilities/StringUtilities.h>

#include "Units/QStringPrinter.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <stdexcept>
#include <string>

namespace S = RTE::String;

namespace
{

// Switches the process locale for one test and back.
class ProcessLocale
{
public:
  explicit ProcessLocale(const char* name)
  {
    m_previous = std::setlocale(LC_ALL, nullptr);
    m_active = std::setlocale(LC_ALL, name) != nullptr;
  }
  ~ProcessLocale() { std::setlocale(LC_ALL, m_previous.c_str()); }
  bool active() const { return m_active; }

private:
  std::string m_previous;
  bool m_active = false;
};

template <typename Exception, typename Call>
std::string messageOf(Call call)
{
  try
  {
    call();
  }
  catch (const Exception& e)
  {
    return e.what();
  }
  return "no exception";
}

} // namespace

TEST(StringUtilities, NumbersParseLikeTheStandardConversion)
{
  EXPECT_EQ(RTE::toDouble(std::string(" \t2.5 ")), 2.5);
  EXPECT_EQ(RTE::toDouble(std::string("3.0abc")), 3.0);
  EXPECT_EQ(RTE::toDouble(std::string("-1e3")), -1000.0);
  EXPECT_TRUE(std::isnan(RTE::toDouble(std::string(" \t "))));
  EXPECT_TRUE(std::isnan(RTE::toDouble(QString())));
  EXPECT_EQ(RTE::toDouble(QStringLiteral("0.25")), 0.25);
  EXPECT_EQ(RTE::toFloat(std::string("0.1")), 0.1f);
  EXPECT_EQ(RTE::toFloat(QStringLiteral(" 7 ")), 7.0f);

  EXPECT_EQ(messageOf<std::invalid_argument>([] { RTE::toDouble(std::string("abc")); }), "invalid stod argument");
  EXPECT_EQ(messageOf<std::invalid_argument>([] { RTE::toDouble(std::string("\n")); }), "invalid stod argument");
  EXPECT_EQ(messageOf<std::out_of_range>([] { RTE::toDouble(std::string("1e999")); }), "stod argument out of range");
  EXPECT_EQ(messageOf<std::invalid_argument>([] { RTE::toFloat(std::string(",5")); }), "invalid stof argument");
  EXPECT_EQ(messageOf<std::out_of_range>([] { RTE::toFloat(std::string("1e39")); }), "stof argument out of range");
}

TEST(StringUtilities, NumbersIgnoreACommaDecimalProcessLocale)
{
  const ProcessLocale german("de_DE.UTF-8");
  if (!german.active())
    GTEST_SKIP() << "locale de_DE.UTF-8 is not generated here (scripts/setup.sh generates it)";
  ASSERT_EQ(std::strtod("1,5", nullptr), 1.5); // the locale really reads commas
  EXPECT_EQ(RTE::toDouble(std::string("1.5")), 1.5);
  EXPECT_EQ(RTE::toFloat(QStringLiteral("1.5")), 1.5f);
  EXPECT_EQ(RTE::toDouble(std::string("1,5")), 1.0);
}

TEST(StringUtilities, EnvironmentVariablesInBothForms)
{
  qputenv("CCTESTHOME", "/h");
  qputenv("CCTESTSELF", "$CCTESTSELF$CCTESTSELF");
  qunsetenv("CCTESTNONE");
  EXPECT_EQ(S::replaceEnvironmentVariables(QStringLiteral("$CCTESTHOME/x")), QStringLiteral("/h/x"));
  EXPECT_EQ(S::replaceEnvironmentVariables(QStringLiteral("%CCTESTHOME%/x")), QStringLiteral("/h/x"));
  EXPECT_EQ(S::replaceEnvironmentVariables(QStringLiteral("%CCTESTHOME/x")), QStringLiteral("%CCTESTHOME/x"));
  // The name ends at the first non-letter.
  EXPECT_EQ(S::replaceEnvironmentVariables(QStringLiteral("$CCTESTHOME_DIR")), QStringLiteral("/h_DIR"));
  EXPECT_EQ(S::replaceEnvironmentVariables(QStringLiteral("a$CCTESTHOME,b$CCTESTHOME")), QStringLiteral("a/h,b/h"));
  EXPECT_EQ(S::replaceEnvironmentVariables(QStringLiteral("$CCTESTNONE/$")), QStringLiteral("$CCTESTNONE/$"));
  EXPECT_EQ(S::replaceEnvironmentVariables(QStringLiteral("%%")), QStringLiteral("%%"));
  // A value naming itself is inserted once, not expanded for ever.
  EXPECT_EQ(S::replaceEnvironmentVariables(QStringLiteral("$CCTESTSELF")), QStringLiteral("$CCTESTSELF$CCTESTSELF"));
  qunsetenv("CCTESTHOME");
  qunsetenv("CCTESTSELF");
}

TEST(StringUtilities, CharactersCaseAndHex)
{
  EXPECT_EQ(S::ToString(true), "true");
  EXPECT_EQ(S::ToString(false), "false");
  EXPECT_TRUE(S::endsWithDigit(std::string("frame12 ")));
  EXPECT_FALSE(S::endsWithDigit(std::string("12a")));
  EXPECT_FALSE(S::endsWithDigit(QStringLiteral("  ")));

  EXPECT_TRUE(S::Contains("Camera One", "ONE", S::CompareMode::CaseInsensitive));
  EXPECT_FALSE(S::Contains("Camera One", "ONE", S::CompareMode::CaseSensitive));
  EXPECT_FALSE(S::Contains("Camera One", "ONE", static_cast<S::CompareMode>(2)));
  // Only ASCII letters fold, as in the C locale: Latin-1 "É" and "é" stay different.
  EXPECT_FALSE(S::Contains("caf\xC9", "\xE9", S::CompareMode::CaseInsensitive));

  EXPECT_EQ(S::ToHexString(char(-1), 2, "0x"), "0xffffffffffffffff");
  EXPECT_EQ(S::ToHexString(char(10), 4, ""), "000a");
  EXPECT_EQ(S::ToHexString(static_cast<unsigned char>(255), 1, "#"), "#ff");
  EXPECT_EQ(S::ToHexString(static_cast<unsigned char>(0), 0, ""), "0");

  std::string text = "MiXeD \xC9";
  S::ToLower(text);
  EXPECT_EQ(text, "mixed \xC9");
  S::ToUpper(text);
  EXPECT_EQ(text, "MIXED \xC9");
}

TEST(StringUtilities, TrimmingKeepsOrReplacesTheArgument)
{
  std::string text = " \t\n\r\v\fvalue \f";
  EXPECT_EQ(S::Trim(text, true), "value");
  EXPECT_EQ(text, " \t\n\r\v\fvalue \f");
  EXPECT_EQ(S::TrimLeft(text, true), "value \f");
  EXPECT_EQ(S::TrimRight(text, true), " \t\n\r\v\fvalue");
  EXPECT_EQ(S::Trim(text, false), "value");
  EXPECT_EQ(text, "value");
  std::string blank = "   ";
  EXPECT_EQ(S::Trim(blank, false), "");
  EXPECT_EQ(blank, "");

  EXPECT_EQ(S::TrimString(std::string("--[x]--"), std::vector<char>{'-', '[', ']'}), "x");
  EXPECT_EQ(S::TrimString(QStringLiteral("\u00e9-x-\u00e9"), std::vector<char>{'-', '\xE9'}), QStringLiteral("x"));
  std::string inPlace = "**";
  S::TrimString(inPlace, "*");
  EXPECT_EQ(inPlace, "");
  QString qInPlace = QStringLiteral("/a/b/");
  S::TrimString(qInPlace, "/");
  EXPECT_EQ(qInPlace, QStringLiteral("a/b"));
}

TEST(StringUtilities, ReplaceSplitTokenizeImplode)
{
  EXPECT_EQ(S::Replace("aaa", "a", "aa"), "aaaaaa"); // no rescanning of what was put in
  EXPECT_EQ(S::Replace("a.b.c", ".", ""), "abc");
  EXPECT_EQ(S::Replace("abc", "", "x"), "abc");

  EXPECT_EQ(S::Split("a,,b", ","), (std::vector<std::string>{"a", "", "b"}));
  EXPECT_EQ(S::split("a::b::", "::"), (std::vector<std::string>{"a", "b", ""}));
  EXPECT_TRUE(S::Split("", ",").empty());
  EXPECT_EQ(S::Split("abc", ""), std::vector<std::string>{"abc"});

  std::vector<std::string> tokens{"stale"};
  S::Tokenize(" a, b;;c ", tokens, " ,;");
  EXPECT_EQ(tokens, (std::vector<std::string>{"a", "b", "c"}));
  S::Tokenize(",,", tokens, ",");
  EXPECT_TRUE(tokens.empty());

  std::string joined = "stale";
  S::Implode({"a", "b", "c"}, ", ", joined);
  EXPECT_EQ(joined, "a, b, c");
  S::Implode({}, ",", joined);
  EXPECT_EQ(joined, "");
}
