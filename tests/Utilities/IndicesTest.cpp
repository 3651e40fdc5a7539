// RTE::IndexRange and RTE::Indices: counts, iteration, text and settings forms.
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>
#include <Core/Common/Utilities/Indices.h>

#include "Units/QStringPrinter.h"

#include <gtest/gtest.h>

#include <vector>

using RTE::IndexRange;
using RTE::Indices;

namespace
{

std::vector<unsigned> visit(const Indices& indices)
{
  return std::vector<unsigned>(indices.begin(), indices.end());
}

} // namespace

TEST(IndexRange, CountsMapsAndPersists)
{
  EXPECT_EQ(IndexRange(0, 10, 3).GetCount(), 4u);
  EXPECT_EQ(IndexRange(0, 10, 0).GetCount(), 0u);
  EXPECT_EQ(IndexRange(5, 4, 1).GetCount(), 0u);
  EXPECT_EQ(IndexRange(7, 7, 5).GetCount(), 1u);
  EXPECT_EQ(IndexRange(0, 4294967295u, 1).GetCount(), 4294967295u); // saturates, never 0
  EXPECT_EQ(IndexRange(2, 10, 3).Map(2), 8u);

  Storage::SettingsStringBasedDocument document;
  IndexRange(2, 10, 3).SerializeTo(*document.CreateNode(QStringLiteral("R")));
  EXPECT_TRUE(document.GetContent().contains(QStringLiteral("<Increment class=\"uint32_t\" value=\"3\" />")));
  IndexRange restored;
  restored.DeserializeFrom(*document.GetNode(QStringLiteral("R")));
  EXPECT_EQ(restored, IndexRange(2, 10, 3));
}

TEST(Indices, IteratesOneBasedSelectionsWithAStep)
{
  const Indices frames(QStringLiteral("1-10, 20"), 99, 2);
  EXPECT_EQ(visit(frames), (std::vector<unsigned>{0, 2, 4, 6, 8, 19}));
  EXPECT_EQ(frames.size(), 6u);
  EXPECT_TRUE(frames.isValid());
  EXPECT_FALSE(frames.isIndexRange());
  EXPECT_EQ(frames.indexRange(), IndexRange(0, 0, 1));
  EXPECT_EQ(frames.toString(), QStringLiteral("1-10,20"));
  EXPECT_EQ(frames.maxIndex(), 99u);
  EXPECT_EQ(frames.stepSize(), 2u);

  const Indices one(QStringLiteral("3-5"), 9, 1);
  EXPECT_TRUE(one.isIndexRange());
  EXPECT_EQ(one.indexRange(), IndexRange(2, 4, 1));

  const Indices none(QStringLiteral(""), 9, 1);
  EXPECT_FALSE(none.isValid());
  EXPECT_EQ(none.size(), 0u);
  EXPECT_EQ(none.begin(), none.end());

  // The last index of the unsigned range: the step must not wrap back to 0.
  const Indices top(IndexRange(4294967290u, 4294967295u, 4));
  EXPECT_EQ(visit(top), (std::vector<unsigned>{4294967290u, 4294967294u}));
  EXPECT_EQ(top.size(), 2u);
  EXPECT_FALSE(Indices(IndexRange(0, 10, 0)).isValid());

  EXPECT_THROW(Indices(QStringLiteral("0"), 9, 1), RTE::OutOfRangeError);
  EXPECT_THROW(Indices(QStringLiteral("1"), 9, 0), RTE::InvalidArgumentError);

  const Indices copy = frames;
  EXPECT_EQ(copy, frames);
  EXPECT_NE(copy, one);
}

TEST(Indices, PersistsAndReportsUnusableSettings)
{
  const Indices original(QStringLiteral("2-4,7,9-"), 11, 3);
  Storage::SettingsStringBasedDocument document;
  original.SerializeTo(*document.CreateNode(QStringLiteral("Frames")));
  Indices restored;
  restored.DeserializeFrom(*document.GetNode(QStringLiteral("Frames")));
  EXPECT_EQ(restored, original);
  EXPECT_FALSE(document.HasReports());

  Storage::SettingsStringBasedDocument broken(QStringLiteral(
      "<root><Frames class=\"Indices\" version=\"1\"><Ranges class=\"string\" value=\"1-99\"/>"
      "<MaxIndex class=\"uint32_t\" value=\"9\"/><StepSize class=\"uint32_t\" value=\"1\"/></Frames></root>"));
  restored.DeserializeFrom(*broken.GetNode(QStringLiteral("Frames")));
  EXPECT_EQ(restored, original);
  EXPECT_TRUE(broken.HasReports());
}
