#include <Core/Common/Storage/StorageExceptions.h>

#include <QCoreApplication>

namespace Storage
{

namespace
{

QString tr(const char* text)
{
  return QCoreApplication::translate("Storage", text);
}

} // namespace

StorageError::StorageError(const QString& message) : RTE::Exception(message) {}
StorageError::~StorageError() = default;

SettingsError::SettingsError(const QString& text, const QString& settingName) :
    StorageError(QString()),
    m_text(text),
    m_name(settingName)
{
  SetName(settingName);
}

SettingsError::~SettingsError() = default;

QString SettingsError::GetName() const
{
  return m_name;
}

void SettingsError::SetName(const QString& settingName)
{
  m_name = settingName;
  setMessage(tr("%1 (Setting name: '%2')").arg(m_text, m_name));
}

NotExistingSetting::NotExistingSetting(const QString& settingName, bool isCollection, unsigned int index) :
    SettingsError(tr("Not existing setting error."), settingName),
    m_isCollection(isCollection),
    m_index(index)
{
}

NotExistingSetting::~NotExistingSetting() = default;

SettingHasWrongClass::SettingHasWrongClass(const QString& settingName, const QString& expectedClass,
                                           const QString& actualClass) :
    SettingsError(tr("Setting has wrong class."), settingName),
    m_expected(expectedClass),
    m_actual(actualClass)
{
}

SettingHasWrongClass::~SettingHasWrongClass() = default;

InvalidSettingsName::InvalidSettingsName(const QString& settingName) :
    SettingsError(tr("Invalid settings name error."), settingName)
{
}

InvalidSettingsName::~InvalidSettingsName() = default;

InvalidValue::InvalidValue(const QString& className, const QString& key) :
    SettingsError(tr("Found invalid/unsupported value in %1.%2").arg(className, key), QString()),
    m_className(className),
    m_key(key)
{
}

InvalidValue::~InvalidValue() = default;

InvalidVersion::InvalidVersion(const QString& className, unsigned int version) :
    SettingsError(tr("Invalid/unsupported version"), QString()),
    m_className(className),
    m_version(version)
{
}

InvalidVersion::~InvalidVersion() = default;

StorageFileError::StorageFileError(const QString& message, const QString& fileName) :
    StorageError(message + tr(" (File: %1)").arg(fileName)),
    m_fileName(fileName)
{
}

StorageFileError::~StorageFileError() = default;

InvalidScopeOrContext::InvalidScopeOrContext(const QString& message) : StorageError(message) {}
InvalidScopeOrContext::~InvalidScopeOrContext() = default;

EmptyObjectError::EmptyObjectError() : RTE::Exception(tr("Empty object")) {}
EmptyObjectError::~EmptyObjectError() = default;

UnsupportedNodeTypeError::UnsupportedNodeTypeError(const QString& message) : RTE::Exception(message) {}
UnsupportedNodeTypeError::~UnsupportedNodeTypeError() = default;

} // namespace Storage
