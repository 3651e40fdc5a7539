// The settings node of one XML element. The document owns the element tree; a node is
// a cheap view on one element and a pointer to its document (for the has-reports flag
// and the child index), so it must not outlive the document.
//
// Element form: a child named N is a child element N; a node's class and version are
// the attributes "class" and "version"; a leaf has "class" (its type name) and
// "value"; a collection item has "index" as well, written first.
#pragma once

#include <Core/Common/Storage/Settings.h>

#include <pugixml.hpp>

namespace Storage::Private
{

class SettingsDocImpl;

class SettingsDomElem final : public Settings
{
public:
  SettingsDomElem(pugi::xml_node element, SettingsDocImpl* document);
  ~SettingsDomElem() override;

  void SetVersion(unsigned int version) override;
  unsigned int GetVersion() const override;
  void SetClass(const QString& className) override;
  QString GetClass() const override;
  using Settings::GetClass;
  bool IsClass(const QString& className) const override;
  void Report(const QString& message) const override;
  bool IsCollection(const QString& name) const override;
  unsigned long long Count(const QString& name) const override;
  bool Contains(const QString& name) const override;
  QList<QString> GetChildrenNames() const override;
  void Remove(const QString& name) override;
  void Clear() override;
  QString ToString() const override;
  SettingsDocImpl* GetDocImpl() const override;

  pugi::xml_node Element() const { return m_element; }
  // Elements' path from the document root, "root/center/X", items as "items[3]".
  QString Path() const;

private:
  friend class SettingsDocImpl;

  std::shared_ptr<Settings> CreateChild(const QString& name, bool isCollectionItem, unsigned long long index) override;
  std::shared_ptr<Settings> GetChild(const QString& name, bool isCollectionItem,
                                     unsigned long long index) const override;
  void SetChild(const QString& name, const QString& className, const QString& valueText, bool isCollectionItem,
                unsigned long long index) override;
  QString GetValue(const QString& expectedClass) const override;
  std::shared_ptr<Settings> FindChild(const QString& name, bool isCollectionItem,
                                      unsigned long long index) const override;
  const char* FindValueText(const QString& name, bool isCollectionItem, unsigned long long index,
                            const char* expectedClass) const override;
  void WriteLeaf(const QString& name, const char* className, std::string_view valueText, bool append) override;
  // Overwrites the leaf child, or appends it (with "index" when index is given).
  void WriteLeafElement(pugi::xml_node child, std::string_view name, const unsigned long long* index,
                        const char* className, std::string_view valueText);
  // This leaf's value text, reporting a class other than expectedClass.
  const char* CheckedValue(const char* expectedClass) const;

  // The element found by the lookup rules; null when there is none.
  pugi::xml_node Lookup(const QString& name, bool isCollectionItem, unsigned long long index) const;

  pugi::xml_node m_element;
  SettingsDocImpl* m_document;
};

} // namespace Storage::Private
