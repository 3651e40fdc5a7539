// The binary file of a cycle, "Timestamps.bin": store() and load() of CycleTimestamps.
// Layout in DESIGN.md beside this file.
#include <Core/Common/CycleTimestamps/CycleTimestamps.h>

#include "CycleTimestampsFileFormat_p.h"
#include "CycleTimestampsLog_p.h"

#include <Core/Common/Exceptions/FileWriteError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>

#include <QDataStream>
#include <QFile>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>
#include <array>

// Debug messages only when enabled by rules ("Core.CycleTimestamps.debug=true").
Q_LOGGING_CATEGORY(lcCycleTimestamps, "Core.CycleTimestamps", QtInfoMsg)

namespace RTE
{

using namespace CycleTimestampsFile;

namespace
{

// Time lists move in blocks of this many values: large files stay fast, and a reader
// never holds more than one block beyond the values the file really contained.
constexpr std::size_t blockValues = 65536;

QString tr(const char* text)
{
  return QCoreApplication::translate("RTE::CycleTimestamps", text);
}

void writeTimes(QDataStream& out, const std::vector<TimeSpan>& times)
{
  out << quint64(times.size());
  std::vector<std::array<uchar, 8>> block(std::min(blockValues, times.size()));
  for (std::size_t first = 0; first < times.size(); first += blockValues)
  {
    const std::size_t count = std::min(blockValues, times.size() - first);
    for (std::size_t i = 0; i < count; ++i)
      qToBigEndian<qint64>(times[first + i].ToPicoSeconds(), block[i].data());
    out.writeRawData(reinterpret_cast<const char*>(block.data()), static_cast<int>(count * 8));
  }
}

class Reader
{
public:
  explicit Reader(QIODevice& device) : m_device(device), m_stream(&device) { m_stream.setVersion(streamVersion); }

  [[noreturn]] void fail(const QString& message, const std::source_location& where = std::source_location::current())
  {
    raiseReadError(m_device, message, where);
  }

  // A value of the stream; what names it in the message of a file that ends too early.
  template <typename T>
  T read(const char* what)
  {
    T value{};
    m_stream >> value;
    if (m_stream.status() != QDataStream::Ok)
      fail(tr("Truncated data: the file ends in %1").arg(QLatin1String(what)));
    return value;
  }

  // Reads a field name without allocating more than the expected name needs.
  void expectField(const QString& name, const QString& messageOnMismatch)
  {
    quint32 bytes = 0;
    m_stream >> bytes;
    if (m_stream.status() != QDataStream::Ok || bytes != quint32(name.size() * 2))
      fail(messageOnMismatch);
    QByteArray raw(bytes, Qt::Uninitialized);
    if (m_stream.readRawData(raw.data(), int(bytes)) != int(bytes))
      fail(messageOnMismatch);
    for (qsizetype i = 0; i < name.size(); ++i)
    {
      if (qFromBigEndian<quint16>(raw.constData() + 2 * i) != name[i].unicode())
        fail(messageOnMismatch);
    }
  }

  // A count of items of itemBytes each; on a device of known size a count the remaining
  // bytes cannot hold is refused before anything is allocated.
  quint64 readCount(const char* what, quint64 itemBytes)
  {
    const quint64 count = read<quint64>(what);
    if (!m_device.isSequential())
    {
      const quint64 left = quint64(std::max<qint64>(0, m_device.size() - m_device.pos()));
      if (count > left / itemBytes)
        fail(tr("Invalid %1 count %2: the file holds at most %3 more")
                 .arg(QLatin1String(what), QString::number(count), QString::number(left / itemBytes)));
    }
    return count;
  }

  std::vector<TimeSpan> readTimes(const char* what)
  {
    const quint64 count = readCount(what, 8);
    std::vector<TimeSpan> times;
    times.reserve(std::min<quint64>(count, blockValues));
    std::vector<std::array<uchar, 8>> block(std::min<quint64>(count, blockValues));
    for (quint64 done = 0; done < count;)
    {
      const std::size_t n = std::min<quint64>(blockValues, count - done);
      const int bytes = static_cast<int>(n * 8);
      if (m_stream.readRawData(reinterpret_cast<char*>(block.data()), bytes) != bytes)
        fail(tr("Truncated data: the file ends in %1").arg(QLatin1String(what)));
      for (std::size_t i = 0; i < n; ++i)
        times.emplace_back(qFromBigEndian<qint64>(block[i].data()));
      done += n;
    }
    return times;
  }

  CrankAngle readAngle(const char* what)
  {
    const double angle = read<double>(what);
    const double degrees = read<double>(what);
    try
    {
      return CrankAngle(angle, DegreesPerCycle(degrees));
    }
    catch (const Exception& e)
    {
      fail(tr("Invalid %1: %2").arg(QLatin1String(what), e.message()));
    }
  }

