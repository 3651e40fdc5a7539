#include <Core/Common/CycleTimestamps/CycleTimestamps.h>
#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/FileReadError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>

#include "CycleFixtures.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QTemporaryDir>
#include <QUuid>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

using namespace CycleFixtures;
using RTE::CycleTimestamps;

namespace
{

const RTE::DegreesPerCycle fourStroke(720.0);

// A full PPR cycle with every field set to something other than its default.
CycleTimestamps richCycle()
{
  CycleTimestamps::Settings s = settings(720.0, 8, 0.0, 72.0);
  s.pprSteps = {{RTE::CrankAngle(-360.0, fourStroke), RTE::CrankAngle(-300.0, fourStroke)},
                {RTE::CrankAngle(-200.0, fourStroke), RTE::CrankAngle(-100.0, fourStroke)}};
  s.absoluteCycle = 123456789012345ULL;
  s.cycle = 42;
  s.minimalPprDistance = RTE::CrankAngle(5.5, fourStroke);
  std::vector<double> cdms;
  for (int i = 0; i < 8; ++i)
    cdms.push_back(9.0 * i);
  return CycleTimestamps(s, times(cdms), times({0.0, 3.0, 16.0, 21.0}));
}

// Writes the file layout independently of the library, so that a change of the layout
// in the library shows as a failure here.
struct FileImage
{
  QUuid id{QStringLiteral("{11539ace-e11d-4fda-8e92-48ae938585ca}")};
  qint32 version = 4;
  QString versionField = QStringLiteral("FormatVersion");
  double degrees = 720.0;
  quint32 cdmsPerCycle = 4;
  std::vector<std::array<double, 4>> steps;
  std::optional<qint64> start = 0;
  std::optional<qint64> nextStart = 100000000000;
  quint64 absoluteCycle = 7;
  double minimalDistance = 1.5;
  double minimalDistanceDegrees = 720.0;
  QString cdmsField = QStringLiteral("CDMs");
  std::optional<quint64> cdmCount; // the real count unless set
  std::vector<qint64> cdms{0, 25000000000, 50000000000, 75000000000};
  std::vector<qint64> exposures{10000000000, 60000000000};
  bool withRecordedCycle = true;
  QString recordedCycleField = QStringLiteral("RecordedCycle");
  quint64 cycle = 9;

  QByteArray bytes() const
  {
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out.setVersion(19);
    out << id << versionField << version << QStringLiteral("Settings") << degrees << cdmsPerCycle
        << quint64(steps.size());
    for (const auto& step : steps)
      out << step[0] << step[1] << step[2] << step[3];
    out << start.has_value();
    if (start)
      out << *start;
    out << nextStart.has_value();
    if (nextStart)
      out << *nextStart;
    out << absoluteCycle;
    if (version >= 4)
      out << minimalDistance << minimalDistanceDegrees;
    out << cdmsField << cdmCount.value_or(cdms.size());
    for (qint64 t : cdms)
      out << t;
    out << QStringLiteral("Exposures") << quint64(exposures.size());
    for (qint64 t : exposures)
      out << t;
    if (withRecordedCycle)
      out << recordedCycleField << cycle;
    return data;
  }
};

CycleTimestamps loadBytes(const QByteArray& data)
{
  QBuffer buffer;
  buffer.setData(data);
  return CycleTimestamps::load(buffer);
}

// Settings compare field by field; the derived angles and PPR map follow from them.
void expectSameFields(const CycleTimestamps& a, const CycleTimestamps& b)
{
  EXPECT_TRUE(a.settings() == b.settings());
  EXPECT_EQ(a.cdms(), b.cdms());
  EXPECT_EQ(a.exposures(), b.exposures());
  EXPECT_EQ(a.exposureToPprMap(), b.exposureToPprMap());
}

// A device without a size or position, as a pipe or socket is.
class StreamDevice : public QIODevice
{
public:
  explicit StreamDevice(const QByteArray& data) : m_data(data) { open(QIODevice::ReadOnly); }
  bool isSequential() const override { return true; }
  qint64 bytesAvailable() const override { return m_data.size() - m_offset + QIODevice::bytesAvailable(); }

protected:
  qint64 readData(char* data, qint64 maxSize) override
  {
    const qint64 n = std::min<qint64>(maxSize, m_data.size() - m_offset);
    if (n <= 0)
      return -1;
    std::memcpy(data, m_data.constData() + m_offset, std::size_t(n));
    m_offset += n;
    return n;
  }
  qint64 writeData(const char*, qint64) override { return -1; }

private:
  QByteArray m_data;
  qint64 m_offset = 0;
};

} // namespace

