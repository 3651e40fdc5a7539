#include <Core/Common/Storage/ValueSerialization.h>

#include <Core/Common/Storage/StorageExceptions.h>

#include <Zn/Utils/LinearScale.h>

#include <QByteArray>
#include <QChar>
#include <QDataStream>
#include <QDateTime>
#include <QFileInfo>
#include <QLine>
#include <QLineF>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <QUuid>
#include <QVariant>

namespace Storage
{

namespace
{

// Fixed by the file format: the variant bytes are QDataStream version 17.
constexpr QDataStream::Version kVariantStreamVersion = QDataStream::Qt_5_6;
static_assert(kVariantStreamVersion == 17);

Settings& Begin(Settings& node, const char* className, bool versioned)
{
  node.SetClass(QString::fromLatin1(className));
  if (versioned)
    node.SetVersion(1);
  return node;
}

// The class check every reader starts with; versioned classes also need version 1.
bool Readable(const Settings& node, const char* className, bool versioned)
{
  const QString name = QString::fromLatin1(className);
  return versioned ? IsReadableVersion1(node, name) : node.IsClass(name);
}

// The plain child node name, or null when there is none (a missing field).
std::shared_ptr<Settings> Child(const Settings& node, const QString& name)
{
  if (!node.Contains(name))
    return {};
  try
  {
    return node.GetNode(name);
  }
  catch (const NotExistingSetting&)
  {
    return {};
  }
}

template <typename T>
void ReadChild(const Settings& node, const QString& name, T& value)
{
  value = T();
  if (const std::shared_ptr<Settings> child = Child(node, name))
    DeserializeFrom(*child, value);
}

} // namespace

bool IsReadableVersion1(const Settings& node, const QString& className)
{
  if (!node.IsClass(className))
    return false;
  const unsigned int version = node.GetVersion();
  if (version != 1)
  {
    node.Report(QStringLiteral("Not supported version (%1)").arg(version));
    return false;
  }
  return true;
}

Settings& SerializeTo(Settings& node, const QByteArray& value)
{
  Begin(node, "bytearray", false).Set(QStringLiteral("ContentString"), QString::fromLatin1(value.toBase64()));
  return node;
}

void DeserializeFrom(const Settings& node, QByteArray& value)
{
  value = Readable(node, "bytearray", false)
              ? QByteArray::fromBase64(node.Get<QString>(QStringLiteral("ContentString"), QString()).toLatin1())
              : QByteArray();
}

Settings& SerializeTo(Settings& node, const QChar& value)
{
  Begin(node, "char", false).Set(QStringLiteral("Unicode"), static_cast<unsigned short>(value.unicode()));
  return node;
}

void DeserializeFrom(const Settings& node, QChar& value)
{
  value = Readable(node, "char", false)
              ? QChar(node.Get<unsigned short>(QStringLiteral("Unicode"), static_cast<unsigned short>(0)))
              : QChar();
}

Settings& SerializeTo(Settings& node, const QDateTime& value)
{
  Begin(node, "datetime", true)
      .Set(QStringLiteral("msSinceEpoch"), static_cast<unsigned long long>(value.toMSecsSinceEpoch()));
  return node;
}

void DeserializeFrom(const Settings& node, QDateTime& value)
{
  value = Readable(node, "datetime", true) ? QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(
                                                 node.Get<unsigned long long>(QStringLiteral("msSinceEpoch"), 0ULL)))
                                           : QDateTime();
}

Settings& SerializeTo(Settings& node, const QFileInfo& value)
{
  Begin(node, "fileinfo", false).Set(QStringLiteral("AbsoluteFilePath"), value.absoluteFilePath());
  return node;
}

void DeserializeFrom(const Settings& node, QFileInfo& value)
{
  const QString path =
      Readable(node, "fileinfo", false) ? node.Get<QString>(QStringLiteral("AbsoluteFilePath"), QString()) : QString();
  value = path.isEmpty() ? QFileInfo() : QFileInfo(path);
}

Settings& SerializeTo(Settings& node, const QLine& value)
{
  Begin(node, "line", true);
  SerializeTo(*node.CreateNode(QStringLiteral("Point1")), value.p1());
  SerializeTo(*node.CreateNode(QStringLiteral("Point2")), value.p2());
  return node;
}

void DeserializeFrom(const Settings& node, QLine& value)
{
  value = QLine();
  if (!Readable(node, "line", true))
    return;
  QPoint p1, p2;
  ReadChild(node, QStringLiteral("Point1"), p1);
  ReadChild(node, QStringLiteral("Point2"), p2);
  value = QLine(p1, p2);
}

Settings& SerializeTo(Settings& node, const QLineF& value)
{
  Begin(node, "linef", true);
  SerializeTo(*node.CreateNode(QStringLiteral("PointF1")), value.p1());
  SerializeTo(*node.CreateNode(QStringLiteral("PointF2")), value.p2());
  return node;
}

void DeserializeFrom(const Settings& node, QLineF& value)
{
  value = QLineF();
  if (!Readable(node, "linef", true))
    return;
  QPointF p1, p2;
  ReadChild(node, QStringLiteral("PointF1"), p1);
  ReadChild(node, QStringLiteral("PointF2"), p2);
  value = QLineF(p1, p2);
}

Settings& SerializeTo(Settings& node, const QPoint& value)
{
  Begin(node, "point2D", false);
  node.Set(QStringLiteral("X"), value.x());
  node.Set(QStringLiteral("Y"), value.y());
  return node;
}

void DeserializeFrom(const Settings& node, QPoint& value)
{
  value = Readable(node, "point2D", false)
              ? QPoint(node.Get<int>(QStringLiteral("X"), 0), node.Get<int>(QStringLiteral("Y"), 0))
              : QPoint();
}

