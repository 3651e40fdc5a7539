// One line of resource usage per application event, for the host's log file.
//
//   RTE::ApplicationLogger::log("Recording started", "camera 1");
//   // "Recording started: camera 1, 512 MB, 0 GDI-handles" to the category "Core.Application"
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace RTE
{

class CORECOMMON_EXPORT ApplicationLogger
{
public:
  // The process-wide instance, made on first use.
  static ApplicationLogger& instance();

  // Composes "<event>: <detail>, <process memory> MB, <GDI objects> GDI-handles" and
  // writes it at info level to the logging category "Core.Application".
  static void log(const QString& event, const QString& detail);

  // The line log() writes, with the current figures.
  static QString composeLine(const QString& event, const QString& detail);

  ApplicationLogger& operator=(const ApplicationLogger&) { return *this; }

private:
  ApplicationLogger() = default;
  ApplicationLogger(const ApplicationLogger&) = default;

  void logInternal(const QString& event, const QString& detail);
};

} // namespace RTE
