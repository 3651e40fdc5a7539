// The documents are Settings nodes that hand every operation to the root element of
// their SettingsDocImpl. One definition serves both document classes; each provides
// Root() and m_impl.
#pragma once

#include "SettingsDocImpl_p.h"

#define STORAGE_FORWARD_SETTINGS_TO_ROOT(Class)                                                                        \
  void Class::SetVersion(unsigned int version)                                                                         \
  {                                                                                                                    \
    Root().SetVersion(version);                                                                                        \
  }                                                                                                                    \
  unsigned int Class::GetVersion() const                                                                               \
  {                                                                                                                    \
    return Root().GetVersion();                                                                                        \
  }                                                                                                                    \
  void Class::SetClass(const QString& className)                                                                       \
  {                                                                                                                    \
    Root().SetClass(className);                                                                                        \
  }                                                                                                                    \
  QString Class::GetClass() const                                                                                      \
  {                                                                                                                    \
    return Root().GetClass();                                                                                          \
  }                                                                                                                    \
  bool Class::IsClass(const QString& className) const                                                                  \
  {                                                                                                                    \
    return Root().IsClass(className);                                                                                  \
  }                                                                                                                    \
  void Class::Report(const QString& message) const                                                                     \
  {                                                                                                                    \
    Root().Report(message);                                                                                            \
  }                                                                                                                    \
  bool Class::IsCollection(const QString& name) const                                                                  \
  {                                                                                                                    \
    return Root().IsCollection(name);                                                                                  \
  }                                                                                                                    \
  unsigned long long Class::Count(const QString& name) const                                                           \
  {                                                                                                                    \
    return Root().Count(name);                                                                                         \
  }                                                                                                                    \
  bool Class::Contains(const QString& name) const                                                                      \
  {                                                                                                                    \
    return Root().Contains(name);                                                                                      \
  }                                                                                                                    \
  QList<QString> Class::GetChildrenNames() const                                                                       \
  {                                                                                                                    \
    return Root().GetChildrenNames();                                                                                  \
  }                                                                                                                    \
  void Class::Remove(const QString& name)                                                                              \
  {                                                                                                                    \
    Root().Remove(name);                                                                                               \
  }                                                                                                                    \
  void Class::Clear()                                                                                                  \
  {                                                                                                                    \
    Root().Clear();                                                                                                    \
  }                                                                                                                    \
  QString Class::ToString() const                                                                                      \
  {                                                                                                                    \
    return Root().ToString();                                                                                          \
  }                                                                                                                    \
  Private::SettingsDocImpl* Class::GetDocImpl() const                                                                  \
  {                                                                                                                    \
    return m_impl.get();                                                                                               \
  }                                                                                                                    \
  std::shared_ptr<Settings> Class::CreateChild(const QString& name, bool isCollectionItem, unsigned long long index)   \
  {                                                                                                                    \
    return Root().CreateChild(name, isCollectionItem, index);                                                          \
  }                                                                                                                    \
  std::shared_ptr<Settings> Class::GetChild(const QString& name, bool isCollectionItem, unsigned long long index)      \
      const                                                                                                            \
  {                                                                                                                    \
    return Root().GetChild(name, isCollectionItem, index);                                                             \
  }                                                                                                                    \
  void Class::SetChild(const QString& name, const QString& className, const QString& valueText, bool isCollectionItem, \
                       unsigned long long index)                                                                       \
  {                                                                                                                    \
    Root().SetChild(name, className, valueText, isCollectionItem, index);                                              \
  }                                                                                                                    \
  QString Class::GetValue(const QString& expectedClass) const                                                          \
  {                                                                                                                    \
    return Root().GetValue(expectedClass);                                                                             \
  }                                                                                                                    \
  std::shared_ptr<Settings> Class::FindChild(const QString& name, bool isCollectionItem, unsigned long long index)     \
      const                                                                                                            \
  {                                                                                                                    \
    return Root().FindChild(name, isCollectionItem, index);                                                            \
  }                                                                                                                    \
  const char* Class::FindValueText(const QString& name, bool isCollectionItem, unsigned long long index,               \
                                   const char* expectedClass) const                                                    \
  {                                                                                                                    \
    return Root().FindValueText(name, isCollectionItem, index, expectedClass);                                         \
  }                                                                                                                    \
  void Class::WriteLeaf(const QString& name, const char* className, std::string_view valueText, bool append)           \
  {                                                                                                                    \
    Root().WriteLeaf(name, className, valueText, append);                                                              \
  }                                                                                                                    \
  Settings& Class::Root() const                                                                                        \
  {                                                                                                                    \
    return m_impl->GetRoot();                                                                                          \
  }
