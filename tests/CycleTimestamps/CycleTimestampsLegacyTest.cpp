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

using Loader = CycleTimestamps (*)(QIODevice&);

CycleTimestamps loadText(Loader loader, const char* text)
{
  QBuffer buffer;
  buffer.setData(QByteArray(text));
  return loader(buffer);
}

QString errorOf(Loader loader, const char* text)
{
  try
  {
    loadText(loader, text);
  }
  catch (const RTE::FileReadError& e)
  {
    return e.message();
  }
  return QStringLiteral("<loaded>");
}

const QString corrupt = QStringLiteral("Corrupt data for hypersampling timestamps");

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
  EXPECT_EQ(cycle.cdms(), times({0.0, 25.0, 50.0, 75.0}));
  EXPECT_EQ(cycle.exposures(), times({10.0, 60.0}));
  EXPECT_EQ(cycle.start(), ms(0.0));
  EXPECT_EQ(cycle.nextStart(), ms(100.0));
  EXPECT_EQ(cycle.absoluteCycle(), 17U);
  EXPECT_EQ(cycle.cycle(), 3U);
  EXPECT_EQ(cycle.cdmsPerCycle(), 4U);
  const RTE::DegreesPerCycle d(720.0);
  ASSERT_EQ(cycle.pprSteps().size(), 2U);
  EXPECT_EQ(cycle.pprSteps()[0], CycleTimestamps::PprStep(RTE::CrankAngle(-360.0, d), RTE::CrankAngle(-300.0, d)));
  EXPECT_EQ(cycle.pprSteps()[1], CycleTimestamps::PprStep(RTE::CrankAngle(100.0, d), std::nullopt));

  const CycleTimestamps endMissing = loadText(&CycleTimestamps::loadLegacyFormat,
                                              "Unit=ps\nDegreesPerCycle=360\nCdmsPerCycle=8\nStart=5\nNextStart=-\n"
                                              "CDMs=5 6\nExposures=\n");
  EXPECT_TRUE(endMissing.isEndMissing());
  EXPECT_FALSE(endMissing.containsExposures());

  struct Case
  {
    const char* what;
    const char* text;
    QString message;
  };
  const Case cases[] = {
      {"unit", "Unit=ns\nCDMs=\nExposures=\n",
       QStringLiteral("Invalid unit for timestamps - this version only supports ps but not ns")},
      {"no cdms", "Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nExposures=1\n",
       QStringLiteral("CDM timestamps are missing")},
      {"no exposures", "Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=1\n",
       QStringLiteral("Exposure timestamps are missing")},
      {"no unit", "DegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"bad time", "Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=1 x\nExposures=\n", corrupt},
      {"bad degrees", "Unit=ps\nDegreesPerCycle=540\nCdmsPerCycle=4\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"zero marks", "Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=0\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"twice", "Unit=ps\nUnit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=\nExposures=\n", corrupt},
      {"unknown key", "Unit=ps\nColour=red\nDegreesPerCycle=720\nCdmsPerCycle=4\nStart=0\nCDMs=\nExposures=\n",
       corrupt},
      {"no equals", "Unit=ps\nDegreesPerCycle 720\n", corrupt},
      {"step angle", "Unit=ps\nDegreesPerCycle=360\nCdmsPerCycle=4\nStart=0\nPprStep=0;180\nCDMs=\nExposures=\n",
       corrupt},
      {"step form", "Unit=ps\nDegreesPerCycle=360\nCdmsPerCycle=4\nStart=0\nPprStep=0\nCDMs=\nExposures=\n", corrupt},
      {"empty", "", corrupt},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(errorOf(&CycleTimestamps::loadLegacyFormat, c.text), c.message);
  }
  // The cycle itself is still checked.
  EXPECT_THROW(
      loadText(&CycleTimestamps::loadLegacyFormat, "Unit=ps\nDegreesPerCycle=720\nCdmsPerCycle=4\nCDMs=\nExposures=\n"),
      RTE::InvalidArgumentError);
}

TEST(CycleTimestampsLegacy, LineFormat)
{
  const CycleTimestamps cycle =
      loadText(&CycleTimestamps::loadOldLegacyFormat, "ps\n"
                                                      "# degrees, marks, start, next start\n"
                                                      "720 8 - 100000000000\n"
                                                      "0 25000000000 50000000000 75000000000\n"
                                                      "10000000000 60000000000\n");
  EXPECT_TRUE(cycle.isStartMissing());
  EXPECT_EQ(cycle.cdmsPerCycle(), 8U);
  EXPECT_EQ(cycle.cdms(), times({0.0, 25.0, 50.0, 75.0}));
  EXPECT_EQ(cycle.exposures(), times({10.0, 60.0}));
  EXPECT_EQ(double(*cycle.crankAngleAt(RTE::ExposureIndex(0))), 36.0);

  // An empty exposure line is a cycle without exposures, a missing one an error.
  EXPECT_FALSE(loadText(&CycleTimestamps::loadOldLegacyFormat, "ps\n720 4 0 -\n0 1\n\n").containsExposures());

  struct Case
  {
    const char* what;
    const char* text;
    QString message;
  };
  const Case cases[] = {
      {"unit", "us\n720 4 0 100\n0\n1\n",
       QStringLiteral("Invalid unit for timestamps - this version only supports ps but not us")},
      {"no cdm line", "ps\n720 4 0 100\n", QStringLiteral("CDM timestamps are missing")},
      {"no exposure line", "ps\n720 4 0 100\n0 1\n", QStringLiteral("Exposure timestamps are missing")},
      {"empty", "", corrupt},
      {"short header", "ps\n720 4 0\n0\n1\n", corrupt},
      {"bad start", "ps\n720 4 zero 100\n0\n1\n", corrupt},
      {"extra line", "ps\n720 4 0 100\n0\n1\n2\n", corrupt},
      {"overflowing time", "ps\n720 4 0 100\n99999999999999999999\n1\n", corrupt},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(errorOf(&CycleTimestamps::loadOldLegacyFormat, c.text), c.message);
  }
}
