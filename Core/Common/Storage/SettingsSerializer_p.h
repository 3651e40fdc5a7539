// Writes the document that a settings node belongs to into a file:
//
//   Storage::Private::SettingsSerializer(*node).SaveAs(path);
#pragma once

#include <QString>

namespace Storage
{
class Settings;
}

namespace Storage::Private
{

class SettingsSerializer
{
public:
  explicit SettingsSerializer(const Settings& node);

  // Creates the folder of filePath with its missing parents and replaces the file as a
  // whole. False for an empty path or any failure; the previous file then stays.
  bool SaveAs(const QString& filePath) const;

private:
  const Settings& m_node;
};

} // namespace Storage::Private
