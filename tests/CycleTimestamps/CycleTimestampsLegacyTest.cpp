#include <Core/Common/CycleTimestamps/CycleTimestamps.h>
#include <Core/Common/Exceptions/FileReadError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>

#include "CycleFixtures.h"

#include <QBuffer>

#include <gtest/gtest.h>

using namespace CycleFixtures;
using RTE::CycleTimestamps;

namespace
{

CycleTimestamps loadText(CycleTimestamps (*loader)(QIODevice&), const char* text)
{
  QBuffer buffer;
  buffer.setData(QByteArray(text));
  return loader(buffer);
}

const QString corrupt = QStringLiteral("Corrupt data for hypersampling timestamps");
const QString noCdms = QStringLiteral("CDM timestamps are missing");
const QString noExposures = QStringLiteral("Exposure timestamps are missing");

} // namespace

TEST(CycleTimestampsLegacy, KeyValueFormat)
{
  const CycleTimestamps cycle = loadText(&CycleTimestamps::loadLegacyFormat, R"(# written by the bench tools
Unit=ps
DegreesPerCycle=720
CdmsPerCycle=4
Start=0
NextStart = 100000000000
AbsoluteCycle=17
RecordedCycle=3   # the third recorded
PprStep=-360;-300
PprStep=100;
CDMs=0 25000000000  50000000000 75000000000
Exposures=10000000000 60000000000
)");
  CycleTimestamps::Settings expected = settings(720.0, 4, 0.0, 100.0);
  expected.absoluteCycle = 17;
  expected.cycle = 3;
  const RTE::DegreesPerCycle d(720.0);
  expected.pprSteps = {{RTE::CrankAngle(-360.0, d), RTE::CrankAngle(-300.0, d)},
                       {RTE::CrankAngle(100.0, d), std::nullopt}};
  EXPECT_EQ(cycle, CycleTimestamps(expected, times({0, 25, 50, 75}), times({10, 60})));

  const std::pair<const char*, QString> cases[] = {
      {"Unit=ns\nCDMs=\nExposures=\n",
       QStringLiteral("Invalid unit for timestamps - this version only supports ps but not ns")},
      {"Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nExposures=1\n", noCdms},
      {"Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=1\n", noExposures},
      {"DegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=1 x\nExposures=\n", corrupt},
      {"Unit=ps\nDegreesPerCycle=540\nCdmsPerCycle=4\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=0\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"Unit=ps\nUnit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"Unit=ps\nColour=red\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"Unit=ps\nDegreesPerCycle=360\nCdmsPerCycle=4\nStart=0\nPprStep=0;180\nCDMs=\nExposures=\n", corrupt},
      {"", corrupt},
  };
  for (const auto& [text, message] : cases)
  {
    SCOPED_TRACE(text);
    EXPECT_EQ(MessageOf<RTE::FileReadError>([&] { loadText(&CycleTimestamps::loadLegacyFormat, text); }), message);
  }
  // The cycle itself is still checked.
  EXPECT_THROW(
      loadText(&CycleTimestamps::loadLegacyFormat, "Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nCDMs=\nExposures=\n"),
      RTE::InvalidArgumentError);
}

TEST(CycleTimestampsLegacy, LineFormat)
{
  const CycleTimestamps cycle = loadText(&CycleTimestamps::loadOldLegacyFormat,
                                         "ps\n# degrees, marks, start, next start\n720 8 - 100000000000\n"
                                         "0 25000000000 50000000000 75000000000\n10000000000 60000000000\n");
  EXPECT_EQ(cycle, CycleTimestamps(settings(720.0, 8, {}, 100.0), times({0, 25, 50, 75}), times({10, 60})));
  // An empty exposure line is a cycle without exposures, a missing one an error.
  EXPECT_FALSE(loadText(&CycleTimestamps::loadOldLegacyFormat, "ps\n720 4 0 -\n0 1\n\n").containsExposures());

  const std::pair<const char*, QString> cases[] = {
      {"us\n720 4 0 100\n0\n1\n",
       QStringLiteral("Invalid unit for timestamps - this version only supports ps but not us")},
      {"ps\n720 4 0 100\n", noCdms},
      {"ps\n720 4 0 100\n0 1\n", noExposures},
      {"", corrupt},
      {"ps\n720 4 0\n0\n1\n", corrupt},
      {"ps\n720 4 zero 100\n0\n1\n", corrupt},
      {"ps\n720 4 0 100\n0\n1\n2\n", corrupt},
      {"ps\n720 4 0 100\n99999999999999999999\n1\n", corrupt},
  };
  for (const auto& [text, message] : cases)
  {
    SCOPED_TRACE(text);
    EXPECT_EQ(MessageOf<RTE::FileReadError>([&] { loadText(&CycleTimestamps::loadOldLegacyFormat, text); }), message);
  }
}