TEST(CycleTimestampsFile, StoredCyclesLoadBackFieldByField)
{
  CycleTimestamps::Settings endMissing = settings(360.0, 100, 5.0);
  endMissing.cycle = 3;
  const CycleTimestamps cycles[] = {richCycle(), CycleTimestamps(endMissing, times({5.0, 6.0, 7.0}), times({5.5})),
                                    CycleTimestamps(settings(720.0, 8, std::nullopt, 100.0), times({0.0, 25.0}), {})};
  for (const CycleTimestamps& cycle : cycles)
  {
    SCOPED_TRACE(cycle.cdmCount());
    QBuffer buffer;
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    cycle.store(buffer);
    buffer.close();
    expectSameFields(CycleTimestamps::load(buffer), cycle); // opens the closed buffer itself
  }
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("Timestamps.bin"));
  richCycle().store(path);
  expectSameFields(CycleTimestamps::load(path), richCycle());
}

TEST(CycleTimestampsFile, LayoutOfVersionFourAndThree)
{
  // The library writes the independent image byte for byte.
  FileImage image;
  image.steps = {{-360.0, 720.0, -300.0, 720.0}};
  const CycleTimestamps fromImage = loadBytes(image.bytes());
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  fromImage.store(buffer);
  EXPECT_EQ(buffer.data(), image.bytes());
  EXPECT_EQ(fromImage.cycle(), 9U);
  EXPECT_EQ(fromImage.minimalPprDistance(), RTE::CrankAngle(1.5, fourStroke));

  FileImage three; // no minimal PPR distance: it keeps its default
  three.version = 3;
  const CycleTimestamps old = loadBytes(three.bytes());
  EXPECT_EQ(old.minimalPprDistance(), RTE::CrankAngle());
  EXPECT_EQ(old.cycle(), 9U);
  FileImage noCycle; // ends after the exposures: the default cycle number
  noCycle.withRecordedCycle = false;
  EXPECT_EQ(loadBytes(noCycle.bytes()).cycle(), 0U);
}

TEST(CycleTimestampsFile, ReadingErrorsNameTheField)
{
  const std::pair<std::function<void(FileImage&)>, QString> cases[] = {
      {[](FileImage& f) { f.id = QUuid::createUuid(); }, QStringLiteral("Unknown data format")},
      {[](FileImage& f) { f.versionField = QStringLiteral("FormatVersio_"); },
       QStringLiteral("Invalid format version field")},
      {[](FileImage& f) { f.version = 5; }, QStringLiteral("Unsupported/invalid format version")},
      {[](FileImage& f) { f.version = 2; }, QStringLiteral("Unsupported/invalid format version")},
      {[](FileImage& f) { f.cdmsField = QStringLiteral("CDM"); }, QStringLiteral("Invalid CDMs field")},
      {[](FileImage& f) { f.recordedCycleField = QStringLiteral("Cycle"); },
       QStringLiteral("Invalid recorded cycle field")},
      {[](FileImage& f) { f.degrees = 540.0; },
       QStringLiteral("Invalid degrees per cycle: Value is not 360 or 720: 540")},
      {[](FileImage& f) { f.cdmsPerCycle = 0; }, QStringLiteral("Invalid CDMs per cycle: 0")},
      {[](FileImage& f) {
         f.steps = {{-360.0, 720.0, 400.0, 720.0}};
       },
       QStringLiteral("Invalid PPR step: Crank angle 400\u00b0 is not in the allowed range between -360\u00b0 and "
                      "360\u00b0.")},
      {[](FileImage& f) { f.minimalDistanceDegrees = 0.0; },
       QStringLiteral("Invalid minimal PPR distance: Value is not 360 or 720: 0")},
      {[](FileImage& f) { f.cdmCount = quint64(1) << 61; },
       QStringLiteral("Invalid CDM count 2305843009213693952: the file holds at most 14 more")},
      {[](FileImage& f) { f.cdmCount = 8; }, QStringLiteral("Invalid exposures field")},
  };
  for (const auto& [change, message] : cases)
  {
    SCOPED_TRACE(message.toStdString());
    FileImage image;
    change(image);
    EXPECT_EQ(MessageOf<RTE::FileReadError>([&] { loadBytes(image.bytes()); }), message);
  }
  FileImage late; // a readable file of an inconsistent cycle fails as the constructor does
  late.cdms.push_back(100000000000);
  EXPECT_THROW(loadBytes(late.bytes()), RTE::LogicError);
}

