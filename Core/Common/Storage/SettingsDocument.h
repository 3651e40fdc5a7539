// A settings tree bound to an XML file chosen by scope and context.
//
//   Storage::SettingsDocument doc("/data/camera.xml", Storage::AutoSync::Off);
//   if (!doc.Load())
//     ...;                               // false: the tree is empty, still usable
//   camera.SerializeTo(*doc.CreateNode("camera"));
//   if (!doc.Save())
//     ...;                               // false: the previous file is unchanged
//
// The document is the root node ("root" element) of its tree. Only construction throws
// (InvalidScopeOrContext); loading, saving and deleting report by their result. A save
// replaces the file as a whole: a crash or a full disk during it leaves the previous file.
#pragma once

#include <Core/Common/Storage/Settings.h>

#include <memory>

namespace Storage
{

// Where a document lives. The numbers are part of the interface.
enum class Scope : int
{
  User = 0,        // user settings folder + context + ".xml"
  Application = 1, // program-data settings folder + context + ".xml"
  Fixed = 2,       // read-only settings folder + context + ".xml"; never written or deleted
  File = 3,        // the context is the full file path
  InMemory = 4     // no file
};

// What a document does with its file by itself.
enum class AutoSync : int
{
  LoadAndSave = 0, // load on construction if the file exists, save on destruction
  Off = 1,
  LoadOnly = 2 // load on construction if the file exists
};

// The folders of the user and application scopes, each ending in a separator. Throw
// StorageError when the folder cannot be obtained.
CORECOMMON_EXPORT QString GetUserScopePath();
CORECOMMON_EXPORT QString GetAppScopePath();

class CORECOMMON_EXPORT SettingsDocument : public Settings
{
public:
  // An empty in-memory document.
  SettingsDocument();
  // Throws InvalidScopeOrContext for an unknown scope, and for scopes User, Application
  // and Fixed for an empty context or one containing '*', '?' or ':'.
  SettingsDocument(Scope scope, const QString& context, AutoSync mode);
  // Scope File with the path as context.
  SettingsDocument(const QString& filePath, AutoSync mode);
  // Saves in mode LoadAndSave (scopes User, Application, File); never throws.
  ~SettingsDocument() override;

  // Replaces the tree by the file's content. False (and an empty tree) when the file is
  // missing, empty, no XML or has no "root". In memory: true, nothing read.
  bool Load();
  // False when the file cannot be written, and always for scope Fixed. In memory: true.
  bool Save() const;
  // Writes to filePath, creating its folders. False for an empty path or any failure.
  bool SaveAs(const QString& filePath) const;
  // Writes to the file of scope User or Application and context (empty: this document's
  // own). False for any other scope or any failure; never throws.
  bool SaveTo(Scope scope, const QString& context) const;

  // Removes the file. False for scopes Fixed and InMemory and when the file exists but
  // cannot be removed; true when there was no file.
  static bool DeleteDocument(Scope scope, const QString& context);
  static bool DocumentExists(Scope scope, const QString& context);
  // The file of scope and context; empty for InMemory, an unknown scope, or a folder that
  // cannot be obtained.
  static QString FilePathFor(Scope scope, const QString& context);

  QString GetContext() const;
  Scope GetScope() const;
  // Whether reading found anything amiss (see Settings::Report).
  bool HasReports() const;
  // The document text: declaration, tab indentation, trimmed.
  QString GetContent() const;
  // Replaces the tree by the text; false (and an empty tree) when it is no settings XML.
  bool SetContent(const QString& xmlText);

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
  QString m_context;
  Scope m_scope;
  AutoSync m_mode;
};

} // namespace Storage
