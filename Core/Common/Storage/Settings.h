// The serialisation tree of the library: named nodes with a class name and a version,
// leaves that carry one value as text with the name of its type, and ordered
// collections (items 0, 1, 2 ... under one name).
//
//   void Camera::SerializeTo(Storage::Settings& node) const
//   {
//     node.SetClass("camera");
//     node.SetVersion(2);
//     node.Set("Gain", m_gain);                  // <Gain class="double" value="1.5"/>
//     for (const QString& lens : m_lenses)
//       node.AppendCollectionItem("Lens", lens);  // <Lens index="0" class="string" .../>
//   }
//   void Camera::DeserializeFrom(const Storage::Settings& node)
//   {
//     m_gain = node.Get<double>("Gain", 1.0);     // missing leaf: the default
//   }
//
// Readers are lenient: a missing leaf gives its default, a leaf of another type is still
// converted and marks the document (Report, HasReports of the document). Nodes are cheap
// views handed out as std::shared_ptr; none may outlive its document.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QList>
#include <QString>

#include <memory>
#include <string_view>

namespace Storage
{

class SettingsDocument;
class SettingsStringBasedDocument;

namespace Private
{
class SettingsDocImpl;
class SettingsDomElem;
} // namespace Private

// True for a name that can be an element name: a letter first, then letters, digits and
// '_', case-insensitive, not beginning with "xml". Only checked when a read fails.
CORECOMMON_EXPORT bool IsValidSettingsName(const QString& name);

class CORECOMMON_EXPORT Settings
{
public:
  Settings() = default;
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;
  virtual ~Settings();

  virtual void SetVersion(unsigned int version) = 0;
  // 0 when none was set.
  virtual unsigned int GetVersion() const = 0;
  virtual void SetClass(const QString& className) = 0;
  // Empty when none was set.
  virtual QString GetClass() const = 0;
  // Exact, case-sensitive comparison with this node's class name.
  virtual bool IsClass(const QString& className) const = 0;
  // Records a non-fatal problem found while reading: logs it with this node's path and
  // marks the document (HasReports). Never throws.
  virtual void Report(const QString& message) const = 0;
  // True when item 0 of a collection with this name exists.
  virtual bool IsCollection(const QString& name) const = 0;
  // Number of children with this name, collection items and plain ones alike.
  virtual unsigned long long Count(const QString& name) const = 0;
  virtual bool Contains(const QString& name) const = 0;
  // Distinct child names in document order.
  virtual QList<QString> GetChildrenNames() const = 0;
  // Removes every child with this name.
  virtual void Remove(const QString& name) = 0;
  virtual void Clear() = 0;
  // This node and its subtree as XML, indented by one space per level, trimmed.
  virtual QString ToString() const = 0;

private:
  // Appends a new child node; never looks for an existing one.
  virtual std::shared_ptr<Settings> CreateChild(const QString& name, bool isCollectionItem,
                                                unsigned long long index) = 0;
  // Throws NotExistingSetting when there is no such child.
  virtual std::shared_ptr<Settings> GetChild(const QString& name, bool isCollectionItem,
                                             unsigned long long index) const = 0;
  // Creates or overwrites a leaf.
  virtual void SetChild(const QString& name, const QString& className, const QString& valueText, bool isCollectionItem,
                        unsigned long long index) = 0;
  // This leaf's value text; a class other than expectedClass is reported, not fatal.
  virtual QString GetValue(const QString& expectedClass) const = 0;

public:
  // The implementation of the document this node belongs to.
  virtual Private::SettingsDocImpl* GetDocImpl() const = 0;

private:
  // GetChild without the exception: an empty pointer when there is no such child. Kept
  // after the slots above; existence checks on hot paths must not cost a throw.
  virtual std::shared_ptr<Settings> FindChild(const QString& name, bool isCollectionItem,
                                              unsigned long long index) const = 0;
  // The UTF-8 value text of a child leaf, valid until the tree changes; null when there
  // is no such child. A class other than expectedClass is reported as by GetValue.
  // Reading large collections must not cost a node per item.
  virtual const char* FindValueText(const QString& name, bool isCollectionItem, unsigned long long index,
                                    const char* expectedClass) const = 0;
  // Set (append false) or AppendCollectionItem (append true) with the texts already in
  // UTF-8: the same lookups and results as SetChild, without a QString per value.
  // Writing large collections must not convert every value twice.
  virtual void WriteLeaf(const QString& name, const char* className, std::string_view valueText, bool append) = 0;

public:
  // Leaves. A name that is a collection is left untouched: a collection is never
  // overwritten by a plain value.
  void Set(const QString& name, const QString& value);
  void Set(const QString& name, signed char value);
  void Set(const QString& name, char value);
  void Set(const QString& name, unsigned char value);
  void Set(const QString& name, short value);
  void Set(const QString& name, unsigned short value);
  void Set(const QString& name, int value);
  void Set(const QString& name, unsigned int value);
  void Set(const QString& name, long long value);
  void Set(const QString& name, unsigned long long value);
  void Set(const QString& name, float value);
  void Set(const QString& name, double value);
  void Set(const QString& name, bool value);
  // A literal is text, not a bool.
  void Set(const QString& name, const char* value) { Set(name, QString::fromUtf8(value)); }
  // long is 64 bits here (size_t, qint64 on some platforms): stored as the 64-bit types.
  void Set(const QString& name, long value) { Set(name, static_cast<long long>(value)); }
  void Set(const QString& name, unsigned long value) { Set(name, static_cast<unsigned long long>(value)); }

