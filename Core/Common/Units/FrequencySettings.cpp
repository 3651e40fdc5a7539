#include <Core/Common/Units/FrequencySettings.h>

#include <Core/Common/Storage/ValueSerialization.h>

namespace Storage
{

namespace
{

const QString& className()
{
  static const QString name = QStringLiteral("Frequency");
  return name;
}

} // namespace

Settings& SerializeTo(Settings& node, const RTE::Frequency& value)
{
  node.SetClass(className());
  node.SetVersion(1);
  node.Set(QStringLiteral("PeriodPicoSeconds"), static_cast<unsigned long long>(value.GetPeriodPicoSeconds()));
  return node;
}

void DeserializeFrom(const Settings& node, RTE::Frequency& value)
{
  const RTE::Frequency fallback;
  value = IsReadableVersion1(node, className())
              ? RTE::Frequency(
                    node.Get<unsigned long long>(QStringLiteral("PeriodPicoSeconds"), fallback.GetPeriodPicoSeconds()))
              : fallback;
}

} // namespace Storage

namespace RTE
{

Storage::Settings& Frequency::SerializeTo(Storage::Settings& node) const
{
  return Storage::SerializeTo(node, *this);
}

void Frequency::DeserializeFrom(const Storage::Settings& node)
{
  Storage::DeserializeFrom(node, *this);
}

} // namespace RTE
