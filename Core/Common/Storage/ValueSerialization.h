// Storing the toolkit's value types and Zn::LinearScale in a settings node.
//
//   Storage::SerializeTo(*settings.CreateNode("Origin"), QPointF(1.5, -2));
//   // <Origin class="point2DF" version="1"><x class="double" value="1.5"/>...</Origin>
//   QPointF origin;
//   Storage::DeserializeFrom(*settings.GetNode("Origin"), origin);
//
// SerializeTo writes into the node it is given: its class (and version 1 for the
// versioned types), then the fields as leaves. DeserializeFrom never throws for bad
// content: a node of another class gives the default-constructed value, a version other
// than 1 gives it too and is reported (Settings::Report); a missing leaf reads as 0.
#pragma once

#include <Core/Common/Storage/Settings.h>

#include <QString>

#include <concepts>
#include <ranges>

class QByteArray;
class QChar;
class QDateTime;
class QFileInfo;
class QLine;
class QLineF;
class QPoint;
class QPointF;
class QRect;
class QRectF;
class QSize;
class QSizeF;
class QUuid;
class QVariant;

namespace Zn
{
class LinearScale;
}

namespace Storage
{

// class "bytearray": "ContentString" holds the bytes in standard Base64.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QByteArray& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QByteArray& value);
// class "char": "Unicode" holds the UTF-16 code unit.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QChar& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QChar& value);
// class "datetime", version 1: "msSinceEpoch" as uint64 (dates before 1970 wrap and
// come back through the same conversion).
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QDateTime& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QDateTime& value);
// class "fileinfo": "AbsoluteFilePath".
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QFileInfo& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QFileInfo& value);
// class "line", version 1: child nodes "Point1", "Point2".
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QLine& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QLine& value);
// class "linef", version 1: child nodes "PointF1", "PointF2".
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QLineF& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QLineF& value);
// class "point2D": "X", "Y" as int32.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QPoint& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QPoint& value);
// class "point2DF", version 1: "x", "y" (lower case) as double.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QPointF& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QPointF& value);
// class "rect": "X", "Y", "W", "H" (left, top, width, height) as int32.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QRect& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QRect& value);
// class "rectf": "X", "Y", "W", "H" as double.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QRectF& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QRectF& value);
// class "size": "Width", "Height" as uint32_t (the invalid size -1 is 4294967295).
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QSize& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QSize& value);
// class "sizef": "Width", "Height" as double.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QSizeF& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QSizeF& value);
// class "qstring": "string".
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QString& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QString& value);
// class "uuid", version 1: "value", the identifier in braces.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QUuid& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QUuid& value);
// class "variant", version 1: child node "variant" holding the QByteArray of the value
// written by QDataStream at version 17 (Qt 5.6 format).
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const QVariant& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, QVariant& value);
// class "LinearScale", version 1: "Offset", "Factor", "Unit", "Description"; a missing
// "Factor" reads as 1.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const Zn::LinearScale& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, Zn::LinearScale& value);

// Whether node holds class className at version 1, for the readers of versioned classes:
// false for another class; false with a report for another version.
CORECOMMON_EXPORT bool IsReadableVersion1(const Settings& node, const QString& className);

// A list of texts, class "list", version 1: one collection item "item" per text, in
// order. Items already in the node are replaced.
template <std::ranges::input_range List>
requires std::convertible_to<std::ranges::range_reference_t<List>, QString> Settings& SerializeTo(Settings& node,
                                                                                                  const List& texts)
{
  node.SetClass(QStringLiteral("list"));
  node.SetVersion(1);
  node.Remove(QStringLiteral("item"));
  for (const QString& text : texts)
    node.AppendCollectionItem(QStringLiteral("item"), text);
  return node;
}

template <typename List>
requires requires(List list, QString text)
{
  list.clear();
  list.push_back(text);
}
void DeserializeFrom(const Settings& node, List& texts)
{
  texts.clear();
  if (!IsReadableVersion1(node, QStringLiteral("list")))
    return;
  const QString item = QStringLiteral("item");
  const unsigned long long count = node.IsCollection(item) ? node.Count(item) : 0;
  for (unsigned long long index = 0; index < count; ++index)
    texts.push_back(node.GetCollectionItem<QString>(item, index, QString()));
}

} // namespace Storage
