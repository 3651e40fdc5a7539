#include <Core/Common/Logging/ApplicationLogger.h>
#include <Core/Common/OperatingSystem/C_SystemInfo.h>

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcApplication, "Core.Application")

namespace RTE
{

ApplicationLogger& ApplicationLogger::instance()
{
  static ApplicationLogger logger;
  return logger;
}

void ApplicationLogger::log(const QString& event, const QString& detail)
{
  instance().logInternal(event, detail);
}

QString ApplicationLogger::composeLine(const QString& event, const QString& detail)
{
  const C_SystemInfo& system = C_SystemInfo::GetInstance();
  return QStringLiteral("%1: %2, %3 MB, %4 GDI-handles")
      .arg(event, detail, QString::number(system.GetMemoryProcess() >> 10),
           QString::number(system.GetGdiObjectCount()));
}

void ApplicationLogger::logInternal(const QString& event, const QString& detail)
{
  qCInfo(lcApplication).noquote() << composeLine(event, detail);
}

} // namespace RTE
