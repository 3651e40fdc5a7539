#include <Core/Common/Storage/SettingsDocument.h>

#include "SettingsForwarding_p.h"
#include "SettingsSerializer_p.h"
#include "StorageLog_p.h"

#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/Storage/StorageExceptions.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace Storage
{

namespace
{

QString tr(const char* text)
{
  return QCoreApplication::translate("Storage", text);
}

// The one place where the folders of the User, Application and Fixed scopes are
// obtained, each ending in a separator; the locations decide them once per process.
QString ScopeFolder(Scope scope)
{
  switch (scope)
  {
  case Scope::User:
    return RTE::Locations::getUserSettingsPath();
  case Scope::Application:
    return RTE::Locations::getProgramDataSettingsPath();
  case Scope::Fixed:
    return RTE::Locations::getReadOnlySettingsPath();
  default:
    break;
  }
  RTE::Raise(StorageError(tr("The settings folder of scope %1 cannot be obtained.").arg(static_cast<int>(scope))));
}

void ValidateContext(const QString& context)
{
  if (context.isEmpty())
    RTE::Raise(InvalidScopeOrContext(tr("Empty context is not allowed")));
  if (context.contains(QLatin1Char('*')) || context.contains(QLatin1Char('?')) || context.contains(QLatin1Char(':')))
    RTE::Raise(InvalidScopeOrContext(tr("Context contains invalid character(s).")));
}

bool IsFolderScope(Scope scope)
{
  return scope == Scope::User || scope == Scope::Application || scope == Scope::Fixed;
}

} // namespace

QString GetUserScopePath()
{
  return ScopeFolder(Scope::User);
}

QString GetAppScopePath()
{
  return ScopeFolder(Scope::Application);
}

SettingsDocument::SettingsDocument() : SettingsDocument(Scope::InMemory, QString(), AutoSync::Off) {}

SettingsDocument::SettingsDocument(Scope scope, const QString& context, AutoSync mode) :
    m_impl(std::make_unique<Private::SettingsDocImpl>()),
    m_context(context),
    m_scope(scope),
    m_mode(mode)
{
  if (IsFolderScope(scope))
    ValidateContext(context);
  else if (scope == Scope::InMemory)
  {
    m_context.clear();
    m_mode = AutoSync::Off;
    return;
  }
  else if (scope != Scope::File)
    RTE::Raise(InvalidScopeOrContext(tr("Unknown Scope.")));

  if ((m_mode == AutoSync::LoadAndSave || m_mode == AutoSync::LoadOnly) &&
      QFileInfo::exists(FilePathFor(m_scope, m_context)))
    Load();
}

SettingsDocument::SettingsDocument(const QString& filePath, AutoSync mode) :
    SettingsDocument(Scope::File, filePath, mode)
{
}

SettingsDocument::~SettingsDocument()
{
  if (m_mode != AutoSync::LoadAndSave || m_scope == Scope::Fixed || m_scope == Scope::InMemory)
    return;
  try
  {
    if (!Save())
    {
      qCWarning(lcSerialization).noquote()
          << QStringLiteral("Auto-saving settings document failed. File=") + FilePathFor(m_scope, m_context);
    }
  }
  catch (...)
  {
    // A destructor must not throw; the failure was reported where it happened.
  }
}

bool SettingsDocument::Load()
{
  if (m_scope == Scope::InMemory)
    return true;
  QFile file(FilePathFor(m_scope, m_context));
  return m_impl->Read(file);
}

bool SettingsDocument::Save() const
{
  if (m_scope == Scope::InMemory)
    return true;
  if (m_scope == Scope::Fixed)
    return false;
  return SaveAs(FilePathFor(m_scope, m_context));
}

bool SettingsDocument::SaveAs(const QString& filePath) const
{
  return Private::SettingsSerializer(*this).SaveAs(filePath);
}

bool SettingsDocument::SaveTo(Scope scope, const QString& context) const
{
  if (scope == Scope::Fixed)
  {
    qCWarning(lcSerialization) << "Cannot save to fixed scope.";
    return false;
  }
  if (scope != Scope::User && scope != Scope::Application)
  {
    qCWarning(lcSerialization) << "Invalid scope for saving to.";
    return false;
  }
  try
  {
    // A File document's context is a path, not a context of these scopes.
    const QString own = m_scope == Scope::File ? QString() : GetContext();
    const QString target = context.isEmpty() ? own : context;
    ValidateContext(target);
    return SaveAs(FilePathFor(scope, target));
  }
  catch (const RTE::Exception&)
  {
    return false;
  }
}

bool SettingsDocument::DeleteDocument(Scope scope, const QString& context)
{
  if (scope == Scope::Fixed)
  {
    qCWarning(lcSerialization) << "Fixed scope document cannot be deleted.";
    return false;
  }
  if (scope == Scope::InMemory)
  {
    qCWarning(lcSerialization) << "InMemory scope is not useful for deleting a document.";
    return false;
  }
  const QString path = FilePathFor(scope, context);
  if (!path.isEmpty() && QFileInfo::exists(path) && !QFile::remove(path))
  {
    qCWarning(lcSerialization).noquote() << QStringLiteral("File %1 could not be deleted.").arg(path);
    return false;
  }
  return true;
}

bool SettingsDocument::DocumentExists(Scope scope, const QString& context)
{
  if (scope == Scope::InMemory)
    return false;
  const QString path = FilePathFor(scope, context);
  return !path.isEmpty() && QFileInfo::exists(path);
}

QString SettingsDocument::FilePathFor(Scope scope, const QString& context)
{
  if (scope == Scope::File)
    return context;
  if (!IsFolderScope(scope))
    return {};
  try
  {
    return ScopeFolder(scope) + context + QStringLiteral(".xml");
  }
  catch (const RTE::Exception&)
  {
    return {};
  }
}

QString SettingsDocument::GetContext() const
{
  return m_scope == Scope::InMemory ? QString() : m_context;
}

Scope SettingsDocument::GetScope() const
{
  return m_scope;
}

bool SettingsDocument::HasReports() const
{
  return m_impl->HasReports();
}

QString SettingsDocument::GetContent() const
{
  return m_impl->ToString().trimmed();
}

bool SettingsDocument::SetContent(const QString& xmlText)
{
  return m_impl->Read(xmlText);
}

STORAGE_FORWARD_SETTINGS_TO_ROOT(SettingsDocument)

} // namespace Storage
