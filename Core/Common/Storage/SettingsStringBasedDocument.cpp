#include <Core/Common/Storage/SettingsStringBasedDocument.h>

#include "SettingsForwarding_p.h"

namespace Storage
{

SettingsStringBasedDocument::SettingsStringBasedDocument(const QString& xmlText) :
    m_impl(std::make_unique<Private::SettingsDocImpl>())
{
  if (!xmlText.isEmpty())
    m_impl->Read(xmlText);
}

SettingsStringBasedDocument::~SettingsStringBasedDocument() = default;

QString SettingsStringBasedDocument::GetContent() const
{
  return m_impl->ToString().trimmed();
}

bool SettingsStringBasedDocument::SetContent(const QString& xmlText)
{
  return m_impl->Read(xmlText);
}

bool SettingsStringBasedDocument::HasReports() const
{
  return m_impl->HasReports();
}

STORAGE_FORWARD_SETTINGS_TO_ROOT(SettingsStringBasedDocument)

} // namespace Storage
