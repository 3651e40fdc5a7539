#include <Core/Common/Units/Frequency.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>
#include <QStringList>

#include <cmath>

namespace RTE
{

namespace
{

QString tr(const char* text)
{
  return QCoreApplication::translate("RTE::Frequency", text);
}

// 2^64 as a double: periods at or beyond it do not fit the counter.
constexpr double periodRangeEnd = 18446744073709551616.0;

Frequency fromPeriod(double periodPs)
{
  if (periodPs >= periodRangeEnd)
    return Frequency::Zero();
  return Frequency(static_cast<std::uint64_t>(periodPs));
}

} // namespace

Frequency Frequency::FromMilliHertz(double milliHertz)
{
  if (!(milliHertz >= 0.0))
    Raise(InvalidArgumentError(tr("Invalid frequency: %1 mHz").arg(milliHertz)));
  if (milliHertz == 0.0)
    return Zero();
  return fromPeriod(1e15 / milliHertz);
}

Frequency Frequency::FromRPM(double rpm, int degreesPerCycle)
{
  const int revolutionsPerCycle = degreesPerCycle / 360;
  if (revolutionsPerCycle <= 0)
    Raise(InvalidArgumentError(tr("Invalid degrees per cycle: %1").arg(degreesPerCycle)));
  if (!(rpm >= 0.0))
    Raise(InvalidArgumentError(tr("Invalid RPM value")));
  const double cyclesPerSecond = rpm / 60.0 / revolutionsPerCycle;
  if (cyclesPerSecond == 0.0)
    return Zero();
  return fromPeriod(1e12 / cyclesPerSecond);
}

void Frequency::throwOnZeroPeriod() const
{
  if (m_period == 0)
    Raise(Exception(tr("Division by zero when trying to calculate a frequency from a zero period.")));
}

double Frequency::ToHertz() const
{
  throwOnZeroPeriod();
  if (m_period >= static_cast<std::uint64_t>(INT64_MAX))
    return 0.0;
  return 1e12 / static_cast<double>(m_period);
}

double Frequency::ToKiloHertz() const
{
  return ToHertz() / 1000.0;
}

std::uint64_t Frequency::ToMilliHertz() const
{
  throwOnZeroPeriod();
  if (m_period > 9223372036854775806ULL)
    return 0;
  return static_cast<std::uint64_t>(1e15 / static_cast<double>(m_period));
}

double Frequency::ToRPM(int degreesPerCycle) const
{
  return ToHertz() * 60.0 * (degreesPerCycle / 360);
}

TimeSpan Frequency::ToPeriod() const
{
  if (m_period > static_cast<std::uint64_t>(INT64_MAX))
    return TimeSpan::Maximum();
  return TimeSpan(static_cast<std::int64_t>(m_period));
}

bool Frequency::IsCloseTo(const Frequency& other, std::uint64_t tolerance) const
{
  const std::uint64_t difference = m_period > other.m_period ? m_period - other.m_period : other.m_period - m_period;
  return difference <= tolerance;
}

QString Frequency::ToString(int precision) const
{
  if (isInfinite())
    return QStringLiteral("inf Hz");
  const double hertz = ToHertz();
  if (hertz < 1e3)
    return QStringLiteral("%1 Hz").arg(QString::number(hertz, 'g', precision));
  if (hertz < 1e6)
    return QStringLiteral("%1 kHz").arg(QString::number(hertz / 1e3, 'g', precision));
  return QStringLiteral("%1 MHz").arg(QString::number(hertz / 1e6, 'g', precision));
}

Frequency Frequency::FromString(const QString& text)
{
  const QStringList parts = text.split(QLatin1Char(' '), Qt::KeepEmptyParts);
  if (parts.size() != 2)
    Raise(PostconditionFailed(QStringLiteral("Postcondition failed: parts.size() == 2")));

  const double number = parts[0].toDouble();
  const QString unit = parts[1].toLower();
  if (unit == QLatin1String("hz") || unit == QLatin1String("hertz"))
    return Hertz(number);
  if (unit == QLatin1String("khz") || unit == QLatin1String("kilohertz"))
    return Hertz(number * 1e3);
  if (unit == QLatin1String("mhz") || unit == QLatin1String("megahertz"))
    return Hertz(number * 1e6);
  Raise(Exception(tr("Unknown unit - Don't know how to convert the given string '%1' into a frequency.").arg(text)));
}

Frequency Hertz(double hertz)
{
  return Frequency::FromMilliHertz(hertz * 1e3);
}

Frequency KiloHertz(double kiloHertz)
{
  return Frequency::FromMilliHertz(kiloHertz * 1e6);
}

} // namespace RTE
