// The sections and key/value pairs of an INI file, read once at construction.
//
//   RTE::IniConfigReader ini(QStringLiteral("/etc/camera/periphery.ini"));
//   for (const QString& section : ini.getSections())
//     for (const auto& [key, value] : ini.getKeyValuesOfSection(section)) ...
//
// The toolkit's INI reader does the parsing (QSettings::IniFormat), so its rules hold:
// ";" starts a comment, keys are case-sensitive, percent-escapes are decoded, quotes and
// line continuation work as it defines. Keys before the first section header and nested
// groups are not read. A value with unquoted commas, which that reader
// splits into a list, is given back joined with ", ". Sections and keys are ordered by plain string comparison.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <map>
#include <vector>

namespace RTE
{

class CORECOMMON_EXPORT IniConfigReader
{
public:
  // Reads the file if it exists; a missing file gives a reader without sections.
  explicit IniConfigReader(const QString& filePath);

  std::vector<QString> getSections() const;
  bool hasSection(const QString& name) const;
  // A copy of the section's pairs; empty when there is no such section.
  std::map<QString, QString> getKeyValuesOfSection(const QString& name) const;

private:
  void readData();

  QString m_filePath;
  std::map<QString, std::map<QString, QString>> m_content;
};

} // namespace RTE
