#include <Core/Common/Utilities/FeatureFlags.h>

#include "UtilitiesLog_p.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/Storage/SettingsDocument.h>

#include <algorithm>
#include <exception>

namespace Service
{

namespace
{

const QString RootName = QStringLiteral("FeatureFlags");
const QString ItemName = QStringLiteral("Item");
const QString NameLeaf = QStringLiteral("Name");
const QString ValueLeaf = QStringLiteral("Value");

void logFailure(const char* what, const QString& text)
{
  qCWarning(lcUtilities).noquote() << what << text;
}

} // namespace

FeatureFlags& FeatureFlags::instance()
{
  static FeatureFlags flags;
  return flags;
}

void FeatureFlags::registerFlag(const QString& name, const QString& label, const QString& description,
                                const QString& group, bool defaultValue)
{
  if (isFlagRegistered(name))
    return;
  m_flags.append(Flag{name, label, description, group, defaultValue, false});
}

void FeatureFlags::unregisterFlag(const QString& name)
{
  const auto it = std::find_if(m_flags.begin(), m_flags.end(), [&](const Flag& f) { return f.name == name; });
  if (it != m_flags.end())
    m_flags.erase(it);
}

bool FeatureFlags::isFlagRegistered(const QString& name) const
{
  return std::any_of(m_flags.cbegin(), m_flags.cend(), [&](const Flag& f) { return f.name == name; });
}

void FeatureFlags::setFlag(const QString& name, bool value, bool store)
{
  for (Flag& flag : m_flags)
    if (flag.name == name)
      flag.state = value;
  if (!store)
    return;
  // The file is rewritten from the stored flags: read it first, or a store before the
  // first query would drop every other flag the user had saved.
  read();
  m_stored[name] = value;
  updateXMLFile();
}

bool FeatureFlags::isValid(const QString& name) const
{
  read();
  if (std::any_of(m_flags.cbegin(), m_flags.cend(), [&](const Flag& f) { return f.name == name && f.state; }))
    return true;
  const auto it = m_stored.find(name);
  return it != m_stored.end() && it->second;
}

QList<FeatureFlags::Flag> FeatureFlags::getRegisteredFlagsForUI() const
{
  read();
  for (const Flag& flag : m_flags)
    m_stored.try_emplace(flag.name, false);
  return m_flags;
}

std::map<QString, bool> FeatureFlags::getStoredFlags() const
{
  read();
  return m_stored;
}

QString FeatureFlags::getStoragePath() const
{
  if (!RTE::Locations::areLocationsWorking())
    return {};
  return RTE::Locations::getUserSettingsPath() + QStringLiteral("FeatureFlags.xml");
}

void FeatureFlags::readAgain()
{
  m_needsReading = true;
}

void FeatureFlags::clearRegistry()
{
  m_flags.clear();
}

void FeatureFlags::clearXMLFlags()
{
  m_stored.clear();
}

void FeatureFlags::read() const
{
  if (!m_needsReading)
    return;
  try
  {
    const QString path = getStoragePath();
    if (path.isEmpty())
    {
      qCWarning(lcUtilities) << "QCoreApp not initialized yet!";
      return;
    }
    if (!Storage::SettingsDocument::DocumentExists(Storage::Scope::File, path))
      return;
    const Storage::SettingsDocument document(path, Storage::AutoSync::LoadOnly);
    if (document.Contains(RootName))
    {
      const auto root = document.GetNode(RootName);
      const unsigned long long count = root->Count(ItemName);
      for (unsigned long long i = 0; i < count; ++i)
      {
        const auto item = root->GetCollectionNode(ItemName, i);
        m_stored[item->Get<QString>(NameLeaf, QString())] = item->Get<bool>(ValueLeaf, false);
      }
    }
    m_needsReading = false;
  }
  catch (const RTE::Exception& e)
  {
    logFailure("Error when reading feature flag file:", e.message());
  }
  catch (const std::exception& e)
  {
    logFailure("Error when reading feature flag file:", QString::fromLocal8Bit(e.what()));
  }
  catch (...)
  {
    logFailure("Error when reading feature flag file:", QStringLiteral("Undefined error - can not read a flag!"));
  }
}

void FeatureFlags::updateXMLFile() const
{
  try
  {
    const QString path = getStoragePath();
    if (path.isEmpty())
    {
      qCWarning(lcUtilities) << "QCoreApp not initialized yet!";
      return;
    }
    Storage::SettingsDocument document(path, Storage::AutoSync::LoadOnly);
    const auto root = document.CreateNode(RootName);
    for (const auto& [name, value] : m_stored)
    {
      const auto item = root->AppendCollectionNode(ItemName);
      item->Set(NameLeaf, name);
      item->Set(ValueLeaf, value);
    }
    if (!document.Save())
      logFailure("Error when writing feature flag file:", path);
  }
  catch (const RTE::Exception& e)
  {
    logFailure("Error when writing feature flag file:", e.message());
  }
  catch (const std::exception& e)
  {
    logFailure("Error when writing feature flag file:", QString::fromLocal8Bit(e.what()));
  }
  catch (...)
  {
    logFailure("Error when writing feature flag file:", QStringLiteral("Undefined error"));
  }
}

} // namespace Service
