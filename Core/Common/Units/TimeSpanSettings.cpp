#include <Core/Common/Units/TimeSpanSettings.h>

#include <Core/Common/Storage/ValueSerialization.h>

namespace Storage
{

namespace
{

const QString& className()
{
  static const QString name = QStringLiteral("TimeSpan");
  return name;
}

} // namespace

Settings& SerializeTo(Settings& node, const RTE::TimeSpan& value)
{
  node.SetClass(className());
  node.SetVersion(1);
  node.Set(QStringLiteral("PicoSeconds"), static_cast<long long>(value.ToPicoSeconds()));
  return node;
}

void DeserializeFrom(const Settings& node, RTE::TimeSpan& value)
{
  value = IsReadableVersion1(node, className()) ? RTE::TimeSpan(node.Get<long long>(QStringLiteral("PicoSeconds"), 0LL))
                                                : RTE::TimeSpan();
}

} // namespace Storage

namespace RTE
{

Storage::Settings& TimeSpan::SerializeTo(Storage::Settings& node) const
{
  return Storage::SerializeTo(node, *this);
}

void TimeSpan::DeserializeFrom(const Storage::Settings& node)
{
  Storage::DeserializeFrom(node, *this);
}

} // namespace RTE
