#include <Core/Common/Units/Percentage.h>

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
  return QCoreApplication::translate("RTE::Percentage", text);
}

} // namespace

Percentage::Percentage(double percent) : m_percent(percent)
{
  if (!std::isfinite(percent))
    Raise(InvalidArgumentError(tr("Invalid percentage: %1").arg(percent)));
}

Percentage Percentage::FromFraction(double fraction)
{
  return Percentage(fraction * 100.0);
}

QString Percentage::ToString(int precision) const
{
  return QStringLiteral("%1 %").arg(QString::number(m_percent, 'g', precision));
}

Percentage Percentage::FromString(const QString& text)
{
  const QStringList parts = text.split(QLatin1Char(' '), Qt::KeepEmptyParts);
  if (parts.size() != 2)
    Raise(PostconditionFailed(QStringLiteral("Postcondition failed: parts.size() == 2")));
  if (parts[1] != QLatin1String("%"))
    Raise(Exception(tr("Unknown unit - Don't know how to convert the given string '%1' into a percentage.").arg(text)));
  bool ok = false;
  const double number = parts[0].toDouble(&ok);
  if (!ok)
    Raise(InvalidArgumentError(tr("Invalid percentage: %1").arg(parts[0])));
  return Percentage(number);
}

} // namespace RTE