  // Collection items, appended with the next index (Count when name is a collection, else 0).
  void AppendCollectionItem(const QString& name, const QString& value);
  void AppendCollectionItem(const QString& name, signed char value);
  void AppendCollectionItem(const QString& name, unsigned char value);
  void AppendCollectionItem(const QString& name, short value);
  void AppendCollectionItem(const QString& name, unsigned short value);
  void AppendCollectionItem(const QString& name, int value);
  void AppendCollectionItem(const QString& name, unsigned int value);
  void AppendCollectionItem(const QString& name, float value);
  void AppendCollectionItem(const QString& name, double value);
  void AppendCollectionItem(const QString& name, long long value);
  void AppendCollectionItem(const QString& name, unsigned long long value);
  void AppendCollectionItem(const QString& name, bool value);
  void AppendCollectionItem(const QString& name, const char* value)
  {
    AppendCollectionItem(name, QString::fromUtf8(value));
  }
  void AppendCollectionItem(const QString& name, long value)
  {
    AppendCollectionItem(name, static_cast<long long>(value));
  }
  void AppendCollectionItem(const QString& name, unsigned long value)
  {
    AppendCollectionItem(name, static_cast<unsigned long long>(value));
  }

  // A new collection item node; empty when a plain child of that name exists.
  std::shared_ptr<Settings> AppendCollectionNode(const QString& name);
  // A new plain node; a plain child of that name is removed first (a collection of the
  // same name stays, the node is appended beside it).
  std::shared_ptr<Settings> CreateNode(const QString& name);
  // The plain child node. Throws NotExistingSetting, or InvalidSettingsName when the name
  // could never exist.
  std::shared_ptr<Settings> GetNode(const QString& name) const;
  // Collection item index of name; throws as GetNode.
  std::shared_ptr<const Settings> GetCollectionNode(const QString& name, unsigned long long index) const;
  // The first item (by index) of collection name whose class is className; empty if none.
  std::shared_ptr<Settings> findCollectionNode(const QString& name, const QString& className);

  // Class name of the plain child name; empty when there is none (also for a collection).
  QString GetClass(const QString& name) const;
  // Class name of collection item index; empty when name is no collection or the index
  // is not below Count(name).
  QString GetClass(const QString& name, unsigned long long index) const;

  // The value of leaf name, or defaultValue when there is no child of that name.
  // Throws as GetNode when name exists only as a collection.
  template <typename T>
  T Get(const QString& name, const T& defaultValue) const
  {
    return ReadLeaf<T>(name, false, 0, defaultValue);
  }

  // The value of collection item index of name, or defaultValue when there is no such
  // item.
  template <typename T>
  T GetCollectionItem(const QString& name, unsigned long long index, const T& defaultValue) const
  {
    return ReadLeaf<T>(name, true, index, defaultValue);
  }

private:
  friend class SettingsDocument;
  friend class SettingsStringBasedDocument;
  friend class Private::SettingsDomElem;

  // This leaf's value converted to T; the class is checked against T's type name.
  template <typename T>
  T Get() const;
  // The public reads: Get<T> of the child found by the lookup rules, without handing
  // out a node for it.
  template <typename T>
  T ReadLeaf(const QString& name, bool isCollectionItem, unsigned long long index, const T& defaultValue) const;

  unsigned long long GetNextCollectionIndex(const QString& name) const;
  // GetChild with the name check of GetNode and GetCollectionNode.
  std::shared_ptr<Settings> GetCheckedChild(const QString& name, bool isCollectionItem, unsigned long long index) const;
};

// Objects persisted through a base-class reference.
class CORECOMMON_EXPORT I_SerializableSettings
{
public:
  virtual ~I_SerializableSettings();
  virtual Settings& SerializeTo(Settings& settings) const = 0;
  virtual void DeserializeFrom(const Settings& settings) = 0;
};

} // namespace Storage
