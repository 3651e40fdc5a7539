#include <Core/Common/Units/PercentageSettings.h>

#include <Core/Common/Storage/ValueSerialization.h>

#include <QCoreApplication>

#include <cmath>

namespace Storage
{

namespace
{

const QString& className()
{
  static const QString name = QStringLiteral("Percentage");
  return name;
}

} // namespace

Settings& SerializeTo(Settings& node, const RTE::Percentage& value)
{
  node.SetClass(className());
  node.SetVersion(1);
  node.Set(QStringLiteral("Percent"), value.value());
  return node;
}

void DeserializeFrom(const Settings& node, RTE::Percentage& value)
{
  value = RTE::Percentage();
  if (!IsReadableVersion1(node, className()))
    return;
  const double percent = node.Get<double>(QStringLiteral("Percent"), 0.0);
  // The leaf parser accepts "nan" and "inf", which the type refuses; reading must not throw.
  if (!std::isfinite(percent))
  {
    node.Report(QCoreApplication::translate("RTE::Percentage", "Invalid percentage: %1").arg(percent));
    return;
  }
  value = RTE::Percentage(percent);
}

} // namespace Storage

namespace RTE
{

Storage::Settings& Percentage::SerializeTo(Storage::Settings& node) const
{
  return Storage::SerializeTo(node, *this);
}

void Percentage::DeserializeFrom(const Storage::Settings& node)
{
  Storage::DeserializeFrom(node, *this);
}

} // namespace RTE
