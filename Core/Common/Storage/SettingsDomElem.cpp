#include "SettingsDomElem_p.h"

#include "PugiXmlWriterToQString_p.h"
#include "SettingsDocImpl_p.h"
#include "StorageLog_p.h"

#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Storage/StorageExceptions.h>

#include <QSet>

#include <algorithm>

namespace Storage::Private
{

namespace
{

QString FromUtf8(const char* text)
{
  return QString::fromUtf8(text);
}

// Sets the attribute, appending it when missing, so new elements get the documented order.
void SetAttribute(pugi::xml_node element, const char* name, const char* value)
{
  pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute)
    attribute = element.append_attribute(name);
  attribute.set_value(value);
}

} // namespace

SettingsDomElem::SettingsDomElem(pugi::xml_node element, SettingsDocImpl* document) :
    m_element(element),
    m_document(document)
{
}

SettingsDomElem::~SettingsDomElem() = default;

void SettingsDomElem::SetVersion(unsigned int version)
{
  pugi::xml_attribute attribute = m_element.attribute("version");
  if (!attribute)
    attribute = m_element.append_attribute("version");
  attribute.set_value(version);
}

unsigned int SettingsDomElem::GetVersion() const
{
  return m_element.attribute("version").as_uint(0);
}

void SettingsDomElem::SetClass(const QString& className)
{
  SetAttribute(m_element, "class", className.toUtf8().constData());
}

QString SettingsDomElem::GetClass() const
{
  return FromUtf8(m_element.attribute("class").value());
}

bool SettingsDomElem::IsClass(const QString& className) const
{
  return GetClass() == className;
}

QString SettingsDomElem::Path() const
{
  QStringList parts;
  for (pugi::xml_node node = m_element; node && node.type() == pugi::node_element; node = node.parent())
  {
    const pugi::xml_attribute index = node.attribute("index");
    parts.append(index ? QStringLiteral("%1[%2]").arg(FromUtf8(node.name()), FromUtf8(index.value()))
                       : FromUtf8(node.name()));
  }
  std::reverse(parts.begin(), parts.end());
  return parts.join(QLatin1Char('/'));
}

void SettingsDomElem::Report(const QString& message) const
{
  m_document->SetHasReports();
  qCInfo(lcSerialization).noquote() << QStringLiteral("Path: ") + Path() + QStringLiteral(" - ") + message;
}

bool SettingsDomElem::IsCollection(const QString& name) const
{
  return Lookup(name.toUtf8(), true, 0);
}

unsigned long long SettingsDomElem::Count(const QString& name) const
{
  const QByteArray utf8 = name.toUtf8();
  return m_document->ChildIndex().Count(m_element, std::string_view(utf8.constData(), utf8.size()));
}

bool SettingsDomElem::Contains(const QString& name) const
{
  const QByteArray utf8 = name.toUtf8();
  return m_document->ChildIndex().FindFirst(m_element, std::string_view(utf8.constData(), utf8.size()));
}

QList<QString> SettingsDomElem::GetChildrenNames() const
{
  QList<QString> names;
  QSet<QString> seen;
  for (pugi::xml_node child = m_element.first_child(); child; child = child.next_sibling())
  {
    if (child.type() != pugi::node_element)
      continue;
    QString name = FromUtf8(child.name());
    if (!seen.contains(name))
    {
      seen.insert(name);
      names.append(std::move(name));
    }
  }
  return names;
}

void SettingsDomElem::Remove(const QString& name)
{
  const QByteArray utf8 = name.toUtf8();
  m_document->ChildIndex().Remove(m_element, std::string_view(utf8.constData(), utf8.size()));
}

void SettingsDomElem::Clear()
{
  m_document->ChildIndex().Clear(m_element);
}

QString SettingsDomElem::ToString() const
{
  QString text;
  PugiXmlWriterToQString writer(text);
  m_element.print(writer, " ", pugi::format_indent, pugi::encoding_utf8);
  return text.trimmed();
}

SettingsDocImpl* SettingsDomElem::GetDocImpl() const
{
  return m_document;
}

pugi::xml_node SettingsDomElem::Lookup(const QByteArray& name, bool isCollectionItem, unsigned long long index) const
{
  SettingsChildIndex& children = m_document->ChildIndex();
  const std::string_view key(name.constData(), name.size());
  if (isCollectionItem)
    return children.FindItem(m_element, key, index);
  // A collection item is never the plain child, even if a later element of that name is.
  const pugi::xml_node first = children.FindFirst(m_element, key);
  return first && !first.attribute("index") ? first : pugi::xml_node();
}

std::shared_ptr<Settings> SettingsDomElem::CreateChild(const QString& name, bool isCollectionItem,
                                                       unsigned long long index)
{
  const QByteArray utf8 = name.toUtf8();
  const pugi::xml_node child = m_document->ChildIndex().Append(
      m_element, std::string_view(utf8.constData(), utf8.size()), isCollectionItem ? &index : nullptr);
  return std::make_shared<SettingsDomElem>(child, m_document);
}

std::shared_ptr<Settings> SettingsDomElem::FindChild(const QString& name, bool isCollectionItem,
                                                     unsigned long long index) const
{
  const pugi::xml_node child = Lookup(name.toUtf8(), isCollectionItem, index);
  return child ? std::make_shared<SettingsDomElem>(child, m_document) : nullptr;
}

std::shared_ptr<Settings> SettingsDomElem::GetChild(const QString& name, bool isCollectionItem,
                                                    unsigned long long index) const
{
  std::shared_ptr<Settings> child = FindChild(name, isCollectionItem, index);
  if (!child)
    RTE::Raise(NotExistingSetting(name, isCollectionItem, static_cast<unsigned int>(index)));
  return child;
}

void SettingsDomElem::SetChild(const QString& name, const QString& className, const QString& valueText,
                               bool isCollectionItem, unsigned long long index)
{
  const QByteArray utf8 = name.toUtf8();
  pugi::xml_node child = Lookup(utf8, isCollectionItem, index);
  if (!child)
  {
    // Appended with "index" first, then "class" and "value".
    child = m_document->ChildIndex().Append(m_element, std::string_view(utf8.constData(), utf8.size()),
                                            isCollectionItem ? &index : nullptr);
  }
  SetAttribute(child, "class", className.toUtf8().constData());
  SetAttribute(child, "value", valueText.toUtf8().constData());
}

QString SettingsDomElem::GetValue(const QString& expectedClass) const
{
  const QString actual = GetClass();
  if (actual != expectedClass)
  {
    Report(QStringLiteral("Mismatching class - Expected class: \"") + expectedClass +
           QStringLiteral("\", Actual class: \"") + actual + QStringLiteral("\""));
  }
  return FromUtf8(m_element.attribute("value").value());
}

} // namespace Storage::Private