Settings& SerializeTo(Settings& node, const QPointF& value)
{
  Begin(node, "point2DF", true);
  node.Set(QStringLiteral("x"), value.x());
  node.Set(QStringLiteral("y"), value.y());
  return node;
}

void DeserializeFrom(const Settings& node, QPointF& value)
{
  value = Readable(node, "point2DF", true)
              ? QPointF(node.Get<double>(QStringLiteral("x"), 0.0), node.Get<double>(QStringLiteral("y"), 0.0))
              : QPointF();
}

Settings& SerializeTo(Settings& node, const QRect& value)
{
  Begin(node, "rect", false);
  node.Set(QStringLiteral("X"), value.left());
  node.Set(QStringLiteral("Y"), value.top());
  node.Set(QStringLiteral("W"), value.width());
  node.Set(QStringLiteral("H"), value.height());
  return node;
}

void DeserializeFrom(const Settings& node, QRect& value)
{
  value = Readable(node, "rect", false)
              ? QRect(node.Get<int>(QStringLiteral("X"), 0), node.Get<int>(QStringLiteral("Y"), 0),
                      node.Get<int>(QStringLiteral("W"), 0), node.Get<int>(QStringLiteral("H"), 0))
              : QRect();
}

Settings& SerializeTo(Settings& node, const QRectF& value)
{
  Begin(node, "rectf", false);
  node.Set(QStringLiteral("X"), value.x());
  node.Set(QStringLiteral("Y"), value.y());
  node.Set(QStringLiteral("W"), value.width());
  node.Set(QStringLiteral("H"), value.height());
  return node;
}

void DeserializeFrom(const Settings& node, QRectF& value)
{
  value = Readable(node, "rectf", false)
              ? QRectF(node.Get<double>(QStringLiteral("X"), 0.0), node.Get<double>(QStringLiteral("Y"), 0.0),
                       node.Get<double>(QStringLiteral("W"), 0.0), node.Get<double>(QStringLiteral("H"), 0.0))
              : QRectF();
}

Settings& SerializeTo(Settings& node, const QSize& value)
{
  Begin(node, "size", false);
  node.Set(QStringLiteral("Width"), static_cast<unsigned int>(value.width()));
  node.Set(QStringLiteral("Height"), static_cast<unsigned int>(value.height()));
  return node;
}

void DeserializeFrom(const Settings& node, QSize& value)
{
  value = Readable(node, "size", false) ? QSize(static_cast<int>(node.Get<unsigned int>(QStringLiteral("Width"), 0u)),
                                                static_cast<int>(node.Get<unsigned int>(QStringLiteral("Height"), 0u)))
                                        : QSize();
}

Settings& SerializeTo(Settings& node, const QSizeF& value)
{
  Begin(node, "sizef", false);
  node.Set(QStringLiteral("Width"), value.width());
  node.Set(QStringLiteral("Height"), value.height());
  return node;
}

void DeserializeFrom(const Settings& node, QSizeF& value)
{
  value = Readable(node, "sizef", false)
              ? QSizeF(node.Get<double>(QStringLiteral("Width"), 0.0), node.Get<double>(QStringLiteral("Height"), 0.0))
              : QSizeF();
}

Settings& SerializeTo(Settings& node, const QString& value)
{
  Begin(node, "qstring", false).Set(QStringLiteral("string"), value);
  return node;
}

void DeserializeFrom(const Settings& node, QString& value)
{
  value = Readable(node, "qstring", false) ? node.Get<QString>(QStringLiteral("string"), QString()) : QString();
}

Settings& SerializeTo(Settings& node, const QUuid& value)
{
  Begin(node, "uuid", true).Set(QStringLiteral("value"), value.toString(QUuid::WithBraces));
  return node;
}

void DeserializeFrom(const Settings& node, QUuid& value)
{
  value =
      Readable(node, "uuid", true) ? QUuid::fromString(node.Get<QString>(QStringLiteral("value"), QString())) : QUuid();
}

Settings& SerializeTo(Settings& node, const QVariant& value)
{
  QByteArray bytes;
  {
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(kVariantStreamVersion);
    stream << value;
  }
  Begin(node, "variant", true);
  SerializeTo(*node.CreateNode(QStringLiteral("variant")), bytes);
  return node;
}

void DeserializeFrom(const Settings& node, QVariant& value)
{
  value = QVariant();
  if (!Readable(node, "variant", true))
    return;
  QByteArray bytes;
  ReadChild(node, QStringLiteral("variant"), bytes);
  QDataStream stream(bytes);
  stream.setVersion(kVariantStreamVersion);
  QVariant read;
  stream >> read;
  if (stream.status() == QDataStream::Ok)
    value = read;
}

Settings& SerializeTo(Settings& node, const Zn::LinearScale& value)
{
  Begin(node, "LinearScale", true);
  node.Set(QStringLiteral("Offset"), value.getOffset());
  node.Set(QStringLiteral("Factor"), value.getFactor());
  node.Set(QStringLiteral("Unit"), value.getUnit());
  node.Set(QStringLiteral("Description"), value.getDescription());
  return node;
}

void DeserializeFrom(const Settings& node, Zn::LinearScale& value)
{
  if (!Readable(node, "LinearScale", true))
  {
    value = Zn::LinearScale();
    return;
  }
  value =
      Zn::LinearScale(node.Get<double>(QStringLiteral("Factor"), 1.0), node.Get<double>(QStringLiteral("Offset"), 0.0),
                      node.Get<QString>(QStringLiteral("Unit"), QString()),
                      node.Get<QString>(QStringLiteral("Description"), QString()));
}

} // namespace Storage
