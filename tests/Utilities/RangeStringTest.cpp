// RTE::ParseRangeString and RTE::ConvertBoolVectorToRangeVector.
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Utilities/RangeString.h>

#include "OperatingSystem/TestHelpers.h"

#include <QString>

#include <gtest/gtest.h>

#include <set>

namespace
{

// The set indices of flags.
std::set<unsigned> setIndices(const std::vector<bool>& flags)
{
  std::set<unsigned> indices;
  for (unsigned i = 0; i < flags.size(); ++i)
    if (flags[i])
      indices.insert(i);
  return indices;
}

std::set<unsigned> parse(const char* text, unsigned min, unsigned max, bool oneBased = false)
{
  return setIndices(RTE::ParseRangeString(QString::fromUtf8(text), min, max, oneBased));
}

using Range = RTE::RangeT<unsigned int>;

} // namespace

TEST(RangeString, ParsesEveryStatementKind)
{
  std::vector<bool> singles;
  const std::vector<bool> flags = RTE::ParseRangeString(QStringLiteral(" 1-3; 5 "), 0, 9, singles, false);
  EXPECT_EQ(flags.size(), 10u);
  EXPECT_EQ(setIndices(flags), (std::set<unsigned>{1, 2, 3, 5}));
  EXPECT_EQ(setIndices(singles), (std::set<unsigned>{5}));

  EXPECT_EQ(parse("1-3;5", 0, 9, true), (std::set<unsigned>{0, 1, 2, 4}));
  EXPECT_EQ(parse("3-,!5", 0, 6), (std::set<unsigned>{3, 4, 6}));
  EXPECT_EQ(parse("7-3", 0, 9), (std::set<unsigned>{3, 4, 5, 6, 7}));
  // "-n" starts at 0 even below the lower bound; only n is checked.
  EXPECT_EQ(parse("-2", 1, 5), (std::set<unsigned>{0, 1, 2}));
  EXPECT_EQ(parse("", 0, 3), std::set<unsigned>{});
  EXPECT_EQ(parse(",,2,,", 0, 3), std::set<unsigned>{2});
  EXPECT_EQ(parse("0-9,!0,!9", 0, 9), (std::set<unsigned>{1, 2, 3, 4, 5, 6, 7, 8}));
  // Leading zeros do not make a number large.
  EXPECT_EQ(parse("000000000000000000000000000003-0004", 0, 9), (std::set<unsigned>{3, 4}));
}

TEST(RangeString, RejectsBadTextWithTheDocumentedErrors)
{
  const QString text = QStringLiteral("ParseRangeString: Range string contains invalid range statements");
  const auto expectInvalid = [&](const char* input, unsigned min, unsigned max, bool oneBased)
  {
    SCOPED_TRACE(input);
    std::vector<bool> singles{true};
    try
    {
      RTE::ParseRangeString(QString::fromUtf8(input), min, max, singles, oneBased);
      ADD_FAILURE() << "no exception";
    }
    catch (const RTE::OutOfRangeError&)
    {
      ADD_FAILURE() << "out of range instead of invalid";
    }
    catch (const RTE::Exception& e)
    {
      EXPECT_EQ(e.message(), text);
    }
    EXPECT_EQ(singles, std::vector<bool>{true}); // nothing changed
  };
  const auto expectOutOfRange = [&](const char* input, unsigned min, unsigned max, bool oneBased)
  {
    SCOPED_TRACE(input);
    EXPECT_EQ(
        MessageOf<RTE::OutOfRangeError>([&] { RTE::ParseRangeString(QString::fromUtf8(input), min, max, oneBased); }),
        text);
  };
  expectInvalid("2-4-6", 0, 9, false);
  expectInvalid("a", 0, 9, false);
  expectInvalid("1,-", 0, 9, false);
  expectInvalid("!2-3", 0, 9, false);
  expectInvalid("!", 0, 9, false);
  expectInvalid("3+4", 0, 9, false);
  expectInvalid("\u0663", 0, 9, false); // a digit, but not an ASCII one
  expectOutOfRange("10", 0, 9, false);
  expectOutOfRange("0", 0, 9, true); // one-based 0 is index -1
  expectOutOfRange("2", 3, 9, false);
  expectOutOfRange("1-10", 0, 9, false);
  expectOutOfRange("!12", 0, 9, false);
  // More digits than any integer holds: the bounds error, never a wrap-around.
  expectOutOfRange("18446744073709551617", 0, 9, false);
  expectOutOfRange("99999999999999999999999999999999999999-1", 0, 9, false);
  // The first bad inclusion decides, before any exclusion.
  expectOutOfRange("!x,12", 0, 9, false);

  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([] { RTE::ParseRangeString(QStringLiteral("1"), 5, 4, false); }),
            QStringLiteral("ParseRangeString: Min index must be smaller than max index."));
}

TEST(RangeString, ManyOverlappingPartsOverAHugeRangeStayCheap)
{
  // 20,000 parts each spanning 100 million flags: set part by part this would write
  // two trillion flags.
  QString text;
  for (int i = 0; i < 20000; ++i)
    text += QStringLiteral("%1-99999999,").arg(i % 7);
  const std::vector<bool> flags = RTE::ParseRangeString(text, 0, 99999999, false);
  EXPECT_TRUE(flags[0]);
  EXPECT_TRUE(flags[99999999]);
}

TEST(RangeString, ConvertsFlagsToRangesWithSinglesStandingAlone)
{
  std::vector<bool> singles;
  const std::vector<bool> flags = RTE::ParseRangeString(QStringLiteral("1-3,4,6-7,9"), 0, 9, singles, false);
  EXPECT_EQ(RTE::ConvertBoolVectorToRangeVector(flags, 0, 9, singles),
            (std::vector<Range>{{1, 3}, {4, 4}, {6, 7}, {9, 9}}));
  EXPECT_EQ(RTE::ConvertBoolVectorToRangeVector(flags, 0, 9), (std::vector<Range>{{1, 4}, {6, 7}, {9, 9}}));
  // A window cuts runs at its ends.
  EXPECT_EQ(RTE::ConvertBoolVectorToRangeVector(flags, 2, 6), (std::vector<Range>{{2, 4}, {6, 6}}));
  EXPECT_TRUE(RTE::ConvertBoolVectorToRangeVector(flags, 7, 6).empty());
  // A single inside a run splits it.
  const std::vector<bool> run(5, true);
  EXPECT_EQ(RTE::ConvertBoolVectorToRangeVector(run, 0, 4, {false, false, true}),
            (std::vector<Range>{{0, 1}, {2, 2}, {3, 4}}));
  // Beyond the flags nothing is set, however far the window reaches.
  EXPECT_EQ(RTE::ConvertBoolVectorToRangeVector(run, 3, 4294967295u), (std::vector<Range>{{3, 4}}));
  EXPECT_TRUE(RTE::ConvertBoolVectorToRangeVector({}, 0, 10).empty());
}
