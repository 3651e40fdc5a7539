#include <Core/Common/Utilities/ExternalViewer.h>

#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Utilities/DesktopLaunch_p.h>

#include <QCoreApplication>
#include <QFileInfo>

namespace RTE
{

ExternalViewer::ExternalViewer(QString program, QStringList arguments) :
    m_program(std::move(program)),
    m_arguments(std::move(arguments))
{
}

QStringList ExternalViewer::argumentsFor(const QString& filePath) const
{
  const QString path = QFileInfo(filePath).absoluteFilePath();
  QStringList result;
  bool placed = false;
  for (const QString& argument : m_arguments)
  {
    if (argument.contains(QLatin1String("%1")))
    {
      // Replaced literally: a path may itself hold "%2" and must not be read as a placeholder.
      QString filled = argument;
      filled.replace(QLatin1String("%1"), path);
      result.append(filled);
      placed = true;
    }
    else
      result.append(argument);
  }
  if (!placed)
    result.append(path);
  return result;
}

qint64 ExternalViewer::open(const QString& filePath) const
{
  const QString purpose =
      QCoreApplication::translate("RTE::ExternalViewer", "the file '%1' in the external viewer").arg(filePath);
  if (!isConfigured())
    Raise(InvalidRequest(
        QCoreApplication::translate("RTE::ExternalViewer", "Cannot open %1: no viewer program is configured.")
            .arg(purpose)));
  if (!QFileInfo(filePath).isFile())
  {
    FileOpenError error(filePath);
    error.setMessage(
        QCoreApplication::translate("RTE::ExternalViewer", "Cannot open %1: the file does not exist.").arg(purpose));
    Raise(std::move(error));
  }
  return DesktopLaunch::startDetached(m_program, argumentsFor(filePath), purpose);
}

} // namespace RTE
