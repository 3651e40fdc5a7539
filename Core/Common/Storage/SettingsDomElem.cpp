#include "SettingsDomElem_p.h"

#include "PugiXmlWriterToQString_p.h"
#include "SettingsDocImpl_p.h"
#include "SettingsText_p.h"
#include "StorageLog_p.h"
#include "Utf8Buffer_p.h"

#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Storage/StorageExceptions.h>

#include <QSet>

#include <algorithm>
#include <cstring>

namespace Storage::Private
{

namespace
{

QString FromUtf8(const char* text)
{
  return QString::fromUtf8(text);
}

// Sets the attribute, appending it when missing, so new elements get the documented order.
void SetAttribute(pugi::xml_node element, const char* name, std::string_view value)
{
  pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute)
    attribute = element.append_attribute(name);
  attribute.set_value(value.data(), value.size());
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
  SetAttribute(m_element, "class", Utf8Buffer(className).view());
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
  return Lookup(name, true, 0);
}

unsigned long long SettingsDomElem::Count(const QString& name) const
{
  m_document->Settle();
  return m_document->ChildIndex().Count(m_element, Utf8Buffer(name).view());
}

bool SettingsDomElem::Contains(const QString& name) const
{
  m_document->Settle();
  return m_document->ChildIndex().FindFirst(m_element, Utf8Buffer(name).view());
}

QList<QString> SettingsDomElem::GetChildrenNames() const
{
  m_document->Settle();
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
  m_document->Settle();
  m_document->ChildIndex().Remove(m_element, Utf8Buffer(name).view());
}

void SettingsDomElem::Clear()
{
  m_document->Settle();
  m_document->ChildIndex().Clear(m_element);
}

QString SettingsDomElem::ToString() const
{
  m_document->Settle();
  QString text;
  PugiXmlWriterToQString writer(text);
  m_element.print(writer, " ", pugi::format_indent, pugi::encoding_utf8);
  return text.trimmed();
}

SettingsDocImpl* SettingsDomElem::GetDocImpl() const
{
  return m_document;
}

pugi::xml_node SettingsDomElem::Lookup(const QString& name, bool isCollectionItem, unsigned long long index) const
{
  m_document->Settle();
  SettingsChildIndex& children = m_document->ChildIndex();
  const Utf8Buffer utf8(name);
  const std::string_view key = utf8.view();
  if (isCollectionItem)
    return children.FindItem(m_element, key, index);
  // A collection item is never the plain child, even if a later element of that name is.
  const pugi::xml_node first = children.FindFirst(m_element, key);
  return first && !first.attribute("index") ? first : pugi::xml_node();
}

std::shared_ptr<Settings> SettingsDomElem::CreateChild(const QString& name, bool isCollectionItem,
                                                       unsigned long long index)
{
  m_document->Settle();
  const pugi::xml_node child =
      m_document->ChildIndex().Append(m_element, Utf8Buffer(name).view(), isCollectionItem ? &index : nullptr);
  return std::make_shared<SettingsDomElem>(child, m_document);
}

std::shared_ptr<Settings> SettingsDomElem::FindChild(const QString& name, bool isCollectionItem,
                                                     unsigned long long index) const
{
  const pugi::xml_node child = Lookup(name, isCollectionItem, index);
  return child ? std::make_shared<SettingsDomElem>(child, m_document) : nullptr;
}

const char* SettingsDomElem::FindValueText(const QString& name, bool isCollectionItem, unsigned long long index,
                                           const char* expectedClass) const
{
  if (isCollectionItem)
  {
    // Items of large collections come with their attributes at hand.
    m_document->Settle();
    SettingsChildIndex::LeafAttributes leaf;
    const pugi::xml_node item = m_document->ChildIndex().FindItem(m_element, Utf8Buffer(name).view(), index, &leaf);
    if (leaf.known)
    {
      if (!SameText(leaf.type.value(), expectedClass))
        SettingsDomElem(item, m_document).CheckedValue(expectedClass); // reports the mismatch
      return leaf.value.value();
    }
    return item ? SettingsDomElem(item, m_document).CheckedValue(expectedClass) : nullptr;
  }
  const pugi::xml_node child = Lookup(name, isCollectionItem, index);
  return child ? SettingsDomElem(child, m_document).CheckedValue(expectedClass) : nullptr;
}

const char* SettingsDomElem::CheckedValue(const char* expectedClass) const
{
  // One pass over the attributes: this runs for every item of a collection read.
  const char* actual = "";
  const char* value = "";
  for (pugi::xml_attribute attribute = m_element.first_attribute(); attribute; attribute = attribute.next_attribute())
  {
    const char* name = attribute.name();
    if (IsText(name, "class") && !*actual)
      actual = attribute.value();
    else if (IsText(name, "value") && !*value)
      value = attribute.value();
  }
  if (!SameText(actual, expectedClass))
  {
    Report(QStringLiteral("Mismatching class - Expected class: \"") + QString::fromUtf8(expectedClass) +
           QStringLiteral("\", Actual class: \"") + QString::fromUtf8(actual) + QStringLiteral("\""));
  }
  return value;
}

std::shared_ptr<Settings> SettingsDomElem::GetChild(const QString& name, bool isCollectionItem,
                                                    unsigned long long index) const
{
  std::shared_ptr<Settings> child = FindChild(name, isCollectionItem, index);
  if (!child)
    RTE::RaiseAt(NotExistingSetting(name, isCollectionItem, static_cast<unsigned int>(index)),
                 QStringLiteral("Core/Common/SettingsDomElem"), 141);
  return child;
}

void SettingsDomElem::SetChild(const QString& name, const QString& className, const QString& valueText,
                               bool isCollectionItem, unsigned long long index)
{
  const Utf8Buffer classUtf8(className);
  const Utf8Buffer valueUtf8(valueText);
  const Utf8Buffer nameUtf8(name);
  const pugi::xml_node child = Lookup(name, isCollectionItem, index);
  WriteLeafElement(child, nameUtf8.view(), isCollectionItem ? &index : nullptr, classUtf8.c_str(), valueUtf8.view());
}

void SettingsDomElem::WriteLeaf(const QString& name, const char* className, std::string_view valueText, bool append)
{
  SettingsChildIndex& children = m_document->ChildIndex();
  const Utf8Buffer utf8(name);
  const std::string_view key = utf8.view();
  if (append && m_document->HoldItem(m_element, key, className, valueText))
    return;
  m_document->Settle();
  unsigned long long index = 0;
  bool isCollection = false;
  const pugi::xml_node item = children.NextItem(m_element, key, index, isCollection);
  if (append)
  {
    WriteLeafElement(item, key, &index, className, valueText);
    return;
  }
  if (isCollection)
    return; // a collection is never overwritten by a plain value
  const pugi::xml_node first = children.FindFirst(m_element, key);
  WriteLeafElement(first && !first.attribute("index") ? first : pugi::xml_node(), key, nullptr, className, valueText);
}

void SettingsDomElem::WriteLeafElement(pugi::xml_node child, std::string_view name, const unsigned long long* index,
                                       const char* className, std::string_view valueText)
{
  if (child)
  {
    SetAttribute(child, "class", className);
    SetAttribute(child, "value", valueText);
    return;
  }
  // A new element: "index" first, then "class" and "value". Items of large collections
  // are copies of one prototype, which keeps the names and class texts shared.
  SettingsChildIndex& children = m_document->ChildIndex();
  if (index && children.HasTable(m_element))
  {
    if (const pugi::xml_node prototype = m_document->CollectionItemPrototype(name, className))
    {
      children.AppendCopy(m_element, name, prototype, *index)
          .last_attribute()
          .set_value(valueText.data(), valueText.size());
      return;
    }
  }
  child = children.Append(m_element, name, index);
  child.append_attribute("class").set_value(className);
  child.append_attribute("value").set_value(valueText.data(), valueText.size());
}

QString SettingsDomElem::GetValue(const QString& expectedClass) const
{
  return FromUtf8(CheckedValue(Utf8Buffer(expectedClass).c_str()));
}

} // namespace Storage::Private