TEST(CycleTimestampsFile, EveryTruncationIsRefused)
{
  FileImage image;
  image.steps = {{-360.0, 720.0, -300.0, 720.0}};
  const QByteArray full = image.bytes();
  image.withRecordedCycle = false;
  const qsizetype endOfExposures = image.bytes().size();
  for (qsizetype size = 0; size < full.size(); ++size)
  {
    SCOPED_TRACE(size);
    if (size == endOfExposures)
      EXPECT_NO_THROW(loadBytes(full.left(size)));
    else
      EXPECT_THROW(loadBytes(full.left(size)), RTE::FileReadError);
  }

  // On a device of unknown size a huge count runs out of data instead of memory.
  FileImage huge;
  huge.exposures.clear();
  huge.withRecordedCycle = false;
  huge.cdmCount = quint64(1) << 60;
  StreamDevice device(huge.bytes());
  EXPECT_EQ(MessageOf<RTE::FileReadError>([&] { CycleTimestamps::load(device); }),
            QStringLiteral("Truncated data: the file ends in CDM"));
}

TEST(CycleTimestampsFile, DeviceAndPathErrors)
{
  const CycleTimestamps cycle = richCycle();
  QBuffer closed;
  EXPECT_EQ(MessageOf<RTE::InvalidRequest>([&] { cycle.store(closed); }), QStringLiteral("Output device is not open"));
  QBuffer readOnly;
  readOnly.open(QIODevice::ReadOnly);
  EXPECT_EQ(MessageOf<RTE::InvalidRequest>([&] { cycle.store(readOnly); }),
            QStringLiteral("Cannot write to output device"));

  // A PPR step with an open end cannot be written; nothing reaches the device.
  CycleTimestamps::Settings open = cycle.settings();
  open.pprSteps.push_back({RTE::CrankAngle(100.0, fourStroke), std::nullopt});
  const CycleTimestamps openCycle(open, cycle.cdms(), cycle.exposures());
  QBuffer untouched;
  untouched.open(QIODevice::WriteOnly);
  EXPECT_THROW(openCycle.store(untouched), RTE::InvalidArgumentError);
  EXPECT_TRUE(untouched.data().isEmpty());

  QTemporaryDir dir;
  const QString badPath = dir.filePath(QStringLiteral("missing/Timestamps.bin"));
  const QString cannotOpen = QStringLiteral("Cannot open '%1'").arg(badPath);
  EXPECT_EQ(MessageOf<RTE::FileOpenError>([&] { cycle.store(badPath); }), cannotOpen);
  EXPECT_EQ(MessageOf<RTE::FileOpenError>([&] { CycleTimestamps::load(badPath); }), cannotOpen);
  QFile missing(badPath);
  EXPECT_EQ(MessageOf<RTE::FileOpenError>([&] { CycleTimestamps::load(missing); }),
            QStringLiteral("Cannot open hypersampling timestamps"));

  // A refused store through a path leaves the existing file as it was.
  const QString path = dir.filePath(QStringLiteral("Timestamps.bin"));
  cycle.store(path);
  EXPECT_THROW(openCycle.store(path), RTE::InvalidArgumentError);
  expectSameFields(CycleTimestamps::load(path), cycle);
}
