// A scratch folder that lives as long as the object (and its copies): the first
// destructor removes it with all its content.
//
//   RTE::TempFolder scratch;              // below the application's temporary folder
//   unpack(archive, scratch.GetPath());
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace RTE
{

class CORECOMMON_EXPORT TempFolder
{
public:
  // basePath + "/Temp_" + getRandomFileName(), created with parents; an empty base is
  // RTE::Locations::getTemporaryPath().
  TempFolder();
  explicit TempFolder(const QString& basePath);
  TempFolder(const TempFolder& other) = default;
  TempFolder& operator=(const TempFolder& other) = default;
  ~TempFolder();

  QString GetPath() const;
  // "yyyyMMdd_hhmmsszzz_" + a non-negative pseudo-random number.
  static QString getRandomFileName();

private:
  QString m_path;
};

} // namespace RTE
