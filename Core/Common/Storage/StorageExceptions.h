// The exceptions of the settings storage. Every class derives from RTE::Exception, most
// through Storage::StorageError, so a host can catch the whole family at once:
//
//   try { auto gain = settings.GetNode("gain"); }
//   catch (const Storage::NotExistingSetting& e) { ... e.GetName() ... }
//   catch (const Storage::StorageError& e) { ... }
//
// Settings readers do not throw for bad content; these are raised for missing nodes,
// invalid names, invalid scopes or contexts, and by readers that cannot accept a value.
#pragma once

#include <Core/Common/Exceptions/Exception.h>

namespace Storage
{

class CORECOMMON_EXPORT StorageError : public RTE::Exception
{
public:
  explicit StorageError(const QString& message);
  ~StorageError() override;
};

// Message "<text> (Setting name: '<name>')"; changing the name recomposes it.
class CORECOMMON_EXPORT SettingsError : public StorageError
{
public:
  SettingsError(const QString& text, const QString& settingName);
  ~SettingsError() override;

  virtual QString GetName() const;
  virtual void SetName(const QString& settingName);

private:
  QString m_text;
  QString m_name;
};

// A node or collection item that does not exist.
class CORECOMMON_EXPORT NotExistingSetting : public SettingsError
{
public:
  NotExistingSetting(const QString& settingName, bool isCollection, unsigned int index);
  ~NotExistingSetting() override;

  bool IsCollection() const { return m_isCollection; }
  unsigned int GetCollectionIndex() const { return m_index; }

private:
  bool m_isCollection;
  unsigned int m_index;
};

class CORECOMMON_EXPORT SettingHasWrongClass : public SettingsError
{
public:
  SettingHasWrongClass(const QString& settingName, const QString& expectedClass, const QString& actualClass);
  ~SettingHasWrongClass() override;

  QString GetExpectedClass() const { return m_expected; }
  void SetExpectedClass(const QString& expectedClass) { m_expected = expectedClass; }
  QString GetActualClass() const { return m_actual; }
  void SetActualClass(const QString& actualClass) { m_actual = actualClass; }

private:
  QString m_expected;
  QString m_actual;
};

// A name that can never be an element name (see IsValidSettingsName).
class CORECOMMON_EXPORT InvalidSettingsName : public SettingsError
{
public:
  explicit InvalidSettingsName(const QString& settingName);
  ~InvalidSettingsName() override;
};

// Raised by readers for a field value they cannot accept; the setting name is empty.
class CORECOMMON_EXPORT InvalidValue : public SettingsError
{
public:
  InvalidValue(const QString& className, const QString& key);
  ~InvalidValue() override;

  const QString& className() const { return m_className; }
  const QString& key() const { return m_key; }

private:
  QString m_className;
  QString m_key;
};

// Raised by readers for a version newer than they know; the setting name is empty.
class CORECOMMON_EXPORT InvalidVersion : public SettingsError
{
public:
  InvalidVersion(const QString& className, unsigned int version);
  ~InvalidVersion() override;

  const QString& className() const { return m_className; }
  unsigned int version() const { return m_version; }

private:
  QString m_className;
  unsigned int m_version;
};

// Message "<message> (File: <file name>)".
class CORECOMMON_EXPORT StorageFileError : public StorageError
{
public:
  StorageFileError(const QString& message, const QString& fileName);
  ~StorageFileError() override;

  const QString& GetFileName() const { return m_fileName; }

private:
  QString m_fileName;
};

// A document scope or context that cannot be used.
class CORECOMMON_EXPORT InvalidScopeOrContext : public StorageError
{
public:
  explicit InvalidScopeOrContext(const QString& message);
  ~InvalidScopeOrContext() override;
};

// Message "Empty object".
class CORECOMMON_EXPORT EmptyObjectError : public RTE::Exception
{
public:
  EmptyObjectError();
  ~EmptyObjectError() override;
};

class CORECOMMON_EXPORT UnsupportedNodeTypeError : public RTE::Exception
{
public:
  explicit UnsupportedNodeTypeError(const QString& message);
  ~UnsupportedNodeTypeError() override;
};

} // namespace Storage
