#include <Core/Common/Utilities/IniConfigReader.h>

#include <QFileInfo>
#include <QSettings>

namespace RTE
{

IniConfigReader::IniConfigReader(const QString& filePath) : m_filePath(filePath)
{
  if (QFileInfo(m_filePath).isFile())
    readData();
}

std::vector<QString> IniConfigReader::getSections() const
{
  std::vector<QString> sections;
  sections.reserve(m_content.size());
  for (const auto& entry : m_content)
    sections.push_back(entry.first);
  return sections;
}

bool IniConfigReader::hasSection(const QString& name) const
{
  return m_content.find(name) != m_content.end();
}

std::map<QString, QString> IniConfigReader::getKeyValuesOfSection(const QString& name) const
{
  const auto found = m_content.find(name);
  return found != m_content.end() ? found->second : std::map<QString, QString>();
}

void IniConfigReader::readData()
{
  QSettings ini(QFileInfo(m_filePath).absoluteFilePath(), QSettings::IniFormat);
  for (const QString& section : ini.childGroups())
  {
    ini.beginGroup(section);
    std::map<QString, QString>& pairs = m_content[section];
    for (const QString& key : ini.childKeys())
    {
      // The reader turns an unquoted value with commas into a list; the text is wanted.
      const QVariant value = ini.value(key);
      pairs[key] =
          value.typeId() == QMetaType::QStringList ? value.toStringList().join(QStringLiteral(", ")) : value.toString();
    }
    ini.endGroup();
  }
}

} // namespace RTE
