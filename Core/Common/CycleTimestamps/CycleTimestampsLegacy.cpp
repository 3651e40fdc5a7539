// The text formats of the cycle files that came before "Timestamps.bin" (layouts in
// DESIGN.md beside this file). Both carry their time unit; only picoseconds were ever
// written, and anything else is refused rather than guessed.
#include <Core/Common/CycleTimestamps/CycleTimestamps.h>

#include "CycleTimestampsFileFormat_p.h"

#include <QByteArrayList>

#include <set>

namespace RTE
{

using namespace CycleTimestampsFile;

namespace
{

QString tr(const char* text)
{
  return QCoreApplication::translate("RTE::CycleTimestamps", text);
}

class LegacyParser
{
public:
  explicit LegacyParser(QIODevice& device) : m_device(device)
  {
    if (!device.isOpen() && !device.open(QIODevice::ReadOnly))
      raiseOpenError(nameOf(device), tr("Cannot open hypersampling timestamps"));
    if (!device.isReadable())
      raiseOpenError(nameOf(device), tr("Cannot open hypersampling timestamps"));
  }

  [[noreturn]] void corrupt(const std::source_location& where = std::source_location::current())
  {
    raiseReadError(m_device, tr("Corrupt data for hypersampling timestamps"), where);
  }
  [[noreturn]] void fail(const QString& message, const std::source_location& where = std::source_location::current())
  {
    raiseReadError(m_device, message, where);
  }

  // The lines without "#" comments, trimmed; lines that are only a comment are left out,
  // blank ones too unless keepEmpty.
  QByteArrayList lines(bool keepEmpty)
  {
    QByteArrayList result;
    const QByteArray all = m_device.readAll();
    for (QByteArray line : all.split('\n'))
    {
      if (line.trimmed().startsWith('#'))
        continue;
      const qsizetype comment = line.indexOf('#');
      if (comment >= 0)
        line.truncate(comment);
      line = line.trimmed();
      if (keepEmpty || !line.isEmpty())
        result.push_back(line);
    }
    // A final line break leaves no line behind it.
    if (keepEmpty && !result.isEmpty() && result.back().isEmpty() && all.endsWith('\n'))
      result.pop_back();
    return result;
  }

  void checkUnit(const QByteArray& unit)
  {
    if (unit != "ps")
      fail(tr("Invalid unit for timestamps - this version only supports ps but not %1").arg(QString::fromUtf8(unit)));
  }

  qint64 integer(const QByteArray& text)
  {
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    if (!ok)
      corrupt();
    return value;
  }

  quint64 cycleNumber(const QByteArray& text)
  {
    bool ok = false;
    const quint64 value = text.toULongLong(&ok);
    if (!ok)
      corrupt();
    return value;
  }

  quint32 cdmsPerCycle(const QByteArray& text)
  {
    bool ok = false;
    const quint32 value = text.toUInt(&ok);
    if (!ok || value == 0)
      corrupt();
    return value;
  }

  DegreesPerCycle degrees(const QByteArray& text)
  {
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || (value != 360.0 && value != 720.0))
      corrupt();
    return DegreesPerCycle(value);
  }

  std::optional<TimeSpan> optionalTime(const QByteArray& text)
  {
    if (text == "-")
      return std::nullopt;
    return TimeSpan(integer(text));
  }

  std::vector<TimeSpan> times(const QByteArray& text)
  {
    std::vector<TimeSpan> result;
    for (const QByteArray& item : text.simplified().split(' '))
    {
      if (!item.isEmpty())
        result.emplace_back(integer(item));
    }
    return result;
  }

  std::optional<CrankAngle> angle(const QByteArray& text, DegreesPerCycle d)
  {
    if (text.trimmed().isEmpty())
      return std::nullopt;
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !(value >= -d / 2 && value < d / 2))
      corrupt();
    return CrankAngle(value, d);
  }

private:
  QIODevice& m_device;
};

} // namespace

CycleTimestamps CycleTimestamps::loadLegacyFormat(QIODevice& device)
{
  LegacyParser parser(device);
  std::map<QByteArray, QByteArray> values;
  QByteArrayList pprSteps;
  for (const QByteArray& line : parser.lines(false))
  {
    const qsizetype equals = line.indexOf('=');
    if (equals <= 0)
      parser.corrupt();
    const QByteArray key = line.left(equals).trimmed();
    const QByteArray value = line.mid(equals + 1).trimmed();
    static const std::set<QByteArray> known{"Unit",          "DegreesPerCycle", "CdmsPerCycle", "Start",    "NextStart",
                                            "AbsoluteCycle", "RecordedCycle",   "CDMs",         "Exposures"};
    if (key == "PprStep")
      pprSteps.push_back(value);
    else if (!known.count(key) || !values.emplace(key, value).second)
      parser.corrupt();
  }

  const auto found = [&values](const char* key) { return values.find(QByteArray(key)); };
  if (found("Unit") == values.end())
    parser.corrupt();
  parser.checkUnit(found("Unit")->second);
  if (found("CDMs") == values.end())
    parser.fail(tr("CDM timestamps are missing"));
  if (found("Exposures") == values.end())
    parser.fail(tr("Exposure timestamps are missing"));
  if (found("DegreesPerCycle") == values.end() || found("CdmsPerCycle") == values.end())
    parser.corrupt();

  Settings s;
  s.degreesPerCycle = parser.degrees(found("DegreesPerCycle")->second);
  s.cdmsPerCycle = CdmCount(parser.cdmsPerCycle(found("CdmsPerCycle")->second));
  if (const auto start = found("Start"); start != values.end())
    s.start = parser.optionalTime(start->second);
  if (const auto next = found("NextStart"); next != values.end())
    s.nextStart = parser.optionalTime(next->second);
  if (const auto absolute = found("AbsoluteCycle"); absolute != values.end())
    s.absoluteCycle = parser.cycleNumber(absolute->second);
  if (const auto recorded = found("RecordedCycle"); recorded != values.end())
    s.cycle = parser.cycleNumber(recorded->second);
  for (const QByteArray& step : pprSteps)
  {
    const QByteArrayList ends = step.split(';');
    if (ends.size() != 2)
      parser.corrupt();
    s.pprSteps.emplace_back(parser.angle(ends[0], s.degreesPerCycle), parser.angle(ends[1], s.degreesPerCycle));
  }
  return CycleTimestamps(s, parser.times(found("CDMs")->second), parser.times(found("Exposures")->second));
}

CycleTimestamps CycleTimestamps::loadOldLegacyFormat(QIODevice& device)
{
  LegacyParser parser(device);
  const QByteArrayList lines = parser.lines(true);
  if (lines.isEmpty() || lines[0].isEmpty())
    parser.corrupt();
  parser.checkUnit(lines[0]);
  if (lines.size() < 2)
    parser.corrupt();
  const QByteArrayList header = lines[1].simplified().split(' ');
  if (header.size() != 4)
    parser.corrupt();
  if (lines.size() < 3)
    parser.fail(tr("CDM timestamps are missing"));
  if (lines.size() < 4)
    parser.fail(tr("Exposure timestamps are missing"));
  for (qsizetype i = 4; i < lines.size(); ++i)
  {
    if (!lines[i].isEmpty())
      parser.corrupt();
  }

  Settings s;
  s.degreesPerCycle = parser.degrees(header[0]);
  s.cdmsPerCycle = CdmCount(parser.cdmsPerCycle(header[1]));
  s.start = parser.optionalTime(header[2]);
  s.nextStart = parser.optionalTime(header[3]);
  return CycleTimestamps(s, parser.times(lines[2]), parser.times(lines[3]));
}

} // namespace RTE
