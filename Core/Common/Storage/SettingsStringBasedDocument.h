// A settings tree bound to an XML text held in memory.
//
//   Storage::SettingsStringBasedDocument doc(xmlText);
//   const int gain = doc.Get<int>("gain", 0);
//   doc.Set("gain", 12);
//   QString updated = doc.GetContent();
#pragma once

#include <Core/Common/Storage/Settings.h>

#include <memory>

namespace Storage
{

class CORECOMMON_EXPORT SettingsStringBasedDocument : public Settings
{
public:
  // An invalid or empty text gives an empty tree.
  explicit SettingsStringBasedDocument(const QString& xmlText = QString());
  ~SettingsStringBasedDocument() override;

  // The document text: declaration, tab indentation, trimmed.
  QString GetContent() const;
  // Replaces the tree by the text; false (and an empty tree) when it is no settings XML.
  bool SetContent(const QString& xmlText);
  // Whether reading found anything amiss (see Settings::Report).
  bool HasReports() const;

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
  Private::SettingsDocImpl* GetDocImpl() const override;

private:
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

  Settings& Root() const;

  std::unique_ptr<Private::SettingsDocImpl> m_impl;
};

} // namespace Storage
