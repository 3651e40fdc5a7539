// What this library is and where it came from, and the version of other program files.
//
//   RTE::VersionInfo::libraryVersion();   // "0.1.0"
//   RTE::VersionInfo::sourceRevision();   // "45b39025c823" (empty when built without git)
//   RTE::VersionInfo::fileVersion(QStringLiteral("/usr/lib/x86_64-linux-gnu/libz.so.1"));  // "1.2.13"
//
// The revision and the build date are recorded when the build is configured (the date
// is that day, in UTC); either is empty when it was not known then.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>
#include <QVersionNumber>

namespace RTE
{

class CORECOMMON_EXPORT VersionInfo
{
public:
  // The library's version as built ("major.minor.patch").
  static QString libraryVersion();
  static QVersionNumber libraryVersionNumber();
  // The source revision ("git describe" form, "-dirty" when the sources had changes);
  // empty when unknown.
  static QString sourceRevision();
  // The build date as "yyyy-MM-dd"; empty when unknown.
  static QString buildDate();
  // The path of the loaded library file; empty where the system cannot tell.
  static QString libraryFilePath();

  // The shared-object name (SONAME) recorded in an ELF library, such as "libz.so.1";
  // empty for executables without one, files that are not ELF, and files that cannot be
  // read. Never throws; a damaged file gives an empty text.
  static QString soname(const QString& filePath);
  // The version of a shared library or executable file: the version in its file name
  // when that extends its SONAME ("libz.so.1.2.13" named "libz.so.1": "1.2.13"), else the
  // version in the SONAME ("1"); empty when the file records none. Symbolic links are
  // followed. Never throws.
  static QString fileVersion(const QString& filePath);
};

} // namespace RTE