  CycleTimestamps::Settings readSettings(qint32 version)
  {
    CycleTimestamps::Settings s;
    const double degrees = read<double>("degrees per cycle");
    try
    {
      s.degreesPerCycle = DegreesPerCycle(degrees);
    }
    catch (const Exception& e)
    {
      fail(tr("Invalid degrees per cycle: %1").arg(e.message()));
    }
    const quint32 cdmsPerCycle = read<quint32>("CDMs per cycle");
    if (cdmsPerCycle == 0)
      fail(tr("Invalid CDMs per cycle: 0"));
    s.cdmsPerCycle = CycleTimestamps::CdmCount(cdmsPerCycle);

    // Not reserved ahead: on a device of unknown size the count is not yet vouched for.
    const quint64 steps = readCount("PPR step", 32);
    for (quint64 i = 0; i < steps; ++i)
    {
      const CrankAngle lower = readAngle("PPR step");
      const CrankAngle upper = readAngle("PPR step");
      s.pprSteps.emplace_back(lower, upper);
    }
    if (read<bool>("start"))
      s.start = TimeSpan(read<qint64>("start"));
    if (read<bool>("next start"))
      s.nextStart = TimeSpan(read<qint64>("next start"));
    s.absoluteCycle = read<quint64>("absolute cycle");
    if (version >= 4)
      s.minimalPprDistance = readAngle("minimal PPR distance");
    return s;
  }

  CycleTimestamps readFile()
  {
    QUuid id;
    m_stream >> id;
    if (m_stream.status() != QDataStream::Ok || id != formatId)
      fail(tr("Unknown data format"));
    expectField(QStringLiteral("FormatVersion"), tr("Invalid format version field"));
    qint32 version = 0;
    m_stream >> version;
    if (m_stream.status() != QDataStream::Ok || (version != 3 && version != 4))
      fail(tr("Unsupported/invalid format version"));
    expectField(QStringLiteral("Settings"), tr("Invalid settings field"));
    CycleTimestamps::Settings settings = readSettings(version);
    expectField(QStringLiteral("CDMs"), tr("Invalid CDMs field"));
    const std::vector<TimeSpan> cdms = readTimes("CDM");
    expectField(QStringLiteral("Exposures"), tr("Invalid exposures field"));
    const std::vector<TimeSpan> exposures = readTimes("exposure");
    if (!m_stream.atEnd())
    {
      expectField(QStringLiteral("RecordedCycle"), tr("Invalid recorded cycle field"));
      settings.cycle = read<quint64>("recorded cycle");
    }
    qCDebug(lcCycleTimestamps) << "Read cycle timestamps version" << version << "with" << cdms.size() << "CDMs and"
                               << exposures.size() << "exposures from" << nameOf(m_device);
    return CycleTimestamps(settings, cdms, exposures);
  }

private:
  QIODevice& m_device;
  QDataStream m_stream;
};

} // namespace

void CycleTimestamps::store(QIODevice& device) const
{
  if (!device.isOpen())
    Raise(InvalidRequest(tr("Output device is not open")));
  if (!device.isWritable())
    Raise(InvalidRequest(tr("Cannot write to output device")));
  // Checked before the first byte so that a refused cycle leaves the device untouched.
  for (std::size_t i = 0; i < m_settings.pprSteps.size(); ++i)
  {
    if (!m_settings.pprSteps[i].hasLower() || !m_settings.pprSteps[i].hasUpper())
      Raise(InvalidArgumentError(tr("PPR step %1 has an open end and cannot be stored").arg(i)));
  }

  QDataStream out(&device);
  out.setVersion(streamVersion);
  out << formatId << QStringLiteral("FormatVersion") << currentVersion << QStringLiteral("Settings");
  out << double(m_settings.degreesPerCycle) << quint32(m_settings.cdmsPerCycle.get())
      << quint64(m_settings.pprSteps.size());
  for (const PprStep& step : m_settings.pprSteps)
  {
    out << double(*step.lower()) << double(step.lower()->degreesPerCycle()) << double(*step.upper())
        << double(step.upper()->degreesPerCycle());
  }
  out << m_settings.hasStart();
  if (m_settings.start)
    out << qint64(m_settings.start->ToPicoSeconds());
  out << m_settings.hasNextStart();
  if (m_settings.nextStart)
    out << qint64(m_settings.nextStart->ToPicoSeconds());
  out << quint64(m_settings.absoluteCycle) << double(m_settings.minimalPprDistance)
      << double(m_settings.minimalPprDistance.degreesPerCycle());
  out << QStringLiteral("CDMs");
  writeTimes(out, m_cdms);
  out << QStringLiteral("Exposures");
  writeTimes(out, m_exposures);
  out << QStringLiteral("RecordedCycle") << quint64(m_settings.cycle);
  if (out.status() != QDataStream::Ok)
    Raise(FileWriteError(device, nameOf(device)));
}

void CycleTimestamps::store(const QString& path) const
{
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly))
    raiseOpenError(path, tr("Cannot open '%1'").arg(path));
  store(static_cast<QIODevice&>(file));
  if (!file.commit())
    Raise(FileWriteError(file, path));
}

CycleTimestamps CycleTimestamps::load(QIODevice& device)
{
  if (!device.isOpen() && !device.open(QIODevice::ReadOnly))
    raiseOpenError(nameOf(device), tr("Cannot open hypersampling timestamps"));
  if (!device.isReadable())
    raiseOpenError(nameOf(device), tr("Cannot open hypersampling timestamps"));
  return Reader(device).readFile();
}

CycleTimestamps CycleTimestamps::load(const QString& path)
{
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    raiseOpenError(path, tr("Cannot open '%1'").arg(path));
  return load(static_cast<QIODevice&>(file));
}

} // namespace RTE
